#pragma once
// A headless desk for the chart creation tests: it keeps every window
// request, hands out window ids (0 refuses the window), answers with a
// chart in front and records repaints. The fixture gives data sources as a
// connection leaves them and checks that no block or region outlives a test.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <vector>

#include "chart_model/desk.h"
#include "chart_model/price_chart.h"
#include "market_data/data_source.h"
#include "tests/support/recording_seam.h"

namespace velorin::testing {

class FakeDesk : public Desk {
  public:
    WindowId CreateChild(const ChildWindowRequest& r) override {
        requests.push_back(r);
        if (nextWindow != 0) made.push_back(r.chart);
        return nextWindow == 0 ? 0 : nextWindow++;
    }
    Chart* ActiveChart(WindowId* window) override { return window ? (*window = 1, front) : front; }
    void Invalidate(WindowId window) override { invalidated.push_back(window); }
    void RepaintAllCharts() override {}
    void Tile(bool) override {}
    void CloseAllChildren() override {}

    std::vector<ChildWindowRequest> requests;
    std::vector<Chart*> made; // charts handed to a window, released by the fixture
    std::vector<WindowId> invalidated;
    Chart* front = nullptr;
    WindowId nextWindow = 77;
};

class DeskTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ResetMarketDataState();
        ResetChartDefaults();
        ResetDeskRegistry();
        blocksBefore = blockAllocator.liveBlocks;
        regionsBefore = LiveRegionCount();
        InstallDesk(&desk);
    }
    void TearDown() override {
        InstallDesk(nullptr);
        for (Chart* c : desk.made)
            ReleaseChart(c);
        for (int s = 0; s < MaxSourceSlots; ++s)
            FreeDataSource(s);
        blockAllocator.failCountdown = -1;
        EXPECT_EQ(blockAllocator.liveBlocks, blocksBefore);
        EXPECT_EQ(LiveRegionCount(), regionsBefore);
    }

    // A source in the next slot as a connection leaves it: `rows` dated rows
    // of a wavy close and a volume above 100.
    DataSource* Connect(int rows, const char* topic = "/desk/ACME.PRC", const char* item = "ACME") {
        const int slot = marketData.nextSourceSlot;
        EXPECT_EQ(NewDataSource(slot), 1);
        DataSource* s = SourceAt(slot);
        s->refCount = 1, s->rowCount = rows, s->conversation = -(slot + 1);
        for (int r = 0; r < rows; ++r) {
            std::snprintf(s->columns->dateText[r], DateTextSize, "%d/%d/07", 1 + r / 28,
                          1 + r % 28);
            s->columns->close[r] = 100.0 + 10.0 * std::sin(r * 0.1) + r * 0.05;
            s->columns->volume[r] = 150.0 + 10.0 * (r % 7);
        }
        std::snprintf(marketData.selection.currentSource, 100, "DATAFILE");
        std::snprintf(marketData.selection.currentTopic, 255, "%s", topic);
        std::snprintf(marketData.selection.currentItem, 255, "%s", item);
        return s;
    }

    // A price chart over a fresh source of `rows` rows, put in front.
    Chart* PriceChartOf(int rows, bool fullColumns = true) {
        Connect(rows);
        marketData.hasFullColumns = fullColumns ? 1 : 0;
        EXPECT_EQ(CreatePriceChart("Price", 0), 1);
        return desk.front = desk.made.back();
    }

    test_support::RecordingSeam seam;
    FakeDesk desk;
    long blocksBefore = 0, regionsBefore = 0;
};

} // namespace velorin::testing
