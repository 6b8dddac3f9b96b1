#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "rendering/scale.h"
#include "tests/rendering/paint_setup.h"
#include "tests/support/chart_fixture.h"

namespace velorin {
namespace {

using namespace velorin::testing;

std::pair<double, double> RangeOf(const Chart& chart, int right = 400) {
    ChartScale s = MakeChartScale(right, 300);
    FindValueRange(chart, s);
    return {s.valueMin, s.valueMax};
}

TEST(ValueRange, PriceIsPaddedAndCandlesBringInHighLowOpenAndGaps) {
    ChartFixture f("Price", LayoutPlain, 30); // closes 100..129, highs and lows 1 either side
    EXPECT_EQ(RangeOf(f.chart()), std::pair(100.0 - 0.001, 129.0 + 0.001));
    f.chart().view->showLine = 0;
    f.chart().view->showCandle = 1;
    EXPECT_EQ(RangeOf(f.chart()), std::pair(99.0 - 0.001, 130.0 + 0.001));
    f.columns().open[4] = 2.0;
    EXPECT_DOUBLE_EQ(RangeOf(f.chart()).first, 2.0 - 0.001);
    f.columns().low[5] = GAP; // a gap in a price column is taken as a value
    EXPECT_DOUBLE_EQ(RangeOf(f.chart()).first, GAP - 0.001);
}

TEST(ValueRange, CurvesSkipGapsUnpaddedAndEndsFinishOnTheFractionGrid) {
    ChartFixture f("RSI", LayoutOneCurve, 30);
    EXPECT_EQ(RangeOf(f.chart()), std::pair(0.0, 1.0)); // an empty curve
    ChartFixture::Fill(f.model(0), {GAP, 30.0, 70.0, GAP});
    EXPECT_EQ(RangeOf(f.chart()), std::pair(30.0, 70.0));
    // Outward on the 1/D grid, negative ends toward zero; ends that land on
    // one grid point, or an empty whole-number range, get one step.
    const std::tuple<int, double, double, double, double> cases[] = {
        {32, 100.01, 100.49, 100.0, 100.5},
        {8, -6.9999, -6.9989, -6.875, -6.75},
        {1, 3.0, 3.0, 3.0, 3.001},
    };
    for (auto [denominator, lo, hi, wantLo, wantHi] : cases) {
        FinishValueRange(denominator, lo, hi);
        EXPECT_DOUBLE_EQ(lo, wantLo) << denominator;
        EXPECT_DOUBLE_EQ(hi, wantHi) << denominator;
    }
}

TEST(ComputeScaleTest, WholeRowTicksAndStretchFrom25RowsButNotTickData) {
    ChartFixture f("Price", LayoutPlain, 25);
    ChartScale s = MakeChartScale(1040, 300);
    f.chart().view->resolution = 8.0; // whole-row resolutions tick every 48 pixels
    ComputeScale(f.chart(), s);
    EXPECT_EQ(s.tickSpacing, 48);
    // 25 rows stretch over 1000 pixels; 24 crowd at the left; ticks never stretch.
    for (auto [rows, tick, P] : {std::tuple{25, 0, 40.0}, {24, 0, 0.25}, {25, 1, 0.25}}) {
        f.chart().rowCount = rows;
        f.source().tick = tick;
        f.chart().view->resolution = 0.25;
        ComputeScale(f.chart(), s);
        EXPECT_DOUBLE_EQ(f.chart().view->resolution, P) << rows << " " << tick;
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
    // The x of a date: row 99 one pixel right of lastBarX, row 90 18 left.
    EXPECT_DOUBLE_EQ(DateTextToX(f.chart(), "R99", lastBarX), 239.0);
    EXPECT_DOUBLE_EQ(DateTextToX(f.chart(), "R90", lastBarX), 221.0);
    EXPECT_DOUBLE_EQ(DateTextToX(f.chart(), "nope", lastBarX), 0.0);
}

TEST(PriceScale, FractionalStepsAndLabels) {
    EXPECT_DOUBLE_EQ(PriceScaleStep(0.01, 8, 32), 1.0 / 32); // never below one grid step
    EXPECT_DOUBLE_EQ(PriceScaleStep(0.55, 8, 32), 2.0 / 32); // 0.06875 truncates to 2/32
    EXPECT_DOUBLE_EQ(PriceScaleStep(3.3, 2, 1), 1.65);
    const std::tuple<double, int, const char*> cases[] = {{102.25, 32, "102-8"},
                                                          {-3.25, 32, "-3--8"},
                                                          {102.0, 32, "102"},
                                                          {102.5, 1, "102.500"},
                                                          {1234.56789, 1, "1234.56"}};
    for (auto [value, denominator, text] : cases) {
        char label[64];
        FormatPriceLabel(value, denominator, label);
        EXPECT_STREQ(label, text);
    }
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
    const Colour grid = 0x123456;
    DrawPriceTicks(f.chart(), dev, s, grid);
    // 20, 15, 10 by the loop, then valueMin once more without a tick.
    EXPECT_EQ(dev.Texts(), (std::vector<std::string>{"20.0000", "15.0000", "10.0000", "10.0000"}));
    EXPECT_EQ(dev.OpsOf(DrawOpKind::Text)[1].y1, 70 - LabelRaise);
    auto lines = dev.OpsOf(DrawOpKind::LineTo);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(BoxOf(lines[1]), (Box{39, 70, 43, 70}));
    EXPECT_EQ(lines[1].pen.colour, grid);
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
    // rows, P, right, labels, ticks (-1: not checked)
    const std::tuple<int, double, int, std::vector<std::string>, int> cases[] = {
        // Full window at P 2: the loop runs to p = W in rows, so ticks go on
        // past the right edge without labels.
        {200, 2.0, 139, {"R150", "R175"}, 4},
        {10, 2.0, 140, {"R0"}, 3}, // data short of the window: labels only where rows exist
        // Below one pixel a row the labels count from the data's beginning
        // even though the window shows rows 800 on.
        {1000, 0.5, 140, {"R0", "R100", "R200"}, -1},
        {100, 50.0, 240, {"R96", "R97", "R98", "R99"}, -1}, // a label on every row
    };
    for (const auto& [n, P, right, labels, ticks] : cases) {
        RecordingDevice dev;
        f.chart().view->resolution = P;
        DrawTimeTicks(f.chart(), f.columns().dateText, dev, MakeChartScale(right, 300), AlignCentre,
                      P, n, 0);
        EXPECT_EQ(dev.Texts(), labels) << n << " " << P;
        if (ticks >= 0) {
            EXPECT_EQ(dev.OpsOf(DrawOpKind::LineTo).size(), size_t(ticks));
        }
    }
}

} // namespace
} // namespace velorin
