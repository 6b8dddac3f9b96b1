#include "interaction/chart_menu.h"

#include <algorithm>
#include <cstring>

#include "interaction/menu_items.h"

namespace velorin {
namespace {

using namespace menu_items;

struct ResolutionStep {
    const char* text;
    int id;
    double value;
};

constexpr ResolutionStep resolutionSteps[] = {
    {"x 1/4", cmd::ResolutionQuarter, 0.25}, {"x 1/2", cmd::ResolutionHalf, 0.5},
    {"x 1", cmd::ResolutionOne, 1.0},        {"x 2", cmd::ResolutionTwo, 2.0},
    {"x 4", cmd::ResolutionFour, 4.0},       {"x 8", cmd::ResolutionEight, 8.0},
    {"x 16", cmd::ResolutionSixteen, 16.0},  {"x 25", cmd::ResolutionTwentyFive, 25.0},
    {"x 50", cmd::ResolutionFifty, 50.0},
};

} // namespace

std::string SavedCaption(const ChartMouseState& mouse) {
    const void* end = std::memchr(mouse.savedCaption, '\0', sizeof mouse.savedCaption);
    const std::size_t length =
        end ? static_cast<std::size_t>(static_cast<const char*>(end) - mouse.savedCaption)
            : sizeof mouse.savedCaption;
    return std::string(mouse.savedCaption, length);
}

void SaveCaption(ChartMouseState& mouse, const std::string& caption) {
    const std::size_t length = std::min(caption.size(), sizeof mouse.savedCaption - 1);
    std::memcpy(mouse.savedCaption, caption.data(), length);
    mouse.savedCaption[length] = '\0';
}

namespace {

double ResolutionOf(const Chart& chart) {
    return chart.view ? chart.view->resolution : 1.0;
}

void ResolutionMenu(const Chart& chart, int sourceRowCount, std::vector<MenuItem>& items) {
    items.push_back(Submenu("Resolution"));
    if (ChartMenuOf(chart).endPointItems) {
        items.push_back(Item("Select End Point", cmd::SelectEndPoint));
        if (chart.rowCount != sourceRowCount) items.push_back(Item("Get All", cmd::GetAll));
        items.push_back(Separator());
    }
    const int current = CurrentResolutionCommand(ResolutionOf(chart));
    for (const ResolutionStep& step : resolutionSteps) {
        const bool isCurrent = step.id == current;
        items.push_back({step.text, step.id, isCurrent, isCurrent, 0, false});
    }
    items.push_back(EndSubmenu());
}

void ColourMenu(std::vector<MenuItem>& items) {
    items.push_back(Submenu("Colour"));
    items.push_back(Item("Background ...", cmd::BackgroundColour));
    items.push_back(Item("Grid ...", cmd::GridColour));
    items.push_back(Item("Text ...", cmd::TextColour));
    items.push_back(EndSubmenu());
}

void GridMenu(const Chart& chart, std::vector<MenuItem>& items) {
    const bool gridOn = chart.view && chart.view->gridOn == 1;
    items.push_back(Submenu("Grid"));
    items.push_back(Item(gridOn ? "Off" : "On", cmd::ToggleGrid));
    items.push_back(EndSubmenu());
}

// Full form for the price family: lines need 25 rows, and trends and
// channels a resolution below 25.
void DrawMenu(const Chart& chart, bool fullForm, std::vector<MenuItem>& items) {
    items.push_back(Submenu("Draw"));
    if (!fullForm || chart.rowCount > 24) {
        if (fullForm && ResolutionOf(chart) < 25.0) {
            items.push_back(Item("Trend", cmd::DrawTrend));
            items.push_back(Item("Channel", cmd::DrawChannel));
        }
        items.push_back(Item("Vertical", cmd::DrawVertical));
        items.push_back(Item("Horizontal", cmd::DrawHorizontal));
    }
    GridMenu(chart, items);
    items.push_back(EndSubmenu());
}

} // namespace

int CurrentResolutionCommand(double resolution) {
    int id = resolutionSteps[0].id;
    for (const ResolutionStep& step : resolutionSteps)
        if (resolution >= step.value) id = step.id;
    return id;
}

double ResolutionOfCommand(int commandId) {
    for (const ResolutionStep& step : resolutionSteps)
        if (step.id == commandId) return step.value;
    return 0.0;
}

void CancelForChartMenu(ChartWindowPort& window, ChartMouseState& mouse) {
    if (mouse.crosshairOn) {
        mouse.crosshairOn = 0;
        mouse.toolStep = 0;
        window.RestoreCursor();
        window.Invalidate();
        window.Capture(false);
    }
    const bool toolOn = mouse.trendTool || mouse.channelTool || mouse.gannTool ||
                        mouse.verticalTool || mouse.horizontalTool || mouse.regionTool ||
                        mouse.endPointTool || mouse.moveTrendTool || mouse.moveChannelTool ||
                        mouse.moveVerticalTool || mouse.moveHorizontalTool;
    if (toolOn) {
        window.SetCaption(SavedCaption(mouse));
        mouse.trendTool = mouse.channelTool = mouse.gannTool = 0;
        mouse.verticalTool = mouse.horizontalTool = mouse.regionTool = mouse.endPointTool = 0;
        mouse.moveTrendTool = mouse.moveChannelTool = 0;
        mouse.moveVerticalTool = mouse.moveHorizontalTool = 0;
        mouse.toolArmed = 0;
        mouse.crosshairOn = 0;
        mouse.toolStep = 0;
        window.RestoreCursor();
        window.Invalidate();
        window.Capture(false);
    }
}

std::vector<MenuItem> ChartMenuItems(const Chart& chart, int sourceRowCount) {
    std::vector<MenuItem> items;
    const ChartMenuFeatures& menu = ChartMenuOf(chart);
    if (!menu.shown) return items;

    ResolutionMenu(chart, sourceRowCount, items);
    ColourMenu(items);
    switch (menu.draw) {
    case DrawItems::Full:
        DrawMenu(chart, true, items);
        break;
    case DrawItems::Short:
        DrawMenu(chart, false, items);
        break;
    case DrawItems::Grid:
        GridMenu(chart, items);
        break;
    case DrawItems::None:
        break;
    }
    if (menu.periodsItem) items.push_back(Item("Periods ...", cmd::PeriodDialog));
    if (menu.fibonacciItems) {
        const FibonacciExtra* fib = chart.fibonacciExtra;
        items.push_back(
            Item("Fibonacci Lines", cmd::FibonacciLines, fib && fib->fibonacciLines == 1));
        items.push_back(
            Item("Extend Envelopes", cmd::ExtendEnvelopes, fib && fib->extendEnvelopes == 1));
        items.push_back(Item("Levels...", cmd::LevelsView));
    }
    if (menu.priceScaleItem) items.push_back(Item("Price Scale ...", cmd::PriceScale));
    if (menu.dataSourceItem) items.push_back(Item("Data Source ...", cmd::DataSourceChange));
    if (menu.highlightItem) items.push_back(Item("Highlight Region", cmd::HighlightRegion));
    return items;
}

} // namespace velorin
