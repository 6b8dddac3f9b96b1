#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <utility>

#include "rendering/price_paint.h"
#include "rendering/series_draw.h"
#include "tests/rendering/paint_setup.h"
#include "tests/support/chart_fixture.h"

namespace velorin {
namespace {

using namespace velorin::testing;

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
}

TEST(DrawCurveTest, LeadingGapsParkThePenAndAllGapsTakeTheHandleAway) {
    ChartFixture f("Price", LayoutPlain, 100);
    f.chart().showCurveHandles = 1;
    PaintSetup p;
    double series[MaxRows];
    for (int i = 0; i < MaxRows; ++i)
        series[i] = i < 60 ? GAP : 10.0;
    RecordingDevice dev;
    int lastBarX = 0;
    // W = 50 at one pixel a row: rows 50..99.
    EXPECT_EQ(DrawCurve(4, 0.0, series, f.chart(), dev, UnitScale(90), p.ctx, lastBarX, 100, 1),
              50);
    EXPECT_EQ(BoxOf(dev.Ops().front()), (Box{0, 240, 0, 0})); // pen parked, bottom-left
    EXPECT_EQ(Boxes(dev, DrawOpKind::LineTo).front(), (Box{50, 210, 51, 210}));
    // The handle sits on the first value, row 60 at x 50, with no 5 added.
    const Region* r = f.chart().view->curveRegions[4];
    ASSERT_NE(r, nullptr);
    EXPECT_EQ(std::pair(r->box.left, r->box.top), std::pair(45, 205));
    // All gaps over the whole capacity: the handle walk stops at n and the
    // old handle goes away.
    std::fill_n(series, MaxRows, GAP);
    const long before = LiveRegionCount();
    DrawCurve(4, 0.0, series, f.chart(), dev, UnitScale(90), p.ctx, lastBarX, MaxRows, 1);
    EXPECT_EQ(f.chart().view->curveRegions[4], nullptr);
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
    EXPECT_EQ(BoxOf(dev.OpsOf(DrawOpKind::Rectangle).front()), (Box{38, 168, 42, 170}));
    ChartFixture::Fill(high, {70, 70, 70, 70});
    ChartFixture::Fill(low, {30, 30, 30, 30});
    ChartFixture::Fill(open, {60, 40, 50, 40});
    ChartFixture::Fill(close, {40, 60, 50, 42});
    dev.Clear();
    DrawCandles(high, low, open, close, f.chart(), dev, UnitScale(400), p.ctx, lastBarX, 4);
    // Falling: from above the open to below the close, filled. Rising: the
    // same corners from open and close, hollow. Equal ends count as falling;
    // ends exactly 2 pixels apart give the thin mark around the close.
    EXPECT_EQ(Boxes(dev, DrawOpKind::Rectangle),
              (std::vector<Box>{
                  {38, 159, 42, 181}, {39, 179, 43, 161}, {40, 169, 44, 171}, {41, 177, 45, 179}}));
    EXPECT_EQ(Boxes(dev, DrawOpKind::FillRect),
              (std::vector<Box>{{38, 159, 42, 181}, {40, 169, 44, 171}}));
    EXPECT_EQ(dev.OpsOf(DrawOpKind::FillRect)[0].brush.colour, p[PaletteClose]);
    EXPECT_EQ(dev.OpsOf(DrawOpKind::LineTo)[0].pen.colour, p[PaletteHighLow]); // wicks
}

std::vector<DrawOp> ReadoutTexts(const RecordingDevice& dev) {
    std::vector<DrawOp> out = dev.OpsOf(DrawOpKind::Text);
    std::erase_if(out, [](const DrawOp& op) { return op.fontHeight != ReadoutFontHeight; });
    return out;
}

TEST(PaintTest, TooFewRowsDrawNothingAndSayWhy) {
    ChartFixture rsi("RSI", LayoutOneCurve, 24);
    PaintSetup p;
    RecordingDevice dev;
    const PaintResult r = PaintPriceChart(dev, rsi.chart(), 300, 300, p.ctx);
    EXPECT_EQ(r.outcome, PaintOutcome::InsufficientData);
    EXPECT_STREQ(r.caption, "TEST RSI      INSUFFICIENT DATA");
    EXPECT_TRUE(dev.Ops().empty());
}

TEST(PaintTest, CandlesInTheContextsGridFrameWithBandsAndScalesOnTop) {
    ChartFixture f("Price", LayoutPlain, 50);
    f.chart().view->showLine = 0;
    f.chart().view->showCandle = 1;
    PaintSetup p;
    p.palette.current[PaletteGrid] = 0x123456;
    RecordingDevice dev;
    EXPECT_STREQ(PaintPriceChart(dev, f.chart(), 440, 300, p.ctx).caption, "TEST Price");
    // The plot frame first, in the grid pen, then one body a row; 50 rows
    // stretched over 400 pixels put the last candle at 432.
    const auto rects = dev.OpsOf(DrawOpKind::Rectangle);
    ASSERT_EQ(rects.size(), 1u + 50);
    EXPECT_EQ(BoxOf(rects[0]), (Box{40, 20, 440, 280}));
    EXPECT_EQ(rects[0].pen.colour, 0x123456u);
    EXPECT_EQ(p.memory.lastBarX, 432);
    // Grid off: no scale before the candles; black bands, then the labels.
    const auto& ops = dev.Ops();
    size_t firstText = ops.size(), lastCandle = 0, firstBand = ops.size();
    for (size_t i = 0; i < ops.size(); ++i) {
        if (ops[i].kind == DrawOpKind::Text) firstText = std::min(firstText, i);
        if (ops[i].kind == DrawOpKind::Rectangle) lastCandle = i;
        if (ops[i].kind == DrawOpKind::FillRect && ops[i].brush.colour == Black && ops[i].x1 == 0)
            firstBand = std::min(firstBand, i);
    }
    EXPECT_LT(lastCandle, firstBand);
    EXPECT_LT(firstBand, firstText);
}

TEST(PaintTest, ReadoutOfValueAndDateStopsFivePixelsShortOfTheRightEdge) {
    // Closes 100..199 padded by 0.001: y 150, midway between 280 and 20,
    // reads 149.5; 4 pixels a row, lastBarX 436: row 100 - 0.75 - 1.
    ChartFixture f("Price", LayoutPlain, 100);
    PaintSetup p;
    // The date has nine blanks after it, to wipe a longer one.
    const std::tuple<ReadoutState, int, const char*, std::string> cases[] = {
        {{435, 150, true, false}, -1, nullptr, ""}, // x = right - 5
        {{434, 150, true, false}, 98, "149.500", "R98         "},
        {{434, 150, false, true}, 98, "149.500", "R98         "},
    };
    for (const auto& [readout, row, value, date] : cases) {
        RecordingDevice dev;
        p.ctx.readout = readout;
        EXPECT_EQ(PaintPriceChart(dev, f.chart(), 440, 300, p.ctx).readoutRow, row);
        const std::vector<DrawOp> texts = ReadoutTexts(dev);
        ASSERT_EQ(texts.size(), value ? 2u : 0u);
        if (!value) continue;
        EXPECT_EQ(std::tuple(texts[0].text, texts[0].x1, texts[0].textBackground),
                  std::tuple(value, 0, Black));
        EXPECT_EQ(std::pair(texts[1].text, texts[1].x1), std::pair(date, 40));
    }
}

TEST(PaintTest, EachWindowPaintsFromItsOwnMemory) {
    // A: an oscillator, whose paint keeps the first shown row of its last
    // paint, with a vertical line on row 10. B: a price chart whose window
    // starts at row 100.
    ChartFixture a("RSI", LayoutOneCurve, 50);
    for (int i = 0; i < 50; ++i)
        a.model(0)[i] = 40.0 + i % 9;
    a.chart().drawings->verticalLines->inUse[0] = 1;
    a.chart().drawings->verticalLines->point[0].x = 10;
    a.chart().view->resolution = 8.0; // 50 rows over 400 pixels: no stretch in the first paint
    ChartFixture b("Price", LayoutPlain, 200);
    PaintSetup pa, pb;
    RecordingDevice first, other, again;
    PaintPriceChart(first, a.chart(), 440, 300, pa.ctx);
    PaintPriceChart(other, b.chart(), 140, 300, pb.ctx);
    EXPECT_EQ(pb.memory.firstRowShown, 100);
    PaintPriceChart(again, a.chart(), 440, 300, pa.ctx);
    EXPECT_EQ(first.Ops(), again.Ops());
    EXPECT_EQ(pa.memory.firstRowShown, 0);
    // Sharing one memory with B, A would lose its line left of row 100.
    RecordingDevice shared;
    PaintPriceChart(shared, a.chart(), 440, 300, pb.ctx);
    EXPECT_LT(shared.OpsOf(DrawOpKind::LineTo).size(), again.OpsOf(DrawOpKind::LineTo).size());
}

} // namespace
} // namespace velorin
