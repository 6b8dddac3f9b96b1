#include "interaction/two_series_command.h"

#include "base/user_seam.h"
#include "chart_model/desk.h"
#include "interaction/chart_command.h"
#include "interaction/chart_menu.h"
#include "interaction/menu_items.h"
#include "interaction/mouse_state.h"
#include "rendering/scale.h"
#include "resources/command_ids.h"

namespace velorin {

TwoSeriesMouseState twoSeriesMouse;

void ResetTwoSeriesMouseState() {
    twoSeriesMouse = {};
}

namespace {

using namespace menu_items;

// Colour targets of the two overlay curves: the close entry and curve slot 3's.
constexpr int FirstCurveColourTarget = 5;
constexpr int SecondCurveColourTarget = 7;

// The region in work takes its place among the regions shown.
void FinishRegion(ChartWindowPort& window, Chart& chart, HighlightToolState& tool) {
    HighlightSet& h = *chart.drawings->highlights;
    window.RestoreCursor();
    window.Capture(false);
    tool.armed = 0;
    h.inUse[tool.index] = 1;
    h.resolution[tool.index] = chart.view->resolution;
    tool.convert = 1;
    window.Invalidate();
}

void StartRegion(ChartWindowPort& window, Chart& chart, HighlightToolState& tool) {
    tool.armed = 1;
    tool.drawing = 1;
    HighlightSet& h = *chart.drawings->highlights;
    int i = 0;
    while (i < MaxDrawnObjects && h.inUse[i] != 0)
        ++i;
    if (i == MaxDrawnObjects) {
        tool.armed = 0;
        tool.drawing = 0;
        Seam().ShowMessage("You already have maximum number of regions", "Highlight Region",
                           MessageIcon::Warning);
        return;
    }
    tool.index = i;
    h.inUse[i] = 0;
    h.pointCount[i] = 0;
    window.Capture(true);
    window.SetRingCursor();
}

void ClearRegion(HighlightSet& h, int i) {
    h.inUse[i] = 0;
    DeleteAndClear(h.regions[i]);
}

bool HasHighlights(const Chart& chart) {
    return chart.drawings && chart.drawings->highlights && chart.view;
}

} // namespace

bool InTwoSeriesPlot(int x, int y, int right, int bottom) {
    return x >= ScaleWidth && x < right - 2 && y >= BandHeight && y <= bottom - BandHeight;
}

void TwoSeriesCommand(ChartWindowPort& window, Chart& chart, int commandId) {
    if (const double resolution = ResolutionOfCommand(commandId); resolution > 0.0) {
        if (chart.view) chart.view->resolution = resolution;
        window.Invalidate();
        return;
    }
    if (ColourCommand(commandId)) return;
    switch (commandId) {
    case cmd::ToggleGrid:
        if (chart.view) chart.view->gridOn = chart.view->gridOn == 0 ? 1 : 0;
        window.Invalidate();
        break;
    default:
        break;
    }
}

void OverlayCommand(ChartWindowPort& window, Chart& chart, HighlightToolState& tool,
                    int commandId) {
    if (tool.armed) {
        // The corners placed so far are given up, and the tool with them.
        window.RestoreCursor();
        window.Capture(false);
    }
    tool.armed = tool.drawing = tool.popupOpen = 0;
    if (!HasHighlights(chart)) {
        TwoSeriesCommand(window, chart, commandId);
        return;
    }
    HighlightSet& h = *chart.drawings->highlights;
    switch (commandId) {
    case cmd::HighlightRegion:
        StartRegion(window, chart, tool);
        break;
    case cmd::ClearHighlight:
        if (tool.index >= 0 && tool.index < MaxDrawnObjects) ClearRegion(h, tool.index);
        window.Invalidate();
        break;
    case cmd::ClearAllHighlights:
        for (int i = 0; i < MaxDrawnObjects; ++i)
            ClearRegion(h, i);
        window.Invalidate();
        break;
    default:
        TwoSeriesCommand(window, chart, commandId);
        break;
    }
}

OverlayClickResult OverlayLeftClick(ChartWindowPort& window, Chart& chart, HighlightToolState& tool,
                                    int x, int y) {
    OverlayClickResult result;
    if (!HasHighlights(chart)) return result;
    HighlightSet& h = *chart.drawings->highlights;
    const int right = window.Right(), bottom = window.Bottom();
    const bool inPlot = InTwoSeriesPlot(x, y, right, bottom);
    const bool constructing =
        tool.armed && tool.drawing && tool.index >= 0 && tool.index < MaxDrawnObjects;
    if (constructing && inPlot) {
        int& count = h.pointCount[tool.index];
        if (count >= HighlightCorners) {
            FinishRegion(window, chart, tool);
        } else {
            h.points[tool.index][count] =
                HighlightPoint{static_cast<double>(x), static_cast<double>(y)};
            ++count;
        }
        return result;
    }
    // Left of, above or below the plot ends the region; a click right of
    // it is no such end and falls to the next case.
    if (constructing && (x < ScaleWidth || y < BandHeight || y > bottom - BandHeight)) {
        if (h.pointCount[tool.index] < 3) {
            window.RestoreCursor();
            window.Capture(false);
            tool.armed = 0;
            tool.drawing = 0;
        } else {
            FinishRegion(window, chart, tool);
        }
        return result;
    }
    if (chartMouse.crosshairOn || !inPlot) {
        tool.armed = tool.drawing = 0;
        window.Invalidate();
        return result;
    }
    const RegionHandle* curves = chart.view->curveRegions;
    const int curveSlots[] = {0, 3};
    const int targets[] = {FirstCurveColourTarget, SecondCurveColourTarget};
    for (int k = 0; k < 2; ++k) {
        const Region* r = curves[curveSlots[k]];
        if (tool.popupOpen == 0 && PointInRegion(r, x, y)) {
            tool.popupOpen = 1;
            chartMouse.colourTarget = targets[k];
            result.inverted = r;
            result.menu = {Item("Colour ...", cmd::CurveColour)};
            return result;
        }
    }
    for (int i = 0; i < MaxDrawnObjects; ++i) {
        if (tool.popupOpen == 0 && h.inUse[i] && PointInRegion(h.regions[i], x, y)) {
            tool.popupOpen = 1;
            tool.index = i;
            result.inverted = h.regions[i];
            result.menu = {Item("Clear", cmd::ClearHighlight),
                           Item("Clear All", cmd::ClearAllHighlights)};
            return result;
        }
    }
    tool.armed = tool.drawing = tool.popupOpen = 0;
    return result;
}

} // namespace velorin
