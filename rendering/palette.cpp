#include "rendering/palette.h"

namespace velorin {

namespace {

// A dark plot with light text, and curve colours far enough apart to tell
// neighbours in a chart apart at a glance.
constexpr Colour firstRun[PaletteSize] = {
    MakeColour(0, 0, 0),       // background
    MakeColour(80, 80, 80),    // grid
    MakeColour(220, 220, 220), // text
    MakeColour(0, 170, 255),   // vertical lines
    MakeColour(255, 170, 0),   // horizontal lines
    MakeColour(0, 230, 0),     // slot 0: close
    MakeColour(230, 60, 60),   // slots 1, 2: high, low
    MakeColour(255, 255, 0),   // slot 4
    MakeColour(0, 255, 255),   // slot 3
    MakeColour(255, 0, 255),   // slot 5
    MakeColour(255, 128, 0),   // slot 6
    MakeColour(128, 160, 255), // slot 7
    MakeColour(160, 255, 128), // slot 8
    MakeColour(255, 128, 192), // slot 9
    MakeColour(170, 170, 170), // slots 10 to 13
    MakeColour(255, 255, 255), // trend lines
    MakeColour(64, 200, 255),  // channels and highlights
    MakeColour(255, 200, 64),  // Gann lines
    MakeColour(255, 255, 255), // the two companion views
    MakeColour(0, 0, 0),       MakeColour(192, 192, 192), MakeColour(0, 0, 128),
    MakeColour(255, 255, 255), MakeColour(128, 0, 0),
};

Palette FirstRunPalette() {
    Palette p{};
    for (int i = 0; i < PaletteSize; ++i)
        p.current[i] = p.defaults[i] = firstRun[i];
    return p;
}

} // namespace

// Until the settings file is read the charts use the first-run colours.
Palette palette = FirstRunPalette();

const Colour* FirstRunColours() {
    return firstRun;
}

void ResetPalette() {
    palette = FirstRunPalette();
}

void RestoreDefaultColours() {
    for (int i = 0; i < PaletteSize; ++i)
        palette.current[i] = palette.defaults[i];
}

Colour PaletteColour(int entry) {
    if (entry < 0 || entry >= PaletteSize) return Black;
    return palette.current[entry];
}

int PaletteEntryOfSlot(int curveSlot) {
    switch (curveSlot) {
    case 0:
        return PaletteClose;
    case 1:
    case 2:
        return PaletteHighLow;
    case 3:
        return PaletteSlot3;
    case 4:
        return PaletteSlot4;
    default:
        // Slots 5 to 9 follow on from entry 9; 10 and above share 14.
        return curveSlot <= 9 ? curveSlot + 4 : PaletteEnvelopes;
    }
}

} // namespace velorin
