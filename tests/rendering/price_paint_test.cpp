#include <gtest/gtest.h>

#include <string>

#include "chart_fixture.h"
#include "rendering/mouse_state.h"
#include "rendering/palette.h"
#include "rendering/price_paint.h"
#include "rendering/recording_device.h"

namespace velorin {
namespace {

using testing::ChartFixture;

TEST(PaintTest, TooSmallWindowAndTooFewRowsDrawNothing) {
    ChartFixture f("Price", LayoutPlain, 30);
    ResetChartMouseState();
    RecordingDevice dev;
    EXPECT_EQ(PaintPriceChart(dev, f.chart(), 300, 50).outcome, PaintOutcome::Minimise);
    EXPECT_TRUE(dev.Ops().empty());
    const PaintResult ok = PaintPriceChart(dev, f.chart(), 300, 51);
    EXPECT_EQ(ok.outcome, PaintOutcome::Painted);
    EXPECT_STREQ(ok.caption, "TEST Price");

    ChartFixture rsi("RSI", LayoutOneCurve, 24);
    dev.Clear();
    const PaintResult r = PaintPriceChart(dev, rsi.chart(), 300, 300);
    EXPECT_EQ(r.outcome, PaintOutcome::InsufficientData);
    EXPECT_STREQ(r.caption, "TEST RSI      INSUFFICIENT DATA");
    EXPECT_TRUE(dev.Ops().empty());
}

TEST(PaintTest, PriceCandlesWithBandsAndScalesOnTop) {
    ChartFixture f("Price", LayoutPlain, 50);
    f.chart().view->showLine = 0;
    f.chart().view->showCandle = 1;
    ResetChartMouseState();
    RecordingDevice dev;
    PaintPriceChart(dev, f.chart(), 440, 300);
    const auto& ops = dev.Ops();
    // The plot frame first, in the grid pen and background brush.
    auto rects = dev.OpsOf(DrawOpKind::Rectangle);
    ASSERT_EQ(rects.size(), 1u + 50);
    EXPECT_EQ(rects[0].x1, 40);
    EXPECT_EQ(rects[0].y1, 20);
    EXPECT_EQ(rects[0].x2, 440);
    EXPECT_EQ(rects[0].y2, 280);
    EXPECT_EQ(rects[0].pen.colour, PaletteColour(PaletteGrid));
    // 50 rows stretched over 400 pixels: 8 pixels a row, last candle at 432.
    EXPECT_DOUBLE_EQ(f.chart().view->resolution, 8.0);
    EXPECT_EQ(renderResults.lastBarX, 432);
    EXPECT_EQ(renderResults.firstRowShown, 0);
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
    bool sawRow6 = false;
    for (const std::string& t : dev.Texts())
        sawRow6 |= t == "R6";
    EXPECT_TRUE(sawRow6);
}

TEST(PaintTest, ReadoutStopsFivePixelsShortOfRightEdge) {
    ChartFixture f("Price", LayoutPlain, 100);
    ResetChartMouseState();
    chartMouse.crosshairOn = 1;
    chartMouse.mouseY = 150;
    RecordingDevice dev;
    chartMouse.mouseX = 435; // right - 5
    PaintResult r = PaintPriceChart(dev, f.chart(), 440, 300);
    EXPECT_EQ(r.readoutRow, -1);
    for (const DrawOp& op : dev.OpsOf(DrawOpKind::Text))
        EXPECT_NE(op.fontHeight, 13);

    dev.Clear();
    chartMouse.mouseX = 434;
    r = PaintPriceChart(dev, f.chart(), 440, 300);
    std::vector<DrawOp> readout;
    for (const DrawOp& op : dev.OpsOf(DrawOpKind::Text))
        if (op.fontHeight == 13) readout.push_back(op);
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

TEST(Crosshair, FirstMoveDrawsTwoHairsLaterMovesFour) {
    ResetChartMouseState();
    RecordingDevice dev;
    chartMouse.crosshairOn = 1;
    chartMouse.mouseX = 100;
    chartMouse.mouseY = 50;
    MoveCrosshair(dev, chartMouse, 440, 300);
    auto inv = dev.OpsOf(DrawOpKind::InvertRect);
    ASSERT_EQ(inv.size(), 2u);
    EXPECT_EQ(inv[0].x1, 99); // a column ending at x, from the plot top to its bottom
    EXPECT_EQ(inv[0].x2, 100);
    EXPECT_EQ(inv[0].y1, 20);
    EXPECT_EQ(inv[0].y2, 280);
    EXPECT_EQ(inv[1].x1, 40);
    EXPECT_EQ(inv[1].x2, 440);
    EXPECT_EQ(chartMouse.toolStep, 99);

    dev.Clear();
    chartMouse.mouseX = 120;
    chartMouse.mouseY = 60;
    MoveCrosshair(dev, chartMouse, 440, 300);
    inv = dev.OpsOf(DrawOpKind::InvertRect);
    ASSERT_EQ(inv.size(), 4u);
    EXPECT_EQ(inv[0].x2, 100); // the old vertical hair is inverted back
    EXPECT_EQ(inv[1].x2, 120);
    EXPECT_EQ(inv[2].y2, 50);
    EXPECT_EQ(inv[3].y2, 60);
    EXPECT_EQ(chartMouse.hairX, 120);
}

TEST(Crosshair, ClippedPaintPassesOnlyTheReadoutArea) {
    ChartFixture f("Price", LayoutPlain, 100);
    f.chart().view->showLine = 0;
    f.chart().view->showCandle = 1;
    ResetChartMouseState();
    chartMouse.crosshairOn = 1;
    chartMouse.mouseX = 200;
    chartMouse.mouseY = 150;
    RecordingDevice dev;
    const PaintResult r = PaintPriceChartClipped(dev, f.chart(), 440, 300, ReadoutRect);
    EXPECT_GE(r.readoutRow, 0);
    EXPECT_EQ(dev.Clip(), nullptr);                        // lifted at the end
    EXPECT_TRUE(dev.OpsOf(DrawOpKind::Rectangle).empty()); // no candle reaches the top band
    int readoutTexts = 0;
    for (const DrawOp& op : dev.OpsOf(DrawOpKind::Text))
        readoutTexts += op.fontHeight == 13;
    EXPECT_EQ(readoutTexts, 2);
}

} // namespace
} // namespace velorin
