#include "interaction/handle_menu.h"

#include "interaction/menu_items.h"

namespace velorin {
namespace {

using namespace menu_items;

// "Period ..." is left out of the menu of curve slot `slot` (3 to 13).
bool PeriodExcluded(const Chart& chart, int slot) {
    const std::uint8_t bit = slot == 3   ? NoPeriodSlot3
                             : slot == 4 ? NoPeriodSlot4
                                         : NoPeriodLaterSlots;
    return (HandleMenuOf(chart).noPeriodItem & bit) != 0;
}

void StyleSubmenu(const Chart& chart, std::vector<MenuItem>& items) {
    if (!HandleMenuOf(chart).styleSubmenu || chart.hasFullColumns != 1) return;
    const ChartView& v = *chart.view;
    items.push_back(Submenu("Style"));
    if (v.showLine) {
        items.push_back(Item("High-Low", cmd::StyleHighLow, v.showHighLow != 0));
        items.push_back(Item("Barchart", cmd::StyleBarchart));
        if (chart.rowCount > 24) items.push_back(Item("CandleStick", cmd::StyleCandleStick));
    } else if (v.showCandle) {
        items.push_back(Item("Line", cmd::StyleLine));
        items.push_back(Item("Barchart", cmd::StyleBarchart));
    } else if (v.showBar) {
        items.push_back(Item("Line", cmd::StyleLine));
        if (chart.rowCount > 24) items.push_back(Item("CandleStick", cmd::StyleCandleStick));
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
        items = {Item("Move Trend", cmd::MoveTrend),
                 Item("Clone Trend", cmd::CloneTrend),
                 Item("Clear Trend", cmd::ClearTrend),
                 Item("Clear All Trends", cmd::ClearAllTrends),
                 Item("Clear All Lines", cmd::ClearAllLines),
                 Item("Extend Trend", cmd::ExtendTrend, t.extended[i] == 1),
                 Item("Data Value", cmd::TrendDataValue, t.freePlaced[i] == 0),
                 Item("Colour ...", cmd::CurveColour)};
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
        items = {Item("Move Channel", cmd::MoveChannel),
                 Item("Clear Channel", cmd::ClearChannel),
                 Item("Clear All Channels", cmd::ClearAllChannels),
                 Item("Clear All Lines", cmd::ClearAllLines),
                 Item("Extend Channel", cmd::ExtendChannel, c.extended[i] == 1),
                 Item("Colour ...", cmd::CurveColour)};
        break;
    }
    case HitObject::Gann: {
        mouse.colourTarget = 2;
        mouse.selectedGann = i;
        items = {Item("Clear Gann", cmd::ClearGann), Item("Clear All Ganns", cmd::ClearAllGanns),
                 Item("Clear All Lines", cmd::ClearAllLines),
                 Item("Extend Gann", cmd::ExtendGann, chart.drawings->gannLines->extended[i] == 1),
                 Item("Colour ...", cmd::CurveColour)};
        break;
    }
    case HitObject::Vertical:
        mouse.colourTarget = 3;
        mouse.selectedVertical = i;
        items = {Item("Move Vertical", cmd::MoveVertical),
                 Item("Clear Vertical", cmd::ClearVertical),
                 Item("Clear All Verticals", cmd::ClearAllVerticals),
                 Item("Clear All Lines", cmd::ClearAllLines), Item("Colour ...", cmd::CurveColour)};
        break;
    case HitObject::Horizontal:
        mouse.colourTarget = 4;
        mouse.selectedHorizontal = i;
        items = {Item("Move Horizontal", cmd::MoveHorizontal),
                 Item("Clear Horizontal", cmd::ClearHorizontal),
                 Item("Clear All Horizontals", cmd::ClearAllHorizontals),
                 Item("Clear All Lines", cmd::ClearAllLines), Item("Colour ...", cmd::CurveColour)};
        break;
    case HitObject::Curve: {
        if (i == 0) {
            mouse.colourTarget = 5;
            items = {Item("Data View ...", cmd::DataView), Item("Colour ...", cmd::CurveColour)};
            StyleSubmenu(chart, items);
            break;
        }
        if (i <= 2) {
            mouse.colourTarget = 6;
            items = {Item("Colour ...", cmd::CurveColour)};
            break;
        }
        mouse.colourTarget = i <= 9 ? i + 4 : 14;
        if (i == 3) mouse.selectedCurve = 1;
        if (i >= 4 && i <= 6) mouse.selectedCurve = i - 4 + HandleMenuOf(chart).slot4Period;
        items = {Item("Colour ...", cmd::CurveColour)};
        if (i == 3 && HandleMenuOf(chart).predictorTerms) {
            items.push_back(Submenu("Period"));
            items.push_back(Item("Short", cmd::PredictorShort));
            items.push_back(Item("Medium", cmd::PredictorMedium));
            items.push_back(Item("Long", cmd::PredictorLong));
            items.push_back(Separator());
            const char* current = chart.predictorShort == 1    ? "Short"
                                  : chart.predictorMedium == 1 ? "Medium"
                                                               : "Long";
            const int id = chart.predictorShort == 1    ? cmd::PredictorShort
                           : chart.predictorMedium == 1 ? cmd::PredictorMedium
                                                        : cmd::PredictorLong;
            items.push_back({current, id, true, true, 0, false});
            items.push_back(EndSubmenu());
        } else if (!PeriodExcluded(chart, i)) {
            items.push_back(Item("Period ...", cmd::PeriodDialog));
        }
        break;
    }
    }
    return items;
}

} // namespace velorin
