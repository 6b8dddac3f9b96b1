#include "interaction/chart_command.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "chart_model/desk.h"
#include "fake_window.h"
#include "interaction/chart_menu.h"
#include "rendering/palette.h"
#include "tests/support/chart_fixture.h"
#include "tests/support/recording_seam.h"

namespace velorin {
namespace {

using testing::ChartFixture;
using testing::FakeWindow;

struct ColourSeam : test_support::RecordingSeam {
    int answer = 0;
    std::uint32_t picked = 0;
    std::uint32_t offered = 0;
    int ChooseColour(std::uint32_t& rgb) override {
        offered = rgb;
        if (answer == 1) rgb = picked;
        return answer;
    }
};

TEST(ChartCommand, ToolsRefuseAFullSetWithTheirOwnWords) {
    const struct {
        int command;
        const char* text;
        const char* caption;
    } tools[] = {
        {20501, "You already have maximum number of Trend Lines", "Trend Line"},
        {20502, "You already have maximum number of Channels Lines", "Channel Lines"},
        {20506, "You already have maximum number of Gann Lines", "Gann Lines"},
        {20512, "You already have maximum number of Vertical Lines", "Verical Line"},
        {20513, "You already have maximum number of Horizontal Lines", "Horizontal Line"},
    };
    for (const auto& tool : tools) {
        test_support::RecordingSeam seam;
        ChartFixture f("Price", LayoutPlain, 100);
        FakeWindow w;
        DrawingSet& d = *f.chart().drawings;
        for (int i = 0; i < MaxDrawnObjects; ++i)
            d.trendLines->inUse[i] = d.channels->inUse[i] = d.gannLines->inUse[i] =
                d.verticalLines->inUse[i] = d.horizontalLines->inUse[i] = 1;
        ChartCommand(w, f.chart(), tool.command);
        ASSERT_EQ(seam.MessageCount(), 1u) << tool.command;
        EXPECT_EQ(seam.messages[0].text, tool.text);
        EXPECT_EQ(seam.messages[0].caption, tool.caption);
        EXPECT_EQ(seam.messages[0].icon, MessageIcon::Warning);
        const ChartMouseState& m = chartMouse;
        EXPECT_EQ(m.toolArmed | m.trendTool | m.verticalTool, 0);
        EXPECT_FALSE(w.captured);

        // The ninth slot freed: the tool takes it and prompts.
        d.trendLines->inUse[8] = d.channels->inUse[8] = d.gannLines->inUse[8] =
            d.verticalLines->inUse[8] = d.horizontalLines->inUse[8] = 0;
        ChartCommand(w, f.chart(), tool.command);
        EXPECT_EQ(seam.MessageCount(), 1u);
        EXPECT_EQ(m.toolArmed, 1);
        EXPECT_TRUE(w.captured && w.ringCursor);
        EXPECT_EQ(SavedCaption(m), "ACME Price");
        EXPECT_EQ(m.selectedTrend + m.selectedChannel + m.selectedGann + m.selectedVertical +
                      m.selectedHorizontal,
                  8);
    }
}

TEST(ChartCommand, CloneThenRightClickLeavesTheCopyOnTheLine) {
    ChartFixture f("Price", LayoutPlain, 100);
    FakeWindow w;
    TrendLineSet& t = *f.chart().drawings->trendLines;
    t.inUse[0] = t.inUse[1] = 1;
    t.pointA[1] = {50, 60};
    t.pointB[1] = {150, 100};
    t.valueA[1] = 120.5;
    std::strcpy(t.dateB[1], "R77");
    t.regions[1] = CreateEllipticRegion(0, 0, 5, 5);
    chartMouse.selectedTrend = 1;
    ChartCommand(w, f.chart(), 20539);
    EXPECT_EQ(chartMouse.selectedTrend, 2);
    EXPECT_TRUE(chartMouse.moveTrendTool && w.captured);

    chartMouse.regionTool = 1; // a right click ends every tool, the region tool too
    CancelForChartMenu(w, chartMouse);
    EXPECT_EQ(chartMouse.moveTrendTool | chartMouse.regionTool, 0);
    EXPECT_FALSE(w.captured);
    EXPECT_EQ(w.caption, "ACME Price");
    EXPECT_EQ(t.inUse[2], 1);
    EXPECT_EQ(t.pointB[2].y, 100);
    EXPECT_EQ(t.valueA[2], 120.5);
    EXPECT_STREQ(t.dateB[2], "R77");
    EXPECT_EQ(t.regions[2], nullptr); // the copy gets its handle at the next paint

    test_support::RecordingSeam seam;
    for (int i = 0; i < MaxDrawnObjects; ++i)
        t.inUse[i] = 1;
    ChartCommand(w, f.chart(), 20539);
    EXPECT_EQ(seam.LastText(), "You already have maximum number of Trend Lines");
    EXPECT_EQ(chartMouse.moveTrendTool, 0);
}

TEST(ChartCommand, PredictorLongNeedsTwoHundredRows) {
    test_support::RecordingSeam seam;
    ChartFixture f("Predictor", LayoutThreeCurves, 199);
    FakeWindow w;
    f.chart().predictorShort = 1;
    f.chart().analysisParams->period[1] = 5;
    ChartCommand(w, f.chart(), 20512); // a tool left open ends with the next command
    ChartCommand(w, f.chart(), 20103);
    EXPECT_EQ(w.caption, "ACME Price");
    EXPECT_EQ(chartMouse.verticalTool | chartMouse.toolArmed, 0);
    ASSERT_EQ(seam.MessageCount(), 1u);
    EXPECT_EQ(seam.messages[0].text, "Insufficient data for long term analysis");
    EXPECT_EQ(seam.messages[0].caption, "QDX-Velorin Trading Discipline");
    EXPECT_EQ(seam.messages[0].icon, MessageIcon::Information);
    EXPECT_EQ(f.chart().predictorShort + f.chart().predictorLong, 1);
    EXPECT_EQ(f.chart().analysisParams->period[1], 5);
    f.chart().rowCount = f.source().rowCount = 200;
    ChartCommand(w, f.chart(), 20103);
    EXPECT_EQ(f.chart().predictorShort * 10 + f.chart().predictorLong, 1);
    EXPECT_EQ(f.chart().analysisParams->period[1], 60);
    EXPECT_EQ(seam.MessageCount(), 1u);
}

TEST(ChartCommand, ColourGoesToThePaletteEntryOfItsTarget) {
    ColourSeam seam;
    struct : Desk {
        WindowId CreateChild(const ChildWindowRequest&) override { return 0; }
        Chart* ActiveChart(WindowId*) override { return nullptr; }
        void Invalidate(WindowId) override {}
        void RepaintAllCharts() override { ++repaints; }
        void Tile(bool) override {}
        void CloseAllChildren() override {}
        int repaints = 0;
    } desk;
    InstallDesk(&desk);
    ResetPalette();
    palette.current[PaletteSlot3] = MakeColour(0x11, 0x22, 0x33);
    ChartFixture f("RMA", LayoutThreeCurves, 100);
    FakeWindow w;
    chartMouse.colourTarget = 7; // curve slot 3, whose entry is crossed with slot 4's
    ChartCommand(w, f.chart(), 20519);
    EXPECT_EQ(seam.offered, 0x112233u);
    EXPECT_EQ(desk.repaints, 1); // a cancelled dialog repaints too
    seam.answer = 1;
    seam.picked = 0xAABBCCu;
    ChartCommand(w, f.chart(), 20522);
    EXPECT_EQ(palette.current[PaletteBackground], MakeColour(0xAA, 0xBB, 0xCC));
    EXPECT_EQ(ChooseColour(15), 0);
    InstallDesk(nullptr);
    ResetPalette();
}

} // namespace
} // namespace velorin
