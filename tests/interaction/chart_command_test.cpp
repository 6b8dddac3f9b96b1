#include "interaction/chart_command.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "fake_window.h"
#include "tests/support/chart_fixture.h"
#include "tests/support/recording_seam.h"

namespace velorin {
namespace {

using testing::ChartFixture;
using testing::FakeWindow;

TEST(ChartCommand, ToolsRefuseAFullSetWithTheirOwnWords) {
    // clang-format off
    const std::tuple<int, std::string, const char*> tools[] = {
        {20501, "Trend Lines", "Trend Line"}, {20502, "Channels Lines", "Channel Lines"},
        {20506, "Gann Lines", "Gann Lines"}, {20512, "Vertical Lines", "Verical Line"},
        {20513, "Horizontal Lines", "Horizontal Line"}};
    // clang-format on
    for (const auto& [command, lines, caption] : tools) {
        test_support::RecordingSeam seam;
        ChartFixture f("Price", LayoutPlain, 100);
        FakeWindow w;
        DrawingSet& d = *f.chart().drawings;
        auto fill = [&](int slot, int used) {
            d.trendLines->inUse[slot] = d.channels->inUse[slot] = d.gannLines->inUse[slot] =
                d.verticalLines->inUse[slot] = d.horizontalLines->inUse[slot] = used;
        };
        for (int i = 0; i < MaxDrawnObjects; ++i)
            fill(i, 1);
        ChartCommand(w, f.chart(), command);
        ASSERT_EQ(seam.MessageCount(), 1u) << command;
        EXPECT_EQ(seam.messages[0].text, "You already have maximum number of " + lines);
        EXPECT_EQ(seam.messages[0].caption, caption);
        EXPECT_EQ(seam.messages[0].icon, MessageIcon::Warning);
        EXPECT_FALSE(chartMouse.toolArmed || w.captured);
        fill(8, 0); // the ninth slot freed: the tool takes it and prompts
        ChartCommand(w, f.chart(), command);
        EXPECT_EQ(seam.MessageCount(), 1u);
        EXPECT_TRUE(chartMouse.toolArmed && w.captured && w.ringCursor);
        const ChartMouseState& m = chartMouse;
        EXPECT_EQ(m.selectedTrend + m.selectedChannel + m.selectedGann + m.selectedVertical +
                      m.selectedHorizontal,
                  8);
    }
}

TEST(ChartCommand, PredictorLongNeedsTwoHundredRows) {
    test_support::RecordingSeam seam;
    ChartFixture f("Predictor", LayoutThreeCurves, 199);
    FakeWindow w;
    Chart& c = f.chart();
    c.predictorShort = 1;
    ChartCommand(w, c, 20512); // a tool left open ends with the next command
    ChartCommand(w, c, 20103);
    EXPECT_EQ(w.caption, "ACME Price");
    EXPECT_EQ(chartMouse.verticalTool | chartMouse.toolArmed, 0);
    ASSERT_EQ(seam.MessageCount(), 1u);
    EXPECT_EQ(seam.messages[0].text, "Insufficient data for long term analysis");
    EXPECT_EQ(seam.messages[0].caption, "QDX-Velorin Trading Discipline");
    EXPECT_EQ(c.predictorShort * 10 + c.predictorLong, 10);
    c.rowCount = f.source().rowCount = 200;
    ChartCommand(w, c, 20103);
    EXPECT_EQ(c.predictorShort * 10 + c.predictorLong, 1);
    EXPECT_EQ(c.analysisParams->period[1], 60);
}

} // namespace
} // namespace velorin
