// The data source table: staging blocks and slot records.
#include "tests/market_data/market_data_fixture.h"

namespace velorin {
namespace {

using DataSourceTest = MarketDataTest;

// Nine blocks each: allocation failure at every one of them leaks nothing.
// A slot record takes the record, then the columns, then seven arrays; a
// partial record stays in its slot until freed.
TEST_F(DataSourceTest, AllocationFailsAtEveryBlockWithoutLeaks) {
    ReleaseStagingBlocks();
    const long before = blockAllocator.liveBlocks;
    for (int failAt = 0; failAt < 9; ++failAt) {
        FailAllocationAfter(failAt);
        EXPECT_FALSE(AllocateStagingBlocks()) << failAt;
        ReleaseStagingBlocks();
        EXPECT_EQ(blockAllocator.liveBlocks, before) << failAt;
        FailAllocationAfter(failAt);
        EXPECT_EQ(NewDataSource(3), 0) << failAt;
        EXPECT_EQ(SourceAt(3) != nullptr, failAt > 0) << failAt;
        EXPECT_EQ(blockAllocator.liveBlocks, before + failAt);
        FreeDataSource(3);
        EXPECT_EQ(blockAllocator.liveBlocks, before) << failAt;
    }
    ASSERT_TRUE(AllocateStagingBlocks());
    EXPECT_EQ(blockAllocator.liveBlocks, before + 9);
    ASSERT_EQ(NewDataSource(3), 1);
    EXPECT_EQ(blockAllocator.liveBlocks, before + 18);
    const DataColumns& c = *SourceAt(3)->columns;
    c.volume[MaxRows - 1] = 1.0; // every array holds MaxRows rows, zeroed
    EXPECT_EQ(c.dateNumber[MaxRows - 1], 0.0);
    EXPECT_EQ(c.dateText[MaxRows - 1][DateTextSize - 1], '\0');
    FreeDataSource(3);
    EXPECT_EQ(SourceAt(3), nullptr);
}

} // namespace
} // namespace velorin
