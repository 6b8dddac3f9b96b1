#pragma once
// The 24 colours of the charts, shared by every window: the list in use and
// the default list that "Default" copies back. Entries by role below; the
// curve slots map onto entries with 3 and 4 crossed against 7 and 8.

#include "rendering/draw_device.h"

namespace velorin {

inline constexpr int PaletteSize = 24;

enum PaletteEntry : int {
    PaletteBackground = 0,
    PaletteGrid = 1, // grid lines, ticks, plot frame
    PaletteText = 2, // scales and readouts
    PaletteVerticalLines = 3,
    PaletteHorizontalLines = 4,
    PaletteClose = 5,   // curve slot 0: close line, candle body, close mark
    PaletteHighLow = 6, // curve slots 1 and 2: high and low lines, bars, wicks
    PaletteSlot4 = 7,
    PaletteSlot3 = 8,
    PaletteSlot5 = 9,
    PaletteSlot6 = 10,
    PaletteSlot7 = 11,
    PaletteSlot8 = 12,
    PaletteSlot9 = 13,
    PaletteEnvelopes = 14, // curve slots 10 to 13
    PaletteTrendLines = 15,
    PaletteChannelLines = 16, // also highlight regions
    PaletteGannLines = 17,
    PaletteViewFirst = 18, // 18 to 23: the Data View and Levels View
};

struct Palette {
    Colour current[PaletteSize];
    Colour defaults[PaletteSize];
};

extern Palette palette;

// The values a first settings file holds, for both lists.
const Colour* FirstRunColours();
// Both lists to their first-run values.
void ResetPalette();
// "Default": the current list from the default list.
void RestoreDefaultColours();
// The colour in use for an entry (0 to 23).
Colour PaletteColour(int entry);
// The palette entry of a curve slot (0 to 13); slots above 13 use 14.
int PaletteEntryOfSlot(int curveSlot);

} // namespace velorin
