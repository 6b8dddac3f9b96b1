#pragma once
// The live conversations as the program uses them, whatever carries them:
// connect to a service and topic, ask for an item as text, start an advise
// loop, disconnect, and hold or release the transactions a server starts.
// The desktop program installs the session bus adapter; tests install a
// scripted transport. Without one, no service answers.

#include <cstddef>
#include <cstdint>
#include <string>

namespace velorin {

// A live conversation: positive. File and database sources carry negative
// pseudo-conversations, and 0 is none.
using Conversation = std::intptr_t;

// The transactions a server starts, with the codes the program has always
// given them.
enum class DdeTransaction : std::uint32_t {
    AdviseData = 0x4010, // new data of an advise loop
    Disconnect = 0x80C2, // the server ended the conversation (or went away)
};
// What the callback answers to advise data it has taken in.
inline constexpr std::uint32_t DdeAcknowledged = 0x8000;

// How long a request or an advise start may wait for its answer.
inline constexpr int DdeTimeoutMilliseconds = 60000;

class DdeTransport {
  public:
    virtual ~DdeTransport() = default;
    // A conversation with `service`, whose name is matched without regard to
    // case, on `topic`; 0 when no server takes it.
    virtual Conversation Connect(const char* service, const char* topic) = 0;
    // The value of `item` as text. False when the server refused, failed or
    // did not answer within `timeoutMs`; `reply` then holds nothing useful.
    virtual bool Request(Conversation conversation, const char* item, int timeoutMs,
                         std::string& reply) = 0;
    // Starts the advise loop of `item`; true when the server agreed.
    virtual bool AdviseStart(Conversation conversation, const char* item, int timeoutMs) = 0;
    // Ends a conversation from our side; the server is told.
    virtual void Disconnect(Conversation conversation) = 0;
    // Holds (`enable` false) or releases the transactions of `conversation`,
    // or of every conversation when it is 0. Held advise data are kept in
    // order and delivered when released; a conversation started while every
    // callback is held is held too.
    virtual void EnableCallback(Conversation conversation, bool enable) = 0;
};

// The transport in force. Never null: without an installed one every
// connect is refused.
DdeTransport& TheDdeTransport();
// Installs `transport` (nullptr restores the absent one); returns the
// previous one.
DdeTransport* InstallDdeTransport(DdeTransport* transport);

// The program's answer to a transaction a server started; `data` and `size`
// are the bytes of advise data (nothing for a disconnect). Returns
// DdeAcknowledged for advise data taken in, else 0.
using DdeCallbackFunction = std::uint32_t (*)(DdeTransaction type, Conversation conversation,
                                              const char* data, std::size_t size);
// Set once by the program; nullptr drops every transaction.
void SetDdeCallback(DdeCallbackFunction callback);
// What a transport calls, on the program's thread, for each transaction.
std::uint32_t DeliverDdeTransaction(DdeTransaction type, Conversation conversation,
                                    const char* data, std::size_t size);

} // namespace velorin
