// The session bus adapter against feed servers in other processes.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QProcess>

#include <string>
#include <vector>

#include "market_data/dbus/dde_bus_transport.h"
#include "tests/support/temp_dir.h"
#include "tools/sample_data/sample_data.h"

namespace velorin {
namespace {

struct Seen {
    DdeTransaction type;
    Conversation conversation;
    std::string data;
    bool operator==(const Seen&) const = default;
};
std::vector<Seen> seen;
std::uint32_t answer = DdeAcknowledged;

std::uint32_t Record(DdeTransaction type, Conversation c, const char* data, std::size_t size) {
    seen.push_back({type, c, std::string(data ? data : "", size)});
    return type == DdeTransaction::AdviseData ? answer : 0;
}

// Runs the event loop until `done` holds or `ms` have passed.
template <typename Done> bool WaitFor(Done done, int ms = 10000) {
    QElapsedTimer clock;
    clock.start();
    while (!done() && clock.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    return done();
}

constexpr auto Advise = DdeTransaction::AdviseData;
constexpr auto End = DdeTransaction::Disconnect;

class DdeBusTest : public ::testing::Test {
  protected:
    void SetUp() override {
        seen.clear();
        answer = DdeAcknowledged;
        SetDdeCallback(Record);
    }
    void TearDown() override {
        SetDdeCallback(nullptr);
        server.kill();
        server.waitForFinished();
    }
    // The scripted server, owning com.qdxvelorin.Dde.<name> for each name.
    void StartScript(const QStringList& names) {
        scriptName = QStringLiteral("com.qdxvelorin.Dde.") + names.value(0);
        server.start(QStringLiteral("/usr/bin/python3"),
                     QStringList{QStringLiteral(VELORIN_SCRIPTED_FEED)} + names);
        ASSERT_TRUE(server.waitForReadyRead(10000)) << server.readAllStandardError().data();
        ASSERT_EQ(server.readLine().trimmed(), "ready");
    }
    // A call on the scripted server's test interface; its answer.
    QVariant Script(const char* method, const QVariantList& arguments = {}) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            scriptName, QStringLiteral("/com/qdxvelorin/DdeServer"),
            QStringLiteral("com.qdxvelorin.DdeTest"), QString::fromLatin1(method));
        call.setArguments(arguments);
        return QDBusConnection::sessionBus().call(call).arguments().value(0);
    }
    void Push(uint serverConversation, const char* data) {
        Script("Push", {serverConversation, QByteArray(data)});
    }
    // Runs the event loop until the scripted server has `count` answers to
    // its advise data; "1" for each one taken in, "0" for each refused.
    std::string Acks(std::size_t count) {
        std::string acks;
        WaitFor([&] { return (acks = Script("Acks").toString().toStdString()).size() >= count; });
        return acks;
    }

    DdeBusTransport transport;
    QProcess server;
    QString scriptName;
};

// The scripted server numbers its conversations from 2.
constexpr uint First = 2, Second = 3, Third = 4;

TEST_F(DdeBusTest, ConnectsWithoutRegardToCase) {
    StartScript({QStringLiteral("ReUter")});
    // clang-format off
    struct Case { const char *service, *topic; bool taken; } const cases[] = {
        {"REUTER", "TS1", true}, {"reuter", "TS1", true}, {"Reuter", "IDN", false},
        {"Bloomer", "TS1", false}, {"Reut", "TS1", false},
    };
    // clang-format on
    for (const Case& k : cases) {
        const Conversation c = transport.Connect(k.service, k.topic);
        EXPECT_EQ(c > 0, k.taken) << k.service << "/" << k.topic;
        transport.Disconnect(c);
    }
    // Only a server that took the conversation hears of its end.
    EXPECT_EQ(Script("Calls").toStringList().join(QLatin1Char('|')),
              "connect REUTER/TS1|disconnect 2|connect reuter/TS1|disconnect 3|"
              "connect Reuter/IDN");
}

TEST_F(DdeBusTest, RequestsAnswerTheServersBytes) {
    StartScript({QStringLiteral("Reuter")});
    const Conversation c = transport.Connect("Reuter", "TS1");
    std::string reply;
    ASSERT_TRUE(transport.Request(c, "ROWS", 2000, reply));
    EXPECT_EQ(reply, std::string("01/04/2010\t1.5\r\n01/05/2010;1.75\n\0\xe9,", 35));
    EXPECT_FALSE(transport.Request(c, "MISSING", 2000, reply));
    EXPECT_FALSE(transport.Request(c + 1, "ROWS", 2000, reply));
    EXPECT_TRUE(transport.AdviseStart(c, "ROWS", 2000));
    EXPECT_FALSE(transport.AdviseStart(c, "REFUSED", 2000));
    // A server that never answers is given up after the time-out, not before.
    QElapsedTimer clock;
    clock.start();
    EXPECT_FALSE(transport.Request(c, "SILENT", 400, reply));
    EXPECT_GE(clock.elapsed(), 300);
}

TEST_F(DdeBusTest, AdviseDataHeldComeInOrderWhenReleased) {
    StartScript({QStringLiteral("Reuter")});
    const Conversation a = transport.Connect("Reuter", "TS1");
    const Conversation b = transport.Connect("Reuter", "TS1");
    transport.EnableCallback(a, false);
    answer = 0; // the program refuses what it is given now
    Push(First, "1");
    Push(Second, "2\r\n\t");
    Push(First, "3");
    // Held data are answered as taken in; the others as the program answers.
    EXPECT_EQ(Acks(3), "101");
    EXPECT_EQ(seen, (std::vector<Seen>{{Advise, b, "2\r\n\t"}}));
    // Every callback held: a conversation started now is held as well.
    transport.EnableCallback(0, false);
    const Conversation c = transport.Connect("Reuter", "TS1");
    Push(Third, "4");
    Push(Second, "5");
    EXPECT_EQ(Acks(5), "10111");
    EXPECT_EQ(seen.size(), 1u);
    transport.EnableCallback(a, true);
    EXPECT_EQ(seen.size(), 3u);
    transport.EnableCallback(0, true);
    EXPECT_EQ(seen, (std::vector<Seen>{{Advise, b, "2\r\n\t"},
                                       {Advise, a, "1"},
                                       {Advise, a, "3"},
                                       {Advise, c, "4"},
                                       {Advise, b, "5"}}));
}

TEST_F(DdeBusTest, EachConversationEndsOnce) {
    StartScript({QStringLiteral("Reuter")});
    const Conversation a = transport.Connect("Reuter", "TS1");
    const Conversation b = transport.Connect("Reuter", "TS1");
    ASSERT_TRUE(transport.AdviseStart(b, "ROWS", 2000));
    Script("End", {First});
    ASSERT_TRUE(WaitFor([] { return !seen.empty(); }));
    Push(First, "late"); // after the end: refused
    EXPECT_EQ(Acks(1), "0");
    server.kill(); // in the middle of b's advise loop
    ASSERT_TRUE(WaitFor([] { return seen.size() == 2; }));
    WaitFor([] { return false; }, 300); // room for a second end
    EXPECT_EQ(seen, (std::vector<Seen>{{End, a, ""}, {End, b, ""}}));
    std::string reply;
    EXPECT_FALSE(transport.Request(b, "ROWS", 2000, reply));
}

TEST_F(DdeBusTest, OurServerOverTheBus) {
    test_support::TempDir desk;
    ASSERT_TRUE(sample_data::WriteDesk(desk.path().string(), nullptr));
    server.start(QStringLiteral(VELORIN_FEED),
                 {QStringLiteral("--folder"), QString::fromStdString(desk.path().string()),
                  QStringLiteral("--rate"), QStringLiteral("20"), QStringLiteral("--seed"),
                  QStringLiteral("1")});
    ASSERT_TRUE(WaitFor([] {
        return QDBusConnection::sessionBus().interface()->isServiceRegistered(
            QStringLiteral("com.qdxvelorin.Dde.Reuter"));
    }));
    const Conversation history = transport.Connect("reuter", "ts1");
    std::string reply;
    ASSERT_TRUE(transport.Request(history, "'/RI=ACME /FI=TIMESTAMP,LAST /PE=d'", 2000, reply));
    EXPECT_EQ(std::count(reply.begin(), reply.end(), '\n'), sample_data::DefaultDesk()[0].rows);
    const Conversation live = transport.Connect("Reuter", "IDN");
    ASSERT_TRUE(transport.AdviseStart(live, "ACME,[TRADE TIME,LAST]", 2000));
    ASSERT_TRUE(WaitFor([] { return !seen.empty(); }));
    EXPECT_EQ(seen[0].conversation, live);
    EXPECT_TRUE(seen[0].data.ends_with("\r\n") &&
                seen[0].data.find('\n') + 1 == seen[0].data.size());
    server.kill();
    ASSERT_TRUE(WaitFor([&] { return seen.back().type == End; }));
    WaitFor([] { return false; }, 300);
    EXPECT_EQ(std::count(seen.begin(), seen.end(), Seen{End, history, ""}), 1);
    EXPECT_EQ(std::count(seen.begin(), seen.end(), Seen{End, live, ""}), 1);
}

TEST(DdeBusNoBus, EveryCallIsRefused) {
    DdeBusTransport transport;
    EXPECT_FALSE(transport.OnBus());
    EXPECT_EQ(transport.Connect("Reuter", "TS1"), 0);
    std::string reply;
    EXPECT_FALSE(transport.Request(1, "ACME", 100, reply));
    EXPECT_FALSE(transport.AdviseStart(1, "ACME", 100));
    transport.EnableCallback(0, false);
    transport.EnableCallback(0, true);
    transport.Disconnect(1);
}

} // namespace
} // namespace velorin

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
