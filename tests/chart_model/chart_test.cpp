#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "chart_model/chart.h"
#include "chart_model/price_chart.h"
#include "market_data/data_source.h"
#include "shell/core/shell_state.h"
#include "tests/support/recording_seam.h"

namespace velorin {
namespace {

class ChartModel : public ::testing::Test {
  protected:
    void SetUp() override {
        ResetShellState();
        ResetMarketDataState();
        ResetChartDefaults();
        blocksBefore = blockAllocator.liveBlocks;
        regionsBefore = LiveRegionCount();
        windowHooks.createChild = [](const ChildWindowRequest& r) -> WindowId {
            lastRequest = r;
            return nextWindow;
        };
        nextWindow = 77;
    }
    void TearDown() override {
        for (int s = 0; s < MaxSourceSlots; ++s)
            FreeDataSource(s);
        for (Chart* c : charts)
            ReleaseChart(c);
        windowHooks = {};
        EXPECT_EQ(blockAllocator.liveBlocks, blocksBefore);
        EXPECT_EQ(LiveRegionCount(), regionsBefore);
    }

    // A source in the next slot as a connection leaves it, with `rows` dated rows.
    DataSource* Connect(int rows, const char* topic = "/desk/ACME.PRC", const char* item = "ACME") {
        const int slot = marketData.nextSourceSlot;
        EXPECT_EQ(NewDataSource(slot), 1);
        DataSource* s = SourceAt(slot);
        s->refCount = 1;
        s->rowCount = rows;
        s->conversation = -(slot + 1);
        for (int r = 0; r < rows; ++r)
            std::snprintf(s->columns->dateText[r], DateTextSize, "1/%d/99", r + 1);
        std::snprintf(marketData.selection.currentSource, 100, "DATAFILE");
        std::snprintf(marketData.selection.currentTopic, 255, "%s", topic);
        std::snprintf(marketData.selection.currentItem, 255, "%s", item);
        return s;
    }

    // The chart handed to the window layer by the last CreatePriceChart.
    Chart* Made() {
        charts.push_back(lastRequest.chart);
        return lastRequest.chart;
    }

    test_support::RecordingSeam seam;
    long blocksBefore = 0, regionsBefore = 0;
    std::vector<Chart*> charts;
    static inline ChildWindowRequest lastRequest{};
    static inline WindowId nextWindow = 77;
};

TEST_F(ChartModel, EveryLayoutAllocatesItsBlocksAndFreesThemAll) {
    const int expected[] = {9, 12, 14, 15, 21, 16, 2}; // record, view, drawings (7), series...
    for (int layout = 0; layout <= 6; ++layout) {
        const long before = blockAllocator.liveBlocks;
        Chart* c = NewChart(layout);
        ASSERT_NE(c, nullptr);
        EXPECT_EQ(blockAllocator.liveBlocks - before, expected[layout]) << layout;
        EXPECT_EQ(c->drawings == nullptr, layout == 6);
        EXPECT_EQ(c->analysisParams != nullptr, layout >= 1 && layout <= 5);
        EXPECT_EQ(c->fibonacciExtra != nullptr, layout == 4);
        EXPECT_EQ(c->pairData != nullptr, layout == 5);
        if (layout == 4) {
            EXPECT_NE(c->modelSeries->slot[6], nullptr);
        }
        if (layout == 3) {
            EXPECT_EQ(c->modelSeries->slot[4], nullptr);
        }
        FreeChartBlocks(c);
        EXPECT_EQ(blockAllocator.liveBlocks, before);
    }
}

TEST_F(ChartModel, AFailedAllocationAnywhereLeavesNoBlock) {
    for (int layout : {4, 5}) {
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

TEST_F(ChartModel, DrawnObjectsReleasedOnceAndSourceFreedWithLastChart) {
    DataSource* s = Connect(30);
    s->refCount = 2;
    Chart* a = NewChart(1);
    Chart* b = NewChart(0);
    a->sourceSlot = b->sourceSlot = 0;
    a->secondSourceSlot = b->secondSourceSlot = -1;
    a->drawings->trendLines->inUse[3] = 1;
    a->drawings->trendLines->regions[3] = CreateEllipticRegion(0, 0, 10, 10);
    a->drawings->channels->inUse[8] = 1;
    a->drawings->channels->regions[8] = CreateEllipticRegion(0, 0, 10, 10);
    a->drawings->channels->secondRegions[8] = CreateEllipticRegion(5, 5, 15, 15);
    a->view->curveRegions[14] = CreateEllipticRegion(1, 1, 11, 11);
    ReleaseDrawnObjects(a);
    ReleaseDrawnObjects(a);
    EXPECT_EQ(a->drawings->trendLines->inUse[3], 0);
    EXPECT_EQ(a->drawings->channels->secondRegions[8], nullptr);
    ReleaseChart(a);
    ASSERT_NE(SourceAt(0), nullptr);
    EXPECT_EQ(SourceAt(0)->refCount, 1);
    ReleaseChart(b);
    EXPECT_EQ(SourceAt(0), nullptr);
}

TEST_F(ChartModel, PriceChartTitleCaptionAndResolution) {
    Connect(25);
    marketData.hasFullColumns = 1;
    chartDefaults.defaultShowCandle = 1;
    chartDefaults.defaultShowLine = 0;
    ASSERT_EQ(CreatePriceChart("Price", 0), 1);
    Chart* c = Made();
    EXPECT_STREQ(c->chartTitle, "ACME 1/1/99 - 1/25/99");
    EXPECT_STREQ(c->windowCaption, "Price ACME 1/1/99 - 1/25/99");
    EXPECT_STREQ(chartDefaults.lastChartTitle, c->chartTitle);
    EXPECT_EQ(lastRequest.caption, c->windowCaption);
    EXPECT_EQ(c->view->resolution, 4.0);
    EXPECT_EQ(c->view->showCandle, 1);
    EXPECT_EQ(c->view->showLine, 0);
    EXPECT_EQ(c->connectionId, -1);
    EXPECT_EQ(c->secondSourceSlot, -1);
    EXPECT_EQ(c->kind, 1);
    EXPECT_EQ(marketData.nextSourceSlot, 1);
    EXPECT_EQ(shell.chartCount, 1);
    EXPECT_EQ(chartDefaults.batchFirstChart, 77);

    // 24 rows, two columns, filter on.
    Connect(24, "[Book1.xls]Sheet1", "whatever");
    marketData.hasFullColumns = 0;
    marketData.filterOn = 1;
    ASSERT_EQ(CreatePriceChart("Price", 1), 1);
    c = Made();
    EXPECT_EQ(c->view->resolution, 50.0);
    EXPECT_EQ(c->view->showLine, 1);
    EXPECT_EQ(c->view->showCandle, 0);
    EXPECT_STREQ(c->windowCaption, "Filtered Price Sheet1 1/1/99 - 1/24/99");
    EXPECT_EQ(c->connectionId, -2);

    // Tick data is always at 50 and titled by name alone.
    Connect(300)->tick = 1;
    marketData.filterOn = 0;
    ASSERT_EQ(CreatePriceChart("Price", 0), 1);
    c = Made();
    EXPECT_EQ(c->view->resolution, 50.0);
    EXPECT_STREQ(c->chartTitle, "ACME - Tick");
}

TEST_F(ChartModel, InstrumentNameRules) {
    char name[64];
    InstrumentName("[Book1.xls]Sheet1", "ignored", name, sizeof name);
    EXPECT_STREQ(name, "Sheet1");
    InstrumentName("PRICES;CODE,DATE,CLOSE", "X", name, sizeof name);
    EXPECT_STREQ(name, "CODE,DATE,CLOSE");
    InstrumentName("/home/a/GLOBEX.PRC", "GLOBEX", name, sizeof name);
    EXPECT_STREQ(name, "GLOBEX");
    InstrumentName("TS1", "/RIC=BARC.L 1Y,D", name, sizeof name);
    EXPECT_STREQ(name, "BARC.L");
    InstrumentName("", "", name, sizeof name);
    EXPECT_STREQ(name, "");
}

TEST_F(ChartModel, LongTitleIsCutAtTheRecordSize) {
    Connect(30, "/x.PRC", std::string(150, 'N').c_str());
    ASSERT_EQ(CreatePriceChart("Price", 0), 1);
    Chart* c = Made();
    EXPECT_EQ(std::strlen(c->chartTitle), 99u);
    EXPECT_EQ(std::strlen(c->windowCaption), 99u);
}

TEST_F(ChartModel, FailuresReleaseTheFreshSourceAndSayWhy) {
    Connect(30);
    nextWindow = 0;
    EXPECT_EQ(CreatePriceChart("Price", 0), 0);
    ASSERT_EQ(seam.messages.size(), 1u);
    EXPECT_EQ(seam.messages[0].text, "Unable to create Window - Please close some");
    EXPECT_EQ(seam.messages[0].caption, "QDX-Velorin");
    EXPECT_EQ(SourceAt(0), nullptr);
    EXPECT_EQ(shell.chartCount, 0);

    Connect(30);
    FailAllocationAfter(0);
    shell.batchRunning = 1; // silenced during a batch
    EXPECT_EQ(CreatePriceChart("Price", 0), 0);
    EXPECT_EQ(seam.messages.size(), 1u);
    EXPECT_EQ(SourceAt(marketData.nextSourceSlot), nullptr);
    shell.batchRunning = 0;
    Connect(30);
    FailAllocationAfter(0);
    EXPECT_EQ(CreatePriceChart("Price", 0), 0);
    EXPECT_EQ(seam.messages.back().text,
              "Memory Allocation For New Window failed - Please close some windows");
}

TEST_F(ChartModel, KindTable) {
    EXPECT_EQ(KindByName("Perc. Range")->kind, 21);
    EXPECT_EQ(KindByCommand(10416)->layout, 2);
    EXPECT_EQ(KindById(16)->windowClass, WindowClass::CorrChild);
    EXPECT_EQ(KindByCommand(0), nullptr);
    EXPECT_EQ(KindByName("price"), nullptr);
}

TEST(Regions, EllipseAndPolygonHits) {
    Region* e = CreateEllipticRegion(0, 0, 10, 10);
    EXPECT_TRUE(PointInRegion(e, 5, 5));
    EXPECT_FALSE(PointInRegion(e, 0, 0)); // corner of the box is outside the ellipse
    EXPECT_FALSE(PointInRegion(e, 10, 5));
    const PixelPoint tri[] = {{0, 0}, {20, 0}, {0, 20}};
    Region* p = CreatePolygonRegion(tri, 3);
    EXPECT_TRUE(PointInRegion(p, 2, 2));
    EXPECT_FALSE(PointInRegion(p, 15, 15));
    DeleteRegion(e);
    DeleteRegion(p);
}

} // namespace
} // namespace velorin
