// The button bar without a window: where its entries sit, which button a
// point hits, which buttons are gated, and the hint's steps.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "shell/core/button_bar.h"
#include "shell/core/menu_def.h"

namespace velorin {
namespace {

ButtonBar LaidOutBar(int characterHeight = 16) {
    ButtonBar bar{};
    DefineAllButtons(bar);
    LayOutButtonBar(bar, characterHeight);
    return bar;
}

// The bar once a chart is open: every button enabled.
ButtonBar BarWithChartOpen() {
    ButtonBar bar = LaidOutBar();
    for (ButtonState& s : bar.state)
        s.enabled = 1;
    return bar;
}

constexpr int ZoomIn = 15; // gated; after 11 buttons and 4 gaps, at 6 + 275 + 36 = 317

TEST(ButtonBar, LayoutPicturesAndGating) {
    const ButtonBar bar = LaidOutBar(16);
    EXPECT_EQ(bar.barHeight, 28);
    // From 6, 25 a button and 9 a gap: New, Open, Save, a gap, Print, a gap,
    // Connect ... and Help after 23 buttons and 8 gaps.
    const std::pair<int, int> lefts[] = {{0, 6},   {1, 31},  {3, 81},   {4, 90},
                                         {5, 115}, {6, 124}, {15, 317}, {31, 653}};
    for (const auto& [index, left] : lefts)
        EXPECT_EQ(bar.entries[index].left, left) << index;
    // A button that sends a menu command is gated exactly when that item is;
    // the commands only the bar sends all need a chart. Every button has its
    // own picture; gaps have none.
    int count = 0, gatedCount = 0;
    const MenuEntry* menu = MainMenuEntries(&count);
    const int* gated = GatedCommands(&gatedCount);
    const std::set<int> gatedItems(gated, gated + gatedCount);
    std::set<int> items;
    for (int i = 0; i < count; ++i)
        if (menu[i].type == MenuEntry::Item) items.insert(menu[i].id);
    std::set<std::string> pictures;
    for (int i = 0; i < ButtonCount; ++i) {
        const ToolButton& e = bar.entries[i];
        const char* picture = ButtonPictureName(e.bitmapId);
        if (IsGap(e)) {
            EXPECT_EQ(picture, nullptr);
            continue;
        }
        ASSERT_NE(picture, nullptr) << e.label;
        EXPECT_TRUE(pictures.insert(picture).second) << picture;
        const bool expected = items.count(e.commandId) ? gatedItems.count(e.commandId) == 1 : true;
        EXPECT_EQ(bar.state[i].gated == 1, expected) << e.label;
    }
    EXPECT_EQ(pictures.size(), 24u);
}

TEST(ButtonBar, HitTest) {
    const ButtonBar open = BarWithChartOpen(), closed = LaidOutBar();
    // x, and the entry hit with a chart open and at start (-1: none).
    const int cases[][3] = {
        {5, -1, -1},   {6, 0, 0},     {30, 0, 0},    // New Layout: left edge to left + 24
        {31, 1, 1},    {56, 2, -1},   {80, 2, -1},   // Save Layout is gated
        {81, -1, -1},  {89, -1, -1},  {90, 4, -1},   // the gap after it, then Print
        {653, 31, 31}, {677, 31, 31}, {678, -1, -1}, // Help, the last
    };
    for (const auto& [x, withChart, atStart] : cases) {
        EXPECT_EQ(HitButton(open, x), withChart) << x;
        EXPECT_EQ(HitButton(closed, x), atStart) << x;
    }
}

// The hint's steps on the bar (height 28, Zoom In at x 317 to 341, a gap
// at 81 to 89): it shows only over an enabled button, taking the mouse;
// leaving the bar's rows, a click or a key anywhere hides it and gives the
// mouse back. Points above or left of the bar arrive as 16-bit words.
TEST(ButtonBar, HintSteps) {
    enum Event { Move, Down, Key };
    struct Case {
        const char* what;
        Event event;
        bool chartOpen;
        int captured, x, y, show, press;
        bool capture, release;
        int capturedAfter;
    };
    const Case cases[] = {
        {"over a button", Move, true, 0, 320, 10, ZoomIn, -1, true, false, 1},
        {"over a button, captured", Move, true, 1, 320, 10, ZoomIn, -1, false, false, 1},
        {"last row of the bar", Move, true, 1, 320, 27, ZoomIn, -1, false, false, 1},
        {"top row of the bar", Move, true, 1, 320, 0, -1, -1, false, true, 0},
        {"first row under the bar", Move, true, 1, 320, 28, -1, -1, false, true, 0},
        {"above the bar", Move, true, 1, 320, -3, -1, -1, false, true, 0},
        {"over a gap", Move, true, 1, 85, 10, -1, -1, false, false, 1},
        {"left of the window", Move, true, 1, -4, 10, -1, -1, false, false, 1},
        {"gated button, no chart", Move, false, 0, 320, 10, -1, -1, false, false, 0},
        {"click on a button", Down, true, 1, 320, 10, -1, ZoomIn, false, true, 0},
        {"click on a gap", Down, true, 1, 85, 10, -1, -1, false, true, 0},
        {"click, gated button, no chart", Down, false, 0, 320, 10, -1, -1, false, false, 0},
        {"key", Key, true, 1, 0, 0, -1, -1, false, true, 0},
        {"key, not captured", Key, true, 0, 0, 0, -1, -1, false, false, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const ButtonBar bar = c.chartOpen ? BarWithChartOpen() : LaidOutBar();
        std::int32_t captured = c.captured;
        const HintStep s = c.event == Move   ? BarMouseMove(bar, c.x, c.y, captured)
                           : c.event == Down ? BarMouseDown(bar, c.x, c.y, captured)
                                             : HideHintMessage(captured);
        EXPECT_EQ(s.show, c.show);
        EXPECT_EQ(s.hide, c.show < 0);
        EXPECT_EQ(s.focus, c.show >= 0);
        EXPECT_EQ(s.press, c.press);
        EXPECT_EQ(s.capture, c.capture);
        EXPECT_EQ(s.release, c.release);
        EXPECT_EQ(captured, c.capturedAfter);
    }
}

} // namespace
} // namespace velorin
