#pragma once
// What each chart kind draws and what enters its value range: the price
// group, model curves on curve slots with a pen width, and the Fibonacci
// base lines and envelopes. A new analysis kind only fills its model series
// and names its curves in its kind record.

#include "chart_model/chart.h"
#include "rendering/draw_device.h"
#include "rendering/paint_context.h"
#include "rendering/scale.h"

namespace velorin {

// CurveWidth, CurveEntry and KindCurves come with the kind records.

// The curves of a kind by its record; nullptr for kinds that draw no series
// here.
const KindCurves* CurvesOfKind(const char* kindName);

// A Fibonacci curve: model curve (or -1 lower, -2 upper envelope), slot,
// multiple of the envelope width E added to every value, and pen width.
struct FibonacciCurve {
    int source;
    int slot;
    int widthMultiple;
    CurveWidth width;
};
inline constexpr int FibonacciLower = -1;
inline constexpr int FibonacciUpper = -2;

// The curves drawn beside the price of a Fibonacci chart, in order; `out`
// holds at least 11. Returns the count.
int FibonacciCurves(const FibonacciExtra& extra, FibonacciCurve* out);

int PenWidthOf(CurveWidth width, const DrawingStyle& style);

// The series of the chart by its kind: the price group or volume first,
// then the curves. Returns the first row of the price group or volume
// curve, or -1 when the kind has neither (firstRowShown then stays).
int DrawKindSeries(Chart& chart, DrawDevice& device, const ChartScale& scale,
                   const PaintContext& ctx, int& lastBarX);

} // namespace velorin
