#include <string>
#include <vector>

#include "market_data/dde_text.h"
#include "tests/market_data/market_data_fixture.h"

namespace velorin {

class DdeTextTest : public MarketDataTest {
  protected:
    void SetUp() override { MarketDataTest::SetUp(), ResetDdeFeedState(); }
    int Reply(const std::string& text) { return ParseDdeReply(text.data(), text.size()); }
};

const std::string Full = "LAST,OPENING PRICE,TODAY'S HIGH,TODAY'S LOW,VOL ACCUMULATED";
// clang-format off
static std::string Ts1(const std::string& name, const std::string& fields) { return "'/RI=" + name + " /ST=EARLIEST /EN=LATEST /FI=TIMESTAMP," + fields + " /PE=w'"; }
// clang-format on

TEST_F(DdeTextTest, ItemStringForEveryTopicAndItemShape) {
    // clang-format off
    struct Case { const char *source, *topic, *item; int full; std::string before, sent, after; } const cases[] = {
        {"Bloomer", "IDN", "ACME", 1, "", "ACME", ""},
        {"Reuter", "IDN", "EUR=", 1, "LAST", "EUR=,[TIME OF UPDATE,BID]", "LAST"},
        {"reuter", "IDN", "X=Y.Z", 1, "BID", "X=Y.Z,[TRADE TIME,BID]", "BID"},
        {"Reuter", "IDN", "EUR=,ASK,more", 1, "LAST", "EUR=,[TIME OF UPDATE,ASK]", "LAST"},
        {"REUTER", "idn", "ACME,HIGH", 1, "", "ACME,[TRADE TIME,HIGH]", ""},
        {"Reuter", "IDN", "ACME,HIGH", 1, "LAST", "ACME,[TRADE TIME,LAST]", "LAST"},
        {"Reuter", "TS1", "JPY=", 1, "", Ts1("JPY=", "BID"), "BID"},
        {"Reuter", "ts1", "ACME", 1, "BID", Ts1("ACME", Full), Full},
        {"Reuter", "TS1", "ACME", 0, "", Ts1("ACME", "LAST"), "LAST"},
        {"Reuter", "TS1", "EUR=,ASK,x", 0, "", Ts1("EUR=", "ASK"), "ASK"},
        {"Reuter", "Ts1", "ACME,LAST", 1, "BID", "ACME,LAST", "BID"},
    };
    // clang-format on
    marketData.resolutionCode = 'w';
    for (const Case& k : cases) {
        SetSelection(k.source, k.topic, k.item);
        marketData.hasFullColumns = k.full;
        std::snprintf(ddeFeed.liveField, LiveFieldSize, "%s", k.before.c_str());
        BuildDdeItem();
        // clang-format off
        EXPECT_EQ(ddeFeed.ddeItemText + ("|" + std::string(ddeFeed.liveField)), k.sent + "|" + k.after) << k.item;
        // clang-format on
    }
}

TEST_F(DdeTextTest, TickDatabaseRangeBothWays) {
    auto& s = marketData.selection;
    // clang-format off
    struct Case { void (*convert)(ConnectionSelection&); const char *source, *topic, *expected; } const cases[] = {
        {ToTickDbRange, "TICKDB", "IDN", "Excel|[tickdb.xls]ACME,S 2|R3C1:R2000C5|S 2"},
        {FromTickDbRange, "Excel", "[tickdb.xls]A B,S,1", "TickDB|IDN|A B|S,1"},
        {FromTickDbRange, "Excel", "[TICKDB", "TickDB|IDN||"},
        {FromTickDbRange, "Excel", "[Tickdb.xls]A,S", "Excel|[Tickdb.xls]A,S|ACME|S 2"},
    };
    for (const Case& k : cases) {
        SetSelection(k.source, k.topic, "ACME");
        std::snprintf(s.currentTickval, sizeof s.currentTickval, "S 2");
        k.convert(s);
        EXPECT_EQ(std::string(s.currentSource) + "|" + s.currentTopic + "|" + s.currentItem + "|" + s.currentTickval, k.expected);
    }
    // clang-format on
}

TEST_F(DdeTextTest, RepliesRefusedCutOrEndedEarly) {
    // clang-format off
    struct Case { const char* reply; int result, rows, full; } const cases[] = {
        {"", 0, -1, 1},
        {"01/04/2010,1,2\r\n", 0, -1, 1},
        {"01/04/2010,1,2,3\r\n", 0, -1, 1},
        {"01/04/2010,1,2,3,4,5,6\r\n", 0, -1, 1},
        {"01/04/2010,1\r\n01/05/2010,#N/A\r\n", 0, -1, 1},
        {"01/04/2010,1\r\n01/05/2010,2", 0, -1, 0},
        {"01/04/2010,1\r\n01/05/20", 0, -1, 0},
        {"01/04/2010;1\r\n\r\n\n01/05/2010\t2\r\n01/05/2010,3\r\n01/06/2010,4\r\n", 1, 2, 0},
        {"01/04/2010,1\r\n01/03/2010,2\r\n", 1, 1, 0},
        {"12/31/2011,1\r\n", 0, 0, 0},
        {"10:30,1.5\n10:31,1.6\n", 1, 2, 0},
        {"01/04/2010,1,2,3,4\r\n01/05/2010,1,2,3,4,5,6,7\r\n01/06/2010,1,2,3,4\r\n", 1, 3, 1},
    };
    // clang-format on
    for (const Case& k : cases) {
        marketData.fetchRowCount = -1, marketData.hasFullColumns = 1;
        // clang-format off
        EXPECT_EQ(std::vector({Reply(k.reply), marketData.fetchRowCount, marketData.hasFullColumns}), std::vector({k.result, k.rows, k.full})) << k.reply;
        // clang-format on
    }
    EXPECT_EQ(seam.MessageCount(), 0u) << "a refusal is silent";
}

TEST_F(DdeTextTest, RowValuesForEachShapeAndTheTickSource) {
    const DataColumns& c = marketData.fetchColumns;
    auto tick = [] { return static_cast<double>(marketData.fetchIsTick); };
    // Braced lists are evaluated left to right: each reply, then what it left.
    // clang-format off
    EXPECT_EQ(std::vector({Reply("01/04/2010\t10.5;9,11\t8.25,0\r\n01/05/2010,1,2,3,4,1500\r\n") * 1.0, tick(), c.dateNumber[1]}),
              std::vector({1.0, 0.0, DayNumberOf(2010, 1, 5)}));
    EXPECT_EQ(std::vector({c.close[0], c.open[0], c.high[0], c.low[0], c.volume[0], c.volume[1]}), std::vector({10.5, 9.0, 11.0, 8.25, 0.00001, 1500.0}));
    EXPECT_EQ(std::vector({Reply("01/04/2010,10,9,11,8\r\n") * 1.0, tick(), c.volume[0]}), std::vector({1.0, 1.0, -998000.0})) << "one row is a tick";
    EXPECT_EQ(std::vector({Reply("01/04/2010,10.5\n") * 1.0, c.open[0], c.high[0], c.low[0], c.volume[0]}), std::vector({1.0, -999.0, -999.0, -999.0, -999.0}));
    // clang-format on
    ddeFeed.offsetTime = 1;
    // clang-format off
    const char* const shifts[][2] = {{"09:15", "10:15"}, {"23:59:59", "24:59:59"}, {"1/4 9:30", "10:30"}, {"1/4/2010", "1/4/2010"}};
    // clang-format on
    for (const auto& k : shifts) {
        ASSERT_EQ(Reply(std::string(k[0]) + ",1\r\n"), 1) << k[0];
        EXPECT_STREQ(c.dateText[0], k[1]);
    }
}

// Rows of one time of day (day 0: never out of order), 60 KB in all.
static std::string LongReply(const std::string& lineEnd) {
    std::string text;
    while (text.size() < 60 * 1024)
        text += "12:00," + std::to_string(text.size()) + lineEnd;
    return text;
}

TEST_F(DdeTextTest, OverLongReplyKeepsItsLastBytes) {
    std::string text = "01/04/2010,5\n01/05/2010,6\n";
    text.resize(DdeReplyLimit, '\n');
    const DataColumns& c = marketData.fetchColumns;
    // Braced lists are evaluated left to right: each reply, then what it left.
    EXPECT_EQ(std::vector({Reply(text), marketData.fetchRowCount}), std::vector({1, 2})) << "whole";
    EXPECT_EQ(std::vector({Reply("0" + text), marketData.fetchRowCount}), std::vector({1, 1}));
    EXPECT_EQ(c.close[0], 6.0) << "one byte over: the first line goes";
    const std::string lf = LongReply("\n");
    ASSERT_EQ(Reply(lf), 1);
    EXPECT_EQ(marketData.fetchRowCount, MaxRows) << "thousands of rows kept, 2,000 read";
    const std::string kept = lf.substr(lf.size() - DdeReplyLimit);
    EXPECT_EQ(c.close[0], std::stod(kept.substr(kept.find(",", kept.find('\n')) + 1)));
    EXPECT_EQ(Reply(LongReply("\r\n")), 0) << "the CR stays: an empty first line";
    EXPECT_EQ(Reply(LongReply("\r")), 0);
}

} // namespace velorin
