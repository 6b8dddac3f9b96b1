// The sample desk: every file within the reader's limits, read whole with its
// documented row count, rising weekday dates and consistent prices.
#include "tests/market_data/market_data_fixture.h"
#include "tools/sample_data/sample_data.h"

namespace velorin {
namespace {

namespace sd = sample_data;

using SampleDataTest = MarketDataTest;

TEST_F(SampleDataTest, EveryFileIsReadWhole) {
    TempDir dir;
    dateRules.todayDate = TodayFromClock();
    std::string error;
    std::vector<std::string> written;
    ASSERT_TRUE(sd::WriteDesk(dir.path().string(), &error, &written)) << error;
    const std::vector<sd::Instrument> desk = sd::DefaultDesk();
    ASSERT_EQ(written.size(), desk.size());
    for (std::size_t i = 0; i < desk.size(); ++i) {
        const sd::Instrument& instrument = desk[i];
        SCOPED_TRACE(instrument.fileName);
        seam.QueueFile(written[i]);
        ASSERT_EQ(LoadDataFile(0), 1) << seam.LastText();
        EXPECT_EQ(marketData.fetchRowCount, instrument.rows);
        EXPECT_EQ(marketData.hasFullColumns, instrument.sixColumns ? 1 : 0);
        const DataColumns& c = marketData.fetchColumns;
        EXPECT_EQ(c.dateNumber[instrument.rows - 1], DayNumberOf(2009, 12, 31));
        for (int row = 0; row < instrument.rows; ++row) {
            ASSERT_LT(static_cast<long>(c.dateNumber[row] - 2.0) % 7, 5) << row; // day 2: a Monday
            if (!instrument.sixColumns) continue;
            ASSERT_GE(c.high[row], std::max(c.open[row], c.low[row])) << row;
            ASSERT_LE(c.low[row], std::min(c.open[row], c.close[row])) << row;
            ASSERT_GT(c.low[row], 0.0) << row;
        }
        // With the filter on, only the planted bad print is dropped.
        marketData.filterOn = 1;
        ASSERT_EQ(ConnectDataSource(), 1);
        EXPECT_EQ(SourceAt(0)->rowCount, instrument.rows - (instrument.spikeRow >= 0 ? 1 : 0));
        FreeDataSource(0);
    }
    EXPECT_EQ(seam.MessageCount(), 0u);
}

} // namespace
} // namespace velorin
