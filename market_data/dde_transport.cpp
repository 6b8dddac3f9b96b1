#include "market_data/dde_transport.h"

namespace velorin {
namespace {

class AbsentTransport final : public DdeTransport {
  public:
    Conversation Connect(const char*, const char*) override { return 0; }
    bool Request(Conversation, const char*, int, std::string&) override { return false; }
    bool AdviseStart(Conversation, const char*, int) override { return false; }
    void Disconnect(Conversation) override {}
    void EnableCallback(Conversation, bool) override {}
};

AbsentTransport absentTransport;
DdeTransport* installed = &absentTransport;
DdeCallbackFunction callback = nullptr;

} // namespace

DdeTransport& TheDdeTransport() {
    return *installed;
}

DdeTransport* InstallDdeTransport(DdeTransport* transport) {
    DdeTransport* previous = installed == &absentTransport ? nullptr : installed;
    installed = transport ? transport : &absentTransport;
    return previous;
}

void SetDdeCallback(DdeCallbackFunction function) {
    callback = function;
}

std::uint32_t DeliverDdeTransaction(DdeTransaction type, Conversation conversation,
                                    const char* data, std::size_t size) {
    return callback ? callback(type, conversation, data, size) : 0;
}

} // namespace velorin
