#include "market_data/dbus/dde_bus_transport.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QStringList>

#include <algorithm>
#include <iterator>

#include "market_data/dbus/dde_bus_names.h"

namespace velorin {
namespace {

// The program's texts are single bytes; on the bus each byte is one character.
QString Latin1(const char* text) {
    return QString::fromLatin1(text);
}

bool IsReplyOf(const QDBusMessage& answer, QMetaType type) {
    return answer.type() == QDBusMessage::ReplyMessage && answer.arguments().size() == 1 &&
           answer.arguments().constFirst().metaType() == type;
}

} // namespace

DdeBusTransport::DdeBusTransport(const QDBusConnection& bus, QObject* parent)
    : QObject(parent), bus_(bus), servers_(new QDBusServiceWatcher(this)),
      table_(MaxConversations) {
    servers_->setConnection(bus_);
    servers_->setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(servers_, &QDBusServiceWatcher::serviceUnregistered, this,
            [this](const QString& server) { ServerGone(server); });
    if (OnBus())
        bus_.registerObject(Latin1(dde_bus::ClientPath), this,
                            QDBusConnection::ExportScriptableSlots);
}

DdeBusTransport::~DdeBusTransport() {
    for (const Entry& entry : table_)
        if (entry.id) Disconnect(entry.id);
    if (OnBus()) bus_.unregisterObject(Latin1(dde_bus::ClientPath));
}

DdeBusTransport::Entry* DdeBusTransport::Find(Conversation conversation) {
    if (conversation <= 0) return nullptr;
    Entry& entry = table_[static_cast<std::size_t>((conversation - 1) % MaxConversations)];
    return entry.id == conversation ? &entry : nullptr;
}

DdeBusTransport::Entry* DdeBusTransport::FindFromServer(const QString& server,
                                                        uint serverConversation) {
    const auto it = byServer_.constFind(qMakePair(server, serverConversation));
    return it == byServer_.constEnd() ? nullptr : &table_[static_cast<std::size_t>(*it)];
}

// The bus name of `service`: its own spelling first, else any other case.
QString DdeBusTransport::FindServerName(const QString& service) {
    const QDBusReply<QStringList> names = bus_.interface()->registeredServiceNames();
    if (!names.isValid()) return {};
    const QString prefix = Latin1(dde_bus::NamePrefix);
    QString found;
    for (const QString& name : names.value()) {
        if (!name.startsWith(prefix)) continue;
        const QStringView rest = QStringView(name).mid(prefix.size());
        if (rest == service) return name;
        if (found.isEmpty() && rest.compare(service, Qt::CaseInsensitive) == 0) found = name;
    }
    return found;
}

QDBusMessage DdeBusTransport::Call(const Entry& entry, const char* method,
                                   const QVariantList& arguments, int timeoutMs) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(entry.server, Latin1(dde_bus::ServerPath),
                                       Latin1(dde_bus::ServerInterface), Latin1(method));
    call.setArguments(arguments);
    call.setAutoStartService(false);
    // Blocks without running the event loop: advise data that arrive
    // meanwhile wait until the program's thread is free again.
    return bus_.call(call, QDBus::Block, timeoutMs > 0 ? timeoutMs : DdeTimeoutMilliseconds);
}

Conversation DdeBusTransport::Connect(const char* service, const char* topic) {
    if (!OnBus() || !service || !topic) return 0;
    const auto free =
        std::find_if(table_.begin(), table_.end(), [](const Entry& e) { return e.id == 0; });
    if (free == table_.end()) return 0;
    const QString name = FindServerName(Latin1(service));
    if (name.isEmpty()) return 0;

    Entry& entry = *free;
    entry.server = name;
    const QDBusMessage answer =
        Call(entry, "Connect", {Latin1(service), Latin1(topic)}, connectTimeoutMs);
    entry.server.clear();
    if (!IsReplyOf(answer, QMetaType::fromType<uint>())) return 0;
    const uint serverConversation = answer.arguments().constFirst().toUInt();
    QString server = answer.service();
    if (server.isEmpty()) server = bus_.interface()->serviceOwner(name).value();
    if (serverConversation == 0 || server.isEmpty() || FindFromServer(server, serverConversation))
        return 0;

    // The server is watched from its first conversation on; one that left
    // the bus before the watch began is no server.
    if (serverUses_.value(server) == 0) {
        servers_->addWatchedService(server);
        if (!bus_.interface()->isServiceRegistered(server).value()) {
            servers_->removeWatchedService(server);
            return 0;
        }
    }
    ++serverUses_[server];
    const int index = static_cast<int>(free - table_.begin());
    entry.id = static_cast<Conversation>(entry.uses++ * MaxConversations + index + 1);
    entry.server = server;
    entry.serverConversation = serverConversation;
    entry.held = holdAll_;
    byServer_.insert(qMakePair(server, serverConversation), index);
    return entry.id;
}

bool DdeBusTransport::Request(Conversation conversation, const char* item, int timeoutMs,
                              std::string& reply) {
    const Entry* entry = Find(conversation);
    if (!entry || !item) return false;
    const QDBusMessage answer =
        Call(*entry, "Request", {entry->serverConversation, Latin1(item)}, timeoutMs);
    if (!IsReplyOf(answer, QMetaType::fromType<QByteArray>())) return false;
    const QByteArray data = answer.arguments().constFirst().toByteArray();
    reply.assign(data.constData(), static_cast<std::size_t>(data.size()));
    return true;
}

bool DdeBusTransport::AdviseStart(Conversation conversation, const char* item, int timeoutMs) {
    const Entry* entry = Find(conversation);
    if (!entry || !item) return false;
    const QDBusMessage answer =
        Call(*entry, "AdviseStart", {entry->serverConversation, Latin1(item)}, timeoutMs);
    return IsReplyOf(answer, QMetaType::fromType<bool>()) &&
           answer.arguments().constFirst().toBool();
}

void DdeBusTransport::Disconnect(Conversation conversation) {
    Entry* entry = Find(conversation);
    if (!entry) return;
    QDBusMessage call = QDBusMessage::createMethodCall(entry->server, Latin1(dde_bus::ServerPath),
                                                       Latin1(dde_bus::ServerInterface),
                                                       QStringLiteral("Disconnect"));
    call << entry->serverConversation;
    call.setAutoStartService(false);
    bus_.send(call); // no answer awaited
    Free(*entry);
}

void DdeBusTransport::Free(Entry& entry) {
    const Conversation id = entry.id;
    byServer_.remove(qMakePair(entry.server, entry.serverConversation));
    if (--serverUses_[entry.server] <= 0) {
        serverUses_.remove(entry.server);
        servers_->removeWatchedService(entry.server);
    }
    std::erase_if(held_, [id](const HeldAdvice& h) { return h.conversation == id; });
    entry.id = 0;
    entry.server.clear();
    entry.held = false;
}

void DdeBusTransport::ServerGone(const QString& server) {
    std::vector<Conversation> ended;
    for (Entry& entry : table_)
        if (entry.id && entry.server == server) {
            ended.push_back(entry.id);
            Free(entry);
        }
    for (const Conversation conversation : ended)
        DeliverDdeTransaction(DdeTransaction::Disconnect, conversation, nullptr, 0);
}

bool DdeBusTransport::Advise(uint conversation, const QString&, const QByteArray& data,
                             const QDBusMessage& message) {
    Entry* entry = FindFromServer(message.service(), conversation);
    if (!entry) return false;
    if (entry->held || flushing_) {
        if (held_.size() >= MaxHeldAdvices) held_.pop_front();
        held_.push_back({entry->id, data});
        return true;
    }
    return DeliverDdeTransaction(DdeTransaction::AdviseData, entry->id, data.constData(),
                                 static_cast<std::size_t>(data.size())) == DdeAcknowledged;
}

void DdeBusTransport::Terminate(uint conversation, const QDBusMessage& message) {
    Entry* entry = FindFromServer(message.service(), conversation);
    if (!entry) return;
    const Conversation id = entry->id;
    Free(*entry);
    DeliverDdeTransaction(DdeTransaction::Disconnect, id, nullptr, 0);
}

void DdeBusTransport::EnableCallback(Conversation conversation, bool enable) {
    if (conversation == 0) {
        holdAll_ = !enable;
        for (Entry& entry : table_)
            if (entry.id) entry.held = !enable;
    } else if (Entry* entry = Find(conversation)) {
        entry->held = !enable;
    }
    if (enable) Flush();
}

// Delivers the held advise data of released conversations in the order
// they came. The program's callback may hold, release or end conversations,
// or run an event loop in which more data arrive: those wait in held_
// behind the ones still held, and the next round takes them.
void DdeBusTransport::Flush() {
    if (flushing_) return;
    flushing_ = true;
    const auto deliverable = [this](const HeldAdvice& h) {
        const Entry* entry = Find(h.conversation);
        return entry && !entry->held;
    };
    while (std::any_of(held_.begin(), held_.end(), deliverable)) {
        std::deque<HeldAdvice> batch, kept;
        batch.swap(held_);
        for (HeldAdvice& h : batch) {
            const Entry* entry = Find(h.conversation);
            if (!entry) continue;
            if (entry->held) {
                kept.push_back(std::move(h));
                continue;
            }
            DeliverDdeTransaction(DdeTransaction::AdviseData, h.conversation, h.data.constData(),
                                  static_cast<std::size_t>(h.data.size()));
        }
        kept.insert(kept.end(), std::make_move_iterator(held_.begin()),
                    std::make_move_iterator(held_.end()));
        held_.swap(kept);
    }
    flushing_ = false;
}

} // namespace velorin
