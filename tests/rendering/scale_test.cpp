#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rendering/scale.h"
#include "tests/rendering/paint_setup.h"
#include "tests/support/chart_fixture.h"

namespace velorin {
namespace {

using testing::ChartFixture;
using testing::GAP;

TEST(ValueRange, PriceIsPaddedAndFlatCloseGetsTinyRange) {
    ChartFixture f("Price", LayoutPlain, 30);
    for (int i = 0; i < 30; ++i)
        f.columns().close[i] = f.columns().open[i] = f.columns().high[i] = f.columns().low[i] = 5.0;
    auto range = [&] {
        ChartScale s = MakeChartScale(400, 300);
        FindValueRange(f.chart(), s);
        return std::pair{s.valueMin, s.valueMax};
    };
    EXPECT_EQ(range(), std::pair(5.0 - 0.001, 5.0 + 0.001));
    // Candles bring in high, low and open; a gap in a price column is taken
    // as a value.
    f.chart().view->showLine = 0;
    f.chart().view->showCandle = 1;
    f.columns().high[3] = 9.0;
    f.columns().low[4] = 2.0;
    EXPECT_EQ(range(), std::pair(2.0 - 0.001, 9.0 + 0.001));
    f.columns().close[5] = GAP;
    EXPECT_DOUBLE_EQ(range().first, GAP - 0.001);
}

TEST(ValueRange, TestUsesClientWidthButSpanUsesPlotWidth) {
    // right 100, W 60, P 1. With 70 rows 70 - 100 < 0: every row is taken,
    // also rows 0..9 that are off screen.
    ChartFixture f("Price", LayoutPlain, 110);
    f.columns().close[0] = 500.0;
    f.chart().rowCount = 70;
    ChartScale s = MakeChartScale(100, 300);
    FindValueRange(f.chart(), s);
    EXPECT_DOUBLE_EQ(s.valueMax, 500.001);
    // With 110 rows the span starts at 110 - 60 = 50 and row 0 is out.
    f.chart().rowCount = 110;
    s = MakeChartScale(100, 300);
    FindValueRange(f.chart(), s);
    EXPECT_DOUBLE_EQ(s.valueMin, 150.0 - 0.001);
    EXPECT_DOUBLE_EQ(s.valueMax, 209.0 + 0.001);
}

TEST(ValueRange, CurvesSkipGapsEmptyCurveGivesZeroToOneFractionsFinishOnGrid) {
    ChartFixture f("RSI", LayoutOneCurve, 30);
    ChartScale s = MakeChartScale(400, 300);
    FindValueRange(f.chart(), s);
    EXPECT_EQ(s.valueMin, 0.0);
    EXPECT_EQ(s.valueMax, 1.0);
    ChartFixture::Fill(f.model(0), {GAP, 30.0, 70.0, GAP});
    s = MakeChartScale(400, 300);
    FindValueRange(f.chart(), s);
    EXPECT_EQ(s.valueMin, 30.0); // not padded, gaps ignored
    EXPECT_EQ(s.valueMax, 70.0);

    double lo = 100.01, hi = 100.49;
    FinishValueRange(32, lo, hi);
    EXPECT_DOUBLE_EQ(lo, 100.0);
    EXPECT_DOUBLE_EQ(hi, 100.5);
    // Negative ends move toward zero on the grid; when both land on the
    // same grid point the range becomes one grid step.
    lo = -6.9999;
    hi = -6.9989;
    FinishValueRange(8, lo, hi);
    EXPECT_DOUBLE_EQ(lo, -6.875);
    EXPECT_DOUBLE_EQ(hi, -6.75);
}

TEST(ComputeScaleTest, TickSpacingAndStretchFrom25RowsButNotTickData) {
    ChartFixture f("Price", LayoutPlain, 10);
    for (double P : {4.0, 8.0, 16.0, 50.0, 2.0}) {
        f.chart().view->resolution = P;
        ChartScale s = MakeChartScale(400, 300);
        FindValueRange(f.chart(), s);
        ComputeScale(f.chart(), s);
        EXPECT_EQ(s.tickSpacing, (P == 50.0 || P == 2.0) ? 50 : 48) << P;
    }

    ChartFixture g("Price", LayoutPlain, 25);
    ChartScale s = MakeChartScale(1040, 300);
    // 25 rows stretch over 1000 pixels; 24 crowd at the left; ticks never stretch.
    for (auto [rows, tick, P] : {std::tuple{25, 0, 40.0}, {24, 0, 0.25}, {25, 1, 0.25}}) {
        g.chart().rowCount = rows;
        g.source().tick = tick;
        g.chart().view->resolution = 0.25;
        ComputeScale(g.chart(), s);
        EXPECT_DOUBLE_EQ(g.chart().view->resolution, P) << rows << " " << tick;
    }
}

TEST(RowsAndPixels, ReadoutRowIsOneLeftOfObjectRow) {
    ChartFixture f("Price", LayoutPlain, 100);
    f.chart().view->resolution = 2.0;
    const int lastBarX = 238;
    EXPECT_EQ(ObjectRowAtX(100, 2.0, 238, lastBarX), 99);  // 100 - 0.5
    EXPECT_EQ(ReadoutRowAtX(100, 2.0, 238, lastBarX), 98); // 100 - 0.5 - 1
    char date[DateTextSize];
    XToDateText(f.chart(), 238, lastBarX, date);
    EXPECT_STREQ(date, "R98");
    XToDateText(f.chart(), 5000, lastBarX, date);
    EXPECT_STREQ(date, "");
    // The x of a date: row 99 one pixel right of lastBarX, row 90 18 left.
    EXPECT_DOUBLE_EQ(DateTextToX(f.chart(), "R99", lastBarX), 239.0);
    EXPECT_DOUBLE_EQ(DateTextToX(f.chart(), "R90", lastBarX), 221.0);
    EXPECT_DOUBLE_EQ(DateTextToX(f.chart(), "nope", lastBarX), 0.0);
    EXPECT_DOUBLE_EQ(ValueToY(300, 20, 2.5, 10.0, 50.0), 180.0);
    EXPECT_DOUBLE_EQ(YToValue(300, 20, 2.5, 10.0, 180), 50.0);
}

TEST(PriceScale, FractionalStepsAndLabels) {
    EXPECT_DOUBLE_EQ(PriceScaleStep(0.5, 8, 32), 2.0 / 32);
    EXPECT_DOUBLE_EQ(PriceScaleStep(0.01, 8, 32), 1.0 / 32);
    EXPECT_DOUBLE_EQ(PriceScaleStep(0.55, 8, 32), 2.0 / 32); // 0.06875 truncates to 2/32
    EXPECT_DOUBLE_EQ(PriceScaleStep(3.3, 2, 1), 1.65);
    const std::pair<double, int> values[] = {
        {102.25, 32}, {-3.25, 32}, {102.0, 32}, {102.5, 1}, {1234.56789, 1}};
    const char* labels[] = {"102-8", "-3--8", "102", "102.500", "1234.56"};
    for (int i = 0; i < 5; ++i) {
        char label[64];
        FormatPriceLabel(values[i].first, values[i].second, label);
        EXPECT_STREQ(label, labels[i]);
    }
}

TEST(PriceScale, LabelsTicksGridAndClosingMinimumLabel) {
    ChartFixture f("Price", LayoutPlain, 30);
    RecordingDevice dev;
    ChartScale s = MakeChartScale(400, 140); // 100 pixels of plot
    s.valueMin = 10.0;
    s.valueMax = 20.0;
    s.valueRange = 10.0;
    s.pixelsPerValue = 10.0;
    s.priceSteps = 2;
    const Colour grid = 0x123456;
    DrawPriceTicks(f.chart(), dev, s, grid);
    // 20, 15, 10 by the loop, then valueMin once more without a tick.
    EXPECT_EQ(dev.Texts(), (std::vector<std::string>{"20.0000", "15.0000", "10.0000", "10.0000"}));
    auto texts = dev.OpsOf(DrawOpKind::Text);
    EXPECT_EQ(texts[0].y1, 20 - LabelRaise);
    EXPECT_EQ(texts[1].y1, 70 - LabelRaise);
    auto lines = dev.OpsOf(DrawOpKind::LineTo);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(testing::BoxOf(lines[1]), (testing::Box{39, 70, 43, 70}));
    EXPECT_EQ(lines[1].pen.colour, grid);

    // With the grid on the scale draws grid lines across the plot instead.
    dev.Clear();
    f.chart().view->gridOn = 1;
    DrawPriceScale(f.chart(), dev, s, grid);
    lines = dev.OpsOf(DrawOpKind::LineTo);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0].x1, 40);
    EXPECT_EQ(lines[0].x2, 400);

    // A fractional scale writes no closing label.
    dev.Clear();
    f.chart().priceScaleDenominator = 4;
    s.valueMax = 11.0;
    s.valueRange = 1.0;
    DrawPriceTicks(f.chart(), dev, s, grid);
    EXPECT_EQ(dev.Texts(), (std::vector<std::string>{"11", "10-2", "10"}));
}

TEST(TimeScale, FullShortAndFractionalWindows) {
    ChartFixture f("Price", LayoutPlain, 1000);
    struct Case {
        int n;
        double P;
        int right;
        std::vector<std::string> labels;
        int ticks; // -1: not checked
    };
    const Case cases[] = {
        // Full window at P 2: the loop runs to p = W in rows, so ticks go on
        // past the right edge without labels.
        {200, 2.0, 139, {"R150", "R175"}, 4},
        {10, 2.0, 140, {"R0"}, 3}, // data short of the window: labels only where rows exist
        // Below one pixel a row the labels count from the data's beginning
        // even though the window shows rows 800 on.
        {1000, 0.5, 140, {"R0", "R100", "R200"}, -1},
        {100, 50.0, 240, {"R96", "R97", "R98", "R99"}, -1}, // a label on every row
    };
    for (const Case& c : cases) {
        RecordingDevice dev;
        f.chart().view->resolution = c.P;
        const ChartScale s = MakeChartScale(c.right, 300);
        DrawTimeTicks(f.chart(), f.columns().dateText, dev, s, AlignCentre, c.P, c.n, 0);
        EXPECT_EQ(dev.Texts(), c.labels) << c.n << " " << c.P;
        if (c.ticks >= 0) {
            EXPECT_EQ(static_cast<int>(dev.OpsOf(DrawOpKind::LineTo).size()), c.ticks);
        }
        for (const DrawOp& op : dev.OpsOf(DrawOpKind::Text)) {
            EXPECT_EQ(op.align, AlignCentre);
            EXPECT_EQ(op.y1, 300 - 15);
        }
    }
}

} // namespace
} // namespace velorin
