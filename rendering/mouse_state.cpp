#include "rendering/mouse_state.h"

namespace velorin {

ChartMouseState chartMouse = {};

void ResetChartMouseState() {
    chartMouse = ChartMouseState{};
}

} // namespace velorin
