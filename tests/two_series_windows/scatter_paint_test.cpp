#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "rendering/overlay_paint.h"
#include "rendering/scatter_paint.h"
#include "tests/rendering/paint_setup.h"
#include "tests/support/chart_fixture.h"

namespace velorin {
namespace {

using namespace velorin::testing;

// A Correlation chart on four pairs: first = 10, 20, 30, 40 against
// second = 1, 2, 3, 4. On a 440 x 240 client the padded ranges are
// 9.9..40.4 and 0.99..4.04, 200/30.5 and 400/3.05 pixels per value.
struct ScatterChart {
    ScatterChart() : f("Correlation", LayoutPair, 30) {
        PairData& p = *f.chart().pairData;
        p.pairCount = 4;
        ChartFixture::Fill(p.firstSeries, {10, 20, 30, 40});
        ChartFixture::Fill(p.secondSeries, {1, 2, 3, 4});
        p.rSquared = 1.0;
        p.alpha = 0.0;
    }
    ScatterPaintResult Paint(double beta, double alpha) {
        f.chart().pairData->beta = beta;
        f.chart().pairData->alpha = alpha;
        return PaintScatterChart(dev, f.chart(), 440, 240, p.ctx, false, 0, 0);
    }
    ChartFixture f;
    PaintSetup p;
    RecordingDevice dev;
};

TEST(ScatterTest, StretchRangesBoxesAndTheLineLeavingThroughTheTop) {
    ScatterChart s;
    const ScatterLayout l = s.Paint(20.0, 0.0).layout;
    EXPECT_DOUBLE_EQ(s.f.chart().view->resolution, 100.0); // 4 rows fill 400 pixels
    EXPECT_DOUBLE_EQ(l.high1 - l.low1, 40.4 - 9.9);
    EXPECT_DOUBLE_EQ(l.high2 - l.low2, 4.04 - 0.99);
    // Boxes: the frame, then one per pair in colour 5.
    std::vector<Box> boxes;
    for (const DrawOp& op : s.dev.OpsOf(DrawOpKind::Rectangle))
        if (op.pen.colour == s.p[PaletteClose]) boxes.push_back(BoxOf(op));
    EXPECT_EQ(
        boxes,
        (std::vector<Box>{
            {40, 219, 42, 221}, {171, 153, 173, 155}, {302, 88, 304, 90}, {433, 22, 435, 24}}));
    // first = 20 x second: 19.8 at the left edge, 40.4 (the top) at second 2.02.
    std::vector<DrawOp> line;
    for (const DrawOp& op : s.dev.OpsOf(DrawOpKind::LineTo))
        if (op.pen.colour == s.p[PaletteSlot3]) line.push_back(op);
    ASSERT_EQ(line.size(), 1u);
    EXPECT_EQ(line[0].x1, 40);
    EXPECT_EQ(line[0].y1, 155);
    EXPECT_EQ(line[0].x2, 175);
    EXPECT_NEAR(line[0].y2, 20, 1);
}

TEST(ScatterTest, ZeroBetaIsStoredAsAMillionthAndDrawsAFlatLine) {
    ScatterChart s;
    s.Paint(0.0, 25.0);
    EXPECT_EQ(s.f.chart().pairData->beta, 0.000001);
    // From the left edge to the right one at y(25) = 220 - 15.1 x 200/30.5 = 120.98.
    int lines = 0;
    for (const DrawOp& op : s.dev.OpsOf(DrawOpKind::LineTo)) {
        if (op.pen.colour != s.p[PaletteSlot3]) continue;
        ++lines;
        EXPECT_EQ(BoxOf(op)[0], 40);
        EXPECT_NEAR(BoxOf(op)[2], 440, 1);
        EXPECT_EQ(op.y1, 120);
        EXPECT_EQ(op.y2, 120);
    }
    EXPECT_EQ(lines, 1);
}

TEST(ScatterTest, HeadingInTheCodePageAtTheTopRight) {
    ScatterChart s;
    s.f.chart().pairData->rSquared = 0.5;
    s.Paint(2.0, 0.0);
    const auto texts = s.dev.OpsOf(DrawOpKind::Text);
    const auto it = std::find_if(texts.begin(), texts.end(), [](const DrawOp& op) {
        return op.text == "R\xB2=0.50   \xDF=2.000  Adj_\xDF=1.667";
    });
    ASSERT_NE(it, texts.end());
    EXPECT_EQ(it->align, AlignRight);
    EXPECT_EQ(BoxOf(*it), (Box{440, 0, 0, 0}));
}

TEST(OverlayPaintTest, SecondSeriesOnItsOwnScaleOnlyFromAnotherConnection) {
    for (const bool sameConnection : {false, true}) {
        ChartFixture f("Overlay", LayoutPair, 30);
        Chart& chart = f.chart();
        chart.showCurveHandles = 1;
        chart.connectionId = 1;
        chart.secondConnectionId = sameConnection ? 1 : 2;
        PairData& p = *chart.pairData;
        p.pairCount = 30;
        for (int i = 0; i < 30; ++i) {
            p.firstSeries[i] = 100.0 + i;
            p.secondSeries[i] = 10.0 + i;
        }
        PaintSetup setup;
        RecordingDevice dev;
        std::int32_t regionTool = 0;
        const OverlayPaintResult r =
            PaintOverlayChart(dev, chart, 440, 240, setup.ctx, 0, regionTool);
        EXPECT_EQ(r.secondShown, !sameConnection);
        EXPECT_STREQ(r.caption, "TEST Overlay");
        int secondLines = 0, rightLabels = 0;
        for (const DrawOp& op : dev.Ops()) {
            secondLines += op.kind == DrawOpKind::LineTo && op.pen.colour == setup[PaletteSlot3];
            rightLabels += op.kind == DrawOpKind::Text && op.align == AlignRight;
        }
        EXPECT_EQ(secondLines > 0, !sameConnection);
        EXPECT_EQ(rightLabels > 0, !sameConnection);
        EXPECT_EQ(chart.view->curveRegions[3] != nullptr, !sameConnection);
        if (!sameConnection) {
            EXPECT_DOUBLE_EQ(r.secondScale.valueMin, 9.9);
        }
    }
}

} // namespace
} // namespace velorin
