#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "market_data/data_source.h"
#include "market_data/date.h"
#include "market_data/dde_text.h"
#include "tests/support/temp_dir.h"
#include "tools/velorin_feed/feed_core.h"

namespace velorin::feed {
namespace {

// 2 January 2009 is a Friday: three weeks, two months.
const std::string TestFile = "01/02/2009,10.00,9.90,10.10,9.80,1000\r\n"
                             "01/05/2009,10.50,10.00,10.60,9.95,2000\r\n"
                             "01/06/2009,10.20,10.40,10.70,10.10,1500\r\n"
                             "02/02/2009,11.00,10.90,11.20,10.80,3000\r\n";
const std::string Full = "LAST,OPENING PRICE,TODAY'S HIGH,TODAY'S LOW,VOL ACCUMULATED";
std::string Ts1(const std::string& name, const std::string& fields, char period) {
    return "'/RI=" + name + " /ST=EARLIEST /EN=LATEST /FI=TIMESTAMP," + fields + " /PE=" + period +
           "'";
}

class FeedCoreTest : public ::testing::Test {
  protected:
    void SetUp() override {
        dir.Write("TEST.PRC", TestFile);
        dir.Write("Line.prc", "01/02/2009,10.00\r\n01/05/2009,10.50\r\n");
        options.folder = dir.path().string();
        options.maps.push_back({"MYFEED", "PRICES", options.folder});
        ResetMarketDataState();
        ResetDateRules();
        ResetDdeFeedState();
        ASSERT_TRUE(AllocateStagingBlocks());
    }
    void TearDown() override { ReleaseStagingBlocks(); }

    // The reply to `item` on a new conversation; "!" and the refusal's name
    // when it is refused.
    std::string Ask(FeedCore& core, const char* service, const char* topic,
                    const std::string& item) {
        Failure failure;
        const std::uint32_t c = core.Connect(service, topic, failure);
        std::string reply;
        if (c == 0 || !core.Request(c, item, reply, failure)) return "!" + failure.name;
        return reply;
    }
    int Parse(const std::string& reply) { return ParseDdeReply(reply.data(), reply.size()); }

    test_support::TempDir dir;
    FeedOptions options;
};

TEST_F(FeedCoreTest, RepliesOfEveryTopicAsTheProgramReadsThem) {
    FeedCore core(options, 1);
    core.SetClock(9 * 3600 + 30 * 60 + 5);
    // clang-format off
    struct Case { const char *service, *topic; std::string item, reply; } const cases[] = {
        {"Reuter", "TS1", Ts1("test", "LAST", 'd'), "01/02/2009,10.00\r\n01/05/2009,10.50\r\n01/06/2009,10.20\r\n02/02/2009,11.00\r\n"},
        {"REUTER", "ts1", Ts1("TEST", Full, 'w'), "01/02/2009,10.00,9.90,10.10,9.80,1000\r\n01/06/2009,10.20,10.00,10.70,9.95,3500\r\n02/02/2009,11.00,10.90,11.20,10.80,3000\r\n"},
        {"Reuter", "TS1", Ts1("TEST", Full, 'm'), "01/06/2009,10.20,9.90,10.70,9.80,4500\r\n02/02/2009,11.00,10.90,11.20,10.80,3000\r\n"},
        {"Reuter", "TS1", Ts1("line", Full, 'd'), "01/02/2009,10.00,10.00,10.00,10.00,0\r\n01/05/2009,10.50,10.50,10.50,10.50,0\r\n"},
        {"Reuter", "IDN", "TEST,[TRADE TIME," + Full + "]", "09:30:05,11.00,10.90,11.20,10.80,3000\r\n"},
        {"reuter", "idn", "test", "09:30:05,11.00\r\n"},
        {"myfeed", "prices", "Test", TestFile},
    };
    // clang-format on
    for (const Case& k : cases) {
        const std::string reply = Ask(core, k.service, k.topic, k.item);
        EXPECT_EQ(reply, k.reply) << k.item;
        EXPECT_EQ(Parse(reply), 1) << k.item;
    }
    // The tick sheet: rows of time and four prices, so no volume.
    const std::string ticks = Ask(core, "Excel", "[tickdb.xls]test,Sheet 1", "R3C1:R2000C5");
    ASSERT_EQ(Parse(ticks), 1) << ticks;
    EXPECT_EQ(marketData.fetchRowCount, 20);
    EXPECT_EQ(ticks.find(','), std::string::npos);
    EXPECT_EQ(marketData.fetchColumns.volume[19], -998000.0);
}

TEST_F(FeedCoreTest, RefusalsNameWhatIsMissing) {
    FeedCore core(options, 1);
    // clang-format off
    struct Case { const char *service, *topic; std::string item, refusal; } const cases[] = {
        {"Bloomer", "TS1", "TEST", "!NoService"},
        {"Reuter", "TS2", "TEST", "!NoTopic"},
        {"MYFEED", "OTHER", "TEST", "!NoTopic"},
        {"Excel", "[tickdb.xls]NOPE,S", "R3C1:R2000C5", "!NoTopic"},
        {"Excel", "[tickdb.xls]TEST,S", "R1C1:R9C9", "!NoItem"},
        {"Reuter", "TS1", Ts1("NOPE", "LAST", 'd'), "!NoItem"},
        {"Reuter", "TS1", Ts1("TEST", "SPREAD", 'd'), "!NoItem"},
        {"Reuter", "TS1", Ts1("TEST", "LAST", 'q'), "!NoItem"},
        {"Reuter", "IDN", "TEST,[TRADE TIME,LAST", "!NoItem"},
        {"MYFEED", "PRICES", "../TEST", "!NoItem"},
    };
    // clang-format on
    for (const Case& k : cases)
        EXPECT_EQ(Ask(core, k.service, k.topic, k.item), k.refusal) << k.topic << " " << k.item;
    Failure failure;
    std::string reply;
    EXPECT_FALSE(core.Request(999, "TEST", reply, failure));
    EXPECT_EQ(failure.name, "NoConversation");
}

TEST_F(FeedCoreTest, AdviseLoopsTakeTurnsEachWithItsNewData) {
    auto run = [&](std::uint64_t seed) {
        FeedCore core(options, seed);
        Failure f;
        const std::uint32_t live = core.Connect("Reuter", "IDN", f);
        const std::uint32_t sheet = core.Connect("Excel", "[tickdb.xls]TEST,S", f);
        const std::uint32_t file = core.Connect("MYFEED", "PRICES", f);
        EXPECT_TRUE(core.AdviseStart(":1.7", live, "TEST,[TRADE TIME," + Full + "]", f));
        EXPECT_TRUE(core.AdviseStart(":1.8", sheet, "R3C1:R2000C5", f));
        EXPECT_TRUE(core.AdviseStart(":1.7", file, "TEST", f));
        std::vector<std::string> sent;
        Advice a;
        const struct {
            std::uint32_t conversation;
            const char* client;
            int rows;
        } turns[] = {{live, ":1.7", 1}, {sheet, ":1.8", 21}, {file, ":1.7", 4}, {live, ":1.7", 1}};
        for (const auto& turn : turns) {
            EXPECT_TRUE(core.NextAdvise(a));
            EXPECT_EQ(a.conversation, turn.conversation);
            EXPECT_EQ(a.client, turn.client);
            EXPECT_EQ(Parse(a.data), 1) << a.data;
            EXPECT_EQ(marketData.fetchRowCount, turn.rows) << a.data;
            sent.push_back(a.data);
        }
        // The whole file comes again, with only its last row live.
        EXPECT_EQ(sent[2].substr(0, TestFile.rfind("02/02")),
                  TestFile.substr(0, TestFile.rfind("02/02")));
        core.DropClient(":1.7");
        EXPECT_TRUE(core.NextAdvise(a));
        EXPECT_EQ(a.conversation, sheet);
        core.Disconnect(sheet);
        EXPECT_FALSE(core.NextAdvise(a));
        return sent;
    };
    const auto first = run(5);
    EXPECT_EQ(run(5), first);
    EXPECT_NE(run(6), first);
}

TEST_F(FeedCoreTest, CommandLine) {
    const char* good[] = {"velorin-feed", "--folder", "/d",    "--rate=0.5",
                          "--seed",       "42",       "--map", "A_b-1/T 1=/x"};
    FeedOptions o;
    std::string error;
    ASSERT_TRUE(ParseFeedOptions(8, good, o, error)) << error;
    EXPECT_EQ(o.folder + "|" + std::to_string(o.seed) + "|" + o.maps.at(0).service + "|" +
                  o.maps[0].topic + "|" + o.maps[0].folder,
              "/d|42|A_b-1|T 1|/x");
    EXPECT_EQ(o.rate, 0.5);
    const std::vector<std::vector<const char*>> bad = {{"--rate", "-1"},     {"--seed", "x"},
                                                       {"--map", "1A/T=/x"}, {"--map", "A=/x"},
                                                       {"--folder"},         {"--verbose", "1"}};
    for (std::vector<const char*> args : bad) {
        args.insert(args.begin(), "velorin-feed");
        error.clear();
        EXPECT_FALSE(ParseFeedOptions(static_cast<int>(args.size()), args.data(), o, error));
        EXPECT_FALSE(error.empty()) << args[1];
    }
}

} // namespace
} // namespace velorin::feed
