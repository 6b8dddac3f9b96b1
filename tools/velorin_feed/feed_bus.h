#pragma once
// velorin-feed on the session bus: the server object that the program's
// adapter calls, the bus names of the services, and the advise loops'
// ticks sent to each client's object at the chosen rate.

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusServiceWatcher>
#include <QElapsedTimer>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include "tools/velorin_feed/feed_core.h"

namespace velorin::feed {

class FeedBus final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.qdxvelorin.DdeServer1")

  public:
    FeedBus(FeedCore& core, const QDBusConnection& bus, double rate);
    // Exports the server object and takes the bus name of every service;
    // `served` lists the services whose names it got.
    bool Start(QStringList& served, QString& error);

  public Q_SLOTS:
    Q_SCRIPTABLE uint Connect(const QString& service, const QString& topic);
    Q_SCRIPTABLE QByteArray Request(uint conversation, const QString& item);
    Q_SCRIPTABLE bool AdviseStart(uint conversation, const QString& item);
    Q_SCRIPTABLE void AdviseStop(uint conversation, const QString& item);
    Q_SCRIPTABLE void Disconnect(uint conversation);

  private:
    void Tick();
    void Refuse(const Failure& failure);
    void SetClock();

    FeedCore& core_;
    QDBusConnection bus_;
    QDBusServiceWatcher clients_;
    QTimer timer_;
    QElapsedTimer started_;
    double rate_;
    double sent_ = 0; // ticks sent since the start, or skipped without loops
};

} // namespace velorin::feed
