// velorin-feed: a live feed server for QDX-Velorin on the desktop session
// bus. `velorin-feed --help` tells its options; docs/live-feed-bus.md the
// protocol.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDateTime>

#include <cstdio>
#include <filesystem>
#include <string>

#include "tools/velorin_feed/feed_bus.h"
#include "tools/velorin_feed/feed_core.h"

int main(int argc, char** argv) {
    using namespace velorin::feed;
    FeedOptions options;
    std::string error;
    if (!ParseFeedOptions(argc, argv, options, error)) {
        std::fprintf(stderr, "velorin-feed: %s\n%s", error.c_str(), FeedUsage);
        return 2;
    }
    if (options.help) {
        std::fputs(FeedUsage, stdout);
        return 0;
    }
    std::error_code ec;
    if (!std::filesystem::is_directory(options.folder, ec)) {
        std::fprintf(stderr, "velorin-feed: no folder %s\n", options.folder.c_str());
        return 1;
    }

    QCoreApplication app(argc, argv);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        std::fprintf(stderr, "velorin-feed: no session bus (%s); start one with dbus-run-session\n",
                     qPrintable(bus.lastError().message()));
        return 1;
    }
    const std::uint64_t seed =
        options.seedGiven ? options.seed
                          : static_cast<std::uint64_t>(QDateTime::currentMSecsSinceEpoch());
    FeedCore core(options, seed);
    FeedBus front(core, bus, options.rate);
    QStringList served;
    QString problems;
    const bool started = front.Start(served, problems);
    if (!problems.isEmpty()) std::fprintf(stderr, "velorin-feed: %s", qPrintable(problems));
    if (!started) return 1;
    std::fprintf(stderr, "velorin-feed: serving %s from %s, %g ticks per second, seed %llu\n",
                 qPrintable(served.join(QStringLiteral(", "))), options.folder.c_str(),
                 options.rate, static_cast<unsigned long long>(seed));
    return QCoreApplication::exec();
}
