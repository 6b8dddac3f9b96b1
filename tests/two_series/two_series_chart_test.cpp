// Charts of two instruments made through the frame's commands on a fake
// frame: the refusals in their order, the pick, captions, titles, statistics.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>

#include "chart_model/price_chart.h"
#include "market_data/block.h"
#include "market_data/data_source.h"
#include "resources/command_ids.h"
#include "shell/core/working_blocks.h"
#include "tests/shell/fake_frame.h"
#include "tests/support/recording_seam.h"

namespace velorin {
namespace {

// A price chart of days `from` to `from + rows - 1`; returns its window.
WindowId Open(test_support::FakeFrame& frame, const char* item, int rows, int from, bool full) {
    const int slot = marketData.nextSourceSlot;
    EXPECT_EQ(NewDataSource(slot), 1);
    DataSource& s = *SourceAt(slot);
    s.refCount = 1, s.rowCount = rows, s.conversation = -(slot + 1);
    for (int r = 0; r < rows; ++r) {
        std::snprintf(s.columns->dateText[r], DateTextSize, "D%d", from + r);
        s.columns->dateNumber[r] = 30000.0 + from + r;
        s.columns->close[r] = 50.0 + 7.0 * std::sin((from + r) * (slot + 1) * 0.37);
    }
    std::snprintf(marketData.selection.currentItem, 255, "%s", item);
    marketData.hasFullColumns = full ? 1 : 0;
    EXPECT_EQ(CreatePriceChart("Price", 0), 1);
    return frame.children.back().id;
}

TEST(TwoSeries, CommandsRefuseInOrderOrOpenTheirChart) {
    const char *no = "Non Existent Connection To Data source", *few = "Insufficient data";
    struct Case {
        int command, firstRows, secondRows, secondStart; // 0 rows: no second chart
        WindowId click;     // the second chart is window 1; 0: a repaint ends the pick
        const char* text;   // the message, or the new window's caption
        const char* prompt; // the first chart's caption while the user picks
        int period, pairs;  // 0 pairs: refused
    } cases[] = {
        {cmd::Correlation, 0, 0, 0, 0, no, nullptr, 0, 0},
        {cmd::PriceRatio, 24, 60, 0, 1, few, nullptr, 0, 0},
        {cmd::Overlay, 60, 60, 0, 999, no, "Overlay Chart 1: Price ACME D0 - D59", 0, 0},
        {cmd::Correlation, 60, 24, 36, 1, few, "Correlation Data 1: Price ACME D0 - D59", 0, 0},
        {cmd::Overlay, 24, 24, 0, 1, few, nullptr, 0, 0},
        {cmd::RelativePerformance, 60, 60, 60, 1, few, nullptr, 0, 0}, // no common date
        {cmd::HistoricalCorrelation, 200, 150, 0, 1,
         "Insufficient data for Historical Correlation Analysis", nullptr, 0, 0},
        {cmd::Correlation, 40, 0, 0, 0, "Correlation ACME/ACME D0 - D39", nullptr, 40, 40},
        {cmd::HistoricalCorrelation, 220, 300, 20, 1,
         "Historical Correlation ACME/GLOBEX D0 - D219", nullptr, 100, 200},
        {cmd::PriceRatio, 99, 30, 69, 1, "Price Ratio ACME/GLOBEX D0 - D98", nullptr, 30, 30},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        ResetProgramState();
        EXPECT_EQ(blockAllocator.liveBlocks, 0);
        test_support::RecordingSeam seam;
        test_support::FakeFrame frame;
        const WindowId second =
            c.secondRows ? Open(frame, "GLOBEX", c.secondRows, c.secondStart, 1) : 0;
        // The price ratio's first source has two columns only.
        const WindowId first =
            c.firstRows ? Open(frame, "ACME", c.firstRows, 0, c.period != 30) : 0;
        frame.clicks = {c.click};
        const long blocks = blockAllocator.liveBlocks;
        FrameCommand(frame, c.command);
        EXPECT_EQ(c.prompt ? frame.prompts.at(0) : "", c.prompt ? c.prompt : "");
        EXPECT_EQ(seam.waitCursorDepth, 0);
        const int firstRefs = first ? SourceAt(frame.ChartOf(first)->sourceSlot)->refCount : 1;
        if (c.pairs == 0) { // refused: one message, no block or reference left
            ASSERT_EQ(seam.messages.size(), 1u);
            EXPECT_EQ(seam.messages[0].text, c.text);
            EXPECT_EQ(seam.messages[0].caption, std::string(c.text).rfind(few, 0) == 0
                                                    ? "QDX-Velorin Trading Discipline"
                                                    : "QDX-Velorin");
            EXPECT_EQ(blockAllocator.liveBlocks, blocks);
            EXPECT_EQ(firstRefs, 1);
            continue;
        }
        ASSERT_TRUE(seam.messages.empty()) << seam.LastText();
        const Chart& made = *frame.children.back().chart;
        const PairData& p = *made.pairData;
        EXPECT_EQ(frame.children.back().caption, c.text);
        // Both source charts are left with their first word.
        EXPECT_STREQ(frame.ChartOf(first)->chartTitle, "ACME");
        EXPECT_STREQ(frame.ChartOf(second ? second : first)->chartTitle,
                     second ? "GLOBEX" : "ACME");
        EXPECT_EQ(firstRefs, second ? 2 : 3);
        EXPECT_EQ(made.analysisParams->period[1], c.period);
        EXPECT_EQ(p.pairCount, c.pairs);
        EXPECT_EQ(made.rowCount, c.firstRows);
        const double* out = made.modelSeries->slot[0];
        EXPECT_TRUE(second || p.rSquared == 1.0); // a chart against itself
        EXPECT_TRUE(c.period != 100 || (out[98] == MISSING_VALUE && out[99] != MISSING_VALUE));
        EXPECT_TRUE(c.period != 30 || out[29] == p.firstSeries[29] / p.secondSeries[29]);
    }
}

} // namespace
} // namespace velorin
