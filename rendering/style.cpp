#include "rendering/style.h"

namespace velorin {

DrawingStyle drawingStyle{1, 1, 1, 1, 0};

void ResetDrawingStyle() {
    drawingStyle = {1, 1, 1, 1, 0};
}

} // namespace velorin
