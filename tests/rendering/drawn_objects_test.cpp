#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "rendering/drawn_objects.h"
#include "rendering/price_paint.h"
#include "tests/rendering/paint_setup.h"
#include "tests/support/chart_fixture.h"

namespace velorin {
namespace {

using testing::Box;
using testing::ChartFixture;
using testing::PaintSetup;
using testing::UnitScale;

// 20 rows at one pixel a row on a 400 pixel client: row i at x 40 + i.
ObjectFrame SmallFrame(ChartFixture& f, int firstRowShown = 0) {
    return MakeObjectFrame(f.chart(), UnitScale(400), 59, firstRowShown);
}

class Objects : public ::testing::Test {
  protected:
    ChartFixture f{"Price", LayoutPlain, 20};
    TrendLineSet& t = *f.chart().drawings->trendLines;
    PaintSetup p;
    RecordingDevice dev;
    ObjectKinds converted;
};

TEST_F(Objects, LineEquationPlacedTrendIsDerivedOnceArctangentOfRiseUsedAsRise) {
    f.columns().close[10] = 100.0;
    f.columns().close[11] = 110.0;
    t.inUse[0] = t.inUse[1] = 1;
    t.pointA[0] = t.pointA[1] = {50, 0}; // pixels of rows 10 and 11
    t.pointB[0] = t.pointB[1] = {51, 0};
    p.ctx.placed.kinds.trend = true;
    p.ctx.placed.trend = 0;
    DrawTrendLines(f.chart(), dev, SmallFrame(f), ScaleFont(), p.ctx, converted);
    EXPECT_EQ(converted, (ObjectKinds{.trend = true}));
    EXPECT_EQ(t.pointA[0].x, 10);
    EXPECT_EQ(t.pointB[0].x, 11);
    EXPECT_EQ(t.pointA[1].x, 50); // only the placed one
    EXPECT_NEAR(t.slopeAngle[0], 1.4711, 1e-4);
    EXPECT_NEAR(11 * t.slopeAngle[0] + t.baseValue[0], 110.0, 1e-9);
    EXPECT_NEAR(10 * t.slopeAngle[0] + t.baseValue[0], 108.53, 0.005);
}

TEST_F(Objects, LineEquationFlatOnEqualClosesAndSameRowsSeparated) {
    f.columns().close[3] = 105.0;
    f.columns().close[8] = 105.0;
    const ObjectFrame frame = SmallFrame(f);
    double base = 0;
    EXPECT_EQ(LineThroughRows(frame, false, 3, 8, 0, 0, base), 0.0);
    EXPECT_EQ(base, 105.0);
    // Both clicks on one row: the second point moves a row right. Clicked
    // heights 120 and 100 are values 100 and 120.
    t.freePlaced[0] = 1;
    t.pointA[0] = {45, 120};
    t.pointB[0] = {45, 100};
    DeriveTrendLine(f.chart(), 0, frame);
    EXPECT_EQ(t.pointB[0].x, t.pointA[0].x + 1);
    EXPECT_DOUBLE_EQ(t.slopeAngle[0], std::atan(20.0));
    // A date that is gone gives a row far left; its close stays in bounds.
    EXPECT_EQ(BoundedClose(frame, -500), f.columns().close[0]);
}

TEST_F(Objects, LineEquationChannelIsParallelThroughThirdPoint) {
    ChannelSet& c = *f.chart().drawings->channels;
    c.inUse[0] = 1;
    c.pointA[0] = {42, 0}; // rows 2, 12, 5; closes 100 + row
    c.pointB[0] = {52, 0};
    c.pointC[0] = {45, 0};
    f.columns().close[5] = 90.0;
    p.ctx.placed.kinds.channel = true;
    DrawChannelLines(f.chart(), dev, SmallFrame(f), ScaleFont(), p.ctx, converted);
    EXPECT_EQ(converted, (ObjectKinds{.channel = true}));
    const double slope = std::atan(1.0);
    EXPECT_DOUBLE_EQ(c.slopeAngle[0], slope);
    EXPECT_DOUBLE_EQ(c.secondBaseValue[0], 90.0 - 5 * slope);
    EXPECT_NEAR(c.pixelGap[0], std::fabs(c.baseValue[0] - c.secondBaseValue[0]), 1e-9);
    EXPECT_EQ(dev.OpsOf(DrawOpKind::LineTo).size(), 2u);
}

TEST(BreakTest, DottedOnlyWhenExtendedAndCrossedByLastCloses) {
    ChartFixture f("Price", LayoutPlain, 10);
    ObjectFrame frame = MakeObjectFrame(f.chart(), UnitScale(400), 49, 0);
    // Closes of rows n - 3 and n - 1 against the flat line at 100.
    const std::tuple<double, double, bool, int, bool> cases[] = {
        {105, 95, true, 10, true}, {105, 95, false, 10, false}, {105, 104, true, 10, false},
        {95, 104, true, 10, true}, {105, 95, true, 2, false},
    };
    for (auto [c7, c9, extended, n, broken] : cases) {
        f.columns().close[7] = c7;
        f.columns().close[9] = c9;
        frame.n = n;
        EXPECT_EQ(LineIsBroken(frame, extended, 0.0, 100.0), broken) << c7 << " " << c9;
    }
    // The paint draws a broken line with the dotted pen, as thick as the context says.
    f.columns().close[7] = 105.0;
    f.columns().close[9] = 95.0;
    frame.n = 10;
    TrendLineSet& t = *f.chart().drawings->trendLines;
    t.inUse[0] = 1;
    t.extended[0] = 1;
    t.baseValue[0] = 100.0;
    t.pointA[0] = {2, 0};
    t.pointB[0] = {5, 0};
    PaintSetup p;
    p.style.attachmentThickness = 2;
    RecordingDevice dev;
    ObjectKinds converted;
    DrawTrendLines(f.chart(), dev, frame, ScaleFont(), p.ctx, converted);
    auto lines = dev.OpsOf(DrawOpKind::LineTo);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].pen, (Pen{PenStyle::Dot, 2, p[PaletteTrendLines]}));
    EXPECT_EQ(lines[0].x2, 400); // extended to the right edge
    EXPECT_EQ(lines[0].y2, 120);
    EXPECT_EQ(converted, ObjectKinds{}); // nothing was placed
}

TEST_F(Objects, LineEndsStartPointTableAndHandleFillRule) {
    f.chart().showCurveHandles = 1;
    t.inUse[0] = 1;
    t.pointA[0] = {5, 0};
    t.pointB[0] = {15, 0};
    t.baseValue[0] = 100.0; // flat at 100: y 120
    auto draw = [&](int firstRowShown) {
        dev.Clear();
        DrawTrendLines(f.chart(), dev, SmallFrame(f, firstRowShown), ScaleFont(), p.ctx, converted);
        const DrawOp move = dev.OpsOf(DrawOpKind::MoveTo).back();
        return std::pair{move.x1, move.y1};
    };
    // Row 5 left of the first shown row 10: starts at the left edge. Not
    // extended: ends on row 15, whose object x is (15 - 19) + 59 + 1.
    EXPECT_EQ(draw(10), std::pair(40, 120));
    EXPECT_EQ(t.regions[0]->box.left, 40); // centre 45
    EXPECT_EQ(dev.OpsOf(DrawOpKind::LineTo).back().x2, 56);
    // On screen: starts on its own row, handle on the point.
    EXPECT_EQ(draw(0), std::pair(46, 120));
    EXPECT_EQ(t.regions[0]->box.left, 41);
    EXPECT_EQ(dev.OpsOf(DrawOpKind::FillRegion).size(), 1u);
    // Rising out of the top before the window starts: the handle at
    // (xAt(valueMax) + 5, T + 5) = (35, 25) is made for hits but not filled.
    t.slopeAngle[0] = 1.0;
    t.baseValue[0] = 210.0;
    EXPECT_EQ(draw(0), std::pair(30, 20));
    ASSERT_NE(t.regions[0], nullptr);
    EXPECT_TRUE(PointInRegion(t.regions[0], 35, 25));
    EXPECT_TRUE(dev.OpsOf(DrawOpKind::FillRegion).empty());
}

TEST_F(Objects, StraightLinesHorizontalStrictlyInsideRangeAndVerticalRightOfFirstRow) {
    f.chart().showCurveHandles = 1;
    HorizontalLineSet& h = *f.chart().drawings->horizontalLines;
    h.inUse[0] = h.inUse[1] = 1;
    h.value[0] = 200.0; // exactly valueMax
    h.value[1] = 199.5;
    DrawHorizontalLines(f.chart(), dev, SmallFrame(f), p.ctx, converted);
    EXPECT_EQ(testing::Boxes(dev, DrawOpKind::LineTo), (std::vector<Box>{{40, 20, 400, 20}}));
    EXPECT_EQ(h.regions[0], nullptr);
    ASSERT_NE(h.regions[1], nullptr);
    EXPECT_EQ(h.regions[1]->box.left, 40);
    EXPECT_EQ(h.regions[1]->box.right, 50);

    VerticalLineSet& v = *f.chart().drawings->verticalLines;
    v.inUse[0] = v.inUse[1] = 1;
    v.point[0].x = 10; // on the first shown row: not drawn
    v.point[1].x = 12;
    dev.Clear();
    DrawVerticalLines(f.chart(), dev, SmallFrame(f, 10), p.ctx, converted);
    EXPECT_EQ(testing::Boxes(dev, DrawOpKind::LineTo), (std::vector<Box>{{53, 220, 53, 20}}));
    EXPECT_EQ(v.regions[0], nullptr);
    ASSERT_NE(v.regions[1], nullptr);
    EXPECT_EQ(v.regions[1]->box.left, 50); // h = 55
    EXPECT_EQ(v.regions[1]->box.bottom, 220);
}

TEST_F(Objects, StraightLinesPlacedLinesTakeTheirRowAndValueFromTheClick) {
    HorizontalLineSet& h = *f.chart().drawings->horizontalLines;
    VerticalLineSet& v = *f.chart().drawings->verticalLines;
    h.inUse[1] = v.inUse[1] = 1;
    h.point[1].y = 70; // y 70 is value 150
    v.point[1].x = 52; // x 52 is object row 20 - (59 - 52 + 1) = 12
    p.ctx.placed.kinds = {.vertical = true, .horizontal = true};
    p.ctx.placed.vertical = p.ctx.placed.horizontal = 1;
    DrawHorizontalLines(f.chart(), dev, SmallFrame(f), p.ctx, converted);
    DrawVerticalLines(f.chart(), dev, SmallFrame(f), p.ctx, converted);
    EXPECT_DOUBLE_EQ(h.value[1], 150.0);
    EXPECT_EQ(v.point[1].x, 12);
    EXPECT_EQ(converted, (ObjectKinds{.vertical = true, .horizontal = true}));
}

TEST_F(Objects, ReanchorRestoredLinesAreDerivedBeforeTheyAreDrawn) {
    f.columns().close[10] = 100.0;
    f.columns().close[11] = 110.0;
    t.inUse[0] = 1;
    // The x of a date and the object row of that x are one row apart: the
    // date of row r comes back as row r + 1.
    std::strcpy(t.dateA[0], "R9");
    std::strcpy(t.dateB[0], "R10");
    t.valueA[0] = 100.0;
    t.valueB[0] = 110.0;
    f.chart().anchorsPending = 1;
    PaintPriceChart(dev, f.chart(), 400, 300, p.ctx);
    EXPECT_EQ(f.chart().anchorsPending, 0);
    EXPECT_EQ(t.pointA[0].x, 10);
    EXPECT_EQ(t.pointB[0].x, 11);
    EXPECT_NEAR(t.slopeAngle[0], std::atan(10.0), 1e-12);
    bool trendDrawn = false;
    for (const DrawOp& op : dev.OpsOf(DrawOpKind::LineTo))
        trendDrawn |= op.pen.colour == p[PaletteTrendLines];
    EXPECT_TRUE(trendDrawn);
}

} // namespace
} // namespace velorin
