#pragma once
// The client's side of a live conversation, in the order the program has
// always made its calls: connect to the selection's service and topic, ask
// for the built item, parse the snapshot, and later start the advise loop.

#include <cstdint>

#include "market_data/dde_transport.h"

namespace velorin {

enum class LiveRequestResult {
    Ok,             // conversation in marketData.liveConversation, reply staged
    NoConversation, // no server took the service and topic
    NoData,         // the request was refused or timed out (conversation ended)
    ReplyRejected,  // the reply could not be parsed (conversation ended)
};

// Clears fetchIsTick for the live service's history topic, builds the item
// (BuildDdeItem), connects to the selection's service and topic, makes the
// live item, requests it as text and parses the reply into the staging area.
// Shows no message: the callers' texts differ.
LiveRequestResult RequestLiveSnapshot();

// The advise loop of the item just requested, on marketData.liveConversation;
// the result is not looked at. The item is freed, and with Real Time off the
// conversation's callbacks are held at once.
void StartAdviseLoop(bool realTimeOn);

// Seconds since the epoch by which sources time their updates (a test may
// fix it through ddeFeed.fixedNow).
std::int64_t LiveNowSeconds();

// Ends `conversation` when it is a live one; negative and zero values are
// file, database or absent conversations and need nothing.
inline void DisconnectConversation(Conversation conversation) {
    if (conversation > 0) TheDdeTransport().Disconnect(conversation);
}

} // namespace velorin
