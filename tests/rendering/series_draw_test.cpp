#include <gtest/gtest.h>

#include "rendering/analysis_curves.h"
#include "rendering/series_draw.h"
#include "tests/rendering/paint_setup.h"
#include "tests/support/chart_fixture.h"

namespace velorin {
namespace {

using testing::Box;
using testing::Boxes;
using testing::ChartFixture;
using testing::GAP;
using testing::PaintSetup;
using testing::UnitScale;

TEST(DrawCurveTest, BreaksAtGapsAndResumesOnPairsOfValues) {
    ChartFixture f("Price", LayoutPlain, 7);
    PaintSetup p;
    double series[MaxRows];
    ChartFixture::Fill(series, {1, 2, GAP, 4, 5, GAP, 7});
    RecordingDevice dev;
    int lastBarX = 0;
    EXPECT_EQ(DrawCurve(0, 0.0, series, f.chart(), dev, UnitScale(400), p.ctx, lastBarX, 7, 1), 0);
    EXPECT_EQ(lastBarX, 46);
    // y = 220 - v; the lone 7 after a gap draws nothing visible.
    EXPECT_EQ(Boxes(dev, DrawOpKind::LineTo),
              (std::vector<Box>{{40, 219, 41, 218}, {43, 216, 44, 215}}));
    EXPECT_EQ(f.chart().view->curveRegions[0], nullptr); // handles off
}

TEST(DrawCurveTest, LeadingGapsInFullWindowParkPenAndMoveHandle) {
    ChartFixture f("Price", LayoutPlain, 100);
    f.chart().showCurveHandles = 1;
    PaintSetup p;
    p.palette.current[PaletteSlot4] = 0x0A0B0C;
    double series[MaxRows];
    for (int i = 0; i < 100; ++i)
        series[i] = i < 60 ? GAP : 10.0;
    RecordingDevice dev;
    int lastBarX = 0;
    // W = 50 at one pixel a row: rows 50..99.
    EXPECT_EQ(DrawCurve(4, 0.0, series, f.chart(), dev, UnitScale(90), p.ctx, lastBarX, 100, 1),
              50);
    EXPECT_EQ(lastBarX, 89);
    EXPECT_EQ(testing::BoxOf(dev.Ops().front()), (Box{0, 240, 0, 0})); // pen parked, bottom-left
    for (const Box& b : Boxes(dev, DrawOpKind::LineTo))
        EXPECT_GE(b[0], 50); // nothing from the parked point
    // The handle sits on the first value, row 60 at x 50, with no 5 added.
    const Region* r = f.chart().view->curveRegions[4];
    ASSERT_NE(r, nullptr);
    EXPECT_EQ((Box{r->box.left, r->box.top, r->box.right, 0}), (Box{45, 205, 55, 0}));
    auto fills = dev.OpsOf(DrawOpKind::FillRegion);
    ASSERT_EQ(fills.size(), 1u);
    EXPECT_EQ(fills[0].brush.colour, 0x0A0B0Cu); // the slot's colour of the context
}

TEST(DrawCurveTest, SingleRowAndAllGapSeries) {
    ChartFixture f("Price", LayoutPlain, 1);
    f.chart().showCurveHandles = 1;
    PaintSetup p;
    double series[MaxRows];
    series[0] = 50.0;
    RecordingDevice dev;
    int lastBarX = 0;
    DrawCurve(0, 0.0, series, f.chart(), dev, UnitScale(400), p.ctx, lastBarX, 1, 1);
    EXPECT_TRUE(dev.OpsOf(DrawOpKind::LineTo).empty());
    const Region* r = f.chart().view->curveRegions[0];
    ASSERT_NE(r, nullptr);
    EXPECT_EQ(r->box.left, 40); // centre (45, 170)
    EXPECT_EQ(r->box.top, 165);
    // All gaps over the whole capacity in a full window: the handle walk
    // stops at n and the old handle goes away.
    for (double& v : series)
        v = GAP;
    const long before = LiveRegionCount();
    DrawCurve(0, 0.0, series, f.chart(), dev, UnitScale(90), p.ctx, lastBarX, MaxRows, 1);
    EXPECT_EQ(f.chart().view->curveRegions[0], nullptr);
    EXPECT_EQ(LiveRegionCount(), before - 1);
}

TEST(PriceBars, BarsMarkCloseAndSkipGapsCandlesFallingSolidRisingHollow) {
    ChartFixture f("Price", LayoutPlain, 4);
    PaintSetup p;
    double high[MaxRows], low[MaxRows], open[MaxRows], close[MaxRows];
    ChartFixture::Fill(high, {60, 60, GAP});
    ChartFixture::Fill(low, {40, 40, 40});
    ChartFixture::Fill(close, {50.5, 50.5, 50.5});
    RecordingDevice dev;
    int lastBarX = 0;
    DrawBars(high, low, close, f.chart(), dev, UnitScale(400), p.ctx, lastBarX, 3);
    EXPECT_EQ(lastBarX, 41); // the gap row at 42 is skipped
    EXPECT_EQ(Boxes(dev, DrawOpKind::LineTo),
              (std::vector<Box>{{40, 160, 40, 180}, {41, 160, 41, 180}}));
    // Close at y 169.5: 168.5 and 170.5 truncated after the subtraction.
    auto rects = dev.OpsOf(DrawOpKind::Rectangle);
    ASSERT_EQ(rects.size(), 2u);
    EXPECT_EQ(testing::BoxOf(rects[0]), (Box{38, 168, 42, 170}));
    EXPECT_EQ(rects[0].pen.colour, p[PaletteClose]);
    EXPECT_EQ(rects[0].brush.colour, p[PaletteBackground]);

    ChartFixture::Fill(high, {70, 70, 70, 70});
    ChartFixture::Fill(low, {30, 30, 30, 30});
    ChartFixture::Fill(open, {60, 40, 50, 40});
    ChartFixture::Fill(close, {40, 60, 50, 42});
    dev.Clear();
    DrawCandles(high, low, open, close, f.chart(), dev, UnitScale(400), p.ctx, lastBarX, 4);
    const auto bodies = Boxes(dev, DrawOpKind::Rectangle);
    const auto fills = dev.OpsOf(DrawOpKind::FillRect);
    ASSERT_EQ(bodies.size(), 4u);
    ASSERT_EQ(fills.size(), 2u);
    // Falling: from above the open to below the close, filled. Rising: the
    // same corners from open and close, hollow. Equal ends count as falling;
    // ends exactly 2 pixels apart give the thin mark around the close.
    EXPECT_EQ(bodies[0], (Box{38, 159, 42, 181}));
    EXPECT_EQ(testing::BoxOf(fills[0]), (Box{38, 159, 42, 181}));
    EXPECT_EQ(bodies[1], (Box{39, 179, 43, 161}));
    EXPECT_EQ(fills[1].x1, 40);
    EXPECT_EQ(bodies[3], (Box{41, 177, 45, 179}));
    EXPECT_EQ(fills[0].brush.colour, p[PaletteClose]);
    EXPECT_EQ(dev.OpsOf(DrawOpKind::LineTo)[0].pen.colour, p[PaletteHighLow]); // wicks
}

TEST(PriceBars, ContextThicknessReachesLinesButNotBars) {
    ChartFixture f("Price", LayoutPlain, 30);
    f.chart().showCurveHandles = 1;
    f.chart().view->showHighLow = 1;
    PaintSetup p;
    p.style.priceThickness = 3;
    RecordingDevice dev;
    int lastBarX = 0;
    DrawPriceGroup(f.chart(), dev, UnitScale(400), p.ctx, lastBarX);
    auto lines = dev.OpsOf(DrawOpKind::LineTo);
    EXPECT_EQ(lines.size(), 3u * 29);
    for (const DrawOp& op : lines)
        EXPECT_EQ(op.pen.width, 3);
    for (int slot = 0; slot < 3; ++slot)
        EXPECT_NE(f.chart().view->curveRegions[slot], nullptr);

    dev.Clear();
    f.chart().view->showLine = 0;
    f.chart().view->showBar = 1;
    DrawPriceGroup(f.chart(), dev, UnitScale(400), p.ctx, lastBarX);
    for (const DrawOp& op : dev.Ops()) {
        if (op.kind == DrawOpKind::LineTo || op.kind == DrawOpKind::Rectangle) {
            EXPECT_EQ(op.pen.width, 1);
        }
    }
}

int HandleCount(const Chart& c) {
    int count = 0;
    for (const RegionHandle r : c.view->curveRegions)
        count += r != nullptr;
    return count;
}

TEST(AnalysisCurvesTest, FibonacciCurveSetsAndEnvelopeOffsets) {
    for (int lines : {0, 1}) {
        for (int extend : {0, 1}) {
            ChartFixture f("Fibonacci", LayoutFibonacci, 300);
            f.chart().showCurveHandles = 1;
            PaintSetup p;
            FibonacciExtra& fx = *f.chart().fibonacciExtra;
            fx.fibonacciLines = lines;
            fx.extendEnvelopes = extend;
            fx.priceStdev = 5.0;
            for (int i = 0; i < 300; ++i) {
                for (int c = 0; c < 7; ++c)
                    f.model(c)[i] = 200.0 + c;
                fx.lowerEnvelope[i] = 180.0;
                fx.upperEnvelope[i] = 420.0;
            }
            ChartScale s = UnitScale(700);
            s.valueMin = 100.0; // y = 220 - (v - 100)
            RecordingDevice dev;
            int lastBarX = 0;
            DrawKindSeries(f.chart(), dev, s, p.ctx, lastBarX);
            // Price handle, two base lines or seven curves, two or four envelopes.
            EXPECT_EQ(HandleCount(f.chart()), 1 + (lines ? 2 : 7) + (extend ? 4 : 2));
            // The lower envelope on slot 10 stands E below, on 11 2E below.
            const Region* r10 = f.chart().view->curveRegions[10];
            ASSERT_NE(r10, nullptr);
            EXPECT_EQ(r10->box.top + 5, 220 - (180 - 5 - 100));
            if (extend) {
                EXPECT_EQ(f.chart().view->curveRegions[11]->box.top + 5, 220 - (180 - 10 - 100));
            }
        }
    }
}

} // namespace
} // namespace velorin
