// The frame's commands driven headless through a fake frame: the file
// connection, limits, options, Make All, the button-bar commands, timers.
#include <gtest/gtest.h>

#include <cstring>

#include "market_data/data_source.h"
#include "rendering/style.h"
#include "shell/core/shell_state.h"
#include "tests/shell/fake_frame.h"

namespace velorin {
namespace {

using FrameCommands = test_support::HeadlessDesk;

TEST_F(FrameCommands, DatafileOpensATitledChartAndClosingGreysTheMenu) {
    Open(40);
    ASSERT_EQ(frame.children.size(), 1u);
    EXPECT_EQ(frame.children[0].caption, "Price ACME 1/1/1990 - 1/12/91");
    EXPECT_EQ(deskRegistry.chartCount, 1);
    EXPECT_EQ(shell.lastConnectOk, 1);
    EXPECT_FALSE(frame.IsGreyed(cmd::CloseAll));
    EXPECT_EQ(seam.waitCursorDepth, 0);
    frame.Close(frame.children[0].id);
    EXPECT_EQ(deskRegistry.chartCount, 0);
    EXPECT_EQ(marketData.nextSourceSlot, 0);
    EXPECT_EQ(SourceAt(0), nullptr);
    EXPECT_TRUE(frame.IsGreyed(cmd::CloseAll));
}

TEST_F(FrameCommands, RefusalsLeaveTheDeskAsItWas) {
    struct Case {
        int nextSlot, charts;
        bool fileAsked;
        const char* text;
        const char* caption;
    } cases[] = {
        {999, 0, false, "Too Many Data Sources - Please close some charts", "QDX-Velorin"},
        {998, 50, false, "Too Many Charts Open - Please close some charts", "QDX Velorin"},
        {0, 0, true, "DataFile Read Error", "QDX-Velorin"}, // a one-row file
    };
    for (const Case& c : cases) {
        seam.Clear();
        marketData.nextSourceSlot = c.nextSlot;
        deskRegistry.chartCount = c.charts;
        seam.QueueFile(dir.Write("ONE.PRC", test_support::PriceFileText(1)));
        FrameCommand(frame, cmd::Datafile);
        ASSERT_EQ(seam.MessageCount(), 1u) << c.text;
        EXPECT_EQ(seam.messages[0].text, c.text);
        EXPECT_EQ(seam.messages[0].caption, c.caption);
        EXPECT_EQ(seam.fileRequests.size(), c.fileAsked ? 1u : 0u) << c.text;
        EXPECT_TRUE(frame.children.empty());
    }
}

TEST_F(FrameCommands, OptionTogglesAndThicknessGroups) {
    struct Toggle {
        int id;
        const std::int32_t* value;
        std::int32_t after;
        bool checked;
    } toggles[] = {
        {cmd::DataValueDefault, &drawingStyle.defaultFreePlaced, 0, true}, // checked while 0
        {cmd::LineExtendDefault, &drawingStyle.defaultExtended, 1, true},
        {cmd::FilterData, &marketData.filterOn, 1, true},
        {cmd::RealTime, &refreshCycle.realTimeOn, 0, false},
    };
    for (const Toggle& t : toggles) {
        FrameCommand(frame, t.id);
        EXPECT_EQ(*t.value, t.after) << t.id;
        EXPECT_EQ(frame.checked[t.id], t.checked) << t.id;
    }
    FrameCommand(frame, cmd::PriceMedium);
    EXPECT_EQ(drawingStyle.priceThickness, 2);
    EXPECT_TRUE(frame.checked[cmd::PriceMedium]);
    EXPECT_FALSE(frame.checked[cmd::PriceThin]);
    FrameCommand(frame, cmd::AttachmentThick);
    EXPECT_EQ(drawingStyle.attachmentThickness, 3);
    EXPECT_EQ(frame.repaintAll, 2);
    FrameCommand(frame, cmd::AttachmentThick); // already set: nothing at all
    EXPECT_EQ(frame.repaintAll, 2);
}

TEST_F(FrameCommands, MakeAllOpensEveryAnalysisOrStopsAtTheFirstFailure) {
    FrameCommand(frame, cmd::MakeAllPrices);
    EXPECT_EQ(seam.LastText(), "Non Existent Connection To Data source");
    // Stochastics, the last of the ten, needs 61 rows: the run stops there untiled.
    Open(40);
    FrameCommand(frame, cmd::MakeAllPrices);
    EXPECT_EQ(seam.LastText(), "Insufficient data for Stochastics Analysis");
    EXPECT_EQ(frame.children.size(), 10u);
    EXPECT_TRUE(frame.tiles.empty());
    FrameCommand(frame, cmd::CloseAll);
    Open(70);
    FrameCommand(frame, cmd::MakeAllPrices);
    EXPECT_EQ(seam.MessageCount(), 0u) << seam.LastText();
    ASSERT_EQ(frame.children.size(), 11u);
    EXPECT_EQ(frame.tiles, std::vector<bool>{true});
    deskRegistry.chartCount = MaxCharts; // the chart limit stops the run
    seam.Clear();
    FrameCommand(frame, cmd::Rsi);
    EXPECT_EQ(seam.LastText(), "Too Many Charts Open - Please close some charts");
    deskRegistry.chartCount = 1;
}

TEST_F(FrameCommands, ButtonCommandsForwardZoomAndGuard) {
    Open(40);
    const WindowId price = frame.active;
    const std::pair<int, int> forwards[] = {
        {cmd::ToggleGridButton, cmd::ToggleGrid},
        {cmd::SelectEndPointButton, cmd::SelectEndPoint},
        {cmd::SelectAllDataButton, cmd::GetAll},
        {cmd::DrawHoriLineButton, cmd::DrawHorizontal},
        {cmd::DrawVertLineButton, cmd::DrawVertical},
        {cmd::DrawTrendButton, cmd::DrawTrend},
        {cmd::DrawChannelButton, cmd::DrawChannel},
    };
    for (const auto& [button, command] : forwards) {
        frame.sent.clear();
        FrameCommand(frame, button);
        ASSERT_EQ(frame.sent.size(), 1u) << button;
        EXPECT_EQ(frame.sent[0], std::make_pair(price, command));
    }
    FrameCommand(frame, cmd::DataViewButton);
    EXPECT_EQ(frame.dataViews, std::vector<WindowId>{price});
    Chart& chart = *frame.ActiveChart(nullptr);
    FrameCommand(frame, cmd::ZoomIn);
    EXPECT_EQ(chart.view->resolution, 8.0);
    EXPECT_EQ(frame.invalidated, std::vector<WindowId>{price});
    FrameCommand(frame, cmd::CandleStickButton);
    EXPECT_EQ(chart.view->showCandle, 1);
    EXPECT_EQ(chart.view->showLine, 0);
    // On an RSI the drawing buttons are refused and nothing is forwarded.
    FrameCommand(frame, cmd::Rsi);
    frame.sent.clear();
    seam.Clear();
    FrameCommand(frame, cmd::DrawTrendButton);
    EXPECT_EQ(seam.LastText(), "Drawing Trend not available for this chart");
    FrameCommand(frame, cmd::PriceLineButton);
    EXPECT_EQ(seam.LastText(), "Please Select Chart With Price Line");
    EXPECT_TRUE(frame.sent.empty());
}

TEST_F(FrameCommands, NewCloseAllAndExitClearTheDesk) {
    Open(30, "A.PRC");
    Open(30, "B.PRC");
    std::strcpy(shell.layoutPath, "desk.vl");
    FrameCommand(frame, cmd::New);
    EXPECT_EQ(shell.layoutPath[0], '\0');
    EXPECT_TRUE(frame.children.empty());
    EXPECT_EQ(deskRegistry.chartCount, 0);
    EXPECT_EQ(marketData.nextSourceSlot, 0);
    Open(30, "A.PRC");
    FrameCommand(frame, cmd::Exit);
    EXPECT_TRUE(frame.destroyed);
    EXPECT_TRUE(frame.children.empty());
}

TEST(RefreshCycle, TimersActOnlyWithChartsOpenAndWhenDue) {
    ResetRefreshCycle();
    refreshCycle.realTimeOn = 0;
    refreshCycle.fetchFrequencyMinutes = 5;
    refreshCycle.lastRefetchTime = 1000;
    struct Tick {
        int timer, charts;
        std::int64_t now;
        TimerWork work;
    } ticks[] = {
        {RealTimeTimerId, 0, 1000, TimerWork::None},
        {RealTimeTimerId, 1, 1000, TimerWork::RefreshPendingCharts},
        {RefetchTimerId, 0, 9999, TimerWork::None},
        {RefetchTimerId, 1, 1299, TimerWork::None}, // five minutes have not passed
        {RefetchTimerId, 1, 1300, TimerWork::RefetchAllSources},
        {RefetchTimerId, 1, 1301, TimerWork::None}, // counted from the last refetch
    };
    for (const Tick& t : ticks)
        EXPECT_EQ(DueTimerWork(t.timer, t.charts, t.now), t.work) << t.timer << " " << t.now;
    EXPECT_EQ(refreshCycle.lastRefetchTime, 1300);
}

} // namespace
} // namespace velorin
