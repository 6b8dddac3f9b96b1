#pragma once
// The arithmetic of a chart's one pane: which rows are on screen, the value
// range they need, rows and values to pixels and back, and the two scales.
// Nothing here is kept between paints except ChartView::resolution, which
// the stretch of ComputeScale may overwrite.

#include <cmath>
#include <cstdint>

#include "chart_model/chart.h"
#include "market_data/data_source.h"
#include "rendering/draw_device.h"

namespace velorin {

inline constexpr int ScaleWidth = 40;  // pixels left of the plot, for the price scale
inline constexpr int BandHeight = 20;  // pixels above and below the plot
inline constexpr int LabelChars = 7;   // characters of a decimal price label
inline constexpr int LabelRaise = 7;   // a price label stands this far above its value
inline constexpr int TickSpacing = 50; // pixels between time labels
inline constexpr int WholeRowTickSpacing = 48;
inline constexpr double InitialValueMin = 1e+50;
inline constexpr double InitialValueMax = -1e+50;

// One computation of a chart's scale. The client rectangle has left and top
// 0; the plot runs from (scaleWidth, bandHeight) to (right, bottom - bandHeight).
struct ChartScale {
    int right = 0;
    int bottom = 0;
    int scaleWidth = ScaleWidth;
    int bandHeight = BandHeight;
    double valueMin = InitialValueMin;
    double valueMax = InitialValueMax;
    double valueRange = 0.0;
    double pixelsPerValue = 0.0;
    int priceSteps = 0;
    int tickSpacing = TickSpacing;

    int Width() const { return right - scaleWidth; } // W
    int PlotBottom() const { return bottom - bandHeight; }
};

ChartScale MakeChartScale(int right, int bottom);

// Double to pixel: truncation toward zero, with values beyond any screen
// (and NaN) held to a far-off but representable coordinate.
inline int TruncatePixel(double v) {
    constexpr double limit = 1000000.0;
    if (std::isnan(v)) return -static_cast<int>(limit);
    if (v > limit) return static_cast<int>(limit);
    if (v < -limit) return -static_cast<int>(limit);
    return static_cast<int>(v);
}

// Kinds whose rows and date texts are the common rows of two sources.
bool ReadsPairRows(const char* kindName);
// The price family: the price under the analysis, grid pass only when on.
bool IsPriceFamily(const char* kindName);
bool KindIs(const Chart& chart, const char* kindName);

// n: the chart's row count, the pair count for the kinds on common rows.
int RowCountOf(const Chart& chart);
// The date column the scale and readouts use; nullptr without data.
const DateText* DateColumnOf(const Chart& chart);
// The primary data source's columns, or nullptr.
const DataColumns* ColumnsOf(const Chart& chart);

// Whether n rows at P pixels a row fill W pixels.
inline bool WindowIsFull(int n, int width, double P) {
    return static_cast<double>(n) - width / P >= 0.0;
}

// Visits the rows on screen left to right as visit(row, pixelOffset); the
// x of a row is TruncatePixel(scaleWidth + pixelOffset). A full window
// starts at the row truncate(n - W/P) and steps by one real row position
// and P pixels; otherwise row i stands at offset i x P.
template <typename Visit> void ForEachShownRow(int n, int width, double P, Visit&& visit) {
    if (n <= 0) return;
    const double start = static_cast<double>(n) - width / P;
    if (start >= 0.0) {
        double offset = 0.0;
        visit(static_cast<int>(start), offset);
        for (double pos = start + 1.0; pos < n; pos += 1.0) {
            offset += P;
            visit(static_cast<int>(pos), offset);
        }
    } else {
        double offset = 0.0;
        for (int i = 0; i < n; ++i) {
            visit(i, offset);
            offset += P;
        }
    }
}

// Widens scale.valueMin and scale.valueMax over the rows of the chart's
// kind, then applies the finishing steps. Uses scale.right and scale.scaleWidth.
void FindValueRange(const Chart& chart, ChartScale& scale);
// The finishing steps alone: unset ends, a minimum range, the 1/D grid.
void FinishValueRange(int denominator, double& valueMin, double& valueMax);
// Steps by height, tick spacing, the stretch (may store a new resolution),
// range and pixels per value.
void ComputeScale(Chart& chart, ChartScale& scale);
int PriceStepsForHeight(int bottom);

double ValueToY(int bottom, int bandHeight, double pixelsPerValue, double valueMin, double value);
double YToValue(int bottom, int bandHeight, double pixelsPerValue, double valueMin, int y);

// x of the row whose date text matches exactly, searched from the last row
// down; 0.0 when no row matches.
double DateTextToX(const Chart& chart, const char* dateText, int lastBarX);
// The date text of the row under x (empty when x is beyond the data).
void XToDateText(const Chart& chart, int x, int lastBarX, char (&dateText)[DateTextSize]);
// The row under x for the readout: truncate(n - (lastBarX - x + 1) / P - 1).
int ReadoutRowAtX(int n, double P, int x, int lastBarX);
// The row under x for drawn objects: truncate(n - (lastBarX - x + 1) / P).
int ObjectRowAtX(int n, double P, int x, int lastBarX);
// x of a row for drawn objects: truncate((r - n + 1) x P + lastBarX + 1).
int XOfRow(int n, double P, int row, int lastBarX);

// The price scale's step; on a fractional scale put on the 1/D grid.
double PriceScaleStep(double valueRange, int priceSteps, int denominator);
// A price label: the first LabelChars characters of "%f", or "w-f" on a
// fractional scale.
void FormatPriceLabel(double value, int denominator, char (&out)[64]);

// The scales draw their lines and ticks in `grid`.
// Labels with grid lines (gridOn) or ticks.
void DrawPriceScale(const Chart& chart, DrawDevice& device, const ChartScale& scale, Colour grid);
// Labels with ticks, whatever the grid.
void DrawPriceTicks(const Chart& chart, DrawDevice& device, const ChartScale& scale, Colour grid);
// The overlay chart's scale: labels rising from the bottom, no ticks.
void DrawRisingScale(DrawDevice& device, int right, int bottom, int bandHeight, int priceSteps,
                     double startValue, double valueRange, int labelChars, int raise);
// Time labels with grid lines (gridOn) or ticks; `dates` may be nullptr.
void DrawTimeScale(const Chart& chart, const DateText* dates, DrawDevice& device,
                   const ChartScale& scale, int align, double resolution, int n, Colour grid);
void DrawTimeTicks(const Chart& chart, const DateText* dates, DrawDevice& device,
                   const ChartScale& scale, int align, double resolution, int n, Colour grid);

} // namespace velorin
