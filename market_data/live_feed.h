#pragma once
// Where the live feeds plug into the market data layer. File and database
// sources carry a negative pseudo-conversation and need no feed.

#include <cstdint>

namespace velorin {

// What the live feed answers when asked for the live value of a time series.
enum class LiveValueResult {
    Ok,            // conversation open, reply parsed into staging row 0
    NoConnection,  // the server gave no conversation
    NoData,        // the request returned nothing (the conversation is open)
    ReplyRejected, // the reply could not be parsed (the conversation is open)
};

class LiveFeed {
  public:
    virtual ~LiveFeed() = default;
    // Ends a live conversation.
    virtual void Disconnect(std::intptr_t conversation) = 0;

    // The second conversation of a connect to the live time series, asked by
    // ConnectDataSource after it has disconnected the history conversation
    // and set the selection's currentTopic to "IDN": make the service and
    // topic strings from the selection, build the item, connect and free
    // the strings; keep the conversation in marketData.liveConversation;
    // free an earlier marketData.liveItem and make the new one; request the
    // value as text with a 60000 ms time-out; parse the reply into staging
    // row 0. ConnectDataSource shows the messages, disconnects and frees the
    // slot on failure, and appends the row on success (AppendStagedRow).
    virtual LiveValueResult OpenLiveValue() = 0;
};

// The feed in force. Never null: without an installed feed every live
// value is answered NoConnection and there is nothing to disconnect.
LiveFeed& TheLiveFeed();
// Installs `feed` (nullptr restores the absent one); returns the previous one.
LiveFeed* InstallLiveFeed(LiveFeed* feed);

// Ends `conversation` when it is a live one; negative and zero values are
// file, database or absent conversations and need nothing.
inline void DisconnectConversation(std::intptr_t conversation) {
    if (conversation > 0) TheLiveFeed().Disconnect(conversation);
}

} // namespace velorin
