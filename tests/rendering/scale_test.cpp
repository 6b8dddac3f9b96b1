#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "chart_fixture.h"
#include "rendering/recording_device.h"
#include "rendering/scale.h"

namespace velorin {
namespace {

using testing::ChartFixture;
using testing::GAP;

struct Visit {
    int row;
    int x;
};

std::vector<Visit> Shown(int n, int W, double P) {
    std::vector<Visit> out;
    ForEachShownRow(n, W, P, [&](int row, double off) {
        out.push_back({row, TruncatePixel(ScaleWidth + off)});
    });
    return out;
}

TEST(ShownRows, FullWindowEndsAtLastRowNearRightEdge) {
    // 100 rows, 50 pixels at 1 pixel a row: rows 50..99 at x 40..89.
    auto v = Shown(100, 50, 1.0);
    ASSERT_EQ(v.size(), 50u);
    EXPECT_EQ(v.front().row, 50);
    EXPECT_EQ(v.front().x, 40);
    EXPECT_EQ(v.back().row, 99);
    EXPECT_EQ(v.back().x, 89);
    // Half a pixel a row: the window starts at row 300 - 200 = 100.
    v = Shown(300, 100, 0.5);
    ASSERT_EQ(v.size(), 200u);
    EXPECT_EQ(v.front().row, 100);
    EXPECT_EQ(v.back().row, 299);
    EXPECT_EQ(v.back().x, 139); // 40 + 199 x 0.5 truncated
}

TEST(ShownRows, ShortDataStartsAtLeftEdge) {
    auto v = Shown(10, 100, 2.0);
    ASSERT_EQ(v.size(), 10u);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(v[i].row, i);
        EXPECT_EQ(v[i].x, 40 + 2 * i);
    }
    // A fractional start position truncates to its row.
    v = Shown(100, 75, 2.0); // 100 - 37.5 = 62.5
    EXPECT_EQ(v.front().row, 62);
    EXPECT_EQ(v[1].row, 63);
    EXPECT_EQ(v.back().row, 99);
}

TEST(ValueRange, PriceIsPaddedAndFlatCloseGetsTinyRange) {
    ChartFixture f("Price", LayoutPlain, 30);
    for (int i = 0; i < 30; ++i)
        f.columns().close[i] = f.columns().open[i] = f.columns().high[i] = f.columns().low[i] = 5.0;
    ChartScale s = MakeChartScale(400, 300);
    FindValueRange(f.chart(), s);
    EXPECT_DOUBLE_EQ(s.valueMin, 5.0 - 0.001);
    EXPECT_DOUBLE_EQ(s.valueMax, 5.0 + 0.001);

    // Candles bring in high, low and open; a gap in a price column is taken
    // as a value.
    f.chart().view->showLine = 0;
    f.chart().view->showCandle = 1;
    f.columns().high[3] = 9.0;
    f.columns().low[4] = 2.0;
    s = MakeChartScale(400, 300);
    FindValueRange(f.chart(), s);
    EXPECT_DOUBLE_EQ(s.valueMax, 9.001);
    EXPECT_DOUBLE_EQ(s.valueMin, 1.999);
    f.columns().close[5] = GAP;
    s = MakeChartScale(400, 300);
    FindValueRange(f.chart(), s);
    EXPECT_DOUBLE_EQ(s.valueMin, GAP - 0.001);
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

TEST(ValueRange, CurvesSkipGapsAndEmptyCurveGivesZeroToOne) {
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
}

TEST(ValueRange, FractionalGridFinish) {
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

TEST(ComputeScaleTest, StepsByHeightAndTickSpacing) {
    EXPECT_EQ(PriceStepsForHeight(100), 1);
    EXPECT_EQ(PriceStepsForHeight(101), 2);
    EXPECT_EQ(PriceStepsForHeight(500), 8);
    EXPECT_EQ(PriceStepsForHeight(801), 16);

    ChartFixture f("Price", LayoutPlain, 10);
    for (double P : {4.0, 8.0, 16.0, 50.0, 2.0}) {
        f.chart().view->resolution = P;
        ChartScale s = MakeChartScale(400, 300);
        FindValueRange(f.chart(), s);
        ComputeScale(f.chart(), s);
        EXPECT_EQ(s.tickSpacing, (P == 50.0 || P == 2.0) ? 50 : 48) << P;
        EXPECT_DOUBLE_EQ(s.pixelsPerValue, 260.0 / s.valueRange);
    }
}

TEST(ComputeScaleTest, StretchFrom25RowsButNotTickData) {
    ChartFixture f("Price", LayoutPlain, 25);
    f.chart().view->resolution = 0.25;
    ChartScale s = MakeChartScale(1040, 300);
    ComputeScale(f.chart(), s);
    EXPECT_DOUBLE_EQ(f.chart().view->resolution, 1000.0 / 25);

    f.chart().rowCount = 24; // crowds at the left instead
    f.chart().view->resolution = 0.25;
    ComputeScale(f.chart(), s);
    EXPECT_DOUBLE_EQ(f.chart().view->resolution, 0.25);

    f.chart().rowCount = 25;
    f.source().tick = 1;
    ComputeScale(f.chart(), s);
    EXPECT_DOUBLE_EQ(f.chart().view->resolution, 0.25);
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

    const double y = ValueToY(300, 20, 2.5, 10.0, 50.0);
    EXPECT_DOUBLE_EQ(y, 180.0);
    EXPECT_DOUBLE_EQ(YToValue(300, 20, 2.5, 10.0, 180), 50.0);
}

TEST(PriceScale, FractionalStepsAndLabels) {
    EXPECT_DOUBLE_EQ(PriceScaleStep(0.5, 8, 32), 2.0 / 32);
    EXPECT_DOUBLE_EQ(PriceScaleStep(0.01, 8, 32), 1.0 / 32);
    EXPECT_DOUBLE_EQ(PriceScaleStep(0.55, 8, 32), 2.0 / 32); // 0.06875 truncates to 2/32
    EXPECT_DOUBLE_EQ(PriceScaleStep(3.3, 2, 1), 1.65);
    char label[64];
    FormatPriceLabel(102.25, 32, label);
    EXPECT_STREQ(label, "102-8");
    FormatPriceLabel(-3.25, 32, label);
    EXPECT_STREQ(label, "-3--8");
    FormatPriceLabel(102.0, 32, label);
    EXPECT_STREQ(label, "102");
    FormatPriceLabel(102.5, 1, label);
    EXPECT_STREQ(label, "102.500");
    FormatPriceLabel(1234.56789, 1, label);
    EXPECT_STREQ(label, "1234.56");
}

TEST(PriceScale, LabelsTicksAndClosingMinimumLabel) {
    ChartFixture f("Price", LayoutPlain, 30);
    RecordingDevice dev;
    ChartScale s = MakeChartScale(400, 140); // 100 pixels of plot
    s.valueMin = 10.0;
    s.valueMax = 20.0;
    s.valueRange = 10.0;
    s.pixelsPerValue = 10.0;
    s.priceSteps = 2;
    DrawPriceTicks(f.chart(), dev, s);
    // 20, 15, 10 by the loop, then valueMin once more without a tick.
    EXPECT_EQ(dev.Texts(), (std::vector<std::string>{"20.0000", "15.0000", "10.0000", "10.0000"}));
    auto texts = dev.OpsOf(DrawOpKind::Text);
    EXPECT_EQ(texts[0].y1, 20 - LabelRaise);
    EXPECT_EQ(texts[1].y1, 70 - LabelRaise);
    auto lines = dev.OpsOf(DrawOpKind::LineTo);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[1].x1, 39);
    EXPECT_EQ(lines[1].x2, 43);
    EXPECT_EQ(lines[1].y2, 70);

    // With the grid on the scale draws grid lines across the plot instead.
    dev.Clear();
    f.chart().view->gridOn = 1;
    DrawPriceScale(f.chart(), dev, s);
    lines = dev.OpsOf(DrawOpKind::LineTo);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0].x1, 40);
    EXPECT_EQ(lines[0].x2, 400);

    // A fractional scale writes no closing label.
    dev.Clear();
    f.chart().priceScaleDenominator = 4;
    s.valueMax = 11.0;
    s.valueRange = 1.0;
    DrawPriceTicks(f.chart(), dev, s);
    EXPECT_EQ(dev.Texts(), (std::vector<std::string>{"11", "10-2", "10"}));
}

std::vector<std::string> TimeLabels(ChartFixture& f, int n, double P, int right, int* ticks) {
    RecordingDevice dev;
    f.chart().view->resolution = P;
    ChartScale s = MakeChartScale(right, 300);
    DrawTimeTicks(f.chart(), f.columns().dateText, dev, s, AlignCentre, P, n);
    *ticks = static_cast<int>(dev.OpsOf(DrawOpKind::LineTo).size());
    for (const DrawOp& op : dev.OpsOf(DrawOpKind::Text)) {
        EXPECT_EQ(op.align, AlignCentre);
        EXPECT_EQ(op.y1, 300 - 15);
    }
    return dev.Texts();
}

TEST(TimeScale, ThreeCases) {
    ChartFixture f("Price", LayoutPlain, 1000);
    int ticks = 0;
    // Full window at P 2: the loop runs to p = W in rows, so ticks go on
    // past the right edge without labels.
    auto labels = TimeLabels(f, 200, 2.0, 139, &ticks);
    EXPECT_EQ(labels, (std::vector<std::string>{"R150", "R175"}));
    EXPECT_EQ(ticks, 4);
    // Data short of the window: rows from 0, only where rows exist.
    labels = TimeLabels(f, 10, 2.0, 140, &ticks);
    EXPECT_EQ(labels, (std::vector<std::string>{"R0"}));
    EXPECT_EQ(ticks, 3);
    // Below one pixel a row the labels count from the data's beginning
    // even though the window shows rows 800 on.
    labels = TimeLabels(f, 1000, 0.5, 140, &ticks);
    EXPECT_EQ(labels, (std::vector<std::string>{"R0", "R100", "R200"}));
    // At 50 pixels a row a label falls on every row.
    labels = TimeLabels(f, 100, 50.0, 240, &ticks);
    EXPECT_EQ(labels, (std::vector<std::string>{"R96", "R97", "R98", "R99"}));
}

} // namespace
} // namespace velorin
