#include "interaction/mouse_state.h"

#include <gtest/gtest.h>

#include <array>

#include "tests/support/recording_device.h"

namespace velorin {
namespace {

// The first move draws two hairs; later moves invert the old ones back
// before drawing the new ones.
TEST(MouseState, CrosshairMovesInvertTheOldHairsBack) {
    ChartMouseState m{};
    m.crosshairOn = 1, m.mouseX = 100, m.mouseY = 50;
    RecordingDevice dev;
    MoveCrosshair(dev, m, 440, 300);
    auto inv = dev.OpsOf(DrawOpKind::InvertRect);
    ASSERT_EQ(inv.size(), 2u);
    // A column ending at x from the plot top to its bottom, a row from the scale to the right.
    EXPECT_EQ((std::array{inv[0].x1, inv[0].y1, inv[0].x2, inv[0].y2}),
              (std::array{99, 20, 100, 280}));
    EXPECT_EQ((std::array{inv[1].x1, inv[1].y1, inv[1].x2, inv[1].y2}),
              (std::array{40, 49, 440, 50}));
    dev.Clear();
    m.mouseX = 120, m.mouseY = 60;
    MoveCrosshair(dev, m, 440, 300);
    inv = dev.OpsOf(DrawOpKind::InvertRect);
    ASSERT_EQ(inv.size(), 4u);
    EXPECT_EQ((std::array{inv[0].x2, inv[1].x2, inv[2].y2, inv[3].y2}),
              (std::array{100, 120, 50, 60}));
}

} // namespace
} // namespace velorin
