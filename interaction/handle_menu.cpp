#include "interaction/handle_menu.h"

#include <cstring>

#include "interaction/menu_items.h"

namespace velorin {
namespace {

using namespace menu_items;

bool PeriodExcluded(const Chart& chart, int slot) {
    if (slot == 3)
        return IsAnyOf(chart, {"MACD", "OBV", "Tic Volume", "Predictor", "Price Ratio", "Spread",
                               "Relative Strength", "Relative Performance", "Fibonacci", "Trend"});
    if (slot == 4)
        return IsAnyOf(chart, {"MACD", "Swing Charting", "Predictor", "Fibonacci", "Trend"});
    return IsAnyOf(chart, {"Fibonacci", "Trend"});
}

void StyleSubmenu(const Chart& chart, std::vector<MenuItem>& items) {
    if (Is(chart, "Volume") || Is(chart, "Fibonacci") || chart.hasFullColumns != 1) return;
    const ChartView& v = *chart.view;
    items.push_back(Submenu("Style"));
    if (v.showLine) {
        items.push_back(Item("High-Low", 20401, v.showHighLow != 0));
        items.push_back(Item("Barchart", 20405));
        if (chart.rowCount > 24) items.push_back(Item("CandleStick", 20402));
    } else if (v.showCandle) {
        items.push_back(Item("Line", 20403));
        items.push_back(Item("Barchart", 20405));
    } else if (v.showBar) {
        items.push_back(Item("Line", 20403));
        if (chart.rowCount > 24) items.push_back(Item("CandleStick", 20402));
    }
    items.push_back(EndSubmenu());
}

} // namespace

HandleHit HitTestHandles(const Chart& chart, int x, int y) {
    if (const DrawingSet* d = chart.drawings) {
        for (int i = 0; i < MaxDrawnObjects; ++i)
            if (PointInRegion(d->trendLines->regions[i], x, y)) return {HitObject::Trend, i};
        for (int i = 0; i < MaxDrawnObjects; ++i)
            if (PointInRegion(d->channels->regions[i], x, y) ||
                PointInRegion(d->channels->secondRegions[i], x, y))
                return {HitObject::Channel, i};
        for (int i = 0; i < MaxDrawnObjects; ++i)
            if (PointInRegion(d->gannLines->regions[0][i], x, y)) return {HitObject::Gann, i};
        for (int i = 0; i < MaxDrawnObjects; ++i)
            if (PointInRegion(d->verticalLines->regions[i], x, y)) return {HitObject::Vertical, i};
        for (int i = 0; i < MaxDrawnObjects; ++i)
            if (PointInRegion(d->horizontalLines->regions[i], x, y))
                return {HitObject::Horizontal, i};
    }
    for (int slot = 0; slot <= 13; ++slot)
        if (PointInRegion(chart.view->curveRegions[slot], x, y)) return {HitObject::Curve, slot};
    return {};
}

std::vector<MenuItem> HandleMenu(const Chart& chart, const HandleHit& hit, int x, int y,
                                 ChartMouseState& mouse) {
    std::vector<MenuItem> items;
    const int i = hit.index;
    switch (hit.object) {
    case HitObject::None:
        break;
    case HitObject::Trend: {
        const TrendLineSet& t = *chart.drawings->trendLines;
        mouse.colourTarget = 0;
        mouse.selectedTrend = i;
        items = {Item("Move Trend", 20533),
                 Item("Clone Trend", 20539),
                 Item("Clear Trend", 20504),
                 Item("Clear All Trends", 20509),
                 Item("Clear All Lines", 20518),
                 Item("Extend Trend", 20525, t.extended[i] == 1),
                 Item("Data Value", 20537, t.freePlaced[i] == 0),
                 Item("Colour ...", 20519)};
        break;
    }
    case HitObject::Channel: {
        const ChannelSet& c = *chart.drawings->channels;
        mouse.colourTarget = 1;
        mouse.selectedChannel = i;
        // Which of the two lines lies lower on the screen, by the handle hit.
        mouse.lowerLineHit = 0;
        const Region* first = c.regions[i];
        const Region* second = c.secondRegions[i];
        if (first && second) {
            const bool inFirst = PointInRegion(first, x, y);
            const bool inSecond = PointInRegion(second, x, y);
            if ((inFirst && first->box.top > second->box.top) ||
                (inSecond && second->box.top > first->box.top))
                mouse.lowerLineHit = 1;
        }
        items = {Item("Move Channel", 20534),
                 Item("Clear Channel", 20505),
                 Item("Clear All Channels", 20510),
                 Item("Clear All Lines", 20518),
                 Item("Extend Channel", 20526, c.extended[i] == 1),
                 Item("Colour ...", 20519)};
        break;
    }
    case HitObject::Gann: {
        mouse.colourTarget = 2;
        mouse.selectedGann = i;
        items = {Item("Clear Gann", 20508), Item("Clear All Ganns", 20511),
                 Item("Clear All Lines", 20518),
                 Item("Extend Gann", 20527, chart.drawings->gannLines->extended[i] == 1),
                 Item("Colour ...", 20519)};
        break;
    }
    case HitObject::Vertical:
        mouse.colourTarget = 3;
        mouse.selectedVertical = i;
        items = {Item("Move Vertical", 20535), Item("Clear Vertical", 20514),
                 Item("Clear All Verticals", 20516), Item("Clear All Lines", 20518),
                 Item("Colour ...", 20519)};
        break;
    case HitObject::Horizontal:
        mouse.colourTarget = 4;
        mouse.selectedHorizontal = i;
        items = {Item("Move Horizontal", 20536), Item("Clear Horizontal", 20515),
                 Item("Clear All Horizontals", 20517), Item("Clear All Lines", 20518),
                 Item("Colour ...", 20519)};
        break;
    case HitObject::Curve: {
        const bool stochastics = Is(chart, "Stochastics");
        if (i == 0) {
            mouse.colourTarget = 5;
            items = {Item("Data View ...", 20528), Item("Colour ...", 20519)};
            StyleSubmenu(chart, items);
            break;
        }
        if (i <= 2) {
            mouse.colourTarget = 6;
            items = {Item("Colour ...", 20519)};
            break;
        }
        mouse.colourTarget = i <= 9 ? i + 4 : 14;
        if (i == 3) mouse.selectedCurve = 1;
        if (i >= 4 && i <= 6) mouse.selectedCurve = stochastics ? i - 2 : i - 3;
        items = {Item("Colour ...", 20519)};
        if (i == 3 && Is(chart, "Predictor")) {
            items.push_back(Submenu("Period"));
            items.push_back(Item("Short", 20101));
            items.push_back(Item("Medium", 20102));
            items.push_back(Item("Long", 20103));
            items.push_back(Separator());
            const char* current = chart.predictorShort == 1    ? "Short"
                                  : chart.predictorMedium == 1 ? "Medium"
                                                               : "Long";
            const int id = chart.predictorShort == 1    ? 20101
                           : chart.predictorMedium == 1 ? 20102
                                                        : 20103;
            items.push_back({current, id, true, true, 0, false});
            items.push_back(EndSubmenu());
        } else if (!PeriodExcluded(chart, i)) {
            items.push_back(Item("Period ...", 10411));
        }
        break;
    }
    }
    return items;
}

} // namespace velorin
