#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>
#include <vector>

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

TEST_F(ChartModel, DrawnObjectsReleasedOnceAndSourceFreedWithLastChart) {
    Connect(30)->refCount = 2;
    Chart* a = NewChart(LayoutOneCurve);
    Chart* b = NewChart(LayoutPlain);
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
    const struct {
        int rows;
        const char* topic;
        const char* item;
        int fullColumns, filterOn, tick;
        double resolution;
        int showLine;
        const char* caption;
    } cases[] = {
        {25, "/desk/ACME.PRC", "ACME", 1, 0, 0, 4.0, 0, "Price ACME 1/1/07 - 1/25/07"},
        {24, "[Book1.xls]Sheet1", "x", 0, 1, 0, 50.0, 1, "Filtered Price Sheet1 1/1/07 - 1/24/07"},
        {300, "/desk/ACME.PRC", "ACME", 1, 0, 1, 50.0, 0, "Price ACME - Tick"},
    };
    chartDefaults.defaultShowCandle = 1; // the look of full columns
    chartDefaults.defaultShowLine = 0;
    for (int i = 0; i < 3; ++i) {
        const auto& c = cases[i];
        Connect(c.rows, c.topic, c.item)->tick = c.tick;
        marketData.hasFullColumns = c.fullColumns;
        marketData.filterOn = c.filterOn;
        ASSERT_EQ(CreatePriceChart("Price", i % 2), 1);
        const Chart& made = *desk.made.back();
        EXPECT_STREQ(made.windowCaption, c.caption);
        EXPECT_EQ(desk.requests.back().caption, made.windowCaption);
        EXPECT_STREQ(chartDefaults.lastChartTitle, made.chartTitle);
        EXPECT_EQ(made.view->resolution, c.resolution);
        EXPECT_EQ(made.view->showLine, c.showLine);
        EXPECT_EQ(made.view->showCandle, 1 - c.showLine);
        EXPECT_EQ(made.connectionId, -(i + 1));
        EXPECT_EQ(made.kind, 1);
        EXPECT_EQ(deskRegistry.chartCount, i + 1);
        EXPECT_EQ(i % 2 ? chartDefaults.batchSecondChart : chartDefaults.batchFirstChart, 77 + i);
    }
    // A long name is cut at the record size.
    Connect(30, "/x.PRC", std::string(150, 'N').c_str());
    ASSERT_EQ(CreatePriceChart("Price", 0), 1);
    EXPECT_EQ(std::strlen(desk.made.back()->chartTitle), 99u);
    EXPECT_EQ(std::strlen(desk.made.back()->windowCaption), 99u);
}

TEST(InstrumentName, FromTopicOrItem) {
    const struct {
        const char* topic;
        const char* item;
        const char* name;
    } cases[] = {
        {"[Book1.xls]Sheet1", "ignored", "Sheet1"},
        {"PRICES;CODE,DATE,CLOSE", "X", "CODE,DATE,CLOSE"},
        {"/data/desk/GLOBEX.PRC", "GLOBEX", "GLOBEX"},
        {"TS1", "/RIC=BARC.L 1Y,D", "BARC.L"},
        {"", "", ""},
    };
    for (const auto& c : cases) {
        char name[64];
        InstrumentName(c.topic, c.item, name, sizeof name);
        EXPECT_STREQ(name, c.name) << c.topic;
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
    EXPECT_EQ(seam.messages.back().text,
              "Memory Allocation For New Window failed - Please close some windows");
}

// What the rest of the program relies on in every kind record: lookups
// that agree, blocks for what the record computes and draws, and the
// pieces each rule needs.
TEST(ChartKinds, RecordsAreConsistentWithTheirLayouts) {
    int count = 0;
    const ChartKindInfo* kinds = ChartKinds(&count);
    std::set<std::string> names;
    for (int i = 0; i < count; ++i) {
        const ChartKindInfo& k = kinds[i];
        SCOPED_TRACE(k.kindName);
        EXPECT_TRUE(names.insert(k.kindName).second);
        EXPECT_EQ(KindByName(k.kindName), &k);
        EXPECT_EQ(KindById(k.kind), &k);
        EXPECT_TRUE(k.commandId == 0 || KindByCommand(k.commandId) == &k);
        EXPECT_TRUE(i == 0 || kinds[i - 1].kind < k.kind);

        const int series[] = {0, 1, 3, 4, 7, 1, 0}; // model series of each layout
        const bool params = k.layout >= LayoutOneCurve && k.layout <= LayoutPair;
        EXPECT_TRUE(params || (!k.runEngines && k.periodChange == PeriodChange::Nothing));
        EXPECT_EQ(k.periodChange == PeriodChange::SelectedCurve, k.curveEngine != nullptr);
        EXPECT_EQ(k.rowMinimum > 0, k.rowMinimumMessage != nullptr);
        if (k.curves) {
            for (int c = 0; c < k.curves->curveCount; ++c) {
                EXPECT_LT(k.curves->curves[c].modelCurve, series[k.layout]);
                EXPECT_LT(k.curves->curves[c].slot, CurveSlotCount);
            }
            EXPECT_TRUE(!k.curves->fibonacci || k.layout == LayoutFibonacci);
        }
    }
    EXPECT_EQ(KindByName("price"), nullptr); // names match whole and case sensitive
    EXPECT_EQ(KindByCommand(0), nullptr);
}

TEST(Regions, EllipseAndPolygonHits) {
    Region* e = CreateEllipticRegion(0, 0, 10, 10);
    const PixelPoint tri[] = {{0, 0}, {20, 0}, {0, 20}};
    Region* p = CreatePolygonRegion(tri, 3);
    // The corner of the box is outside the ellipse.
    EXPECT_EQ(
        std::vector<bool>({PointInRegion(e, 5, 5), PointInRegion(e, 0, 0), PointInRegion(e, 10, 5),
                           PointInRegion(p, 2, 2), PointInRegion(p, 15, 15)}),
        std::vector<bool>({true, false, false, true, false}));
    DeleteRegion(e);
    DeleteRegion(p);
}

} // namespace
} // namespace velorin
