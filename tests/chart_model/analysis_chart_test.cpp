#include <gtest/gtest.h>

#include <algorithm>
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
    const char* few = "Insufficient data";
    const char* discipline = "QDX-Velorin Trading Discipline";
    const struct {
        int rows;
        bool fullColumns;
        const char *kind, *message, *caption; // message nullptr: the window opens
    } guards[] = {
        {24, true, "RMA", few, discipline},
        {25, true, "RMA", nullptr, nullptr},
        {24, false, "OBV", few, discipline}, // the row test comes first
        {75, true, "Predictor", "Insufficient data for Time Series Analysis", discipline},
        {250, true, "Fibonacci", "Insufficient data for Fibonacci Analysis", discipline},
        {251, true, "Fibonacci", nullptr, nullptr},
        {40, false, "Volume", "No Volume Data Available", "QDX-Velorin"},
        {40, false, "RSI", nullptr, nullptr},
        {40, true, "No Such Kind",
         "Memory Allocation For New Window failed - Please close some windows", "QDX-Velorin"},
    };
    for (const auto& g : guards) {
        SCOPED_TRACE(std::string(g.kind) + " at " + std::to_string(g.rows));
        seam.Clear();
        PriceChartOf(g.rows, g.fullColumns);
        const int refs = Refs(), charts = deskRegistry.chartCount, opens = g.message ? 0 : 1;
        EXPECT_EQ(CreateAnalysisChart(g.kind), opens);
        EXPECT_EQ(Refs(), refs + opens);
        EXPECT_EQ(deskRegistry.chartCount, charts + opens);
        ASSERT_EQ(seam.MessageCount(), 1u - opens);
        if (opens) continue;
        EXPECT_EQ(seam.LastText(), g.message);
        EXPECT_EQ(seam.messages[0].caption, g.caption);
    }
    // A volume column of the "no volume" marker counts as none.
    PriceChartOf(40);
    SourceAt(desk.front->sourceSlot)->columns->volume[0] = NO_VOLUME_MARKER;
    EXPECT_EQ(CreateAnalysisChart("OBV"), 0);
    EXPECT_EQ(seam.LastText(), "No Volume Data Available");
    std::snprintf(desk.front->kindName, sizeof desk.front->kindName, "Levels View");
    EXPECT_EQ(CreateAnalysisChart("RSI"), 0); // a companion view in front
    EXPECT_EQ(seam.LastText(), "Please Select Chart");
}

TEST_F(AnalysisCharts, AnalysesReadTheSourceAndAPeriodChangeRunsOnlyItsCurve) {
    PriceChartOf(200);
    const double* close = SourceAt(desk.front->sourceSlot)->columns->close;
    ASSERT_EQ(CreateAnalysisChart("RMA"), 1);
    Chart& rma = Last();
    desk.front = &rma; // an analysis of the moving average reads the source close
    ASSERT_EQ(CreateAnalysisChart("RSI"), 1);
    std::vector<double> expected(MaxRows);
    ComputeRSI(close, expected.data(), 200, 14);
    EXPECT_TRUE(std::equal(expected.begin(), expected.begin() + 200, Last().modelSeries->slot[0]));
    const double curve0 = rma.modelSeries->slot[0][150];
    rma.analysisParams->period[1] = 50;
    rma.analysisParams->period[2] = 7;
    RecomputeAfterPeriodChange(rma, 2);
    ComputeRMA(close, expected.data(), 200, 7);
    EXPECT_EQ(rma.modelSeries->slot[1][150], expected[150]);
    EXPECT_EQ(rma.modelSeries->slot[0][150], curve0); // period 1 changed but not selected
    // OBV keeps a period no engine reads: nothing runs.
    ASSERT_EQ(CreateAnalysisChart("OBV"), 1);
    const double obv = Last().modelSeries->slot[0][150];
    SourceAt(desk.front->sourceSlot)->columns->volume[150] += 1000.0;
    RecomputeAfterPeriodChange(Last(), 1);
    EXPECT_EQ(Last().modelSeries->slot[0][150], obv);
}

// Every curve a kind draws is filled by the kind's engines.
TEST_F(AnalysisCharts, EveryDrawnCurveGetsValues) {
    int count = 0;
    const ChartKindInfo* kinds = ChartKinds(&count);
    PriceChartOf(300);
    for (const ChartKindInfo& k : std::vector<ChartKindInfo>(kinds, kinds + count)) {
        if (!k.runEngines || !k.curves) continue;
        ASSERT_EQ(CreateAnalysisChart(k.kindName), 1) << k.kindName;
        for (int c = 0; c < k.curves->curveCount; ++c) {
            const double* s = Last().modelSeries->slot[k.curves->curves[c].modelCurve];
            EXPECT_TRUE(std::any_of(s + 250, s + 300,
                                    [](double v) { return v != 0.0 && v != MISSING_VALUE; }))
                << k.kindName << " curve " << c;
        }
    }
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
        {"RMA", {9, 3, 9, 0}, {0, 0, 0}},         {"RSI", {9, 0, 0, 0}, {0, 0, 0}},
        {"ESMA", {0, 0, 0, 0}, {9.7, 0, 0}},      {"MACD", {0, 0, 0, 0}, {9.7, 3.2, 9.0}},
        {"Trend", {0, 0, 0, 0}, {11, 0, 0}},    // the defaults stay
        {"Predictor", {5, 0, 0, 0}, {0, 0, 0}}, // a restored predictor is on the short term
    };
    PriceChartOf(300)->predictorMedium = 1;
    desk.front->predictorShort = 0;
    for (const auto& c : cases) {
        ASSERT_EQ(CreateAnalysisChart(c.kind, CreationMode::Restore(StoredRow(), 4)), 1);
        const std::int32_t* p = Last().analysisParams->period;
        EXPECT_EQ(std::vector<int>(p + 1, p + 5), c.periods) << c.kind;
        EXPECT_EQ(std::vector<double>(Last().smoothing, Last().smoothing + 3), c.smoothing);
    }
    EXPECT_EQ(Last().priceScaleDenominator, 32);
    EXPECT_EQ(Last().anchorsPending, 1);
    EXPECT_EQ(Last().drawings->verticalLines->inUse[2], 1);
    EXPECT_EQ(Last().view->resolution, 16.0);
    EXPECT_EQ(desk.requests.back().placement, WindowPlacement::Given);
    EXPECT_EQ(desk.requests.back().width, 300);
}

TEST_F(AnalysisCharts, RecomputeRefreshesTheTitleAndRunsEnginesFromTheRowTest) {
    DataSource* s = SourceAt(PriceChartOf(100)->sourceSlot);
    ASSERT_EQ(CreateAnalysisChart("Stochastics"), 1);
    Chart& st = Last();
    const double before = st.modelSeries->slot[0][80];
    for (int r = 0; r < 100; ++r)
        s->columns->close[r] += 50.0 * (r % 3); // a different history
    st.rowCount = 60;
    RecomputeChart(5, st);
    EXPECT_EQ(st.modelSeries->slot[0][80], before); // below 61 rows: no engine, but a repaint
    EXPECT_STREQ(st.windowCaption, "Stochastics ACME 1/1/07 - 3/4/07");
    EXPECT_EQ(desk.invalidated, std::vector<WindowId>{5});
    st.rowCount = 61;
    s->filtered = 1; // a filtered chart's caption starts with the word
    std::snprintf(st.windowCaption, sizeof st.windowCaption,
                  "Filtered Stochastics ACME 1/1/07 - x");
    RecomputeChart(5, st);
    EXPECT_NE(st.modelSeries->slot[0][80], before);
    EXPECT_STREQ(st.windowCaption, "Filtered Stochastics ACME 1/1/07 - 3/5/07");
}

} // namespace
} // namespace velorin
