#include <gtest/gtest.h>

#include <cstring>

#include "chart_fixture.h"
#include "rendering/analysis_curves.h"
#include "rendering/palette.h"
#include "rendering/recording_device.h"
#include "rendering/series_draw.h"
#include "shell/core/shell_state.h"

namespace velorin {
namespace {

using testing::ChartFixture;
using testing::GAP;
using testing::UnitScale;

struct Seg {
    int x1, y1, x2, y2;
    bool operator==(const Seg&) const = default;
};

std::vector<Seg> Lines(const RecordingDevice& dev) {
    std::vector<Seg> out;
    for (const DrawOp& op : dev.OpsOf(DrawOpKind::LineTo))
        out.push_back({op.x1, op.y1, op.x2, op.y2});
    return out;
}

TEST(DrawCurveTest, BreaksAtGapsAndResumesOnPairsOfValues) {
    ChartFixture f("Price", LayoutPlain, 7);
    double series[MaxRows];
    ChartFixture::Fill(series, {1, 2, GAP, 4, 5, GAP, 7});
    RecordingDevice dev;
    int lastBarX = 0;
    const int first = DrawCurve(0, 0.0, series, f.chart(), dev, UnitScale(400), lastBarX, 7, 1);
    EXPECT_EQ(first, 0);
    EXPECT_EQ(lastBarX, 46);
    // y = 220 - v; the lone 7 after a gap draws nothing visible.
    EXPECT_EQ(Lines(dev), (std::vector<Seg>{{40, 219, 41, 218}, {43, 216, 44, 215}}));
    EXPECT_EQ(f.chart().view->curveRegions[0], nullptr); // handles off
}

TEST(DrawCurveTest, LeadingGapsInFullWindowParkPenAndMoveHandle) {
    ChartFixture f("Price", LayoutPlain, 100);
    f.chart().showCurveHandles = 1;
    double series[MaxRows];
    for (int i = 0; i < 100; ++i)
        series[i] = i < 60 ? GAP : 10.0;
    RecordingDevice dev;
    int lastBarX = 0;
    // W = 50 at one pixel a row: rows 50..99.
    const int first = DrawCurve(4, 0.0, series, f.chart(), dev, UnitScale(90), lastBarX, 100, 1);
    EXPECT_EQ(first, 50);
    EXPECT_EQ(lastBarX, 89);
    const DrawOp& park = dev.Ops().front();
    EXPECT_EQ(park.kind, DrawOpKind::MoveTo);
    EXPECT_EQ(park.x1, 0);
    EXPECT_EQ(park.y1, 240);
    for (const Seg& s : Lines(dev))
        EXPECT_GE(s.x1, 50); // nothing from the parked point
    // The handle sits on the first value, row 60 at x 50, with no 5 added.
    const Region* r = f.chart().view->curveRegions[4];
    ASSERT_NE(r, nullptr);
    EXPECT_EQ(r->box.left, 45);
    EXPECT_EQ(r->box.top, 205);
    EXPECT_EQ(r->box.right, 55);
    auto fills = dev.OpsOf(DrawOpKind::FillRegion);
    ASSERT_EQ(fills.size(), 1u);
    EXPECT_EQ(fills[0].brush.colour, PaletteColour(PaletteSlot4));
}

TEST(DrawCurveTest, SingleRowAndAllGapSeries) {
    ChartFixture f("Price", LayoutPlain, 1);
    f.chart().showCurveHandles = 1;
    double series[MaxRows];
    series[0] = 50.0;
    RecordingDevice dev;
    int lastBarX = 0;
    DrawCurve(0, 0.0, series, f.chart(), dev, UnitScale(400), lastBarX, 1, 1);
    EXPECT_TRUE(Lines(dev).empty());
    const Region* r = f.chart().view->curveRegions[0];
    ASSERT_NE(r, nullptr);
    EXPECT_EQ(r->box.left, 40); // centre (45, 170)
    EXPECT_EQ(r->box.top, 165);

    // All gaps over the whole capacity in a full window: the handle walk
    // stops at n and the old handle goes away.
    for (double& v : series)
        v = GAP;
    const long before = LiveRegionCount();
    DrawCurve(0, 0.0, series, f.chart(), dev, UnitScale(90), lastBarX, MaxRows, 1);
    EXPECT_EQ(f.chart().view->curveRegions[0], nullptr);
    EXPECT_EQ(LiveRegionCount(), before - 1);
}

TEST(DrawBarsTest, CloseMarkAndSkippedRows) {
    ChartFixture f("Price", LayoutPlain, 3);
    double high[MaxRows], low[MaxRows], close[MaxRows];
    ChartFixture::Fill(high, {60, 60, GAP});
    ChartFixture::Fill(low, {40, 40, 40});
    ChartFixture::Fill(close, {50.5, 50.5, 50.5});
    RecordingDevice dev;
    int lastBarX = 0;
    DrawBars(high, low, close, f.chart(), dev, UnitScale(400), lastBarX, 3);
    EXPECT_EQ(lastBarX, 41); // the gap row at 42 is skipped
    EXPECT_EQ(Lines(dev), (std::vector<Seg>{{40, 160, 40, 180}, {41, 160, 41, 180}}));
    auto rects = dev.OpsOf(DrawOpKind::Rectangle);
    ASSERT_EQ(rects.size(), 2u);
    // Close at y 169.5: 168.5 and 170.5 truncated after the subtraction.
    EXPECT_EQ(rects[0].x1, 38);
    EXPECT_EQ(rects[0].y1, 168);
    EXPECT_EQ(rects[0].x2, 42);
    EXPECT_EQ(rects[0].y2, 170);
    EXPECT_EQ(rects[0].pen.colour, PaletteColour(PaletteClose));
    EXPECT_EQ(rects[0].brush.colour, PaletteColour(PaletteBackground));
}

TEST(DrawCandlesTest, FallingSolidRisingHollowAndTwoPixelRule) {
    ChartFixture f("Price", LayoutPlain, 4);
    double high[MaxRows], low[MaxRows], open[MaxRows], close[MaxRows];
    ChartFixture::Fill(high, {70, 70, 70, 70});
    ChartFixture::Fill(low, {30, 30, 30, 30});
    ChartFixture::Fill(open, {60, 40, 50, 40});
    ChartFixture::Fill(close, {40, 60, 50, 42});
    RecordingDevice dev;
    int lastBarX = 0;
    DrawCandles(high, low, open, close, f.chart(), dev, UnitScale(400), lastBarX, 4);
    auto rects = dev.OpsOf(DrawOpKind::Rectangle);
    ASSERT_EQ(rects.size(), 4u);
    auto fills = dev.OpsOf(DrawOpKind::FillRect);
    ASSERT_EQ(fills.size(), 2u);
    // Falling: from above the open to below the close, filled.
    EXPECT_EQ((Seg{rects[0].x1, rects[0].y1, rects[0].x2, rects[0].y2}), (Seg{38, 159, 42, 181}));
    EXPECT_EQ((Seg{fills[0].x1, fills[0].y1, fills[0].x2, fills[0].y2}), (Seg{38, 159, 42, 181}));
    EXPECT_EQ(fills[0].brush.colour, PaletteColour(PaletteClose));
    // Rising: the same corners taken from open and close, hollow.
    EXPECT_EQ((Seg{rects[1].x1, rects[1].y1, rects[1].x2, rects[1].y2}), (Seg{39, 179, 43, 161}));
    // Equal ends count as falling.
    EXPECT_EQ(fills[1].x1, 40);
    // Ends exactly 2 pixels apart give the thin mark around the close.
    EXPECT_EQ((Seg{rects[3].x1, rects[3].y1, rects[3].x2, rects[3].y2}), (Seg{41, 177, 45, 179}));
    // Wicks in the high-low colour.
    EXPECT_EQ(dev.OpsOf(DrawOpKind::LineTo)[0].pen.colour, PaletteColour(PaletteHighLow));
}

TEST(PriceGroupTest, ThicknessReachesLinesButNotBars) {
    ChartFixture f("Price", LayoutPlain, 30);
    f.chart().showCurveHandles = 1;
    f.chart().view->showHighLow = 1;
    shell.priceThickness = 3;
    RecordingDevice dev;
    int lastBarX = 0;
    DrawPriceGroup(f.chart(), dev, UnitScale(400), lastBarX);
    auto lines = dev.OpsOf(DrawOpKind::LineTo);
    EXPECT_EQ(lines.size(), 3u * 29);
    for (const DrawOp& op : lines)
        EXPECT_EQ(op.pen.width, 3);
    for (int slot = 0; slot < 3; ++slot)
        EXPECT_NE(f.chart().view->curveRegions[slot], nullptr);

    dev.Clear();
    f.chart().view->showLine = 0;
    f.chart().view->showBar = 1;
    DrawPriceGroup(f.chart(), dev, UnitScale(400), lastBarX);
    for (const DrawOp& op : dev.OpsOf(DrawOpKind::LineTo))
        EXPECT_EQ(op.pen.width, 1);
    for (const DrawOp& op : dev.OpsOf(DrawOpKind::Rectangle))
        EXPECT_EQ(op.pen.width, 1);
}

TEST(DataCheck, RowMinimaByKindAndCaption) {
    ChartFixture f("RSI", LayoutOneCurve, 24);
    EXPECT_TRUE(HasTooFewRows(f.chart()));
    f.chart().rowCount = 25;
    EXPECT_FALSE(HasTooFewRows(f.chart()));
    std::strcpy(f.chart().kindName, "Stochastics");
    f.chart().rowCount = 60;
    EXPECT_TRUE(HasTooFewRows(f.chart()));
    f.chart().rowCount = 61;
    EXPECT_FALSE(HasTooFewRows(f.chart()));
    std::strcpy(f.chart().kindName, "Fibonacci");
    f.chart().rowCount = 250;
    EXPECT_TRUE(HasTooFewRows(f.chart()));
    std::strcpy(f.chart().kindName, "Price");
    f.chart().rowCount = 1;
    EXPECT_FALSE(HasTooFewRows(f.chart()));
    char caption[CaptionSize];
    FormatInsufficientDataCaption(f.chart(), caption);
    EXPECT_STREQ(caption, "TEST RSI      INSUFFICIENT DATA");
}

int HandleCount(const Chart& c) {
    int count = 0;
    for (const RegionHandle r : c.view->curveRegions)
        count += r != nullptr;
    return count;
}

TEST(AnalysisCurvesTest, StochasticsHandlesOnSlotsThreeToSix) {
    ChartFixture f("Stochastics", LayoutFourCurves, 100);
    f.chart().showCurveHandles = 1;
    for (int c = 0; c < 4; ++c)
        for (int i = 0; i < 100; ++i)
            f.model(c)[i] = 10.0 * c + i % 7;
    ChartScale s = MakeChartScale(400, 300);
    FindValueRange(f.chart(), s);
    ComputeScale(f.chart(), s);
    RecordingDevice dev;
    int lastBarX = 0;
    EXPECT_EQ(DrawKindSeries(f.chart(), dev, s, lastBarX), -1); // no price group
    EXPECT_EQ(HandleCount(f.chart()), 4);
    for (int slot = 3; slot <= 6; ++slot) {
        const Region* r = f.chart().view->curveRegions[slot];
        ASSERT_NE(r, nullptr);
        EXPECT_EQ(r->box.left, 40); // at the left edge
    }
}

TEST(AnalysisCurvesTest, FibonacciCurveSetsAndEnvelopeOffsets) {
    for (int lines : {0, 1}) {
        for (int extend : {0, 1}) {
            ChartFixture f("Fibonacci", LayoutFibonacci, 300);
            f.chart().showCurveHandles = 1;
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
            DrawKindSeries(f.chart(), dev, s, lastBarX);
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
