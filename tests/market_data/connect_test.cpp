// ConnectDataSource: valid rows, the spike filter, the limits, the live time series.
#include <ctime>
#include <vector>

#include "tests/market_data/market_data_fixture.h"

namespace velorin {
namespace {

struct Row {
    double date, close, open, high, low, volume;
};
Row Flat(double date, double price) {
    return Row{date, price, price, price, price, 1000.0};
}

// A live feed that records disconnects, opens conversation 4242 and stages
// the live value in row 0.
struct FakeFeed final : LiveFeed {
    std::vector<std::intptr_t> disconnected;
    LiveValueResult answer = LiveValueResult::Ok;
    void Disconnect(std::intptr_t conversation) override { disconnected.push_back(conversation); }
    LiveValueResult OpenLiveValue() override {
        if (answer != LiveValueResult::NoConnection) marketData.liveConversation = 4242;
        marketData.liveItem = 77;
        DataColumns& c = marketData.fetchColumns;
        std::strcpy(c.dateText[0], "LIVE");
        c.close[0] = 123.0;
        c.open[0] = c.high[0] = c.low[0] = 120.0;
        c.volume[0] = 5000.0;
        c.dateNumber[0] = 99999.0;
        return answer;
    }
};

std::vector<Row> Closes(std::initializer_list<double> closes) {
    std::vector<Row> rows;
    for (double close : closes)
        rows.push_back(Flat(static_cast<double>(rows.size() + 1), close));
    return rows;
}

class ConnectTest : public MarketDataTest {
  protected:
    void SetUp() override {
        MarketDataTest::SetUp();
        SetSelection("DATAFILE", "/desk/ACME.PRC", "ACME");
    }

    void Stage(const std::vector<Row>& rows, bool full = true) {
        DataColumns& c = marketData.fetchColumns;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const std::string label = "D" + std::to_string(i);
            std::memcpy(c.dateText[i], label.c_str(), label.size() + 1);
            c.dateNumber[i] = rows[i].date;
            c.close[i] = rows[i].close;
            c.open[i] = full ? rows[i].open : MISSING_VALUE;
            c.high[i] = full ? rows[i].high : MISSING_VALUE;
            c.low[i] = full ? rows[i].low : MISSING_VALUE;
            c.volume[i] = full ? rows[i].volume : MISSING_VALUE;
        }
        marketData.fetchRowCount = static_cast<int>(rows.size());
        marketData.hasFullColumns = full ? 1 : 0;
    }

    FakeFeed feed;
};

TEST_F(ConnectTest, CopiesDescriptionAndRowsWithVolumeInThousands) {
    marketData.nextSourceSlot = 4;
    std::strcpy(marketData.selection.currentTickval, "15");
    marketData.resolutionCode = 'w';
    Stage({{36525, 10, 9, 11, 8, 1500}, {36528, 10.5, 10, 11, 9.5, ZERO_VOLUME}});
    const std::int64_t before = std::time(nullptr);
    ASSERT_EQ(ConnectDataSource(), 1);
    const DataSource& s = *SourceAt(4);
    EXPECT_EQ(s.refCount, 1);
    EXPECT_EQ(s.chartsCurrent, 1);
    EXPECT_STREQ(s.source, "DATAFILE");
    EXPECT_STREQ(s.topic, "/desk/ACME.PRC");
    EXPECT_STREQ(s.item, "ACME");
    EXPECT_EQ(s.conversation, -5);
    EXPECT_EQ(s.rowCount, 2);
    EXPECT_EQ(s.resolutionCode, 'w');
    EXPECT_EQ(s.tickSeconds, 15);
    EXPECT_GE(s.lastUpdateTime, before);
    const DataColumns& c = *s.columns;
    EXPECT_STREQ(c.dateText[1], "D1");
    EXPECT_EQ(c.dateNumber[1], 36528.0);
    const double row0[] = {c.close[0], c.open[0], c.high[0], c.low[0], c.volume[0]};
    EXPECT_EQ(std::vector<double>(row0, row0 + 5), (std::vector<double>{10, 9, 11, 8, 1.5}));
    EXPECT_EQ(c.volume[1], 0.00001 / 1000.0);
    // Two columns: close alone is tested; the missing volume becomes -0.999.
    marketData.nextSourceSlot = 0;
    Stage(Closes({0, 5, MISSING_VALUE, 6}), false);
    ASSERT_EQ(ConnectDataSource(), 1);
    EXPECT_EQ(SourceAt(0)->rowCount, 2);
    EXPECT_EQ(SourceAt(0)->columns->volume[0], -0.999);
    EXPECT_EQ(SourceAt(0)->columns->open[0], MISSING_VALUE);
    FreeDataSource(0);

    marketData.liveConversation = 555;
    const std::pair<const char*, std::intptr_t> kinds[] = {
        {"DSN,prices,user,pw", -1}, {"Excel", 555}, {"DSNX", 555}};
    for (const auto& [source, conversation] : kinds) {
        SetSelection(source, "t", "i");
        ASSERT_EQ(ConnectDataSource(), 1);
        EXPECT_EQ(SourceAt(0)->conversation, conversation) << source;
        FreeDataSource(0);
    }
    EXPECT_EQ(seam.MessageCount(), 0u);
}

// Invalid rows (a price at or below zero, a missing price, a zero volume) and,
// with the filter on, moves of 10 percent or more from the last kept close
// are skipped without a message.
TEST_F(ConnectTest, ValidRowsAndSpikeFilter) {
    constexpr double M = MISSING_VALUE;
    const std::vector<Row> invalid{Flat(1, 0),         {2, 5, 0, 5, 5, 1}, Flat(3, 5),
                                   Flat(4, 6),         {5, 6, 6, 6, 6, 0}, {6, 6, 6, M, 6, 1},
                                   {7, 6, 6, 6, 0, 1}, Flat(8, 7)};
    const std::vector<Row> extremes{Flat(1, 100),
                                    {2, 100, 100, 100, 80, 1},
                                    {3, 100, 100, 120, 100, 1},
                                    {4, 100, 50, 100, 100, 1},
                                    {5, 101, 101, 101, 101, 99999}};
    const struct {
        bool filter, full;
        std::vector<Row> rows;
        std::vector<double> kept;
    } cases[] = {
        {false, true, invalid, {3, 4, 8}},
        {false, true, Closes({-5, -5}), {1, 2}}, // negative prices are valid rows
        {true, true, Closes({100, 105, 150, 109, 119, 140}), {1, 2, 4, 5}},
        {true, true, Closes({100, 110, 109.99, 90}), {1, 3}}, // strictly less
        {true, true, extremes, {1, 5}},                       // open, high and low count too
        {true, true, Closes({100, 101, 200, 201}), {1, 2}},   // a level shift
        {true, true, Closes({-5, -5}), {}}, // a negative reference fails every row
        {true, false, Closes({100, 105, 200, 109}), {1, 2, 4}},
    };
    for (const auto& c : cases) {
        marketData.filterOn = c.filter ? 1 : 0;
        Stage(c.rows, c.full);
        EXPECT_EQ(ConnectDataSource(), 1);
        const DataColumns& kept = *SourceAt(0)->columns;
        EXPECT_EQ(std::vector<double>(kept.dateNumber, kept.dateNumber + SourceAt(0)->rowCount),
                  c.kept);
        FreeDataSource(0);
    }
    EXPECT_EQ(seam.MessageCount(), 0u);
}

TEST_F(ConnectTest, FailuresLeaveTheSlotEmpty) {
    const long before = blockAllocator.liveBlocks;
    InstallLiveFeed(&feed);
    marketData.liveConversation = 321;
    Stage(Closes({0, 0}));
    EXPECT_EQ(ConnectDataSource(), 0);
    ExpectOnlyMessage("No valid data - Please try again");
    EXPECT_EQ(feed.disconnected, std::vector<std::intptr_t>{321});
    EXPECT_EQ(marketData.liveConversation, 0);

    Stage(Closes({5, 5}));
    for (int failAt = 0; failAt < 9; ++failAt) {
        FailAllocationAfter(failAt);
        EXPECT_EQ(ConnectDataSource(), 0);
        ExpectOnlyMessage("Too Many Open Connections - Please close some");
        EXPECT_EQ(SourceAt(0), nullptr);
        EXPECT_EQ(blockAllocator.liveBlocks, before);
    }
    // Both held back in a silent run.
    FailAllocationAfter(4);
    EXPECT_EQ(ConnectDataSource(true), 0);
    Stage(Closes({0}));
    EXPECT_EQ(ConnectDataSource(true), 0);
    EXPECT_EQ(seam.MessageCount(), 0u);
}

TEST_F(ConnectTest, LiveTimeSeries) {
    const std::tuple<const char*, const char*, const char*, bool> selections[] = {
        {"Reuter", "TS1", "IBM.N", true},
        {"REUTER", "TS1", "IBM.N", true},
        {"reuter", "ts1", "IBM.N", true},
        {"ReUTER", "TS1", "IBM.N", false},
        {"Reuter", "TS1", "K%CHAIN", false}};
    for (const auto& [source, topic, item, expected] : selections) {
        SetSelection(source, topic, item);
        EXPECT_EQ(SelectionIsReuterTimeSeries(), expected) << source << topic << item;
    }
    // Failures leave the slot empty and are reported even in a silent run;
    // without a live feed the live value is not available.
    const struct {
        LiveFeed* feed;
        LiveValueResult answer;
        const char* message;
        std::vector<std::intptr_t> disconnects;
    } failures[] = {
        {nullptr, LiveValueResult::Ok, "Data source for IDN not available", {}},
        {&feed, LiveValueResult::NoConnection, "Data source for IDN not available", {17}},
        {&feed, LiveValueResult::NoData, "Data for IDN not available from server", {17, 4242}},
        {&feed, LiveValueResult::ReplyRejected, nullptr, {17, 4242}},
    };
    for (const auto& f : failures) {
        InstallLiveFeed(f.feed);
        feed.disconnected.clear();
        feed.answer = f.answer;
        SetSelection("Reuter", "TS1", "IBM.N");
        marketData.liveConversation = 17;
        Stage(Closes({5, 6, 7})); // the fake feed writes row 0
        EXPECT_EQ(ConnectDataSource(true), 0);
        EXPECT_EQ(SourceAt(0), nullptr);
        if (f.message) ExpectOnlyMessage(f.message);
        EXPECT_EQ(seam.MessageCount(), 0u);
        EXPECT_EQ(feed.disconnected, f.disconnects);
        if (!f.feed) {
            EXPECT_STREQ(marketData.selection.currentTopic, "IDN");
        }
    }

    feed.answer = LiveValueResult::Ok;
    SetSelection("Reuter", "TS1", "IBM.N");
    Stage(Closes({5, 6, 7}));
    marketData.fetchIsTick = 1;
    ASSERT_EQ(ConnectDataSource(true), 1);
    const DataSource& s = *SourceAt(0);
    EXPECT_EQ(s.rowCount, 4);
    EXPECT_STREQ(s.source, "REUTER");
    EXPECT_STREQ(s.topic, "TS1");
    EXPECT_EQ(s.conversation, 4242);
    EXPECT_EQ(s.adviseItem, 77);
    EXPECT_EQ(s.tick + marketData.fetchIsTick, 0);
    EXPECT_STREQ(marketData.selection.currentSource, "Reuter"); // the selection is back
    EXPECT_STREQ(marketData.selection.currentTopic, "TS1");
    const DataColumns& c = *s.columns;
    EXPECT_STREQ(c.dateText[3], "LIVE");
    EXPECT_EQ(c.close[3], 123.0);
    EXPECT_EQ(c.volume[3], 5.0);
    EXPECT_EQ(c.close[0], 5.0);
    EXPECT_EQ(c.dateNumber[3], 0.0); // the live row has no date number
}

TEST_F(ConnectTest, LiveRowOnAFullSourceKeepsRowZero) {
    InstallLiveFeed(&feed);
    SetSelection("Reuter", "TS1", "IBM.N");
    std::vector<Row> rows;
    for (int row = 0; row < MaxRows; ++row)
        rows.push_back({1000.0 + row, row + 1.0, 1, 1, 1, (row + 1) * 2.0});
    Stage(rows);
    ASSERT_EQ(ConnectDataSource(), 1);
    const DataColumns& c = *SourceAt(0)->columns;
    EXPECT_EQ(SourceAt(0)->rowCount, MaxRows);
    EXPECT_EQ(c.close[0], 1.0);
    EXPECT_STREQ(c.dateText[0], "D0");
    for (int row = 1; row < MaxRows - 1; ++row) {
        ASSERT_EQ(c.close[row], row + 2.0) << row; // the next row moved down
        ASSERT_EQ(c.volume[row], (row + 2) * 2.0 / 1000.0) << row;
        ASSERT_EQ(std::string(c.dateText[row]), "D" + std::to_string(row + 1)) << row;
        ASSERT_EQ(c.dateNumber[row], 1000.0 + row) << row; // dates do not move
    }
    EXPECT_EQ(c.close[MaxRows - 1], 123.0);
    EXPECT_EQ(c.dateNumber[MaxRows - 1], 1000.0 + MaxRows - 1);
}

} // namespace
} // namespace velorin
