#pragma once
// The live feed on the desktop session bus. A conversation is made with the
// server that owns "com.qdxvelorin.Dde.<service>" (the service matched
// without regard to case), and the program's conversation numbers stand for
// that server's unique name and its own conversation number in a fixed
// table. Servers send advise data and the end of a conversation to this
// object (interface com.qdxvelorin.DdeClient1), and a server that leaves
// the bus ends all its conversations. docs/live-feed-bus.md describes the
// protocol.

#include <QByteArray>
#include <QDBusConnection>
#include <QHash>
#include <QObject>
#include <QPair>
#include <QString>
#include <QVariantList>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

#include "market_data/dde_transport.h"

class QDBusMessage;
class QDBusServiceWatcher;

namespace velorin {

class DdeBusTransport final : public QObject, public DdeTransport {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.qdxvelorin.DdeClient1")

  public:
    // One more than the program's source slots, for the live value that a
    // history opens beside its own conversation.
    static constexpr int MaxConversations = 1024;
    // Advise data kept while callbacks are held; beyond it the oldest go.
    static constexpr std::size_t MaxHeldAdvices = 100000;

    // Without a bus (`bus` not connected) every connect is refused.
    explicit DdeBusTransport(const QDBusConnection& bus = QDBusConnection::sessionBus(),
                             QObject* parent = nullptr);
    ~DdeBusTransport() override;

    bool OnBus() const { return bus_.isConnected(); }
    // How long a server may take to accept a conversation.
    int connectTimeoutMs = DdeTimeoutMilliseconds;

    Conversation Connect(const char* service, const char* topic) override;
    bool Request(Conversation conversation, const char* item, int timeoutMs,
                 std::string& reply) override;
    bool AdviseStart(Conversation conversation, const char* item, int timeoutMs) override;
    void Disconnect(Conversation conversation) override;
    void EnableCallback(Conversation conversation, bool enable) override;

  public Q_SLOTS:
    // New data of an advise loop; answers whether the program took them in
    // (true while they are held).
    Q_SCRIPTABLE bool Advise(uint conversation, const QString& item, const QByteArray& data,
                             const QDBusMessage& message);
    // The server ended the conversation.
    Q_SCRIPTABLE void Terminate(uint conversation, const QDBusMessage& message);

  private:
    struct Entry {
        Conversation id = 0; // 0: free
        QString server;      // the server's unique bus name
        uint serverConversation = 0;
        bool held = false;
        std::uint64_t uses = 0;
    };
    struct HeldAdvice {
        Conversation conversation;
        QByteArray data;
    };

    Entry* Find(Conversation conversation);
    Entry* FindFromServer(const QString& server, uint serverConversation);
    QString FindServerName(const QString& service);
    void Free(Entry& entry);
    void ServerGone(const QString& server);
    void Flush();
    QDBusMessage Call(const Entry& entry, const char* method, const QVariantList& arguments,
                      int timeoutMs);

    QDBusConnection bus_;
    QDBusServiceWatcher* servers_;
    std::vector<Entry> table_;
    QHash<QPair<QString, uint>, int> byServer_; // to the table's index
    QHash<QString, int> serverUses_;            // conversations per server
    std::deque<HeldAdvice> held_;
    bool holdAll_ = false;
    bool flushing_ = false;
};

} // namespace velorin
