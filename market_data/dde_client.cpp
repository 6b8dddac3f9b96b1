#include "market_data/dde_client.h"

#include <cstring>
#include <ctime>
#include <string>

#include "market_data/data_source.h"
#include "market_data/dde_text.h"

namespace velorin {
namespace {

// The live item stands for the item text while a request and its advise
// start use it; its value only tells whether one is made.
std::intptr_t nextItemHandle = 0;

void MakeLiveItem() {
    marketData.liveItem = ++nextItemHandle > 0 ? nextItemHandle : (nextItemHandle = 1);
}

// One reply buffer for every request: its capacity stays after the first.
std::string& ReplyBuffer() {
    static std::string reply;
    return reply;
}

} // namespace

std::int64_t LiveNowSeconds() {
    if (ddeFeed.fixedNow >= 0) return ddeFeed.fixedNow;
    return static_cast<std::int64_t>(std::time(nullptr));
}

LiveRequestResult RequestLiveSnapshot() {
    const ConnectionSelection& s = marketData.selection;
    // The history topic of the live service never gives ticks.
    if (IsReuterService(s.currentSource) &&
        (std::strcmp(s.currentTopic, "TS1") == 0 || std::strcmp(s.currentTopic, "ts1") == 0))
        marketData.fetchIsTick = 0;
    BuildDdeItem();
    DdeTransport& transport = TheDdeTransport();
    const Conversation conversation = transport.Connect(s.currentSource, s.currentTopic);
    marketData.liveConversation = conversation;
    if (conversation <= 0) {
        marketData.liveConversation = 0;
        return LiveRequestResult::NoConversation;
    }
    MakeLiveItem();
    std::string& reply = ReplyBuffer();
    reply.clear();
    if (!transport.Request(conversation, ddeFeed.ddeItemText, ddeFeed.requestTimeoutMs, reply)) {
        transport.Disconnect(conversation);
        marketData.liveConversation = 0;
        return LiveRequestResult::NoData;
    }
    if (ParseDdeReply(reply.data(), reply.size()) == 0) {
        transport.Disconnect(conversation);
        marketData.liveConversation = 0;
        return LiveRequestResult::ReplyRejected;
    }
    return LiveRequestResult::Ok;
}

void StartAdviseLoop(bool realTimeOn) {
    const Conversation conversation = marketData.liveConversation;
    if (conversation <= 0) return;
    TheDdeTransport().AdviseStart(conversation, ddeFeed.ddeItemText, ddeFeed.requestTimeoutMs);
    marketData.liveItem = 0;
    if (!realTimeOn) TheDdeTransport().EnableCallback(conversation, false);
}

} // namespace velorin
