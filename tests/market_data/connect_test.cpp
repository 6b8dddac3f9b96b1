// ConnectDataSource: valid rows, the spike filter, the live time series.
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

std::vector<std::intptr_t> disconnected;
LiveValueResult feedAnswer = LiveValueResult::Ok;

void FakeDisconnect(std::intptr_t conversation) {
    disconnected.push_back(conversation);
}

// A live feed that opens conversation 4242 and stages the live value.
LiveValueResult FakeOpen() {
    if (feedAnswer != LiveValueResult::NoConnection) marketData.liveConversation = 4242;
    marketData.liveItem = 77;
    DataColumns& c = marketData.fetchColumns;
    std::strcpy(c.dateText[0], "LIVE");
    c.close[0] = 123.0;
    c.open[0] = c.high[0] = c.low[0] = 120.0;
    c.volume[0] = 5000.0;
    c.dateNumber[0] = 99999.0;
    return feedAnswer;
}

class ConnectTest : public MarketDataTest {
  protected:
    void SetUp() override {
        MarketDataTest::SetUp();
        disconnected.clear();
        feedAnswer = LiveValueResult::Ok;
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

    // Connects and gives back the dates of the rows kept.
    std::vector<double> KeptDates() {
        EXPECT_EQ(ConnectDataSource(), 1);
        const DataSource* s = SourceAt(marketData.nextSourceSlot);
        std::vector<double> dates;
        if (s) dates.assign(s->columns->dateNumber, s->columns->dateNumber + s->rowCount);
        FreeDataSource(marketData.nextSourceSlot);
        return dates;
    }

    void ExpectOnlyMessage(const char* text) {
        ASSERT_EQ(seam.MessageCount(), 1u);
        EXPECT_EQ(seam.messages[0].text, text);
        EXPECT_EQ(seam.messages[0].caption, "QDX-Velorin");
        EXPECT_EQ(seam.messages[0].icon, MessageIcon::Information);
    }

    void InstallFakeFeed() { feedHooks = FeedHooks{&FakeDisconnect, &FakeOpen}; }
};

TEST_F(ConnectTest, CopiesDescriptionAndRows) {
    marketData.nextSourceSlot = 4;
    std::strcpy(marketData.selection.currentTickval, "15");
    marketData.resolutionCode = 'w';
    Stage({{36525, 10, 9, 11, 8, 1500}, {36528, 10.5, 10, 11, 9.5, ZERO_VOLUME}});
    const std::int64_t before = std::time(nullptr);
    ASSERT_EQ(ConnectDataSource(), 1);
    const DataSource& s = *SourceAt(4);
    EXPECT_EQ(s.refCount, 1);
    EXPECT_STREQ(s.source, "DATAFILE");
    EXPECT_STREQ(s.topic, "/desk/ACME.PRC");
    EXPECT_STREQ(s.item, "ACME");
    EXPECT_EQ(s.conversation, -5);
    EXPECT_EQ(s.rowCount, 2);
    EXPECT_EQ(s.resolutionCode, 'w');
    EXPECT_EQ(s.tickSeconds, 15);
    EXPECT_GE(s.lastUpdateTime, before);
    EXPECT_EQ(s.chartsCurrent, 1);
    const DataColumns& c = *s.columns;
    EXPECT_STREQ(c.dateText[1], "D1");
    EXPECT_EQ(c.dateNumber[1], 36528.0);
    EXPECT_EQ(c.close[0] + c.open[0] + c.high[0] + c.low[0], 10.0 + 9.0 + 11.0 + 8.0);
    EXPECT_EQ(c.low[0], 8.0);
    EXPECT_EQ(c.volume[0], 1.5);
    EXPECT_EQ(c.volume[1], 0.00001 / 1000.0);

    marketData.liveConversation = 555;
    const std::pair<const char*, std::intptr_t> kinds[] = {
        {"DSN,prices,user,pw", -1}, {"Excel", 555}, {"DSNX", 555}};
    for (const auto& [source, conversation] : kinds) {
        SetSelection(source, "t", "i");
        marketData.nextSourceSlot = 0;
        ASSERT_EQ(ConnectDataSource(), 1);
        EXPECT_EQ(SourceAt(0)->conversation, conversation) << source;
        FreeDataSource(0);
    }
}

TEST_F(ConnectTest, InvalidRowsAreSkippedWithoutMessage) {
    Stage({Flat(1, 0),
           {2, 5, 0, 5, 5, 1},
           Flat(3, 5),
           Flat(4, 6),
           {5, 6, 6, 6, 6, 0},
           {6, 6, 6, MISSING_VALUE, 6, 1},
           {7, 6, 6, 6, 0, 1},
           Flat(8, 7)});
    EXPECT_EQ(KeptDates(), (std::vector<double>{3, 4, 8}));
    // Two columns: close alone is tested; the missing volume becomes -0.999.
    Stage({Flat(1, 0), Flat(2, 5), Flat(3, MISSING_VALUE), Flat(4, 6)}, false);
    ASSERT_EQ(ConnectDataSource(), 1);
    EXPECT_EQ(SourceAt(0)->rowCount, 2);
    EXPECT_EQ(SourceAt(0)->columns->volume[0], -0.999);
    EXPECT_EQ(SourceAt(0)->columns->open[0], MISSING_VALUE);
    EXPECT_EQ(seam.MessageCount(), 0u);
}

TEST_F(ConnectTest, SpikeFilter) {
    marketData.filterOn = 1;
    const struct {
        std::vector<Row> rows;
        bool full;
        std::vector<double> kept;
    } cases[] = {
        {{Flat(1, 100), Flat(2, 105), Flat(3, 150), Flat(4, 109), Flat(5, 119), Flat(6, 140)},
         true,
         {1, 2, 4, 5}},
        {{Flat(1, 100), Flat(2, 110), Flat(3, 109.99), Flat(4, 90)}, true, {1, 3}}, // strictly less
        {{Flat(1, 100),
          {2, 100, 100, 100, 80, 1},
          {3, 100, 100, 120, 100, 1},
          {4, 100, 50, 100, 100, 1},
          {5, 101, 101, 101, 101, 99999}},
         true,
         {1, 5}},
        {{Flat(1, 100), Flat(2, 101), Flat(3, 200), Flat(4, 201)}, true, {1, 2}}, // a level shift
        {{Flat(1, -5), Flat(2, -5)}, true, {}}, // a negative reference fails every row
        {{Flat(1, 100), Flat(2, 105), Flat(3, 200), Flat(4, 109)}, false, {1, 2, 4}},
    };
    for (const auto& c : cases) {
        Stage(c.rows, c.full);
        EXPECT_EQ(KeptDates(), c.kept);
    }
    EXPECT_EQ(seam.MessageCount(), 0u);
    marketData.filterOn = 0;
    Stage({Flat(1, -5), Flat(2, -5)});
    EXPECT_EQ(KeptDates().size(), 2u); // negative prices are valid rows
}

TEST_F(ConnectTest, FailuresLeaveTheSlotEmpty) {
    const long before = blockAllocator.liveBlocks;
    InstallFakeFeed();
    marketData.liveConversation = 321;
    Stage({Flat(1, 0), Flat(2, 0)});
    EXPECT_EQ(ConnectDataSource(), 0);
    ExpectOnlyMessage("No valid data - Please try again");
    EXPECT_EQ(disconnected, std::vector<std::intptr_t>{321});
    EXPECT_EQ(marketData.liveConversation, 0);

    Stage({Flat(1, 5), Flat(2, 5)});
    for (int failAt = 0; failAt < 9; ++failAt) {
        seam.Clear();
        FailAllocationAfter(failAt);
        EXPECT_EQ(ConnectDataSource(), 0);
        ExpectOnlyMessage("Too Many Open Connections - Please close some");
        EXPECT_EQ(SourceAt(0), nullptr);
        EXPECT_EQ(blockAllocator.liveBlocks, before);
    }

    seam.Clear();
    shell.batchRunning = 1; // both held back during a batch
    FailAllocationAfter(4);
    EXPECT_EQ(ConnectDataSource(), 0);
    Stage({Flat(1, 0)});
    EXPECT_EQ(ConnectDataSource(), 0);
    EXPECT_EQ(seam.MessageCount(), 0u);
}

TEST_F(ConnectTest, LiveTimeSeries) {
    const std::pair<const char*, bool> selections[] = {
        {"Reuter", true}, {"REUTER", true}, {"reuter", true}, {"ReUTER", false}};
    for (const auto& [source, expected] : selections) {
        SetSelection(source, "TS1", "IBM.N");
        EXPECT_EQ(SelectionIsReuterTimeSeries(), expected) << source;
    }
    SetSelection("Reuter", "ts1", "K%CHAIN");
    EXPECT_FALSE(SelectionIsReuterTimeSeries());

    // No live feed yet: the live value is not available, even in a batch.
    SetSelection("Reuter", "TS1", "IBM.N");
    shell.batchRunning = 1;
    Stage({Flat(1, 5), Flat(2, 6), Flat(3, 7)});
    EXPECT_EQ(ConnectDataSource(), 0);
    ExpectOnlyMessage("Data source for IDN not available");
    EXPECT_EQ(SourceAt(0), nullptr);
    EXPECT_STREQ(marketData.selection.currentTopic, "IDN");

    InstallFakeFeed();
    const struct {
        LiveValueResult answer;
        const char* message;
        std::vector<std::intptr_t> disconnects;
    } failures[] = {
        {LiveValueResult::NoConnection, "Data source for IDN not available", {17}},
        {LiveValueResult::NoData, "Data for IDN not available from server", {17, 4242}},
        {LiveValueResult::ReplyRejected, nullptr, {17, 4242}},
    };
    for (const auto& f : failures) {
        seam.Clear();
        disconnected.clear();
        feedAnswer = f.answer;
        SetSelection("Reuter", "TS1", "IBM.N");
        marketData.liveConversation = 17;
        EXPECT_EQ(ConnectDataSource(), 0);
        EXPECT_EQ(SourceAt(0), nullptr);
        EXPECT_EQ(seam.MessageCount(), f.message ? 1u : 0u);
        if (f.message) ExpectOnlyMessage(f.message);
        EXPECT_EQ(disconnected, f.disconnects);
        Stage({Flat(1, 5), Flat(2, 6), Flat(3, 7)}); // the fake feed wrote row 0
    }

    feedAnswer = LiveValueResult::Ok;
    SetSelection("Reuter", "TS1", "IBM.N");
    marketData.fetchIsTick = 1;
    ASSERT_EQ(ConnectDataSource(), 1);
    const DataSource& s = *SourceAt(0);
    EXPECT_EQ(s.rowCount, 4);
    EXPECT_STREQ(s.source, "REUTER");
    EXPECT_STREQ(s.topic, "TS1");
    EXPECT_EQ(s.conversation, 4242);
    EXPECT_EQ(s.adviseItem, 77);
    EXPECT_EQ(s.tick + marketData.fetchIsTick, 0);
    EXPECT_STREQ(marketData.selection.currentSource, "Reuter"); // the selection is back
    EXPECT_STREQ(marketData.selection.currentTopic, "TS1");
    EXPECT_STREQ(s.columns->dateText[3], "LIVE");
    EXPECT_EQ(s.columns->close[3], 123.0);
    EXPECT_EQ(s.columns->volume[3], 5.0);
    EXPECT_EQ(s.columns->dateNumber[3], 0.0); // the live row has no date number
    EXPECT_EQ(s.columns->close[0], 5.0);
}

TEST_F(ConnectTest, LiveRowOnAFullSourceKeepsRowZero) {
    InstallFakeFeed();
    SetSelection("Reuter", "TS1", "IBM.N");
    std::vector<Row> rows;
    for (int row = 0; row < MaxRows; ++row)
        rows.push_back({1000.0 + row, row + 1.0, 1, 1, 1, (row + 1) * 2.0});
    Stage(rows);
    ASSERT_EQ(ConnectDataSource(), 1);
    const DataSource& s = *SourceAt(0);
    const DataColumns& c = *s.columns;
    EXPECT_EQ(s.rowCount, MaxRows);
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
