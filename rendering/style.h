#pragma once
// How lines are drawn, beside the palette: the thickness of each group of
// curves and what a new drawn object starts as. One record for the whole
// program; the Options menu changes it and the settings file keeps it.

#include <cstdint>

namespace velorin {

struct DrawingStyle {
    std::int32_t priceThickness;      // 1, 2 or 3: the price curves
    std::int32_t modelThickness;      // analysis curves drawn over the price
    std::int32_t attachmentThickness; // drawn objects
    std::int32_t defaultFreePlaced;   // "Data Value": 1 at start, item checked when 0
    std::int32_t defaultExtended;     // "Line Extend"
};

extern DrawingStyle drawingStyle;

// Start-up values: thickness 1 everywhere, new objects free-placed and not extended.
void ResetDrawingStyle();

} // namespace velorin
