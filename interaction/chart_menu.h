#pragma once
// The right-click menu of a chart window: the step that ends any crosshair
// or tool first, and the menu's items by the chart's kind. Qt-free; the
// window turns the items into a popup and sends the chosen id back as a
// chart command.

#include <string>
#include <vector>

#include "chart_model/chart.h"
#include "interaction/chart_window_port.h"
#include "interaction/handle_menu.h"
#include "interaction/mouse_state.h"

namespace velorin {

// Ends a crosshair (the hidden cursor comes back) and any tool, the region
// tool included: the caption from before the tool comes back, every flag
// and the step count are cleared, the cursor is restored, the window is
// repainted and the capture released. Does nothing when neither is on.
void CancelForChartMenu(ChartWindowPort& window, ChartMouseState& mouse);

// The items of the right-click menu for the chart's kind, submenus opened
// by an item with `submenu` 1 and closed by one with `endSubmenu`.
// `sourceRowCount` is the row count of the chart's source ("Get All" shows
// while the chart shows fewer or more rows). An unknown kind gives no items.
std::vector<MenuItem> ChartMenuItems(const Chart& chart, int sourceRowCount);

// The caption kept while a tool is armed: saving keeps at most 99
// characters and a terminating zero.
std::string SavedCaption(const ChartMouseState& mouse);
void SaveCaption(ChartMouseState& mouse, const std::string& caption);

// The resolution step shown checked for a stored resolution: the nearest
// step at or below it (below the first step, the first). Returns its
// command id, 20301 to 20309.
int CurrentResolutionCommand(double resolution);
// The resolution a command 20301 to 20309 sets; 0 for other ids.
double ResolutionOfCommand(int commandId);

} // namespace velorin
