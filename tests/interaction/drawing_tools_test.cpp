#include "interaction/drawing_tools.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "fake_window.h"
#include "interaction/chart_command.h"
#include "tests/support/chart_fixture.h"

namespace velorin {
namespace {

using testing::ChartFixture;
using testing::FakeWindow;

// 400 rows at one pixel a row fill the 400-pixel plot exactly, so no
// stretch changes the resolution; with the last bar at x = 439 the date
// under x is the row 400 - (440 - x) - 1.
class ToolTest : public ::testing::Test {
  protected:
    ChartFixture f{"Price", LayoutPlain, 400};
    FakeWindow w;
    Chart& chart = f.chart();
    TrendLineSet& trends = *chart.drawings->trendLines;
};

TEST_F(ToolTest, TrendTakesTwoClicksWithDatesAndValues) {
    ChartCommand(w, chart, 20501);
    ToolClick(w, chart, 39, 100);  // left of the plot: the tool waits
    ToolClick(w, chart, 300, 221); // below it
    ToolClick(w, chart, 100, 60);
    EXPECT_EQ(w.caption, "Trend Line: Select Second Point");
    ToolClick(w, chart, 200, 120);
    EXPECT_STREQ(trends.dateA[0], "R59");
    EXPECT_STREQ(trends.dateB[0], "R159");
    EXPECT_DOUBLE_EQ(trends.length[0], std::hypot(100.0, 60.0));
    EXPECT_DOUBLE_EQ(trends.unitX[0], 100.0 / trends.length[0]);
    EXPECT_DOUBLE_EQ(trends.unitY[0], 60.0 / trends.length[0]);
    // Done: all as before, but the flag waits for the paint.
    EXPECT_EQ(w.caption, "ACME Price");
    EXPECT_FALSE(w.captured || w.ringCursor || chartMouse.toolArmed);
    EXPECT_EQ(chartMouse.trendTool, 1);
    EXPECT_EQ(trends.inUse[0], 1);
}

TEST_F(ToolTest, OnePixelTrendKeepsFiniteUnits) {
    ChartCommand(w, chart, 20501);
    ToolClick(w, chart, 300, 220);
    ToolClick(w, chart, 300, 220);
    EXPECT_EQ(std::vector<double>({trends.length[0], trends.unitX[0], trends.unitY[0]}),
              std::vector<double>(3, 0.0));
    EXPECT_LE(trends.valueB[0], 100.0); // the plot bottom reads at most the lowest close
}

TEST_F(ToolTest, ATwoPointToolIsGivenUpLeftOfTheFirstPoint) {
    ChartCommand(w, chart, 20501);
    ToolMouseMove(w, chart, 100, 100); // no point yet: nothing to give up
    EXPECT_EQ(w.readouts, 1);
    ToolClick(w, chart, 200, 100);
    ToolMouseMove(w, chart, 438, 100); // right - 2 is still in
    EXPECT_EQ(chartMouse.trendTool, 1);
    ToolMouseMove(w, chart, 199, 100);
    EXPECT_EQ(chartMouse.trendTool | chartMouse.toolArmed, 0);
    EXPECT_FALSE(w.captured || w.caption != "ACME Price");
}

TEST_F(ToolTest, EndPointCutsAtRowTwentyFiveOrAbove) {
    chart.rowCount = 100;
    ChartCommand(w, chart, 20311);
    EXPECT_EQ(w.caption, "End Point: Select Point");
    ToolClick(w, chart, 364, 100);  // row 24
    EXPECT_EQ(chart.rowCount, 100); // refused, but the tool ends
    EXPECT_EQ(chartMouse.endPointTool | chartMouse.toolArmed, 0);
    chart.view->resolution = 1.0;
    ChartCommand(w, chart, 20311);
    ToolClick(w, chart, 365, 100); // row 25
    EXPECT_EQ(chart.rowCount, 25);
    EXPECT_EQ(chart.view->resolution, 0.25);
}

} // namespace
} // namespace velorin
