#pragma once
// The clicks and mouse moves of the drawing tools that the chart commands
// arm. A click stores a point in pixels and, for trend lines and channels,
// the date and value under it; the last click leaves the line's equation
// to the next paint, which finds the object through the tool flag still set.

#include "chart_model/chart.h"
#include "interaction/chart_window_port.h"

namespace velorin {

// Prompts the caption shows while a tool waits, by click.
inline constexpr const char* TrendPrompts[2] = {"Trend Line: Select First Point",
                                                "Trend Line: Select Second Point"};
inline constexpr const char* ChannelPrompts[3] = {"Channel Lines: Select First Point",
                                                  "Channel Lines: Select Second Point",
                                                  "Channel Lines: Select Third Point"};
inline constexpr const char* GannPrompt = "Gann Line: Select Point";
inline constexpr const char* VerticalPrompt = "Vertical Line: Select Point";
inline constexpr const char* HorizontalPrompt = "Horizontal Line: Select Point";
inline constexpr const char* EndPointPrompt = "End Point: Select Point";

// The plot area every mouse test uses: x from the price scale up to but not
// including right - 2, y from the top band to the bottom band inclusive.
bool InPlotLimits(const ChartWindowPort& window, int x, int y);

// A left click at (x, y) while a tool flag is set and no crosshair runs:
// the first tool set, in the order channel, trend, Gann, vertical,
// horizontal, the four moves, end point, takes it. Clicks outside the plot
// are left alone and the tool keeps waiting. The caller has stored the
// position in the mouse state and made the handle test before.
void ToolClick(ChartWindowPort& window, Chart& chart, int x, int y);

// A mouse move at (x, y): a trend line or channel with its first point
// placed is given up when the mouse goes left of that point or out of the
// plot (x = right - 2 still counts as in); while a tool waits inside the
// plot the readout is repainted.
void ToolMouseMove(ChartWindowPort& window, Chart& chart, int x, int y);

} // namespace velorin
