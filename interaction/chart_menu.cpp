#include "interaction/chart_menu.h"

#include <algorithm>
#include <cstring>

#include "interaction/menu_items.h"
#include <initializer_list>

namespace velorin {
namespace {

using namespace menu_items;

struct ResolutionStep {
    const char* text;
    int id;
    double value;
};

constexpr ResolutionStep resolutionSteps[] = {
    {"x 1/4", 20301, 0.25}, {"x 1/2", 20302, 0.5}, {"x 1", 20303, 1.0},
    {"x 2", 20304, 2.0},    {"x 4", 20305, 4.0},   {"x 8", 20306, 8.0},
    {"x 16", 20307, 16.0},  {"x 25", 20308, 25.0}, {"x 50", 20309, 50.0},
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
    // Kinds on the common rows of two sources, and the Fibonacci and overlay
    // charts, can't be cut at an end point.
    if (!IsAnyOf(chart, {"Historical Correlation", "Fibonacci", "Correlation", "Price Ratio",
                         "Spread", "Relative Strength", "Relative Performance", "Overlay"})) {
        items.push_back(Item("Select End Point", 20311));
        if (chart.rowCount != sourceRowCount) items.push_back(Item("Get All", 20312));
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
    items.push_back(Item("Background ...", 20522));
    items.push_back(Item("Grid ...", 20520));
    items.push_back(Item("Text ...", 20521));
    items.push_back(EndSubmenu());
}

void GridMenu(const Chart& chart, std::vector<MenuItem>& items) {
    const bool gridOn = chart.view && chart.view->gridOn == 1;
    items.push_back(Submenu("Grid"));
    items.push_back(Item(gridOn ? "Off" : "On", 20701));
    items.push_back(EndSubmenu());
}

// Full form for the price family: lines need 25 rows, and trends and
// channels a resolution below 25.
void DrawMenu(const Chart& chart, bool fullForm, std::vector<MenuItem>& items) {
    items.push_back(Submenu("Draw"));
    if (!fullForm || chart.rowCount > 24) {
        if (fullForm && ResolutionOf(chart) < 25.0) {
            items.push_back(Item("Trend", 20501));
            items.push_back(Item("Channel", 20502));
        }
        items.push_back(Item("Vertical", 20512));
        items.push_back(Item("Horizontal", 20513));
    }
    GridMenu(chart, items);
    items.push_back(EndSubmenu());
}

enum class Form { Unknown, Full, Short, GridOnly, Macd, Fibonacci, Pair, Overlay };

Form FormOf(const Chart& chart) {
    if (IsAnyOf(chart, {"Price", "RMA", "ESMA", "WMA", "Trend", "Swing Charting"}))
        return Form::Full;
    if (IsAnyOf(chart, {"Volume", "Stochastics", "Stdev", "OBV", "Tic Volume", "RSI", "RVI",
                        "Oscillator", "Momentum", "Perc. Range", "OverboughtSold"}))
        return Form::Short;
    if (Is(chart, "Predictor")) return Form::GridOnly;
    if (Is(chart, "MACD")) return Form::Macd;
    if (Is(chart, "Fibonacci")) return Form::Fibonacci;
    if (IsAnyOf(chart, {"Correlation", "Historical Correlation", "Price Ratio", "Spread",
                        "Relative Strength", "Relative Performance"}))
        return Form::Pair;
    if (Is(chart, "Overlay")) return Form::Overlay;
    return Form::Unknown;
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
    const Form form = FormOf(chart);
    if (form == Form::Unknown) return items;

    ResolutionMenu(chart, sourceRowCount, items);
    ColourMenu(items);
    switch (form) {
    case Form::Full:
        DrawMenu(chart, true, items);
        items.push_back(Item("Price Scale ...", 10418));
        items.push_back(Item("Data Source ...", 10417));
        break;
    case Form::Short:
        DrawMenu(chart, false, items);
        items.push_back(Item("Data Source ...", 10417));
        break;
    case Form::GridOnly:
        GridMenu(chart, items);
        items.push_back(Item("Data Source ...", 10417));
        break;
    case Form::Macd:
        GridMenu(chart, items);
        items.push_back(Item("Periods ...", 10411));
        items.push_back(Item("Data Source ...", 10417));
        break;
    case Form::Fibonacci: {
        GridMenu(chart, items);
        const FibonacciExtra* fib = chart.fibonacciExtra;
        items.push_back(Item("Fibonacci Lines", 20524, fib && fib->fibonacciLines == 1));
        items.push_back(Item("Extend Envelopes", 20523, fib && fib->extendEnvelopes == 1));
        items.push_back(Item("Levels...", 20532));
        items.push_back(Item("Price Scale ...", 10418));
        items.push_back(Item("Data Source ...", 10417));
        break;
    }
    case Form::Pair:
        GridMenu(chart, items);
        break;
    case Form::Overlay:
        items.push_back(Item("Highlight Region", 20529));
        break;
    case Form::Unknown:
        break;
    }
    return items;
}

} // namespace velorin
