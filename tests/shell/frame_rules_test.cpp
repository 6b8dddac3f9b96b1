#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <set>
#include <string>

#include "resources/command_ids.h"
#include "shell/core/frame_rules.h"
#include "shell/core/menu_def.h"

namespace velorin {
namespace {

// The main menu's items by id, greyed as the menu starts; writes counted.
class MapMenu final : public MenuModel {
  public:
    MapMenu() {
        int n = 0;
        const MenuEntry* e = MainMenuEntries(&n);
        for (int i = 0; i < n; ++i)
            if (e[i].type == MenuEntry::Item) greyed[e[i].id] = e[i].greyed;
    }
    std::map<int, bool> greyed;
    int writes = 0;
    bool IsGreyed(int id) const override { return greyed.count(id) && greyed.at(id); }
    void SetGreyed(int id, bool g) override {
        if (greyed.count(id)) greyed[id] = g, ++writes;
    }
};

TEST(MainMenu, GatedItemsStartGreyedAndEverythingElseEnabled) {
    MapMenu m;
    int n = 0;
    const int* gated = GatedCommands(&n);
    ASSERT_EQ(n, 38);
    const std::set<int> gatedSet(gated, gated + n);
    for (const auto& [id, g] : m.greyed)
        EXPECT_EQ(g, gatedSet.count(id) == 1) << id;
    // cmd::OverboughtSold is gated but stands in no menu.
    EXPECT_EQ(m.greyed.count(cmd::OverboughtSold), 0u);
}

TEST(MenuState, SentinelDecidesWhetherTheMenuIsTouched) {
    MapMenu m;
    ButtonState buttons[3] = {{1, 0}, {0, 0}, {1, 0}};
    UpdateMenuState(m, 1, buttons, 3);
    EXPECT_FALSE(m.IsGreyed(cmd::CloseAll));
    EXPECT_EQ(buttons[0].enabled, 1);
    EXPECT_EQ(buttons[1].enabled, 0); // not gated: left alone
    const int writes = m.writes;
    UpdateMenuState(m, 2, buttons, 3); // already enabled: menu untouched
    EXPECT_EQ(m.writes, writes);
    // With the sentinel out of step, nothing else is corrected.
    m.greyed[cmd::Cascade] = true;
    UpdateMenuState(m, 3, buttons, 3);
    EXPECT_TRUE(m.IsGreyed(cmd::Cascade));
    UpdateMenuState(m, 0, buttons, 3);
    EXPECT_TRUE(m.IsGreyed(cmd::CloseAll));
    EXPECT_TRUE(m.IsGreyed(cmd::Price));
    EXPECT_EQ(buttons[2].enabled, 0);
}

TEST(FrameRules, ZoomSteps) {
    struct Step {
        double from, in, out;
    } steps[] = {{60, 50, 25}, {50, 50, 25}, {49, 50, 16}, {25, 50, 16},      {24.9, 25, 8},
                 {16, 25, 8},  {15, 16, 4},  {8, 16, 4},   {7, 8, 2},         {4, 8, 2},
                 {3, 4, 1},    {2, 4, 1},    {1, 2, 0.5},  {0.5, 0.25, 0.25}, {0.25, 0.25, 0.25}};
    for (const Step& s : steps) {
        EXPECT_EQ(ZoomInResolution(s.from), s.in) << s.from;
        EXPECT_EQ(ZoomOutResolution(s.from), s.out) << s.from;
    }
}

TEST(FrameRules, DrawingAndSelectionRefusals) {
    // Trend and channel only on the kinds that show prices.
    for (int kind = 1; kind <= 26; ++kind) {
        const bool allowed = kind == 1 || kind == 3 || kind == 4 || kind == 5 || kind == 13 ||
                             kind == 15 || kind == 25;
        EXPECT_EQ(ChartCommandRefusal(cmd::DrawTrendButton, kind) == nullptr, allowed) << kind;
        EXPECT_EQ(ChartCommandRefusal(cmd::DrawChannelButton, kind) == nullptr, allowed) << kind;
    }
    // clang-format off
    const struct { int command, kind; const char* expected; } cases[] = {
        {cmd::DrawChannelButton, 50, "Drawing Channel not available for this chart"},
        {cmd::DrawHoriLineButton, 20, "Drawing Hori Line not available for this chart"},
        {cmd::DrawVertLineButton, 19, "Drawing Vert Line not available for this chart"},
        {cmd::DrawVertLineButton, 6, nullptr},
        {cmd::SelectEndPointButton, 19, "Selection not available for this chart"},
        {cmd::SelectAllDataButton, 20, nullptr},
    };
    for (const auto& c : cases) EXPECT_STREQ(ChartCommandRefusal(c.command, c.kind), c.expected);
    // clang-format on
}

TEST(FrameRules, StyleGuard) {
    const struct {
        int command, kind, rows, full;
        const char* expected;
    } cases[] = {
        {cmd::PriceLineButton, 6, 100, 1, "Please Select Chart With Price Line"},
        {cmd::PriceLineButton, 19, 100, 0, nullptr}, // the close line needs no full columns
        {cmd::CandleStickButton, 1, 25, 1, "Insufficient data"},
        {cmd::CandleStickButton, 1, 26, 1, nullptr},
        {cmd::CandleStickButton, 1, 26, 0, "Insufficient data"},
        {cmd::HighLowButton, 3, 100, 0, "Insufficient data"},
        {cmd::BarChartButton, 3, 2, 1, nullptr},
    };
    for (const auto& c : cases)
        EXPECT_STREQ(StyleRefusal(c.command, c.kind, c.rows, c.full), c.expected) << c.command;
}

} // namespace
} // namespace velorin

#include "market_data/block.h"
#include "shell/core/working_blocks.h"
#include "tests/support/recording_seam.h"

namespace velorin {
namespace {

TEST(WorkingBlocks, AnyFailedAllocationIsReportedAndLeavesNothing) {
    test_support::RecordingSeam seam;
    ResetProgramState();
    const long before = blockAllocator.liveBlocks;
    for (int n = 0; n < 9; ++n) {
        FailAllocationAfter(n);
        seam.Clear();
        EXPECT_FALSE(AllocateWorkingBlocks()) << n;
        blockAllocator.failCountdown = -1;
        ASSERT_EQ(seam.MessageCount(), 1u);
        EXPECT_EQ(seam.messages[0].text,
                  "QDX-Velorin Memory Allocation Failed\n\nPlease close some applications");
        EXPECT_EQ(seam.messages[0].caption, "QDX-Velorin");
        EXPECT_EQ(seam.messages[0].icon, MessageIcon::Stop);
        EXPECT_EQ(blockAllocator.liveBlocks, before);
        ResetProgramState();
    }
    EXPECT_TRUE(AllocateWorkingBlocks());
    FreeWorkingBlocks();
    EXPECT_EQ(blockAllocator.liveBlocks, before);
}

} // namespace
} // namespace velorin
