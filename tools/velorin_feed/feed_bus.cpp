#include "tools/velorin_feed/feed_bus.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QTime>

#include <algorithm>
#include <cmath>

#include "market_data/dbus/dde_bus_names.h"

namespace velorin::feed {
namespace {

// Ticks sent in one turn of the event loop at most, so that calls keep
// being answered at high rates.
constexpr int MaxBurst = 2000;

std::string Bytes(const QString& text) {
    return text.toLatin1().toStdString();
}

} // namespace

FeedBus::FeedBus(FeedCore& core, const QDBusConnection& bus, double rate)
    : core_(core), bus_(bus), rate_(rate) {
    clients_.setConnection(bus_);
    clients_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&clients_, &QDBusServiceWatcher::serviceUnregistered, this,
            [this](const QString& client) {
                core_.DropClient(client.toStdString());
                clients_.removeWatchedService(client);
            });
    if (rate_ > 0) {
        timer_.setInterval(std::clamp(static_cast<int>(1000 / rate_), 1, 100));
        connect(&timer_, &QTimer::timeout, this, [this] { Tick(); });
    }
}

bool FeedBus::Start(QStringList& served, QString& error) {
    if (!bus_.registerObject(QLatin1String(dde_bus::ServerPath), this,
                             QDBusConnection::ExportScriptableSlots)) {
        error = QStringLiteral("the server object is taken: ") + bus_.lastError().message();
        return false;
    }
    for (const std::string& service : core_.Services()) {
        const QString name = QLatin1String(dde_bus::NamePrefix) + QString::fromStdString(service);
        const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
            bus_.interface()->registerService(name, QDBusConnectionInterface::DontQueueService,
                                              QDBusConnectionInterface::DontAllowReplacement);
        if (reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered)
            served << QString::fromStdString(service);
        else
            error += name + QStringLiteral(" is taken by another server\n");
    }
    if (served.isEmpty()) return false;
    started_.start();
    if (rate_ > 0) timer_.start();
    return true;
}

void FeedBus::SetClock() {
    core_.SetClock(QTime::currentTime().msecsSinceStartOfDay() / 1000);
}

void FeedBus::Refuse(const Failure& failure) {
    sendErrorReply(QLatin1String(dde_bus::ErrorPrefix) + QString::fromStdString(failure.name),
                   QString::fromStdString(failure.message));
}

uint FeedBus::Connect(const QString& service, const QString& topic) {
    SetClock();
    Failure failure;
    const uint id = core_.Connect(Bytes(service), Bytes(topic), failure);
    if (id == 0) Refuse(failure);
    return id;
}

QByteArray FeedBus::Request(uint conversation, const QString& item) {
    SetClock();
    std::string reply;
    Failure failure;
    if (!core_.Request(conversation, Bytes(item), reply, failure)) {
        Refuse(failure);
        return {};
    }
    return QByteArray(reply.data(), static_cast<qsizetype>(reply.size()));
}

bool FeedBus::AdviseStart(uint conversation, const QString& item) {
    const QString client = message().service();
    Failure failure;
    if (!core_.AdviseStart(client.toStdString(), conversation, Bytes(item), failure)) {
        Refuse(failure);
        return false;
    }
    // Its loops end when the client leaves the bus.
    if (!clients_.watchedServices().contains(client)) clients_.addWatchedService(client);
    return true;
}

void FeedBus::AdviseStop(uint conversation, const QString& item) {
    core_.AdviseStop(conversation, Bytes(item));
}

void FeedBus::Disconnect(uint conversation) {
    core_.Disconnect(conversation);
}

// Sends the ticks that are due by now, each to its client without waiting
// for an answer. Without advise loops no ticks pile up.
void FeedBus::Tick() {
    const double due = static_cast<double>(started_.nsecsElapsed()) / 1e9 * rate_;
    if (!core_.HasAdviseLoops()) {
        sent_ = due;
        return;
    }
    SetClock();
    Advice advice;
    for (int burst = 0; sent_ + 1 <= due && burst < MaxBurst && core_.NextAdvise(advice); ++burst) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            QString::fromStdString(advice.client), QLatin1String(dde_bus::ClientPath),
            QLatin1String(dde_bus::ClientInterface), QStringLiteral("Advise"));
        call << static_cast<uint>(advice.conversation) << QString::fromLatin1(advice.item)
             << QByteArray(advice.data.data(), static_cast<qsizetype>(advice.data.size()));
        call.setAutoStartService(false);
        bus_.send(call);
        sent_ += 1;
    }
    sent_ = std::max(sent_, due - rate_); // never more than a second behind
}

} // namespace velorin::feed
