// The data source table: start-up state, staging blocks and slot records.
#include "tests/market_data/market_data_fixture.h"

namespace velorin {
namespace {

using DataSourceTest = MarketDataTest;

TEST_F(DataSourceTest, ResetGivesStartUpValuesAndKeepsTheStagingBlocks) {
    marketData.filterOn = 1;
    marketData.hasFullColumns = 0;
    marketData.resolutionCode = 'w';
    marketData.nextSourceSlot = 7;
    std::strcpy(marketData.selection.currentTopic, "x");
    char* const fileText = marketData.fileText;
    double* const close = marketData.fetchColumns.close;
    ResetMarketDataState();
    EXPECT_EQ(marketData.filterOn, 0);
    EXPECT_EQ(marketData.filterBand, 0.1);
    EXPECT_EQ(marketData.resolutionCode, 'd');
    EXPECT_EQ(marketData.hasFullColumns, 1);
    EXPECT_EQ(marketData.nextSourceSlot, 0);
    EXPECT_STREQ(marketData.selection.currentTopic, "");
    EXPECT_EQ(marketData.fileText, fileText);
    EXPECT_EQ(marketData.fetchColumns.close, close);
}

// Nine blocks each: allocation failure at every one of them leaks nothing.
TEST_F(DataSourceTest, AllocationFailsAtEveryBlockWithoutLeaks) {
    ReleaseStagingBlocks();
    const long before = blockAllocator.liveBlocks;
    for (int failAt = 0; failAt < 9; ++failAt) {
        FailAllocationAfter(failAt);
        EXPECT_FALSE(AllocateStagingBlocks()) << failAt;
        ReleaseStagingBlocks();
        EXPECT_EQ(blockAllocator.liveBlocks, before) << failAt;
        // Slot record: allocation 0 is the record, 1 the columns, 2 to 8 the arrays.
        FailAllocationAfter(failAt);
        EXPECT_EQ(NewDataSource(3), 0) << failAt;
        EXPECT_EQ(SourceAt(3) != nullptr, failAt > 0) << failAt; // partial record kept
        EXPECT_EQ(blockAllocator.liveBlocks, before + failAt);
        FreeDataSource(3);
        EXPECT_EQ(SourceAt(3), nullptr);
        EXPECT_EQ(blockAllocator.liveBlocks, before) << failAt;
    }
    ASSERT_TRUE(AllocateStagingBlocks());
    EXPECT_EQ(blockAllocator.liveBlocks, before + 9);
    EXPECT_EQ(marketData.fetchColumns.volume[MaxRows - 1], 0.0);
    EXPECT_EQ(marketData.tokenText[FileTextSize - 1], '\0');
    ASSERT_EQ(NewDataSource(3), 1);
    EXPECT_EQ(blockAllocator.liveBlocks, before + 18);
    const DataColumns& c = *SourceAt(3)->columns;
    c.volume[MaxRows - 1] = 1.0; // every array holds MaxRows rows, zeroed
    EXPECT_EQ(c.dateNumber[MaxRows - 1], 0.0);
    EXPECT_EQ(c.dateText[MaxRows - 1][DateTextSize - 1], '\0');
    FreeDataSource(3);
    EXPECT_EQ(blockAllocator.liveBlocks, before + 9);
}

TEST_F(DataSourceTest, SlotRange) {
    EXPECT_EQ(SourceAt(-1), nullptr);
    EXPECT_EQ(SourceAt(MaxSourceSlots), nullptr);
    EXPECT_EQ(NewDataSource(-1), 0);
    EXPECT_EQ(NewDataSource(MaxSourceSlots), 0);
    FreeDataSource(MaxSourceSlots);
    FreeDataSource(10); // an empty slot
    EXPECT_EQ(NewDataSource(998), 1);
    EXPECT_EQ(NewDataSource(999), 1); // the table has the slot; the commands refuse it
    EXPECT_NE(SourceAt(998), nullptr);
}

} // namespace
} // namespace velorin
