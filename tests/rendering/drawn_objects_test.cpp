#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "chart_fixture.h"
#include "rendering/drawn_objects.h"
#include "rendering/mouse_state.h"
#include "rendering/palette.h"
#include "rendering/price_paint.h"
#include "rendering/recording_device.h"

namespace velorin {
namespace {

using testing::ChartFixture;
using testing::UnitScale;

// 20 rows at one pixel a row on a 400 pixel client: row i at x 40 + i.
ObjectFrame SmallFrame(ChartFixture& f, int firstRowShown = 0) {
    return MakeObjectFrame(f.chart(), UnitScale(400), 59, firstRowShown);
}

TEST(LineEquation, ArctangentOfRiseIsUsedAsRise) {
    ChartFixture f("Price", LayoutPlain, 20);
    f.columns().close[10] = 100.0;
    f.columns().close[11] = 110.0;
    TrendLineSet& t = *f.chart().drawings->trendLines;
    t.inUse[0] = 1;
    t.pointA[0] = {50, 0}; // pixels of rows 10 and 11
    t.pointB[0] = {51, 0};
    ResetChartMouseState();
    chartMouse.trendTool = 1;
    chartMouse.selectedTrend = 0;
    RecordingDevice dev;
    DrawTrendLines(f.chart(), dev, SmallFrame(f), ScaleFont());
    EXPECT_EQ(chartMouse.trendTool, 0);
    EXPECT_EQ(t.pointA[0].x, 10);
    EXPECT_EQ(t.pointB[0].x, 11);
    EXPECT_NEAR(t.slopeAngle[0], 1.4711, 1e-4);
    EXPECT_NEAR(11 * t.slopeAngle[0] + t.baseValue[0], 110.0, 1e-9);
    EXPECT_NEAR(10 * t.slopeAngle[0] + t.baseValue[0], 108.53, 0.005);
}

TEST(LineEquation, FlatOnEqualClosesAndSameRowsSeparated) {
    ChartFixture f("Price", LayoutPlain, 20);
    f.columns().close[3] = 105.0;
    f.columns().close[8] = 105.0;
    const ObjectFrame frame = SmallFrame(f);
    double base = 0;
    EXPECT_EQ(LineThroughRows(frame, false, 3, 8, 0, 0, base), 0.0);
    EXPECT_EQ(base, 105.0);

    // Both clicks on one row: the second point moves a row right. Clicked
    // heights 120 and 100 are values 100 and 120.
    TrendLineSet& t = *f.chart().drawings->trendLines;
    t.freePlaced[0] = 1;
    t.pointA[0] = {45, 120};
    t.pointB[0] = {45, 100};
    DeriveTrendLine(f.chart(), 0, frame);
    EXPECT_EQ(t.pointB[0].x, t.pointA[0].x + 1);
    EXPECT_DOUBLE_EQ(t.slopeAngle[0], std::atan(20.0));
    // A date that is gone gives a row far left; its close stays in bounds.
    EXPECT_EQ(BoundedClose(frame, -500), f.columns().close[0]);
}

TEST(LineEquation, ChannelIsParallelThroughThirdPoint) {
    ChartFixture f("Price", LayoutPlain, 20);
    ChannelSet& c = *f.chart().drawings->channels;
    c.inUse[0] = 1;
    c.pointA[0] = {42, 0}; // rows 2, 12, 5; closes 100 + row
    c.pointB[0] = {52, 0};
    c.pointC[0] = {45, 0};
    f.columns().close[5] = 90.0;
    ResetChartMouseState();
    chartMouse.channelTool = 1;
    chartMouse.selectedChannel = 0;
    RecordingDevice dev;
    DrawChannelLines(f.chart(), dev, SmallFrame(f), ScaleFont());
    const double slope = std::atan(1.0);
    EXPECT_DOUBLE_EQ(c.slopeAngle[0], slope);
    EXPECT_DOUBLE_EQ(c.secondBaseValue[0], 90.0 - 5 * slope);
    EXPECT_NEAR(c.pixelGap[0], std::fabs(c.baseValue[0] - c.secondBaseValue[0]), 1e-9);
    EXPECT_EQ(dev.OpsOf(DrawOpKind::LineTo).size(), 2u);
}

TEST(BreakTest, DottedOnlyWhenExtendedAndCrossedByLastCloses) {
    ChartFixture f("Price", LayoutPlain, 10);
    ObjectFrame frame = MakeObjectFrame(f.chart(), UnitScale(400), 49, 0);
    f.columns().close[7] = 105.0; // n - 3, above the flat line at 100
    f.columns().close[9] = 95.0;  // n - 1, below it
    EXPECT_TRUE(LineIsBroken(frame, true, 0.0, 100.0));
    EXPECT_FALSE(LineIsBroken(frame, false, 0.0, 100.0));
    f.columns().close[9] = 104.0; // still above: not crossed
    EXPECT_FALSE(LineIsBroken(frame, true, 0.0, 100.0));
    f.columns().close[7] = 95.0; // below then above
    EXPECT_TRUE(LineIsBroken(frame, true, 0.0, 100.0));
    frame.n = 2;
    EXPECT_FALSE(LineIsBroken(frame, true, 0.0, 100.0));

    // The paint draws a broken line with the dotted pen.
    f.columns().close[7] = 105.0;
    f.columns().close[9] = 95.0;
    frame.n = 10;
    TrendLineSet& t = *f.chart().drawings->trendLines;
    t.inUse[0] = 1;
    t.extended[0] = 1;
    t.baseValue[0] = 100.0;
    t.pointA[0] = {2, 0};
    t.pointB[0] = {5, 0};
    ResetChartMouseState();
    RecordingDevice dev;
    DrawTrendLines(f.chart(), dev, frame, ScaleFont());
    auto lines = dev.OpsOf(DrawOpKind::LineTo);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].pen.style, PenStyle::Dot);
    EXPECT_EQ(lines[0].x2, 400); // extended to the right edge
    EXPECT_EQ(lines[0].y2, 120);
}

TEST(LineEnds, StartPointTableAndHandleFillRule) {
    ChartFixture f("Price", LayoutPlain, 20);
    f.chart().showCurveHandles = 1;
    TrendLineSet& t = *f.chart().drawings->trendLines;
    t.inUse[0] = 1;
    t.pointA[0] = {5, 0};
    t.pointB[0] = {15, 0};
    t.baseValue[0] = 100.0; // flat at 100: y 120
    ResetChartMouseState();
    RecordingDevice dev;
    // Row 5 left of the first shown row 10: starts at the left edge.
    DrawTrendLines(f.chart(), dev, SmallFrame(f, 10), ScaleFont());
    auto moves = dev.OpsOf(DrawOpKind::MoveTo);
    EXPECT_EQ(moves.back().x1, 40);
    EXPECT_EQ(moves.back().y1, 120);
    EXPECT_EQ(t.regions[0]->box.left, 40); // centre 45
    auto lines = dev.OpsOf(DrawOpKind::LineTo);
    // Not extended: ends on row 15, whose object x is (15 - 19) + 59 + 1.
    EXPECT_EQ(lines.back().x2, 56);
    // On screen: starts on its own row, handle on the point.
    dev.Clear();
    DrawTrendLines(f.chart(), dev, SmallFrame(f, 0), ScaleFont());
    EXPECT_EQ(dev.OpsOf(DrawOpKind::MoveTo).back().x1, 46);
    EXPECT_EQ(t.regions[0]->box.left, 41);
    EXPECT_EQ(dev.OpsOf(DrawOpKind::FillRegion).size(), 1u);

    // Rising out of the top before the window starts: the handle at
    // (xAt(valueMax) + 5, T + 5) = (35, 25) is made for hits but not filled.
    t.slopeAngle[0] = 1.0;
    t.baseValue[0] = 210.0;
    dev.Clear();
    DrawTrendLines(f.chart(), dev, SmallFrame(f, 0), ScaleFont());
    EXPECT_EQ(dev.OpsOf(DrawOpKind::MoveTo).back().x1, 30);
    EXPECT_EQ(dev.OpsOf(DrawOpKind::MoveTo).back().y1, 20);
    ASSERT_NE(t.regions[0], nullptr);
    EXPECT_TRUE(PointInRegion(t.regions[0], 35, 25));
    EXPECT_TRUE(dev.OpsOf(DrawOpKind::FillRegion).empty());
}

TEST(StraightLines, HorizontalStrictlyInsideRangeAndVerticalRightOfFirstRow) {
    ChartFixture f("Price", LayoutPlain, 20);
    f.chart().showCurveHandles = 1;
    HorizontalLineSet& h = *f.chart().drawings->horizontalLines;
    h.inUse[0] = 1;
    h.value[0] = 200.0; // exactly valueMax
    h.inUse[1] = 1;
    h.value[1] = 199.5;
    RecordingDevice dev;
    ResetChartMouseState();
    DrawHorizontalLines(f.chart(), dev, SmallFrame(f));
    auto lines = dev.OpsOf(DrawOpKind::LineTo);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].x1, 40);
    EXPECT_EQ(lines[0].y1, 20);
    EXPECT_EQ(lines[0].x2, 400);
    EXPECT_EQ(h.regions[0], nullptr);
    ASSERT_NE(h.regions[1], nullptr);
    EXPECT_EQ(h.regions[1]->box.left, 40);
    EXPECT_EQ(h.regions[1]->box.right, 50);

    VerticalLineSet& v = *f.chart().drawings->verticalLines;
    v.inUse[0] = 1;
    v.point[0].x = 10; // on the first shown row: not drawn
    v.inUse[1] = 1;
    v.point[1].x = 12;
    dev.Clear();
    DrawVerticalLines(f.chart(), dev, SmallFrame(f, 10));
    lines = dev.OpsOf(DrawOpKind::LineTo);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].x1, 53);
    EXPECT_EQ(lines[0].y1, 220);
    EXPECT_EQ(lines[0].y2, 20);
    EXPECT_EQ(v.regions[0], nullptr);
    ASSERT_NE(v.regions[1], nullptr);
    EXPECT_EQ(v.regions[1]->box.left, 50); // h = 55
    EXPECT_EQ(v.regions[1]->box.bottom, 220);
}

TEST(Reanchor, RestoredLinesAreDerivedBeforeTheyAreDrawn) {
    ChartFixture f("Price", LayoutPlain, 20);
    f.columns().close[10] = 100.0;
    f.columns().close[11] = 110.0;
    TrendLineSet& t = *f.chart().drawings->trendLines;
    t.inUse[0] = 1;
    // The x of a date and the object row of that x are one row apart: the
    // date of row r comes back as row r + 1.
    std::strcpy(t.dateA[0], "R9");
    std::strcpy(t.dateB[0], "R10");
    t.valueA[0] = 100.0;
    t.valueB[0] = 110.0;
    f.chart().anchorsPending = 1;
    ResetChartMouseState();
    RecordingDevice dev;
    PaintPriceChart(dev, f.chart(), 400, 300);
    EXPECT_EQ(f.chart().anchorsPending, 0);
    EXPECT_EQ(t.pointA[0].x, 10);
    EXPECT_EQ(t.pointB[0].x, 11);
    EXPECT_NEAR(t.slopeAngle[0], std::atan(10.0), 1e-12);
    bool trendDrawn = false;
    for (const DrawOp& op : dev.OpsOf(DrawOpKind::LineTo))
        trendDrawn |= op.pen.colour == PaletteColour(PaletteTrendLines);
    EXPECT_TRUE(trendDrawn);
}

} // namespace
} // namespace velorin
