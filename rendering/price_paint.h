#pragma once
// The paint of a price chart window, in its steps, and the crosshair: the
// hairs are inverted on the live image and the readout of value and date
// is drawn by a paint clipped to its small rectangle.

#include "chart_model/chart.h"
#include "rendering/draw_device.h"
#include "rendering/paint_context.h"
#include "rendering/scale.h"
#include "rendering/series_draw.h"

namespace velorin {

inline constexpr int MinimumPaintHeight = 51;
inline constexpr const char* ChartFontFace = "New Times Roman";
inline constexpr int ScaleFontHeight = 14;
inline constexpr int ReadoutFontHeight = 13;
// The readout: value at (0, 0), date at (40, 0), inside 115 by 13 pixels.
inline constexpr PixelRect ReadoutRect{0, 0, 115, 13};
inline constexpr int ReadoutDateX = 40;
// The readout is written only while the mouse is left of right - 5.
inline constexpr int ReadoutRightMargin = 5;

Font ScaleFont();
Font ReadoutFont();

enum class PaintOutcome {
    Painted,
    Minimise,         // client under 51 pixels high: the window shrinks and minimises itself
    InsufficientData, // too few rows: nothing drawn, the caption says so
};

struct PaintResult {
    PaintOutcome outcome = PaintOutcome::Painted;
    char caption[CaptionSize] = {}; // the caption the window is to carry (not for Minimise)
    ChartScale scale;               // the scale of this paint
    int readoutRow = -1;            // row of the date readout when one was drawn, else -1
    ObjectKinds converted;          // placed objects now in rows and values: tools done
};

// The whole paint of a price chart window of `right` by `bottom` pixels,
// from what `ctx` holds; updates ctx.memory, the chart's handles and drawn
// objects.
PaintResult PaintPriceChart(DrawDevice& device, Chart& chart, int right, int bottom,
                            const PaintContext& ctx);
// The same paint limited to `clip`: what a window repaints when only a
// small rectangle is invalid, such as the readout during a crosshair move.
// Operations wholly outside the clip are not passed to the device.
PaintResult PaintPriceChartClipped(DrawDevice& device, Chart& chart, int right, int bottom,
                                   const PixelRect& clip, const PaintContext& ctx);

// Whether the paint writes the readout now.
bool ReadoutShown(const ReadoutState& readout, int right);
// The value at mouseY, first 7 characters of "%f", at (0, 0), in `text` on black.
void DrawValueReadout(DrawDevice& device, const ChartScale& scale, int mouseY, Colour text);
// The date text of the row under mouseX with nine blanks after it, at
// (40, 0). Returns the row.
int DrawDateReadout(DrawDevice& device, const Chart& chart, int mouseX, int lastBarX, Colour text);

// One-pixel hairs by inversion: a column ending at x from the plot top to
// the plot bottom, a row ending at y from scaleWidth to right.
void InvertVerticalHair(DrawDevice& device, int x, int bottom);
void InvertHorizontalHair(DrawDevice& device, int y, int right);
// A crosshair move: the old hairs at (oldX, oldY), when there are any, are
// inverted back and the new ones at (x, y) inverted, columns first.
void MoveHairs(DrawDevice& device, bool hadHairs, int oldX, int oldY, int x, int y, int right,
               int bottom);

} // namespace velorin
