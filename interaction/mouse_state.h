#pragma once
// The interaction state of the price chart windows. There is one for the
// whole program, not one per window: the mouse is in one window at a time,
// and a tool armed in one window stays armed until it ends.

#include <cstdint>

#include "rendering/draw_device.h"
#include "rendering/paint_context.h"

namespace velorin {

struct ChartMouseState {
    std::int32_t mouseX; // last mouse position, client pixels (screen pixels while a menu opens)
    std::int32_t mouseY;
    std::int32_t crosshairOn; // the crosshair has the mouse
    std::int32_t toolArmed;   // a tool waits for a click; the readout shows meanwhile
    std::int32_t toolStep;    // tool: points placed; crosshair: 0 until the first hair, then 99

    // Tool flags, at most one set.
    std::int32_t trendTool;
    std::int32_t channelTool;
    std::int32_t gannTool;
    std::int32_t verticalTool;
    std::int32_t horizontalTool;
    std::int32_t regionTool;
    std::int32_t endPointTool;
    std::int32_t moveTrendTool;
    std::int32_t moveChannelTool;
    std::int32_t moveVerticalTool;
    std::int32_t moveHorizontalTool;

    std::int32_t firstClickX; // first point of a two-point tool
    std::int32_t firstClickY;
    std::int32_t hairX; // the crosshair drawn last
    std::int32_t hairY;
    std::int32_t menuLatch;    // a handle menu has just closed: the next click skips handles
    std::int32_t colourTarget; // palette entry "Colour ..." changes
    std::int32_t selectedCurve;
    std::int32_t selectedTrend;
    std::int32_t selectedChannel;
    std::int32_t selectedGann;
    std::int32_t selectedVertical;
    std::int32_t selectedHorizontal;
    std::int32_t lowerLineHit; // the lower of a channel's two handles was hit
    char savedCaption[100];    // the caption from before the tool was armed
    std::intptr_t savedCursor; // the cursor from before the tool was armed
};

extern ChartMouseState chartMouse;

// Everything back to Idle: all zero.
void ResetChartMouseState();

// What a paint needs of the mouse and the tools: the readout, and the
// object a tool has placed or moved whose points are still in pixels.
ReadoutState ReadoutOf(const ChartMouseState& mouse);
PlacedObjects PlacedObjectsOf(const ChartMouseState& mouse);
// The tools whose objects a paint has turned into rows and values are done.
void EndConvertedTools(ChartMouseState& mouse, const ObjectKinds& converted);

// A crosshair move: the old hairs (after the first) and the new ones are
// inverted; toolStep becomes 99 and hairX, hairY the mouse position.
void MoveCrosshair(DrawDevice& device, ChartMouseState& mouse, int right, int bottom);

} // namespace velorin
