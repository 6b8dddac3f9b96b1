#include <gtest/gtest.h>

#include <string>

#include "rendering/price_paint.h"
#include "tests/rendering/paint_setup.h"
#include "tests/support/chart_fixture.h"

namespace velorin {
namespace {

using testing::Box;
using testing::ChartFixture;
using testing::PaintSetup;

std::vector<DrawOp> ReadoutTexts(const RecordingDevice& dev) {
    std::vector<DrawOp> out;
    for (const DrawOp& op : dev.OpsOf(DrawOpKind::Text))
        if (op.fontHeight == ReadoutFontHeight) out.push_back(op);
    return out;
}

TEST(PaintTest, TooSmallWindowAndTooFewRowsDrawNothing) {
    ChartFixture f("Price", LayoutPlain, 30);
    PaintSetup p;
    RecordingDevice dev;
    EXPECT_EQ(PaintPriceChart(dev, f.chart(), 300, 50, p.ctx).outcome, PaintOutcome::Minimise);
    EXPECT_TRUE(dev.Ops().empty());
    const PaintResult ok = PaintPriceChart(dev, f.chart(), 300, 51, p.ctx);
    EXPECT_EQ(ok.outcome, PaintOutcome::Painted);
    EXPECT_STREQ(ok.caption, "TEST Price");

    ChartFixture rsi("RSI", LayoutOneCurve, 24);
    dev.Clear();
    const PaintResult r = PaintPriceChart(dev, rsi.chart(), 300, 300, p.ctx);
    EXPECT_EQ(r.outcome, PaintOutcome::InsufficientData);
    EXPECT_STREQ(r.caption, "TEST RSI      INSUFFICIENT DATA");
    EXPECT_TRUE(dev.Ops().empty());
}

TEST(PaintTest, PriceCandlesWithBandsAndScalesOnTop) {
    ChartFixture f("Price", LayoutPlain, 50);
    f.chart().view->showLine = 0;
    f.chart().view->showCandle = 1;
    PaintSetup p;
    p.palette.current[PaletteGrid] = 0x123456;
    RecordingDevice dev;
    PaintPriceChart(dev, f.chart(), 440, 300, p.ctx);
    const auto& ops = dev.Ops();
    // The plot frame first, in the grid pen, then one body a row.
    auto rects = dev.OpsOf(DrawOpKind::Rectangle);
    ASSERT_EQ(rects.size(), 1u + 50);
    EXPECT_EQ(testing::BoxOf(rects[0]), (Box{40, 20, 440, 280}));
    EXPECT_EQ(rects[0].pen.colour, 0x123456u);
    // 50 rows stretched over 400 pixels: 8 pixels a row, last candle at 432.
    EXPECT_DOUBLE_EQ(f.chart().view->resolution, 8.0);
    EXPECT_EQ(p.memory.lastBarX, 432);
    EXPECT_EQ(p.memory.firstRowShown, 0);
    // Grid off: no scale before the candles; black bands, then the labels.
    size_t firstText = ops.size(), lastCandle = 0, firstBand = ops.size();
    for (size_t i = 0; i < ops.size(); ++i) {
        if (ops[i].kind == DrawOpKind::Text) firstText = std::min(firstText, i);
        if (ops[i].kind == DrawOpKind::Rectangle) lastCandle = i;
        if (ops[i].kind == DrawOpKind::FillRect && ops[i].brush.colour == Black && ops[i].x1 == 0)
            firstBand = std::min(firstBand, i);
    }
    EXPECT_LT(lastCandle, firstBand);
    EXPECT_LT(firstBand, firstText);
    for (const DrawOp& op : dev.OpsOf(DrawOpKind::Text)) {
        EXPECT_EQ(op.fontFace, "New Times Roman");
        EXPECT_EQ(op.fontHeight, 14);
    }
    // Time labels at 8 pixels a row every 48 pixels: rows 0, 6, 12, ...
    const auto texts = dev.Texts();
    EXPECT_NE(std::find(texts.begin(), texts.end(), "R6"), texts.end());
}

TEST(PaintTest, ReadoutStopsFivePixelsShortOfRightEdge) {
    ChartFixture f("Price", LayoutPlain, 100);
    PaintSetup p;
    p.ctx.readout = {435, 150, true, false}; // x = right - 5
    RecordingDevice dev;
    PaintResult r = PaintPriceChart(dev, f.chart(), 440, 300, p.ctx);
    EXPECT_EQ(r.readoutRow, -1);
    EXPECT_TRUE(ReadoutTexts(dev).empty());

    for (const ReadoutState shown :
         {ReadoutState{434, 150, true, false}, {434, 150, false, true}}) {
        dev.Clear();
        p.ctx.readout = shown;
        r = PaintPriceChart(dev, f.chart(), 440, 300, p.ctx);
        const std::vector<DrawOp> readout = ReadoutTexts(dev);
        ASSERT_EQ(readout.size(), 2u);
        // Value: (280 - 150) / pixelsPerValue + valueMin, seven characters.
        const double value = 130 / r.scale.pixelsPerValue + r.scale.valueMin;
        EXPECT_EQ(readout[0].text, std::to_string(value).substr(0, 7));
        EXPECT_EQ(readout[0].x1, 0);
        EXPECT_EQ(readout[0].textBackground, Black);
        // Date of the row under the mouse, with nine blanks to wipe a longer one.
        EXPECT_EQ(readout[1].x1, 40);
        EXPECT_EQ(readout[1].text, "R" + std::to_string(r.readoutRow) + "         ");
        EXPECT_EQ(r.readoutRow, 98); // 4 pixels a row, lastBarX 436: 100 - 0.75 - 1
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

TEST(Crosshair, ClippedPaintPassesOnlyTheReadoutArea) {
    ChartFixture f("Price", LayoutPlain, 100);
    f.chart().view->showLine = 0;
    f.chart().view->showCandle = 1;
    PaintSetup p;
    p.ctx.readout = {200, 150, true, false};
    RecordingDevice dev;
    const PaintResult r = PaintPriceChartClipped(dev, f.chart(), 440, 300, ReadoutRect, p.ctx);
    EXPECT_GE(r.readoutRow, 0);
    EXPECT_EQ(dev.Clip(), nullptr);                        // lifted at the end
    EXPECT_TRUE(dev.OpsOf(DrawOpKind::Rectangle).empty()); // no candle reaches the top band
    EXPECT_EQ(ReadoutTexts(dev).size(), 2u);
}

} // namespace
} // namespace velorin
