#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <tuple>

#include "rendering/drawn_objects.h"
#include "rendering/price_paint.h"
#include "tests/rendering/paint_setup.h"
#include "tests/support/chart_fixture.h"

namespace velorin {
namespace {

using namespace velorin::testing;

class Objects : public ::testing::Test {
  protected:
    // 20 rows at one pixel a row on a 400 pixel client, y = 220 - value: a
    // click at x 40 + i is row i, and row i is drawn at x 41 + i.
    ObjectFrame Frame() { return MakeObjectFrame(f.chart(), UnitScale(400), 59, 0); }
    void DrawTrends() { DrawTrendLines(f.chart(), dev, Frame(), ScaleFont(), p.ctx, converted); }

    ChartFixture f{"Price", LayoutPlain, 20};
    TrendLineSet& t = *f.chart().drawings->trendLines;
    PaintSetup p;
    RecordingDevice dev;
    ObjectKinds converted;
};

TEST_F(Objects, PlacedTrendTakesRowsAndTheArctangentOfItsRiseAsTheRise) {
    f.columns().close[10] = 100.0;
    f.columns().close[11] = 110.0;
    t.inUse[0] = t.inUse[1] = 1;
    t.pointA[0] = t.pointA[1] = {50, 0}; // pixels of rows 10 and 11
    t.pointB[0] = t.pointB[1] = {51, 0};
    p.ctx.placed.kinds.trend = true;
    DrawTrends();
    EXPECT_EQ(converted, (ObjectKinds{.trend = true}));
    EXPECT_EQ(std::pair(t.pointA[0].x, t.pointB[0].x), std::pair(10, 11));
    EXPECT_EQ(t.pointA[1].x, 50); // only the placed one
    // A steep line passes through the second close and falls short of the first.
    EXPECT_DOUBLE_EQ(t.slopeAngle[0], std::atan(10.0));
    EXPECT_NEAR(11 * t.slopeAngle[0] + t.baseValue[0], 110.0, 1e-9);
    EXPECT_NEAR(10 * t.slopeAngle[0] + t.baseValue[0], 108.53, 0.005);
}

TEST_F(Objects, ChannelIsParallelThroughItsThirdPoint) {
    ChannelSet& c = *f.chart().drawings->channels;
    c.inUse[0] = 1;
    c.pointA[0] = {42, 0}; // rows 2, 12, 5; closes 100 + row
    c.pointB[0] = {52, 0};
    c.pointC[0] = {45, 0};
    f.columns().close[5] = 90.0;
    p.ctx.placed.kinds.channel = true;
    DrawChannelLines(f.chart(), dev, Frame(), ScaleFont(), p.ctx, converted);
    EXPECT_EQ(converted, (ObjectKinds{.channel = true}));
    EXPECT_DOUBLE_EQ(c.slopeAngle[0], std::atan(1.0));
    EXPECT_DOUBLE_EQ(c.secondBaseValue[0], 90.0 - 5 * std::atan(1.0));
    EXPECT_EQ(dev.OpsOf(DrawOpKind::LineTo).size(), 2u);
}

TEST_F(Objects, ExtendedLineCrossedByTheLastClosesIsBrokenAndDotted) {
    ObjectFrame frame = Frame();
    // Closes of rows n - 3 and n - 1 against the flat line at 100.
    const std::tuple<double, double, bool, int, bool> cases[] = {
        {105, 95, true, 20, true}, {105, 95, false, 20, false}, {105, 104, true, 20, false},
        {95, 104, true, 20, true}, {105, 95, true, 2, false},
    };
    for (auto [c17, c19, extended, n, broken] : cases) {
        f.columns().close[17] = c17;
        f.columns().close[19] = c19;
        frame.n = n;
        EXPECT_EQ(LineIsBroken(frame, extended, 0.0, 100.0), broken) << c17 << " " << c19 << n;
    }
    t.inUse[0] = t.extended[0] = 1;
    t.baseValue[0] = 100.0;
    t.pointA[0] = {2, 0};
    t.pointB[0] = {5, 0};
    p.style.attachmentThickness = 2;
    DrawTrends(); // dotted, as thick as the context says, from row 2 to the right edge
    EXPECT_EQ(Boxes(dev, DrawOpKind::LineTo), (std::vector<Box>{{43, 120, 400, 120}}));
    EXPECT_EQ(dev.OpsOf(DrawOpKind::LineTo)[0].pen, (Pen{PenStyle::Dot, 2, p[PaletteTrendLines]}));
}

TEST_F(Objects, PlacedStraightLinesTakeTheirRowAndValueFromTheClick) {
    HorizontalLineSet& h = *f.chart().drawings->horizontalLines;
    VerticalLineSet& v = *f.chart().drawings->verticalLines;
    h.inUse[1] = v.inUse[1] = 1;
    h.point[1].y = 70; // y 70 is value 150
    v.point[1].x = 52; // x 52 is object row 20 - (59 - 52 + 1) = 12
    p.ctx.placed.kinds = {.vertical = true, .horizontal = true};
    p.ctx.placed.vertical = p.ctx.placed.horizontal = 1;
    DrawHorizontalLines(f.chart(), dev, Frame(), p.ctx, converted);
    DrawVerticalLines(f.chart(), dev, Frame(), p.ctx, converted);
    EXPECT_DOUBLE_EQ(h.value[1], 150.0);
    EXPECT_EQ(v.point[1].x, 12);
    EXPECT_EQ(converted, (ObjectKinds{.vertical = true, .horizontal = true}));
}

TEST_F(Objects, RestoredLinesAreAnchoredByDateAndValueBeforeTheyAreDrawn) {
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
    EXPECT_EQ(std::pair(t.pointA[0].x, t.pointB[0].x), std::pair(10, 11));
    EXPECT_NEAR(t.slopeAngle[0], std::atan(10.0), 1e-12);
    const auto lines = dev.OpsOf(DrawOpKind::LineTo);
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(),
                            [&](auto& op) { return op.pen.colour == p[PaletteTrendLines]; }));
}

} // namespace
} // namespace velorin
