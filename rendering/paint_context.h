#pragma once
// What one paint of a chart window works from and where it leaves what it
// found. The window fills it from the program's colours, line style and
// tool state and its own memory; the paint reads nothing else, so one
// window's paint never depends on another's.

#include <cstdint>

#include "rendering/draw_device.h"
#include "rendering/palette.h"
#include "rendering/style.h"

namespace velorin {

// What a window keeps from its last paint for the mouse code and the next
// paint: the x of the last row plotted and the row plotted at x = scaleWidth.
struct PaintMemory {
    std::int32_t lastBarX = 0;
    std::int32_t firstRowShown = 0;
};

// The value and date readout follows the mouse while the crosshair or an
// armed tool wants it.
struct ReadoutState {
    int mouseX = 0;
    int mouseY = 0;
    bool crosshairOn = false;
    bool toolArmed = false;
};

// Kinds of drawn object, one flag each.
struct ObjectKinds {
    bool trend = false;
    bool channel = false;
    bool gann = false;
    bool vertical = false;
    bool horizontal = false;

    bool operator==(const ObjectKinds&) const = default;
};

// Objects a tool has just placed or moved, their points still in pixels:
// the paint turns them into rows and values. The index of each kind names
// its object.
struct PlacedObjects {
    ObjectKinds kinds;
    int trend = 0;
    int channel = 0;
    int gann = 0;
    int vertical = 0;
    int horizontal = 0;
};

struct PaintContext {
    PaintContext(const Palette& colours, const DrawingStyle& lines, PaintMemory& results)
        : palette(colours), style(lines), memory(results) {}

    const Palette& palette;
    const DrawingStyle& style;
    PaintMemory& memory; // read at the start of the paint, written by it
    ReadoutState readout;
    PlacedObjects placed;

    // The colour in use for a palette entry; Black outside the 24.
    Colour ColourOf(int entry) const {
        return entry >= 0 && entry < PaletteSize ? palette.current[entry] : Black;
    }
};

} // namespace velorin
