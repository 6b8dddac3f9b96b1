#pragma once
// Before writing code here, read DEVELOPERS.md at the repository root: team rules.
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

struct FeedHooks {
    // Ends a live conversation; installed by the live feed layer.
    void (*disconnect)(std::intptr_t conversation) = nullptr;

    // The second conversation of a connect to the live time series, asked by
    // ConnectDataSource after it has disconnected the history conversation
    // and set the selection's currentTopic to "IDN": make the service and
    // topic strings from the selection, build the item, connect and free
    // the strings; keep the conversation in marketData.liveConversation;
    // free an earlier marketData.liveItem and make the new one; request the
    // value as text with a 60000 ms time-out; parse the reply into staging
    // row 0. ConnectDataSource shows the messages, disconnects and frees the
    // slot on failure, and appends the row on success (AppendStagedRow).
    // nullptr (no live feed yet): answered as NoConnection.
    LiveValueResult (*openLiveValue)() = nullptr;
};
inline FeedHooks feedHooks;

// Ends `conversation` when it is a live one; negative and zero values are
// file, database or absent conversations and need nothing.
inline void DisconnectConversation(std::intptr_t conversation) {
    if (conversation > 0 && feedHooks.disconnect) feedHooks.disconnect(conversation);
}

} // namespace velorin
