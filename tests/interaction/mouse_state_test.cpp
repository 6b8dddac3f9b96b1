#include "interaction/mouse_state.h"

#include <gtest/gtest.h>

#include <array>

#include "tests/support/recording_device.h"

namespace velorin {
namespace {

TEST(MouseState, PaintSeesPlacedObjectsAndEndsOnlyTheToolsItConverted) {
    ChartMouseState m{};
    m.trendTool = 1;
    m.selectedTrend = 3;
    m.verticalTool = 1;
    m.selectedVertical = 7;
    m.selectedHorizontal = 5; // no horizontal tool: the index alone means nothing
    const PlacedObjects placed = PlacedObjectsOf(m);
    EXPECT_EQ(placed.kinds, (ObjectKinds{.trend = true, .vertical = true}));
    EXPECT_EQ(placed.trend, 3);
    EXPECT_EQ(placed.vertical, 7);

    EndConvertedTools(m, ObjectKinds{.trend = true});
    EXPECT_EQ(m.trendTool, 0);
    EXPECT_EQ(m.verticalTool, 1);
    EXPECT_EQ(m.selectedTrend, 3);
    EndConvertedTools(m, ObjectKinds{.vertical = true, .horizontal = true});
    EXPECT_EQ(m.verticalTool, 0);
    EXPECT_EQ(m.horizontalTool, 0);

    m.mouseX = 12;
    m.mouseY = 34;
    m.toolArmed = 1;
    const ReadoutState r = ReadoutOf(m);
    EXPECT_EQ(r.mouseX, 12);
    EXPECT_EQ(r.mouseY, 34);
    EXPECT_FALSE(r.crosshairOn);
    EXPECT_TRUE(r.toolArmed);
}

TEST(MouseState, FirstCrosshairMoveDrawsTwoHairsLaterMovesFour) {
    ChartMouseState m{};
    m.crosshairOn = 1;
    m.mouseX = 100;
    m.mouseY = 50;
    RecordingDevice dev;
    MoveCrosshair(dev, m, 440, 300);
    auto inv = dev.OpsOf(DrawOpKind::InvertRect);
    ASSERT_EQ(inv.size(), 2u);
    // A column ending at x from the plot top to its bottom, a row from the scale to the right.
    EXPECT_EQ((std::array{inv[0].x1, inv[0].y1, inv[0].x2, inv[0].y2}),
              (std::array{99, 20, 100, 280}));
    EXPECT_EQ((std::array{inv[1].x1, inv[1].y1, inv[1].x2, inv[1].y2}),
              (std::array{40, 49, 440, 50}));
    EXPECT_EQ(m.toolStep, 99);

    dev.Clear();
    m.mouseX = 120;
    m.mouseY = 60;
    MoveCrosshair(dev, m, 440, 300);
    inv = dev.OpsOf(DrawOpKind::InvertRect);
    ASSERT_EQ(inv.size(), 4u);
    EXPECT_EQ(inv[0].x2, 100); // the old vertical hair is inverted back
    EXPECT_EQ(inv[1].x2, 120);
    EXPECT_EQ(inv[2].y2, 50);
    EXPECT_EQ(inv[3].y2, 60);
    EXPECT_EQ(m.hairX, 120);
    EXPECT_EQ(m.hairY, 60);
}

} // namespace
} // namespace velorin
