#include "interaction/mouse_state.h"

#include "rendering/price_paint.h"

namespace velorin {

ChartMouseState chartMouse = {};

void ResetChartMouseState() {
    chartMouse = ChartMouseState{};
}

ReadoutState ReadoutOf(const ChartMouseState& mouse) {
    return ReadoutState{mouse.mouseX, mouse.mouseY, mouse.crosshairOn != 0, mouse.toolArmed != 0};
}

PlacedObjects PlacedObjectsOf(const ChartMouseState& mouse) {
    PlacedObjects placed;
    placed.kinds.trend = mouse.trendTool != 0;
    placed.kinds.channel = mouse.channelTool != 0;
    placed.kinds.gann = mouse.gannTool != 0;
    placed.kinds.vertical = mouse.verticalTool != 0;
    placed.kinds.horizontal = mouse.horizontalTool != 0;
    placed.trend = mouse.selectedTrend;
    placed.channel = mouse.selectedChannel;
    placed.gann = mouse.selectedGann;
    placed.vertical = mouse.selectedVertical;
    placed.horizontal = mouse.selectedHorizontal;
    return placed;
}

void EndConvertedTools(ChartMouseState& mouse, const ObjectKinds& converted) {
    if (converted.horizontal) mouse.horizontalTool = 0;
    if (converted.vertical) mouse.verticalTool = 0;
    if (converted.trend) mouse.trendTool = 0;
    if (converted.channel) mouse.channelTool = 0;
    if (converted.gann) mouse.gannTool = 0;
}

void MoveCrosshair(DrawDevice& device, ChartMouseState& mouse, int right, int bottom) {
    MoveHairs(device, mouse.toolStep != 0, mouse.hairX, mouse.hairY, mouse.mouseX, mouse.mouseY,
              right, bottom);
    mouse.toolStep = 99;
    mouse.hairX = mouse.mouseX;
    mouse.hairY = mouse.mouseY;
}

} // namespace velorin
