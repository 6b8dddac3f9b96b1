#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "analysis/moving_averages.h"
#include "analysis/oscillators.h"
#include "chart_model/analysis_chart.h"
#include "desk_fixture.h"

namespace velorin {
namespace {

class AnalysisCharts : public testing::DeskTest {
  protected:
    int Refs() const { return SourceAt(desk.front->sourceSlot)->refCount; }
    Chart& Last() { return *desk.made.back(); }
};

TEST_F(AnalysisCharts, RowMinimaAndVolumeGuardsSayTheirWordsAndLeaveNothing) {
    const char* insufficient = "Insufficient data";
    const char* discipline = "QDX-Velorin Trading Discipline";
    const char* noVolume = "No Volume Data Available";
    const struct {
        int rows;
        bool fullColumns;
        const char* kind;
        const char* message; // nullptr: the window opens
        const char* caption;
    } guards[] = {
        {24, true, "Price", nullptr, nullptr},
        {24, true, "Volume", nullptr, nullptr},
        {24, true, "RMA", insufficient, discipline},
        {24, true, "Swing Charting", insufficient, discipline},
        {24, false, "OBV", insufficient, discipline}, // the row test comes first
        {25, true, "RMA", nullptr, nullptr},
        {60, true, "Stochastics", "Insufficient data for Stochastics Analysis", discipline},
        {61, true, "Stochastics", nullptr, nullptr},
        {75, true, "Predictor", "Insufficient data for Time Series Analysis", discipline},
        {76, true, "Predictor", nullptr, nullptr},
        {250, true, "Fibonacci", "Insufficient data for Fibonacci Analysis", discipline},
        {251, true, "Fibonacci", nullptr, nullptr},
        {40, false, "Volume", noVolume, "QDX-Velorin"},
        {40, false, "Tic Volume", noVolume, "QDX-Velorin"},
        {40, false, "OBV", noVolume, "QDX-Velorin"},
        {40, false, "RVI", noVolume, "QDX-Velorin"},
        {40, false, "RSI", nullptr, nullptr},
        {40, true, "No Such Kind",
         "Memory Allocation For New Window failed - Please close some windows", "QDX-Velorin"},
    };
    for (const auto& g : guards) {
        SCOPED_TRACE(std::string(g.kind) + " at " + std::to_string(g.rows));
        seam.Clear();
        PriceChartOf(g.rows, g.fullColumns);
        const int refs = Refs();
        const int charts = deskRegistry.chartCount;
        const int result = CreateAnalysisChart(g.kind);
        if (g.message) {
            EXPECT_EQ(result, 0);
            ASSERT_EQ(seam.MessageCount(), 1u);
            EXPECT_EQ(seam.LastText(), g.message);
            EXPECT_EQ(seam.messages[0].caption, g.caption);
            EXPECT_EQ(Refs(), refs);
            EXPECT_EQ(deskRegistry.chartCount, charts);
        } else {
            EXPECT_EQ(result, 1);
            EXPECT_EQ(seam.MessageCount(), 0u);
            EXPECT_EQ(Refs(), refs + 1);
            EXPECT_EQ(deskRegistry.chartCount, charts + 1);
            EXPECT_STREQ(Last().kindName, g.kind);
        }
    }
    // A volume column of the "no volume" marker counts as none.
    PriceChartOf(40);
    SourceAt(desk.front->sourceSlot)->columns->volume[0] = NO_VOLUME_MARKER;
    EXPECT_EQ(CreateAnalysisChart("OBV"), 0);
    EXPECT_EQ(seam.LastText(), noVolume);
}

TEST_F(AnalysisCharts, NoChartOrACompanionViewInFront) {
    EXPECT_EQ(CreateAnalysisChart("RSI"), 0);
    EXPECT_EQ(seam.LastText(), "Non Existent Connection To Data source");
    PriceChartOf(40);
    std::snprintf(desk.front->kindName, sizeof desk.front->kindName, "Levels View");
    EXPECT_EQ(CreateAnalysisChart("RSI"), 0);
    EXPECT_EQ(seam.LastText(), "Please Select Chart");
    seam.Clear(); // a batch run says nothing, and still fails
    EXPECT_EQ(CreateAnalysisChart("RSI", CreationMode::InBatch()), 0);
    EXPECT_EQ(seam.MessageCount(), 0u);
}

TEST_F(AnalysisCharts, DefaultPeriodsFollowTheRowCount) {
    const int cases[][4] = {{45, 5, 10, 20}, {46, 5, 20, 40}, {75, 5, 20, 40}, {76, 5, 30, 60}};
    for (const auto& c : cases) {
        for (const char* kind : {"RMA", "Stdev"}) {
            PriceChartOf(c[0]);
            ASSERT_EQ(CreateAnalysisChart(kind), 1);
            const std::int32_t* p = Last().analysisParams->period;
            EXPECT_EQ(std::vector<int>({p[1], p[2], p[3]}), std::vector<int>({c[1], c[2], c[3]}))
                << kind << " " << c[0];
        }
    }
}

TEST_F(AnalysisCharts, AnAnalysisOfAnAnalysisReadsTheSourceClose) {
    PriceChartOf(120);
    ASSERT_EQ(CreateAnalysisChart("RMA"), 1);
    desk.front = &Last(); // the moving average is now in front
    ASSERT_EQ(CreateAnalysisChart("RSI"), 1);
    const Chart& rsi = Last();
    EXPECT_EQ(rsi.kind, 6);
    std::vector<double> expected(MaxRows);
    ComputeRSI(SourceAt(rsi.sourceSlot)->columns->close, expected.data(), 120, 14);
    for (int r = 0; r < 120; ++r)
        ASSERT_EQ(rsi.modelSeries->slot[0][r], expected[static_cast<std::size_t>(r)]) << r;
    EXPECT_STREQ(rsi.windowCaption, "RSI ACME 1/1/07 - 5/8/07");
    EXPECT_EQ(Refs(), 3);
}

// Every curve a kind draws is filled by the kind's engines.
TEST_F(AnalysisCharts, EveryDrawnCurveGetsValues) {
    int count = 0;
    const ChartKindInfo* kinds = ChartKinds(&count);
    PriceChartOf(300);
    for (int i = 0; i < count; ++i) {
        const ChartKindInfo& k = kinds[i];
        if (!k.runEngines || !k.curves) continue;
        SCOPED_TRACE(k.kindName);
        ASSERT_EQ(CreateAnalysisChart(k.kindName), 1);
        for (int c = 0; c < k.curves->curveCount; ++c) {
            const double* s = Last().modelSeries->slot[k.curves->curves[c].modelCurve];
            int filled = 0;
            for (int r = 250; r < 300; ++r)
                filled += s[r] != 0.0 && s[r] != MISSING_VALUE;
            EXPECT_GT(filled, 0) << "curve " << c;
        }
    }
}

TEST_F(AnalysisCharts, BatchRunsTakeTheDefaultLookAndPredictorTheSourceTerm) {
    Chart* price = PriceChartOf(300);
    price->view->resolution = 8.0;
    price->predictorShort = 0;
    price->predictorMedium = 1;
    ASSERT_EQ(CreateAnalysisChart("Predictor"), 1);
    EXPECT_EQ(Last().analysisParams->period[1], 20);
    EXPECT_EQ(Last().view->resolution, 8.0);
    chartDefaults.defaultResolution = 2.0;
    chartDefaults.defaultShowLine = 0;
    chartDefaults.defaultShowCandle = 1;
    ASSERT_EQ(CreateAnalysisChart("WMA", CreationMode::InBatch()), 1);
    EXPECT_EQ(Last().view->resolution, 2.0);
    EXPECT_EQ(Last().view->showCandle, 1);
    EXPECT_EQ(Last().view->showLine, 0);
    EXPECT_EQ(desk.requests.back().placement, WindowPlacement::FillClient);
}

class StoredRow : public LayoutRowReader {
  public:
    double Resolution(int) const override { return 2.0; }
    void Rectangle(int, int* x, int* y, int* w, int* h) const override {
        *x = 10, *y = 20, *w = 300, *h = 200;
    }
    void CopyDrawnObjects(int, Chart* chart) const override {
        chart->drawings->verticalLines->inUse[2] = 1;
    }
    void Parameters(int, double* a, double* b, double* c) const override {
        *a = 9.7, *b = 3.2, *c = 9.0; // the writer stores the third period, equal to the first
    }
    int PriceScale(int) const override { return 32; }
    void View(int, ChartView* view) const override { view->resolution = 16.0; }
};

TEST_F(AnalysisCharts, ARestoredLayoutRowGivesParametersRectangleAndObjects) {
    const struct {
        const char* kind;
        std::vector<int> periods; // 1 to 4
        std::vector<double> smoothing;
    } cases[] = {
        {"Stochastics", {9, 3, 9, 9}, {0, 0, 0}}, // the third value is the fourth period
        {"RMA", {9, 3, 9, 0}, {0, 0, 0}},          {"RSI", {9, 0, 0, 0}, {0, 0, 0}},
        {"ESMA", {0, 0, 0, 0}, {9.7, 0, 0}},       {"MACD", {0, 0, 0, 0}, {9.7, 3.2, 9.0}},
        {"Trend", {0, 0, 0, 0}, {11, 0, 0}},    // the defaults stay
        {"Predictor", {5, 0, 0, 0}, {0, 0, 0}}, // a restored predictor is on the short term
        {"Fibonacci", {8, 13, 21, 34}, {0, 0, 0}},
    };
    PriceChartOf(300)->predictorMedium = 1;
    desk.front->predictorShort = 0;
    const StoredRow row;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.kind);
        ASSERT_EQ(CreateAnalysisChart(c.kind, CreationMode::Restore(row, 4)), 1);
        const Chart& ch = Last();
        const std::int32_t* p = ch.analysisParams->period;
        EXPECT_EQ(std::vector<int>({p[1], p[2], p[3], p[4]}), c.periods);
        EXPECT_EQ(std::vector<double>(ch.smoothing, ch.smoothing + 3), c.smoothing);
    }
    const Chart& last = Last();
    EXPECT_EQ(last.priceScaleDenominator, 32);
    EXPECT_EQ(last.anchorsPending, 1);
    EXPECT_EQ(last.predictorShort, 1);
    EXPECT_EQ(last.drawings->verticalLines->inUse[2], 1);
    EXPECT_EQ(last.view->resolution, 16.0);
    EXPECT_EQ(desk.requests.back().placement, WindowPlacement::Given);
    EXPECT_EQ(desk.requests.back().width, 300);
}

TEST_F(AnalysisCharts, RecomputeRefreshesTheTitleAndRunsEnginesFromTheRowTest) {
    DataSource* s = SourceAt(PriceChartOf(100)->sourceSlot);
    ASSERT_EQ(CreateAnalysisChart("Stochastics"), 1);
    ASSERT_EQ(CreateAnalysisChart("Swing Charting"), 1);
    Chart& st = *desk.made[desk.made.size() - 2];
    Chart& swing = Last();
    const double before = st.modelSeries->slot[0][80];
    for (int r = 0; r < 100; ++r)
        s->columns->close[r] += 50.0 * (r % 3); // a different history
    st.rowCount = 60;
    swing.rowCount = 30;
    RecomputeChart(5, st);
    RecomputeChart(6, swing);
    EXPECT_EQ(st.modelSeries->slot[0][80], before); // below 61 rows: no engine, but a repaint
    EXPECT_STREQ(st.windowCaption, "Stochastics ACME 1/1/07 - 3/4/07");
    // A kind of two words pushes the item out of the title.
    EXPECT_STREQ(swing.chartTitle, "Charting 1/1/07 - 2/2/07");
    EXPECT_STREQ(swing.windowCaption, "Swing Charting 1/1/07 - 2/2/07");
    EXPECT_EQ(desk.invalidated, (std::vector<WindowId>{5, 6}));

    st.rowCount = 61;
    s->filtered = 1;
    std::snprintf(st.windowCaption, sizeof st.windowCaption,
                  "Filtered Stochastics ACME 1/1/07 - x");
    RecomputeChart(5, st);
    EXPECT_NE(st.modelSeries->slot[0][80], before);
    EXPECT_STREQ(st.chartTitle, "ACME 1/1/07 - 3/5/07");
    EXPECT_STREQ(st.windowCaption, "Filtered Stochastics ACME 1/1/07 - 3/5/07");
}

TEST_F(AnalysisCharts, PeriodChangeRunsOnlyTheCurveThatUsesIt) {
    PriceChartOf(200);
    const double* close = SourceAt(desk.front->sourceSlot)->columns->close;
    std::vector<double> expected(MaxRows);
    for (const char* kind : {"RMA", "Stdev"}) {
        SCOPED_TRACE(kind);
        ASSERT_EQ(CreateAnalysisChart(kind), 1);
        Chart& c = Last();
        const double curve0 = c.modelSeries->slot[0][150];
        c.analysisParams->period[1] = 50;
        c.analysisParams->period[2] = 7;
        RecomputeAfterPeriodChange(c, 2);
        (kind[0] == 'R' ? ComputeRMA : ComputeStdev)(close, expected.data(), 200, 7);
        EXPECT_EQ(c.modelSeries->slot[1][150], expected[150]);
        EXPECT_EQ(c.modelSeries->slot[0][150], curve0); // period 1 changed but not selected
    }
    // OBV keeps a period no engine reads: nothing runs.
    ASSERT_EQ(CreateAnalysisChart("OBV"), 1);
    const double obv = Last().modelSeries->slot[0][150];
    SourceAt(desk.front->sourceSlot)->columns->volume[150] += 1000.0;
    RecomputeAfterPeriodChange(Last(), 1);
    EXPECT_EQ(Last().modelSeries->slot[0][150], obv);
}

} // namespace
} // namespace velorin
