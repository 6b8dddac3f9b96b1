#pragma once
// The paint of the Correlation chart: the first series of the pair against
// the second as a scatter of small boxes, the fitted line clipped to the
// plot, and the fit's statistics in the heading. The plot has 40 pixels at
// the left, 20 at the top and at the bottom and none at the right.

#include "chart_model/chart.h"
#include "rendering/draw_device.h"
#include "rendering/paint_context.h"
#include "rendering/price_paint.h"
#include "rendering/scale.h"

namespace velorin {

inline constexpr int HeadingSize = 128;

// The arithmetic of one scatter paint. Vertical: the first series from
// low1 (plot bottom) to high1 (plot top); horizontal: the second series
// from low2 (x = 40) to high2 (x = right).
struct ScatterLayout {
    int right = 0;
    int bottom = 0;
    int firstVisible = 0; // the rows firstVisible to pairCount - 1 are plotted
    int pairCount = 0;
    double low1 = 0.0, high1 = 0.0, low2 = 0.0, high2 = 0.0;
    int priceSteps = 0;
    double pixelsPerValue1 = 0.0; // vertical
    double pixelsPerValue2 = 0.0; // horizontal; 0 when the second series is flat

    int PlotWidth() const { return right - ScaleWidth; }
    int PlotBottom() const { return bottom - BandHeight; }
    // The scale of the vertical axis, for the price scale routines.
    ChartScale VerticalScale() const;
    int XOf(double second) const;
    int YOf(double first) const;
    double FirstAtY(int y) const;
    double SecondAtX(int x) const;
};

// A short series fills the window: with count = pairCount - firstRow rows,
// when count x resolution is less than the plot width the resolution
// becomes plot width / count.
void StretchScatter(Chart& chart, int plotWidth);
// The rows on screen, their ranges padded (low x 0.99, high x 1.01; a flat
// range gets low = high x 0.9) and the two scales. Stretches first.
ScatterLayout ComputeScatterLayout(Chart& chart, int right, int bottom);

// (2 beta + 1) / 3, or (2 beta - 1) / 3 for a negative beta.
double HeadingAdjustedBeta(double beta);
// "R²=%3.2f   ß=%3.3f  Adj_ß=%3.3f" in the program's single-byte code page.
void FormatScatterHeading(const PairData& pair, char (&heading)[HeadingSize]);

// The part of the fitted line first = beta x second + alpha that lies in
// the plot, in pixels. False when the line misses the plot or is undefined.
bool FittedLineInPlot(const ScatterLayout& layout, double beta, double alpha, PixelPoint& from,
                      PixelPoint& to);

struct ScatterPaintResult {
    PaintOutcome outcome = PaintOutcome::Painted;
    ScatterLayout layout;
};

// The whole paint of a `right` by `bottom` client. A beta of exactly 0 is
// stored as 0.000001 first, so that the line is defined. With `crossActive`
// the readout of the values under (mouseX, mouseY) is drawn too.
ScatterPaintResult PaintScatterChart(DrawDevice& device, Chart& chart, int right, int bottom,
                                     const PaintContext& ctx, bool crossActive, int mouseX,
                                     int mouseY);
// The readout: the first series' value at mouseY at (0, 0), the second's at
// mouseX at (40, 0), seven characters of "%f" each.
void DrawScatterReadout(DrawDevice& device, const ScatterLayout& layout, int mouseX, int mouseY,
                        Colour text);

} // namespace velorin
