#pragma once
// A live-feed transport without a bus: servers answer from a table, every
// call is written down as a line of text, and a test plays the server's
// side with Advise and Terminate.

#include <map>
#include <set>
#include <string>
#include <vector>

#include "market_data/dde_transport.h"

namespace velorin::test_support {

class ScriptedTransport final : public DdeTransport {
  public:
    ScriptedTransport() { previous_ = InstallDdeTransport(this); }
    ~ScriptedTransport() override { InstallDdeTransport(previous_); }

    // Topics no server takes, and the reply text of each item (an item
    // missing here is refused, as a time-out would be).
    std::set<std::string> refusedTopics;
    std::map<std::string, std::string> replies;
    Conversation nextConversation = 4242;
    // "connect S/T", "request C item", "advise C item", "disconnect C",
    // "hold C" and "release C" (C 0: every conversation).
    std::vector<std::string> calls;

    Conversation Connect(const char* service, const char* topic) override {
        calls.push_back("connect " + std::string(service) + "/" + topic);
        return refusedTopics.count(topic) ? 0 : nextConversation++;
    }
    bool Request(Conversation c, const char* item, int, std::string& reply) override {
        calls.push_back("request " + std::to_string(c) + " " + item);
        const auto it = replies.find(item);
        if (it == replies.end()) return false;
        reply = it->second;
        return true;
    }
    bool AdviseStart(Conversation c, const char* item, int) override {
        calls.push_back("advise " + std::to_string(c) + " " + item);
        return true;
    }
    void Disconnect(Conversation c) override { calls.push_back("disconnect " + std::to_string(c)); }
    void EnableCallback(Conversation c, bool enable) override {
        calls.push_back((enable ? "release " : "hold ") + std::to_string(c));
    }

    // The server's side: advise data or its end of the conversation.
    std::uint32_t Advise(Conversation c, const std::string& text) {
        return DeliverDdeTransaction(DdeTransaction::AdviseData, c, text.data(), text.size());
    }
    std::uint32_t Terminate(Conversation c) {
        return DeliverDdeTransaction(DdeTransaction::Disconnect, c, nullptr, 0);
    }

  private:
    DdeTransport* previous_ = nullptr;
};

} // namespace velorin::test_support
