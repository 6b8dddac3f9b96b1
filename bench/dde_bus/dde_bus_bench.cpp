// One Request round trip to velorin-feed (against one round trip to the bus
// daemon alone), and the rate of one-row advise messages that reach the
// program's callback when the server sends as fast as it can.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QElapsedTimer>
#include <QProcess>

#include <cstdio>
#include <string>

#include "market_data/dbus/dde_bus_transport.h"
#include "tests/support/temp_dir.h"
#include "tools/sample_data/sample_data.h"

namespace {

using namespace velorin;

constexpr char LiveItem[] = "ACME,[TRADE TIME,LAST]";
DdeBusTransport* transport = nullptr;
long delivered = 0;

std::uint32_t Count(DdeTransaction type, Conversation, const char*, std::size_t) {
    if (type == DdeTransaction::AdviseData) ++delivered;
    return DdeAcknowledged;
}

// Runs the event loop until `done` or `ms` have passed.
template <typename Done> bool RunUntil(Done done, int ms) {
    QElapsedTimer clock;
    clock.start();
    while (!done() && clock.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    return done();
}

void BM_RequestRoundTrip(benchmark::State& state) {
    const Conversation live = transport->Connect("Reuter", "IDN");
    std::string reply;
    for (auto _ : state)
        if (!transport->Request(live, LiveItem, 5000, reply)) state.SkipWithError("no reply");
    transport->Disconnect(live);
}
BENCHMARK(BM_RequestRoundTrip)->UseRealTime();

// Reference: one round trip to the bus daemon alone (the owner of a name).
void BM_DaemonRoundTrip(benchmark::State& state) {
    QDBusConnectionInterface* daemon = QDBusConnection::sessionBus().interface();
    for (auto _ : state)
        benchmark::DoNotOptimize(daemon->serviceOwner(QStringLiteral("com.qdxvelorin.Dde.Reuter")));
}
BENCHMARK(BM_DaemonRoundTrip)->UseRealTime();

// Messages per second as items per second; each iteration waits for 1,000.
void BM_AdviseStream(benchmark::State& state) {
    const Conversation live = transport->Connect("Reuter", "IDN");
    if (!transport->AdviseStart(live, LiveItem, 5000)) state.SkipWithError("no advise loop");
    RunUntil([] { return delivered > 1000; }, 5000); // the stream under way
    for (auto _ : state) {
        const long until = delivered + 1000;
        if (!RunUntil([until] { return delivered >= until; }, 10000))
            state.SkipWithError("the stream stopped");
    }
    state.SetItemsProcessed(state.iterations() * 1000);
    transport->Disconnect(live);
    // What the server sent before it heard the end is dropped here.
    for (long before = -1; before != delivered;) {
        before = delivered;
        RunUntil([] { return false; }, 200);
    }
}
BENCHMARK(BM_AdviseStream)->UseRealTime();

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    if (!QDBusConnection::sessionBus().isConnected()) {
        std::fprintf(stderr, "dde_bus_bench needs a session bus: run it under dbus-run-session\n");
        return 1;
    }
    test_support::TempDir desk;
    if (!sample_data::WriteDesk(desk.path().string(), nullptr)) return 1;
    QProcess server;
    server.start(QStringLiteral(VELORIN_FEED),
                 {QStringLiteral("--folder"), QString::fromStdString(desk.path().string()),
                  QStringLiteral("--rate"), QStringLiteral("10000000"), QStringLiteral("--seed"),
                  QStringLiteral("1")});
    if (!RunUntil(
            [] {
                return QDBusConnection::sessionBus().interface()->isServiceRegistered(
                    QStringLiteral("com.qdxvelorin.Dde.Reuter"));
            },
            10000)) {
        std::fprintf(stderr, "velorin-feed did not come up\n");
        return 1;
    }
    DdeBusTransport bus;
    transport = &bus;
    SetDdeCallback(Count);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    SetDdeCallback(nullptr);
    server.kill();
    server.waitForFinished();
    return 0;
}
