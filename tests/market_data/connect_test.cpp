// ConnectDataSource: valid rows, the spike filter, the limits, the live time series.
#include <vector>

#include "tests/market_data/market_data_fixture.h"
#include "tests/support/scripted_transport.h"

namespace velorin {
namespace {

struct Row {
    double date, close, open, high, low, volume;
};
const auto Flat = [](double date, double price) {
    return Row{date, price, price, price, price, 1e3};
};

std::vector<Row> Closes(std::initializer_list<double> closes) {
    std::vector<Row> rows;
    for (double close : closes)
        rows.push_back(Flat(static_cast<double>(rows.size() + 1), close));
    return rows;
}

class ConnectTest : public MarketDataTest {
  protected:
    // Stages the rows under the labels "D0", "D1", ...; two columns leave
    // open, high, low and volume missing.
    void Stage(const std::vector<Row>& rows, bool full = true) {
        DataColumns& c = marketData.fetchColumns;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            std::snprintf(c.dateText[i], DateTextSize, "D%d", static_cast<int>(i));
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

    test_support::ScriptedTransport feed;
};

// Volumes are stored in thousands; with two columns close alone is tested
// and the volume is the missing value in thousands. A data file or a
// database has the conversation minus one minus its slot.
TEST_F(ConnectTest, CopiesRowsWithVolumeInThousands) {
    marketData.nextSourceSlot = 4;
    Stage({{36525, 10, 9, 11, 8, 1500}, {36528, 10.5, 10, 11, 9.5, ZERO_VOLUME}});
    ASSERT_EQ(ConnectDataSource(), 1);
    EXPECT_EQ(SourceAt(4)->conversation, -5);
    const DataColumns& c = *SourceAt(4)->columns;
    const double row0[] = {c.close[0], c.open[0], c.high[0], c.low[0], c.volume[0]};
    EXPECT_EQ(std::vector<double>(row0, row0 + 5), (std::vector<double>{10, 9, 11, 8, 1.5}));
    EXPECT_EQ(c.volume[1], 0.00001 / 1000.0);
    marketData.nextSourceSlot = 0;
    SetSelection("DSN,prices,user,pw", "t", "i");
    Stage(Closes({0, 5, MISSING_VALUE, 6}), false);
    ASSERT_EQ(ConnectDataSource(), 1);
    EXPECT_TRUE(SourceAt(0)->rowCount == 2 && SourceAt(0)->conversation == -1);
    EXPECT_EQ(SourceAt(0)->columns->volume[0], -0.999);
    EXPECT_EQ(seam.MessageCount(), 0u);
}

// Invalid rows (a price at or below zero, a missing price, a zero volume) and,
// with the filter on, moves of 10 percent or more from the last kept close
// are skipped without a message.
TEST_F(ConnectTest, ValidRowsAndSpikeFilter) {
    // clang-format off
    const std::vector<Row> invalid{Flat(1, 0), {2, 5, 0, 5, 5, 1}, Flat(3, 5), Flat(4, 6), {5, 6, 6, 6, 6, 0},
                                   {6, 6, 6, MISSING_VALUE, 6, 1}, {7, 6, 6, 6, 0, 1}, Flat(8, 7)};
    const std::vector<Row> extremes{Flat(1, 100), {2, 100, 100, 100, 80, 1}, {3, 100, 100, 120, 100, 1},
                                    {4, 100, 50, 100, 100, 1}, Flat(5, 101)};
    const struct { bool filter, full; std::vector<Row> rows; std::vector<double> kept; } cases[] = {
        {false, true, invalid, {3, 4, 8}},
        {false, true, Closes({-5, -5}), {1, 2}}, // negative prices are valid rows
        {true, true, Closes({100, 105, 150, 109, 119, 140}), {1, 2, 4, 5}},
        {true, true, Closes({100, 110, 109.99, 90}), {1, 3}}, // strictly less
        {true, true, extremes, {1, 5}},                       // open, high and low count too
        {true, true, Closes({-5, -5}), {}}, // a negative reference fails every row
        {true, false, Closes({100, 105, 200, 109}), {1, 2, 4}},
    };
    // clang-format on
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
    marketData.liveConversation = 321;
    Stage(Closes({0, 0}));
    EXPECT_EQ(ConnectDataSource(), 0);
    ExpectOnlyMessage("No valid data - Please try again");
    EXPECT_EQ(feed.calls, std::vector<std::string>{"disconnect 321"});
    EXPECT_EQ(marketData.liveConversation, 0);
    Stage(Closes({5, 5}));
    for (int failAt = 0; failAt < 9; ++failAt) {
        FailAllocationAfter(failAt);
        EXPECT_TRUE(ConnectDataSource() == 0 && SourceAt(0) == nullptr);
        ExpectOnlyMessage("Too Many Open Connections - Please close some");
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
    const std::tuple<const char*, const char*, bool> selections[] = {
        {"reuter", "IBM.N", true}, {"ReUTER", "IBM.N", false}, {"Reuter", "K%CHAIN", false}};
    for (const auto& [source, item, expected] : selections) {
        SetSelection(source, "ts1", item);
        EXPECT_EQ(SelectionIsReuterTimeSeries(), expected) << source << item;
    }
    // Failures leave the slot empty and are reported even in a silent run.
    const std::string idn = "IBM.N,[TRADE TIME,LAST]"; // no history asked for fields
    // clang-format off
    const struct { const char* refusedTopic; const char* reply; const char* message;
                   std::vector<std::string> calls; } failures[] = {
        {"IDN", nullptr, "Data source for IDN not available",
         {"disconnect 17", "connect Reuter/IDN"}},
        {nullptr, nullptr, "Data for IDN not available from server",
         {"disconnect 17", "connect Reuter/IDN", "request 4242 " + idn, "disconnect 4242"}},
        {nullptr, "#N/A\t1\r\n", nullptr,
         {"disconnect 17", "connect Reuter/IDN", "request 4242 " + idn, "disconnect 4242"}},
    };
    // clang-format on
    for (const auto& f : failures) {
        test_support::ScriptedTransport feed; // in place of the fixture's
        if (f.refusedTopic) feed.refusedTopics.insert(f.refusedTopic);
        if (f.reply) feed.replies[idn] = f.reply;
        SetSelection("Reuter", "TS1", "IBM.N");
        marketData.liveConversation = 17;
        ResetDdeFeedState();
        Stage(Closes({5, 6, 7}));
        EXPECT_TRUE(ConnectDataSource(true) == 0 && SourceAt(0) == nullptr);
        if (f.message) ExpectOnlyMessage(f.message);
        EXPECT_EQ(seam.MessageCount(), 0u);
        EXPECT_EQ(feed.calls, f.calls);
        EXPECT_EQ(marketData.liveConversation, 0);
    }
    // The live row goes behind the history, its volume in thousands; the
    // selection is restored. On a full source rows 1 on move down one row,
    // all but their dates, and row 0 stays.
    feed.replies[idn] = "23:59\t123\t123\t123\t123\t5000\r\n";
    SetSelection("Reuter", "TS1", "IBM.N");
    ResetDdeFeedState();
    std::vector<Row> rows;
    for (int row = 0; row < MaxRows; ++row)
        rows.push_back(Flat(1000.0 + row, row + 1.0));
    Stage(rows);
    ASSERT_EQ(ConnectDataSource(true), 1);
    const DataSource& s = *SourceAt(0);
    EXPECT_STREQ(s.source, "REUTER");
    EXPECT_TRUE(s.rowCount == MaxRows && s.conversation == 4242 && s.adviseItem != 0);
    EXPECT_STREQ(marketData.selection.currentSource, "Reuter");
    const DataColumns& c = *s.columns;
    for (int row = 0; row < MaxRows - 1; ++row) {
        const int from = row ? row + 1 : 0;
        ASSERT_TRUE(c.close[row] == from + 1.0 && c.dateNumber[row] == 1000.0 + row) << row;
        ASSERT_EQ(std::string(c.dateText[row]), "D" + std::to_string(from)) << row;
    }
    const int last = MaxRows - 1; // the live row keeps the date number
    EXPECT_STREQ(c.dateText[last], "23:59");
    EXPECT_TRUE(c.close[last] == 123.0 && c.volume[last] == 5.0 &&
                c.dateNumber[last] == 1000 + last);
}

} // namespace
} // namespace velorin
