#pragma once
// The commands of the Correlation and Overlay windows, and the highlight
// region tool of the Overlay window: corners are placed by left clicks, up
// to ten, and the region is finished by one more click in the plot or by a
// click left of, above or below it.

#include <cstdint>
#include <vector>

#include "chart_model/chart.h"
#include "interaction/chart_window_port.h"
#include "interaction/handle_menu.h"

namespace velorin {

inline constexpr int HighlightCorners = 10;

// The tool's state, one for the whole window class: only one window holds
// the mouse at a time.
struct HighlightToolState {
    std::int32_t armed = 0;   // the next clicks place corners
    std::int32_t drawing = 0; // a region is under construction
    std::int32_t index = 0;   // the region in work, or the one hit
    std::int32_t popupOpen =
        0;                    // a curve or region was just hit: no further hit until a plain click
    std::int32_t convert = 0; // a region was just finished: the next paint turns its corners
                              // from pixels into rows and values
};

// The mouse state of the scatter and overlay windows: one for the whole
// program, as the mouse is in one window at a time.
struct TwoSeriesMouseState {
    HighlightToolState highlight; // the overlay's region tool
    std::int32_t crossActive;     // the scatter's crosshair has the mouse
    std::int32_t crossDrawn;      // 99 once its hairs stand on the image
    std::int32_t crossX, crossY;
};
extern TwoSeriesMouseState twoSeriesMouse;
void ResetTwoSeriesMouseState();

// Resolution 20301 to 20309, colours 20519 to 20522 and grid 20701; other
// ids do nothing.
void TwoSeriesCommand(ChartWindowPort& window, Chart& chart, int commandId);
// The same, and "Highlight Region" 20529, "Clear" 20530, "Clear All" 20531.
// Any region under construction or open popup is dropped first.
void OverlayCommand(ChartWindowPort& window, Chart& chart, HighlightToolState& tool, int commandId);

// What a left click on the overlay asks of the window beyond the state.
struct OverlayClickResult {
    // A popup to open at the click, its commands to OverlayCommand; the
    // region shown inverted while it is open.
    std::vector<MenuItem> menu;
    const Region* inverted = nullptr;
};

// The left button press on the overlay at (x, y), through its cases in order.
OverlayClickResult OverlayLeftClick(ChartWindowPort& window, Chart& chart, HighlightToolState& tool,
                                    int x, int y);

// The plot of the two-series windows: x from 40 up to right - 2
// (exclusive), y from 20 to bottom - 20.
bool InTwoSeriesPlot(int x, int y, int right, int bottom);

} // namespace velorin
