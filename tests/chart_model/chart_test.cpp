#include <gtest/gtest.h>

#include "chart_model/chart.h"
#include "desk_fixture.h"

namespace velorin {
namespace {

using ChartModel = testing::DeskTest;

TEST_F(ChartModel, AFailedAllocationAnywhereLeavesNoBlock) {
    for (int layout = LayoutPlain; layout <= LayoutCompanion; ++layout) {
        for (int n = 0;; ++n) {
            FailAllocationAfter(n);
            Chart* c = NewChart(layout);
            blockAllocator.failCountdown = -1;
            if (c) {
                FreeChartBlocks(c);
                break;
            }
            EXPECT_EQ(blockAllocator.liveBlocks, blocksBefore) << layout << " " << n;
        }
    }
}

TEST_F(ChartModel, DrawnObjectsAreReleasedOnce) {
    Chart* a = NewChart(LayoutOneCurve);
    ChannelSet& ch = *a->drawings->channels;
    ch.inUse[8] = 1;
    ch.regions[8] = CreateEllipticRegion(0, 0, 10, 10);
    ch.secondRegions[8] = CreateEllipticRegion(5, 5, 15, 15);
    ReleaseDrawnObjects(a);
    ReleaseDrawnObjects(a); // the fixture checks no region is left or freed twice
    EXPECT_EQ(ch.inUse[8] + (ch.secondRegions[8] != nullptr), 0);
    desk.made.push_back(a);
}

TEST_F(ChartModel, PriceChartTitleCaptionAndResolution) {
    const struct {
        int rows;
        const char *topic, *item;
        int fullColumns, filterOn, tick, showLine;
        double resolution;
        const char* caption;
    } cases[] = {
        {25, "/desk/ACME.PRC", "ACME", 1, 0, 0, 0, 4.0, "Price ACME 1/1/07 - 1/25/07"},
        {24, "[Book1.xls]Sheet1", "x", 0, 1, 0, 1, 50.0, "Filtered Price Sheet1 1/1/07 - 1/24/07"},
        {300, "/desk/ACME.PRC", "ACME", 1, 0, 1, 0, 50.0, "Price ACME - Tick"},
        {25, "TS1", "/RIC=BARC.L 1Y,D", 1, 0, 0, 0, 4.0, "Price BARC.L 1/1/07 - 1/25/07"},
    };
    chartDefaults.defaultShowCandle = 1; // the look of full columns
    chartDefaults.defaultShowLine = 0;
    for (const auto& c : cases) {
        Connect(c.rows, c.topic, c.item)->tick = c.tick;
        marketData.hasFullColumns = c.fullColumns;
        marketData.filterOn = c.filterOn;
        ASSERT_EQ(CreatePriceChart("Price", 0), 1);
        const Chart& made = *desk.made.back();
        EXPECT_STREQ(made.windowCaption, c.caption);
        EXPECT_EQ(made.view->resolution, c.resolution);
        EXPECT_EQ(made.view->showLine, c.showLine);
        EXPECT_EQ(made.view->showCandle, 1 - c.showLine);
    }
}

TEST_F(ChartModel, FailuresReleaseTheFreshSourceAndSayWhy) {
    Connect(30);
    desk.nextWindow = 0;
    EXPECT_EQ(CreatePriceChart("Price", 0), 0);
    ASSERT_EQ(seam.messages.size(), 1u);
    EXPECT_EQ(seam.messages[0].text, "Unable to create Window - Please close some");
    EXPECT_EQ(seam.messages[0].caption, "QDX-Velorin");
    EXPECT_EQ(SourceAt(0), nullptr);
    EXPECT_EQ(deskRegistry.chartCount, 0);
    Connect(30);
    FailAllocationAfter(0);
    EXPECT_EQ(CreatePriceChart("Price", 0, CreationMode::InBatch()), 0); // silenced
    EXPECT_EQ(seam.messages.size(), 1u);
    EXPECT_EQ(SourceAt(marketData.nextSourceSlot), nullptr);
    Connect(30);
    FailAllocationAfter(0);
    EXPECT_EQ(CreatePriceChart("Price", 0), 0);
    EXPECT_EQ(seam.LastText(),
              "Memory Allocation For New Window failed - Please close some windows");
}

} // namespace
} // namespace velorin
