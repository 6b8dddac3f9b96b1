#pragma once
// The commands of a price chart window: the items of its context and
// handle menus and of the button bar. They arm the drawing tools, clear
// drawn objects, and set resolution, style, colours and periods.

#include "chart_model/chart.h"
#include "interaction/chart_window_port.h"

namespace velorin {

// Carries out `commandId` on the chart of `window`. A tool left open (any
// but the region tool) is ended first: its flag and `toolArmed` are cleared
// and the caption from before it comes back; cursor and capture are left
// to the command. Unknown ids do nothing more.
void ChartCommand(ChartWindowPort& window, Chart& chart, int commandId);

// The colour dialog on the palette entry behind `target` (the colour
// targets of the handle menus, 51 text, 52 grid, 53 background). On OK the
// entry takes the colour. Returns 1 for every known target, OK or Cancel,
// and 0 for others.
int ChooseColour(int target);

// "Colour ..." (the curve menus' target), "Grid ...", "Text ..." and
// "Background ...": the colour dialog, then every chart repainted after OK.
// False when `commandId` is none of them.
bool ColourCommand(int commandId);

// The palette entry a colour target changes, or -1.
int PaletteEntryOfTarget(int target);

} // namespace velorin
