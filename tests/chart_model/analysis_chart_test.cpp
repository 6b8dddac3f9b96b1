#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "analysis/moving_averages.h"
#include "analysis/oscillators.h"
#include "chart_model/analysis_chart.h"
#include "chart_model/layout_hooks.h"
#include "chart_model/price_chart.h"
#include "market_data/data_source.h"
#include "shell/core/shell_state.h"
#include "tests/support/recording_seam.h"

namespace velorin {
namespace {

class AnalysisCharts : public ::testing::Test {
  protected:
    void SetUp() override {
        ResetShellState();
        ResetMarketDataState();
        ResetChartDefaults();
        blocksBefore = blockAllocator.liveBlocks;
        made.clear();
        front = nullptr;
        invalidated.clear();
        windowHooks.createChild = [](const ChildWindowRequest& r) -> WindowId {
            made.push_back(r.chart);
            return static_cast<WindowId>(100 + made.size());
        };
        deskWindowHooks.activeChart = [](WindowId* w) -> Chart* {
            if (w) *w = 1;
            return front;
        };
        deskWindowHooks.invalidate = [](WindowId w) { invalidated.push_back(w); };
    }
    void TearDown() override {
        for (Chart* c : made)
            ReleaseChart(c);
        for (int s = 0; s < MaxSourceSlots; ++s)
            FreeDataSource(s);
        windowHooks = {};
        deskWindowHooks = {};
        EXPECT_EQ(blockAllocator.liveBlocks, blocksBefore);
    }

    // A price chart in front over a fresh source of `rows` rows.
    Chart* PriceChartOf(int rows, bool fullColumns = true, double volume0 = 5.0) {
        const int slot = marketData.nextSourceSlot;
        EXPECT_EQ(NewDataSource(slot), 1);
        DataSource* s = SourceAt(slot);
        s->refCount = 1;
        s->rowCount = rows;
        s->conversation = -(slot + 1);
        for (int r = 0; r < rows; ++r) {
            std::snprintf(s->columns->dateText[r], DateTextSize, "%d/%d/07", 1 + r / 28,
                          1 + r % 28);
            const double c = 100.0 + 10.0 * std::sin(r * 0.1) + r * 0.05;
            s->columns->close[r] = c;
            s->columns->high[r] = c + 1.0;
            s->columns->low[r] = c - 1.0;
            s->columns->open[r] = c - 0.5;
            s->columns->volume[r] = r == 0 ? volume0 : 3.0 + (r % 7);
        }
        std::snprintf(marketData.selection.currentSource, 100, "DATAFILE");
        std::snprintf(marketData.selection.currentTopic, 255, "/desk/ACME.PRC");
        std::snprintf(marketData.selection.currentItem, 255, "ACME");
        marketData.hasFullColumns = fullColumns ? 1 : 0;
        EXPECT_EQ(CreatePriceChart("Price", 0), 1);
        front = made.back();
        return front;
    }

    int Refs() const { return SourceAt(front->sourceSlot)->refCount; }

    test_support::RecordingSeam seam;
    long blocksBefore = 0;
    static inline std::vector<Chart*> made;
    static inline Chart* front = nullptr;
    static inline std::vector<WindowId> invalidated;
};

struct Guard {
    int rows;
    const char* kind;
    const char* message; // nullptr: the window opens
    const char* caption;
};

TEST_F(AnalysisCharts, RowMinimaAndVolumeGuardsSayTheirWordsAndLeaveNothing) {
    const char* insufficient = "Insufficient data";
    const char* discipline = "QDX-Velorin Trading Discipline";
    const Guard guards[] = {
        {24, "Price", nullptr, nullptr},
        {24, "Volume", nullptr, nullptr},
        {24, "RMA", insufficient, discipline},
        {24, "Swing Charting", insufficient, discipline},
        {25, "RMA", nullptr, nullptr},
        {60, "Stochastics", "Insufficient data for Stochastics Analysis", discipline},
        {61, "Stochastics", nullptr, nullptr},
        {75, "Predictor", "Insufficient data for Time Series Analysis", discipline},
        {76, "Predictor", nullptr, nullptr},
        {250, "Fibonacci", "Insufficient data for Fibonacci Analysis", discipline},
        {251, "Fibonacci", nullptr, nullptr},
    };
    for (const Guard& g : guards) {
        SCOPED_TRACE(std::string(g.kind) + " at " + std::to_string(g.rows));
        seam.Clear();
        PriceChartOf(g.rows);
        const int refs = Refs();
        const int charts = shell.chartCount;
        const int result = CreateAnalysisChart(g.kind);
        if (g.message) {
            EXPECT_EQ(result, 0);
            ASSERT_EQ(seam.MessageCount(), 1u);
            EXPECT_EQ(seam.LastText(), g.message);
            EXPECT_EQ(seam.messages[0].caption, g.caption);
            EXPECT_EQ(Refs(), refs);
            EXPECT_EQ(shell.chartCount, charts);
        } else {
            EXPECT_EQ(result, 1);
            EXPECT_EQ(seam.MessageCount(), 0u);
            EXPECT_EQ(Refs(), refs + 1);
            EXPECT_EQ(shell.chartCount, charts + 1);
            EXPECT_STREQ(made.back()->kindName, g.kind);
        }
    }
}

TEST_F(AnalysisCharts, VolumeKindsNeedAVolumeColumn) {
    for (const char* kind : {"Volume", "Tic Volume", "OBV", "RVI"}) {
        seam.Clear();
        PriceChartOf(40, false);
        EXPECT_EQ(CreateAnalysisChart(kind), 0) << kind;
        EXPECT_EQ(seam.LastText(), "No Volume Data Available");
        EXPECT_EQ(seam.messages.at(0).caption, "QDX-Velorin");
        PriceChartOf(40, true, NO_VOLUME_MARKER);
        EXPECT_EQ(CreateAnalysisChart(kind), 0) << kind;
        EXPECT_EQ(seam.MessageCount(), 2u);
    }
    seam.Clear();
    PriceChartOf(40, false);
    EXPECT_EQ(CreateAnalysisChart("RSI"), 1);
    EXPECT_EQ(seam.MessageCount(), 0u);
}

TEST_F(AnalysisCharts, NoChartOrACompanionViewInFront) {
    EXPECT_EQ(CreateAnalysisChart("RSI"), 0);
    EXPECT_EQ(seam.LastText(), "Non Existent Connection To Data source");
    PriceChartOf(40);
    std::snprintf(front->kindName, sizeof front->kindName, "Data View");
    EXPECT_EQ(CreateAnalysisChart("RSI"), 0);
    EXPECT_EQ(seam.LastText(), "Please Select Chart");
    shell.batchRunning = 1; // a batch run says nothing, and still fails
    seam.Clear();
    EXPECT_EQ(CreateAnalysisChart("RSI"), 0);
    EXPECT_EQ(seam.MessageCount(), 0u);
}

TEST_F(AnalysisCharts, DefaultPeriodsFollowTheRowCount) {
    const int cases[][4] = {{45, 5, 10, 20}, {46, 5, 20, 40}, {75, 5, 20, 40}, {76, 5, 30, 60}};
    for (const auto& c : cases) {
        for (const char* kind : {"RMA", "Stdev"}) {
            PriceChartOf(c[0]);
            ASSERT_EQ(CreateAnalysisChart(kind), 1);
            const std::int32_t* p = made.back()->analysisParams->period;
            EXPECT_EQ(p[1], c[1]);
            EXPECT_EQ(p[2], c[2]) << kind << " " << c[0];
            EXPECT_EQ(p[3], c[3]) << kind << " " << c[0];
        }
    }
}

TEST_F(AnalysisCharts, AnAnalysisOfAnAnalysisReadsTheSourceClose) {
    PriceChartOf(120);
    ASSERT_EQ(CreateAnalysisChart("RMA"), 1);
    front = made.back(); // the moving average is now in front
    ASSERT_EQ(CreateAnalysisChart("RSI"), 1);
    const Chart& rsi = *made.back();
    EXPECT_EQ(rsi.kind, 6);
    std::vector<double> expected(MaxRows);
    ComputeRSI(SourceAt(rsi.sourceSlot)->columns->close, expected.data(), 120, 14);
    for (int r = 0; r < 120; ++r)
        ASSERT_EQ(rsi.modelSeries->slot[0][r], expected[static_cast<std::size_t>(r)]) << r;
    EXPECT_STREQ(rsi.windowCaption, "RSI ACME 1/1/07 - 5/8/07");
    EXPECT_EQ(Refs(), 3);
}

TEST_F(AnalysisCharts, BatchRunsTakeTheDefaultLookAndPredictorTheSourceTerm) {
    Chart* price = PriceChartOf(300);
    price->view->resolution = 8.0;
    price->predictorShort = 0;
    price->predictorMedium = 1;
    ASSERT_EQ(CreateAnalysisChart("Predictor"), 1);
    EXPECT_EQ(made.back()->analysisParams->period[1], 20);
    EXPECT_EQ(made.back()->view->resolution, 8.0);
    shell.batchRunning = 1;
    chartDefaults.defaultResolution = 2.0;
    chartDefaults.defaultShowLine = 0;
    chartDefaults.defaultShowCandle = 1;
    ASSERT_EQ(CreateAnalysisChart("WMA"), 1);
    EXPECT_EQ(made.back()->view->resolution, 2.0);
    EXPECT_EQ(made.back()->view->showCandle, 1);
    EXPECT_EQ(made.back()->view->showLine, 0);
}

TEST_F(AnalysisCharts, ARestoredLayoutRowGivesParametersRectangleAndObjects) {
    PriceChartOf(300);
    front->predictorMedium = 1;
    front->predictorShort = 0;
    shell.restoringLayout = 1;
    layoutRestoreHooks.rowParameters = [](int, double* a, double* b, double* c) {
        *a = 9.7;
        *b = 3.2;
        *c = 9.0; // the writer stores the third period, which equals the first
    };
    layoutRestoreHooks.rowRectangle = [](int, int* x, int* y, int* w, int* h) {
        *x = 10, *y = 20, *w = 300, *h = 200;
    };
    layoutRestoreHooks.rowPriceScale = [](int) { return 32; };
    static ChildWindowRequest seen{};
    windowHooks.createChild = [](const ChildWindowRequest& r) -> WindowId {
        made.push_back(r.chart);
        seen = r;
        return 5;
    };
    ASSERT_EQ(CreateAnalysisChart("Stochastics"), 1);
    const Chart& st = *made.back();
    EXPECT_EQ(st.analysisParams->period[1], 9);
    EXPECT_EQ(st.analysisParams->period[2], 3);
    EXPECT_EQ(st.analysisParams->period[3], 9);
    EXPECT_EQ(st.analysisParams->period[4], 9); // not 21 any more
    EXPECT_EQ(st.priceScaleDenominator, 32);
    EXPECT_EQ(st.anchorsPending, 1);
    EXPECT_EQ(st.predictorShort, 1);
    EXPECT_EQ(seen.placement, WindowPlacement::Given);
    EXPECT_EQ(seen.width, 300);
    ASSERT_EQ(CreateAnalysisChart("MACD"), 1);
    EXPECT_EQ(made.back()->smoothing[0], 9.7);
    EXPECT_EQ(made.back()->smoothing[2], 9.0);
    layoutRestoreHooks = {};
}

TEST_F(AnalysisCharts, RecomputeRefreshesTheTitleBySplittingTheCaption) {
    PriceChartOf(100);
    ASSERT_EQ(CreateAnalysisChart("RMA"), 1);
    ASSERT_EQ(CreateAnalysisChart("Swing Charting"), 1);
    Chart& rma = *made[made.size() - 2];
    Chart& swing = *made.back();
    rma.rowCount = swing.rowCount = 30;
    RecomputeChart(5, rma);
    RecomputeChart(6, swing);
    EXPECT_STREQ(rma.chartTitle, "ACME 1/1/07 - 2/2/07");
    EXPECT_STREQ(rma.windowCaption, "RMA ACME 1/1/07 - 2/2/07");
    // A kind of two words pushes the item out of the title.
    EXPECT_STREQ(swing.chartTitle, "Charting 1/1/07 - 2/2/07");
    EXPECT_STREQ(swing.windowCaption, "Swing Charting 1/1/07 - 2/2/07");
    EXPECT_EQ(invalidated, (std::vector<WindowId>{5, 6}));

    SourceAt(rma.sourceSlot)->filtered = 1;
    std::snprintf(rma.windowCaption, sizeof rma.windowCaption, "Filtered RMA ACME 1/1/07 - x");
    RecomputeChart(5, rma);
    EXPECT_STREQ(rma.chartTitle, "ACME 1/1/07 - 2/2/07");
    EXPECT_STREQ(rma.windowCaption, "Filtered RMA ACME 1/1/07 - 2/2/07");
}

TEST_F(AnalysisCharts, RecomputeSkipsEnginesBelowTheRowTestButRepaints) {
    DataSource* s = SourceAt(PriceChartOf(100)->sourceSlot);
    ASSERT_EQ(CreateAnalysisChart("Stochastics"), 1);
    Chart& st = *made.back();
    const double before = st.modelSeries->slot[0][80];
    for (int r = 0; r < 100; ++r)
        s->columns->close[r] += 50.0 * (r % 3); // a different history
    st.rowCount = 60;
    RecomputeChart(9, st);
    EXPECT_EQ(st.modelSeries->slot[0][80], before);
    EXPECT_EQ(invalidated.size(), 1u);
    st.rowCount = 61;
    RecomputeChart(9, st);
    EXPECT_NE(st.modelSeries->slot[0][80], before);
    EXPECT_EQ(invalidated.size(), 2u);
}

TEST_F(AnalysisCharts, PeriodChangeRunsOnlyTheCurveThatUsesIt) {
    PriceChartOf(200);
    ASSERT_EQ(CreateAnalysisChart("RMA"), 1);
    Chart& rma = *made.back();
    const double* close = SourceAt(rma.sourceSlot)->columns->close;
    const double curve0 = rma.modelSeries->slot[0][150];
    rma.analysisParams->period[1] = 50;
    rma.analysisParams->period[2] = 7;
    RecomputeAfterPeriodChange(rma, 2);
    std::vector<double> expected(MaxRows);
    ComputeRMA(close, expected.data(), 200, 7);
    EXPECT_EQ(rma.modelSeries->slot[1][150], expected[150]);
    EXPECT_EQ(rma.modelSeries->slot[0][150], curve0); // period 1 changed but not selected
}

} // namespace
} // namespace velorin
