#pragma once
// A paint context on the first-run colours and a line style of the test's
// own, and the corners of recorded operations, for the rendering tests.

#include <algorithm>
#include <array>
#include <vector>

#include "rendering/paint_context.h"
#include "tests/support/recording_device.h"

namespace velorin::testing {

struct PaintSetup {
    PaintSetup() { std::copy_n(FirstRunColours(), PaletteSize, palette.current); }
    PaintSetup(const PaintSetup&) = delete; // ctx refers to the members
    Colour operator[](int entry) const { return palette.current[entry]; }

    Palette palette{};
    DrawingStyle style{1, 1, 1, 1, 0};
    PaintMemory memory;
    PaintContext ctx{palette, style, memory};
};

// left, top, right, bottom of a shape; from and to of a line.
using Box = std::array<int, 4>;
inline Box BoxOf(const DrawOp& op) {
    return {op.x1, op.y1, op.x2, op.y2};
}
inline std::vector<Box> Boxes(const RecordingDevice& dev, DrawOpKind kind) {
    std::vector<Box> out;
    for (const DrawOp& op : dev.OpsOf(kind))
        out.push_back(BoxOf(op));
    return out;
}

} // namespace velorin::testing
