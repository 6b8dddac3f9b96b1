#pragma once
// The paint of the Overlay chart: two price series over their common dates,
// each against a value scale of its own (the first at the left, the second
// at the right), and the highlight regions the user outlined on it.

#include "chart_model/chart.h"
#include "rendering/draw_device.h"
#include "rendering/paint_context.h"
#include "rendering/price_paint.h"
#include "rendering/scale.h"

namespace velorin {

// The rows of `pairCount` on screen at a plot width and resolution: all of
// them while they do not fill it, otherwise the last that fit.
int FirstVisiblePairRow(int pairCount, int plotWidth, double resolution);
// A series' range over rows first to n - 1, gaps left out, padded: low x
// 0.99, high x 1.01, and a flat range gets low = high x 0.9.
void PaddedRange(const double* series, int first, int n, double& low, double& high);

// The second series is drawn only when it comes from another connection:
// an instrument overlaid with itself shows one curve.
bool OverlayShowsSecondSeries(const Chart& chart);

struct OverlayPaintResult {
    PaintOutcome outcome = PaintOutcome::Painted;
    char caption[CaptionSize] = {}; // the window caption, written at each paint
    ChartScale scale;               // the first series' scale
    ChartScale secondScale;         // valid when secondShown
    bool secondShown = false;
};

// The whole paint of a `right` by `bottom` client; updates ctx.memory and
// the curve handles of slots 0 and 3. `regionTool` set turns the corners
// of region `selectedRegion` from pixels into rows and values, and is
// cleared.
OverlayPaintResult PaintOverlayChart(DrawDevice& device, Chart& chart, int right, int bottom,
                                     const PaintContext& ctx, int selectedRegion,
                                     std::int32_t& regionTool);

} // namespace velorin
