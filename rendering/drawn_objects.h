#pragma once
// The objects a user draws on a chart: trend lines, channels, Gann fans,
// vertical and horizontal lines, and the highlight regions of the overlay
// chart. Lines are anchored by a date text and a value; on screen they are
// value(row) = row x slopeAngle + baseValue, in rows counted from the start
// of the data, so they need no new derivation when the chart is rescaled.

#include "chart_model/chart.h"
#include "rendering/draw_device.h"
#include "rendering/paint_context.h"
#include "rendering/scale.h"

namespace velorin {

// What drawing an object needs of the paint.
struct ObjectFrame {
    ChartScale scale; // finished range and pixels per value
    int lastBarX = 0;
    int firstRowShown = 0;
    int n = 0;                     // Chart::rowCount
    double P = 1.0;                // ChartView::resolution
    const double* close = nullptr; // the data source's close column, or nullptr
    int Top() const;               // T: the plot top at valueMax
    int Bottom() const { return scale.bottom - scale.bandHeight; } // B
    double Y(double value) const;
};

ObjectFrame MakeObjectFrame(const Chart& chart, const ChartScale& scale, int lastBarX,
                            int firstRowShown);

// The close of a row, with the row held inside the column.
double BoundedClose(const ObjectFrame& f, int row);

// The equation from two rows and either the closes (freePlaced 0) or the
// two pixel heights (freePlaced 1). The arctangent of the rise per row is
// used as the rise per row: a steep line passes through the second point
// and falls short of the first. Returns slopeAngle; baseValue by reference.
double LineThroughRows(const ObjectFrame& f, bool freePlaced, int rowA, int rowB, int yA, int yB,
                       double& baseValue);

// Derives trend line i from its pixel points: x becomes a row.
void DeriveTrendLine(Chart& chart, int i, const ObjectFrame& f);
void DeriveChannel(Chart& chart, int i, const ObjectFrame& f);

// Brings every trend line and channel back from its stored dates and
// values to points, then derives the equations; clears anchorsPending.
void ReanchorDrawnObjects(Chart& chart, const ChartScale& scale, int lastBarX, int firstRowShown);

// An extended line turns dotted when the last closes have crossed it.
bool LineIsBroken(const ObjectFrame& f, bool extended, double slopeAngle, double baseValue);

// The paint's object passes, in the context's colours and attachment
// thickness. An object of ctx.placed first takes its points from the last
// clicks, from pixels into rows and values; its kind is then set in
// `converted`, and the tool that placed it is done.
void DrawTrendLines(Chart& chart, DrawDevice& device, const ObjectFrame& f, const Font& font,
                    const PaintContext& ctx, ObjectKinds& converted);
void DrawChannelLines(Chart& chart, DrawDevice& device, const ObjectFrame& f, const Font& font,
                      const PaintContext& ctx, ObjectKinds& converted);
// Part of the system but called by no paint.
void DrawGannLines(Chart& chart, DrawDevice& device, const ObjectFrame& f, const Font& font,
                   const PaintContext& ctx, ObjectKinds& converted);
void DrawVerticalLines(Chart& chart, DrawDevice& device, const ObjectFrame& f,
                       const PaintContext& ctx, ObjectKinds& converted);
void DrawHorizontalLines(Chart& chart, DrawDevice& device, const ObjectFrame& f,
                         const PaintContext& ctx, ObjectKinds& converted);
// Highlights of the overlay chart: `regionTool` set converts the points of
// `selectedRegion` from pixels into rows and values, and is cleared.
void DrawHighlightRegions(Chart& chart, DrawDevice& device, const ObjectFrame& f,
                          const PaintContext& ctx, int selectedRegion, std::int32_t& regionTool);

} // namespace velorin
