#include <gtest/gtest.h>

#include <string>

#include "interaction/two_series_command.h"
#include "rendering/overlay_paint.h"
#include "resources/command_ids.h"
#include "tests/interaction/fake_window.h"
#include "tests/rendering/paint_setup.h"
#include "tests/support/chart_fixture.h"
#include "tests/support/recording_seam.h"

namespace velorin {
namespace {

using namespace velorin::testing;

// An overlay of 30 pairs in the fake window (plot x 40..437, y 20..220).
struct Overlay {
    Overlay() : f("Overlay", LayoutPair, 30) {
        PairData& p = *f.chart().pairData;
        p.pairCount = 30;
        for (int i = 0; i < 30; ++i) {
            p.firstSeries[i] = 100.0 + i;
            p.secondSeries[i] = 130.0 - i;
        }
        // The first paint stretches the resolution, as a window on screen has.
        RecordingDevice dev;
        Paint(dev);
    }
    HighlightSet& h() { return *f.chart().drawings->highlights; }
    void Command(int id) { OverlayCommand(w, f.chart(), tool, id); }
    OverlayClickResult Click(int x, int y) { return OverlayLeftClick(w, f.chart(), tool, x, y); }
    void Corners(int count) {
        for (int k = 0; k < count; ++k)
            Click(100 + 20 * k, 50 + 10 * (k % 3));
    }
    OverlayPaintResult Paint(RecordingDevice& dev) {
        return PaintOverlayChart(dev, f.chart(), 440, 240, setup.ctx, tool.index, tool.convert);
    }
    ChartFixture f;
    FakeWindow w;
    HighlightToolState tool;
    PaintSetup setup;
    test_support::RecordingSeam seam;
};

TEST(HighlightToolTest, HowARegionEnds) {
    struct Case {
        const char* name;
        int corners;
        int endX, endY; // the click after the corners
        bool kept, captured, ring;
        int drawing;
    };
    const Case cases[] = {
        {"eleventh click in the plot", 10, 300, 100, true, false, false, 1},
        {"two corners, left of the plot", 2, 10, 100, false, false, false, 0},
        {"three corners, below the plot", 3, 200, 230, true, false, false, 1},
        {"right of the plot keeps mouse and cursor", 5, 439, 100, false, true, true, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Overlay o;
        o.Command(cmd::HighlightRegion);
        ASSERT_TRUE(o.w.captured && o.w.ringCursor && o.tool.armed && o.tool.drawing);
        o.Corners(c.corners);
        EXPECT_EQ(o.h().pointCount[0], c.corners);
        EXPECT_EQ(o.h().inUse[0], 0);
        o.Click(c.endX, c.endY);
        EXPECT_EQ(o.h().inUse[0], c.kept ? 1 : 0);
        EXPECT_EQ(o.h().pointCount[0], c.corners); // the finishing click adds no corner
        EXPECT_EQ(o.w.captured, c.captured);
        EXPECT_EQ(o.w.ringCursor, c.ring);
        EXPECT_EQ(o.tool.armed, 0);
        EXPECT_EQ(o.tool.drawing, c.drawing);
    }
}

TEST(HighlightToolTest, FinishedRegionIsPaintedWhereItWasClickedAndCanBeHit) {
    Overlay o;
    o.Command(cmd::HighlightRegion);
    o.Click(100, 50), o.Click(300, 60), o.Click(200, 200);
    o.Click(10, 100);
    RecordingDevice dev;
    o.Paint(dev);
    EXPECT_EQ(o.tool.convert, 0);
    const std::vector<Box> fills = Boxes(dev, DrawOpKind::FillRegion);
    ASSERT_EQ(fills.size(), 1u); // no curve handles: only the region
    // Pixels to rows and values and back lose at most a pixel each way.
    const Box clicked{100, 50, 301, 201};
    for (int k = 0; k < 4; ++k)
        EXPECT_NEAR(fills[0][k], clicked[k], 1);
    OverlayClickResult hit = o.Click(200, 100);
    ASSERT_EQ(hit.menu.size(), 2u);
    EXPECT_STREQ(hit.menu[0].text, "Clear");
    EXPECT_EQ(hit.menu[1].id, cmd::ClearAllHighlights);
    EXPECT_EQ(hit.inverted, o.h().regions[0]);
    EXPECT_TRUE(o.Click(200, 100).menu.empty()); // blocked until a plain click
    EXPECT_EQ(o.tool.popupOpen, 0);
    EXPECT_FALSE(o.Click(200, 100).menu.empty());
    o.Command(cmd::ClearHighlight);
    EXPECT_EQ(o.h().inUse[0], 0);
    EXPECT_EQ(o.h().regions[0], nullptr);
}

TEST(HighlightToolTest, NineRegionsAreTheLimitAndClearAllEmptiesThem) {
    Overlay o;
    for (int i = 0; i < MaxDrawnObjects; ++i) {
        o.Command(cmd::HighlightRegion);
        EXPECT_EQ(o.tool.index, i);
        o.Corners(3);
        o.Click(10, 100);
    }
    o.w.captured = o.w.ringCursor = false;
    o.Command(cmd::HighlightRegion);
    ASSERT_EQ(o.seam.messages.size(), 1u);
    const test_support::RecordedMessage& m = o.seam.messages[0];
    EXPECT_EQ(m.text + "|" + m.caption,
              "You already have maximum number of regions|Highlight Region");
    EXPECT_EQ(m.icon, MessageIcon::Warning);
    EXPECT_EQ(o.tool.armed + o.tool.drawing, 0);
    EXPECT_FALSE(o.w.captured || o.w.ringCursor);
    o.Command(cmd::ClearAllHighlights);
    for (int i = 0; i < MaxDrawnObjects; ++i)
        EXPECT_EQ(o.h().inUse[i], 0);
}

} // namespace
} // namespace velorin
