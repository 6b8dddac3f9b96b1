#include "rendering/drawn_objects.h"

#include <cmath>

#include "market_data/data_source.h"
#include "rendering/series_draw.h"

namespace velorin {

namespace {

inline double LineValue(double slope, double base, double row) {
    return row * slope + base;
}

Pen AttachmentPen(const DrawingStyle& style, Colour colour, bool dotted) {
    const int width = style.attachmentThickness < 1 ? 1 : style.attachmentThickness;
    return Pen{dotted ? PenStyle::Dot : PenStyle::Solid, width, colour};
}

// x where the line meets a value, the row counted from firstRowShown. A flat
// line gives an infinite x, which TruncatePixel keeps far off the plot.
int XAtValue(const ObjectFrame& f, double slope, double base, double value) {
    return TruncatePixel((((value - base) / slope) - f.firstRowShown) * f.P + f.scale.scaleWidth);
}

struct Point {
    int x;
    int y;
};

// Moves to the left end of the line; returns the handle centre.
Point MoveToLineStart(DrawDevice& device, const ObjectFrame& f, double slope, double base,
                      int rowA) {
    const int s = rowA >= f.firstRowShown ? rowA : f.firstRowShown;
    const double v = LineValue(slope, base, s);
    const ChartScale& sc = f.scale;
    if (v > sc.valueMax) {
        const int x = XAtValue(f, slope, base, sc.valueMax);
        device.MoveTo(x, f.Top());
        return {x + HandleRadius, f.Top() + HandleRadius};
    }
    if (v < sc.valueMin) {
        const int x = XAtValue(f, slope, base, sc.valueMin);
        device.MoveTo(x, f.Bottom());
        return {x + HandleRadius, f.Bottom() - HandleRadius};
    }
    const int y = TruncatePixel(f.Y(v));
    if (rowA < f.firstRowShown) {
        device.MoveTo(sc.scaleWidth, y);
        return {sc.scaleWidth + HandleRadius, y};
    }
    const int x = XOfRow(f.n, f.P, rowA, f.lastBarX);
    device.MoveTo(x, y);
    return {x, y};
}

// The right end of an extended line: the right edge, or where it leaves
// the range.
void LineToExtendedEnd(DrawDevice& device, const ObjectFrame& f, double slope, double base) {
    const double v = LineValue(slope, base, f.n);
    const ChartScale& sc = f.scale;
    if (v < sc.valueMin)
        device.LineTo(XAtValue(f, slope, base, sc.valueMin), f.Bottom());
    else if (v > sc.valueMax)
        device.LineTo(XAtValue(f, slope, base, sc.valueMax), f.Top());
    else
        device.LineTo(sc.right, TruncatePixel(f.Y(v)));
}

// One line of a trend or channel; returns the handle centre.
Point DrawObjectLine(DrawDevice& device, const ObjectFrame& f, const DrawingStyle& style,
                     double slope, double base, int rowA, int rowB, bool extended, Colour colour) {
    device.SetPen(AttachmentPen(style, colour, LineIsBroken(f, extended, slope, base)));
    const Point handle = MoveToLineStart(device, f, slope, base, rowA);
    if (extended)
        LineToExtendedEnd(device, f, slope, base);
    else
        device.LineTo(XOfRow(f.n, f.P, rowB, f.lastBarX),
                      TruncatePixel(f.Y(LineValue(slope, base, rowB))));
    return handle;
}

// Replaces an object's handle: made whenever handles are on, so it can be
// hit, but filled only when it lies near the plot.
void PlaceObjectHandle(RegionHandle& region, Point c, const Chart& chart, DrawDevice& device,
                       const ObjectFrame& f, const Brush& brush) {
    DeleteAndClear(region);
    if (!chart.showCurveHandles) return;
    region = CreateEllipticRegion(c.x - HandleRadius, c.y - HandleRadius, c.x + HandleRadius,
                                  c.y + HandleRadius);
    if (!region) return;
    const PixelRect& b = region->box;
    if (b.left >= f.scale.scaleWidth - HandleRadius && b.top >= f.Top() - HandleRadius &&
        b.bottom <= f.Bottom() + HandleRadius)
        device.FillRegion(*region, brush);
}

// A handle that is always filled when handles are on.
void PlaceFilledHandle(RegionHandle& region, int left, int top, int right, int bottom,
                       const Chart& chart, DrawDevice& device, const Brush& brush) {
    DeleteAndClear(region);
    if (!chart.showCurveHandles) return;
    region = CreateEllipticRegion(left, top, right, bottom);
    if (region) device.FillRegion(*region, brush);
}

int RowOfPixel(const ObjectFrame& f, int x) {
    return ObjectRowAtX(f.n, f.P, x, f.lastBarX);
}

} // namespace

int ObjectFrame::Top() const {
    return TruncatePixel(scale.bottom - (scale.valueMax - scale.valueMin) * scale.pixelsPerValue -
                         scale.bandHeight);
}

double ObjectFrame::Y(double value) const {
    return ValueToY(scale.bottom, scale.bandHeight, scale.pixelsPerValue, scale.valueMin, value);
}

ObjectFrame MakeObjectFrame(const Chart& chart, const ChartScale& scale, int lastBarX,
                            int firstRowShown) {
    ObjectFrame f;
    f.scale = scale;
    f.lastBarX = lastBarX;
    f.firstRowShown = firstRowShown;
    f.n = chart.rowCount;
    f.P = chart.view ? chart.view->resolution : 1.0;
    const DataColumns* cols = ColumnsOf(chart);
    f.close = cols ? cols->close : nullptr;
    return f;
}

double BoundedClose(const ObjectFrame& f, int row) {
    if (!f.close) return 0.0;
    int last = (f.n < MaxRows ? f.n : MaxRows) - 1;
    if (last < 0) last = 0;
    if (row < 0) row = 0;
    if (row > last) row = last;
    return f.close[row];
}

double LineThroughRows(const ObjectFrame& f, bool freePlaced, int rowA, int rowB, int yA, int yB,
                       double& baseValue) {
    const ChartScale& s = f.scale;
    double vA, vB;
    if (freePlaced) {
        vA = YToValue(s.bottom, s.bandHeight, s.pixelsPerValue, s.valueMin, yA);
        vB = YToValue(s.bottom, s.bandHeight, s.pixelsPerValue, s.valueMin, yB);
    } else {
        vA = BoundedClose(f, rowA);
        vB = BoundedClose(f, rowB);
    }
    const double slope = std::atan((vB - vA) / (rowB - rowA));
    baseValue = vB - rowB * slope;
    return slope;
}

void DeriveTrendLine(Chart& chart, int i, const ObjectFrame& f) {
    TrendLineSet& t = *chart.drawings->trendLines;
    const int rowA = RowOfPixel(f, t.pointA[i].x);
    int rowB = RowOfPixel(f, t.pointB[i].x);
    if (rowA == rowB) rowB += 1;
    t.pointA[i].x = rowA;
    t.pointB[i].x = rowB;
    if (t.freePlaced[i] && t.pointA[i].y == t.pointB[i].y) t.pointB[i].y += 1;
    t.slopeAngle[i] = LineThroughRows(f, t.freePlaced[i] != 0, rowA, rowB, t.pointA[i].y,
                                      t.pointB[i].y, t.baseValue[i]);
}

void DeriveChannel(Chart& chart, int i, const ObjectFrame& f) {
    ChannelSet& c = *chart.drawings->channels;
    const int rowA = RowOfPixel(f, c.pointA[i].x);
    int rowB = RowOfPixel(f, c.pointB[i].x);
    const int rowC = RowOfPixel(f, c.pointC[i].x);
    if (rowA == rowB) rowB += 1;
    c.pointA[i].x = rowA;
    c.pointB[i].x = rowB;
    c.pointC[i].x = rowC;
    if (c.freePlaced[i] && c.pointA[i].y == c.pointB[i].y) c.pointB[i].y += 1;
    const double slope = LineThroughRows(f, c.freePlaced[i] != 0, rowA, rowB, c.pointA[i].y,
                                         c.pointB[i].y, c.baseValue[i]);
    c.slopeAngle[i] = slope;
    if (c.freePlaced[i]) {
        const ChartScale& s = f.scale;
        const double vC =
            YToValue(s.bottom, s.bandHeight, s.pixelsPerValue, s.valueMin, c.pointC[i].y);
        c.secondBaseValue[i] = (vC - (rowC * slope + c.baseValue[i])) + c.baseValue[i];
    } else {
        c.secondBaseValue[i] = BoundedClose(f, rowC) - rowC * slope;
    }
}

void ReanchorDrawnObjects(Chart& chart, const ChartScale& scale, int lastBarX, int firstRowShown) {
    chart.anchorsPending = 0;
    if (!chart.drawings) return;
    ChartScale s = scale;
    s.bandHeight = BandHeight;
    const ObjectFrame f = MakeObjectFrame(chart, s, lastBarX, firstRowShown);
    auto toPoint = [&](IntPoint& p, const char* date, double value) {
        p.x = TruncatePixel(DateTextToX(chart, date, lastBarX));
        p.y = TruncatePixel(f.Y(value));
    };
    if (TrendLineSet* t = chart.drawings->trendLines) {
        for (int i = 0; i < MaxDrawnObjects; ++i) {
            if (!t->inUse[i]) continue;
            toPoint(t->pointA[i], t->dateA[i], t->valueA[i]);
            toPoint(t->pointB[i], t->dateB[i], t->valueB[i]);
            DeriveTrendLine(chart, i, f);
        }
    }
    if (ChannelSet* c = chart.drawings->channels) {
        for (int i = 0; i < MaxDrawnObjects; ++i) {
            if (!c->inUse[i]) continue;
            toPoint(c->pointA[i], c->dateA[i], c->valueA[i]);
            toPoint(c->pointB[i], c->dateB[i], c->valueB[i]);
            toPoint(c->pointC[i], c->dateC[i], c->valueC[i]);
            DeriveChannel(chart, i, f);
        }
    }
}

bool LineIsBroken(const ObjectFrame& f, bool extended, double slopeAngle, double baseValue) {
    if (!extended || f.n <= 2 || !f.close) return false;
    const double a = LineValue(slopeAngle, baseValue, f.n - 2);
    const double b = LineValue(slopeAngle, baseValue, f.n);
    const double c1 = BoundedClose(f, f.n - 3);
    const double c2 = BoundedClose(f, f.n - 1);
    return (a < c1 && c2 < b) || (c1 < a && b < c2);
}

void DrawTrendLines(Chart& chart, DrawDevice& device, const ObjectFrame& f, const Font& font,
                    const PaintContext& ctx, ObjectKinds& converted) {
    if (!chart.drawings || !chart.drawings->trendLines) return;
    TrendLineSet& t = *chart.drawings->trendLines;
    const Colour colour = ctx.ColourOf(PaletteTrendLines);
    device.SetFont(font);
    for (int i = 0; i < MaxDrawnObjects; ++i) {
        if (!t.inUse[i]) continue;
        if (ctx.placed.kinds.trend && !converted.trend && ctx.placed.trend == i) {
            DeriveTrendLine(chart, i, f);
            converted.trend = true;
        }
        const Point h = DrawObjectLine(device, f, ctx.style, t.slopeAngle[i], t.baseValue[i],
                                       t.pointA[i].x, t.pointB[i].x, t.extended[i] != 0, colour);
        PlaceObjectHandle(t.regions[i], h, chart, device, f, SolidBrush(colour));
    }
}

void DrawChannelLines(Chart& chart, DrawDevice& device, const ObjectFrame& f, const Font& font,
                      const PaintContext& ctx, ObjectKinds& converted) {
    if (!chart.drawings || !chart.drawings->channels) return;
    ChannelSet& c = *chart.drawings->channels;
    const Colour colour = ctx.ColourOf(PaletteChannelLines);
    device.SetFont(font);
    for (int i = 0; i < MaxDrawnObjects; ++i) {
        if (!c.inUse[i]) continue;
        if (ctx.placed.kinds.channel && !converted.channel && ctx.placed.channel == i) {
            DeriveChannel(chart, i, f);
            converted.channel = true;
        }
        const double slope = c.slopeAngle[i];
        const int rowA = c.pointA[i].x, rowB = c.pointB[i].x;
        const bool extended = c.extended[i] != 0;
        const Point h1 = DrawObjectLine(device, f, ctx.style, slope, c.baseValue[i], rowA, rowB,
                                        extended, colour);
        const Point h2 = DrawObjectLine(device, f, ctx.style, slope, c.secondBaseValue[i], rowA,
                                        rowB, extended, colour);
        c.pixelGap[i] = std::fabs(f.Y(rowA * slope + c.secondBaseValue[i]) -
                                  f.Y(rowA * slope + c.baseValue[i]));
        PlaceObjectHandle(c.regions[i], h1, chart, device, f, SolidBrush(colour));
        PlaceObjectHandle(c.secondRegions[i], h2, chart, device, f, SolidBrush(colour));
    }
}

void DrawGannLines(Chart& chart, DrawDevice& device, const ObjectFrame& f, const Font& font,
                   const PaintContext& ctx, ObjectKinds& converted) {
    if (!chart.drawings || !chart.drawings->gannLines) return;
    GannSet& g = *chart.drawings->gannLines;
    const Colour colour = ctx.ColourOf(PaletteGannLines);
    const ChartScale& s = f.scale;
    device.SetFont(font);
    for (int i = 0; i < MaxDrawnObjects; ++i) {
        if (!g.inUse[i]) continue;
        if (ctx.placed.kinds.gann && !converted.gann && ctx.placed.gann == i) {
            const int x0 = g.point[i].x, y0 = g.point[i].y;
            const int r0 = RowOfPixel(f, x0);
            g.point[i].x = r0;
            if (g.freePlaced[i]) {
                // Reference points at screen slopes 1 in 2, 1 in 1 and 2 in 1.
                const int sign = g.drawUp[i] ? -1 : 1;
                const int dx[3] = {100, 100, 50};
                const int dy[3] = {50, 100, 100};
                const double v0 =
                    YToValue(s.bottom, s.bandHeight, s.pixelsPerValue, s.valueMin, y0);
                for (int k = 0; k < 3; ++k) {
                    const int rk = RowOfPixel(f, x0 + dx[k]);
                    const double vk = YToValue(s.bottom, s.bandHeight, s.pixelsPerValue, s.valueMin,
                                               y0 + sign * dy[k]);
                    g.slopeAngle[k][i] = std::atan((vk - v0) / (rk - r0));
                    g.baseValue[k][i] = vk - rk * g.slopeAngle[k][i];
                }
            }
            converted.gann = true;
        }
        const int r0 = g.point[i].x;
        if (!g.freePlaced[i]) {
            static constexpr double slopes[3] = {0.5, 1.0, 2.0};
            for (int k = 0; k < 3; ++k) {
                g.slopeAngle[k][i] = slopes[k];
                g.baseValue[k][i] = BoundedClose(f, r0) - r0 * slopes[k];
            }
        }
        const int endRow = TruncatePixel(r0 + 50 * std::sin(std::atan(0.5)));
        for (int k = 0; k < 3; ++k) {
            const double slope = g.slopeAngle[k][i], base = g.baseValue[k][i];
            device.SetPen(AttachmentPen(ctx.style, colour, false));
            const Point h = MoveToLineStart(device, f, slope, base, r0);
            const int yEnd = TruncatePixel(f.Y(LineValue(slope, base, endRow)));
            if (!g.extended[i] && endRow > f.firstRowShown && yEnd >= f.Top() && yEnd <= f.Bottom())
                device.LineTo(XOfRow(f.n, f.P, endRow, f.lastBarX), yEnd);
            else
                LineToExtendedEnd(device, f, slope, base);
            PlaceObjectHandle(g.regions[k][i], h, chart, device, f, SolidBrush(colour));
        }
    }
}

void DrawVerticalLines(Chart& chart, DrawDevice& device, const ObjectFrame& f,
                       const PaintContext& ctx, ObjectKinds& converted) {
    if (!chart.drawings || !chart.drawings->verticalLines) return;
    VerticalLineSet& v = *chart.drawings->verticalLines;
    const Colour colour = ctx.ColourOf(PaletteVerticalLines);
    device.SetPen(AttachmentPen(ctx.style, colour, false));
    if (ctx.placed.kinds.vertical && !converted.vertical) {
        const int i = ctx.placed.vertical;
        if (i >= 0 && i < MaxDrawnObjects) v.point[i].x = RowOfPixel(f, v.point[i].x);
        converted.vertical = true;
    }
    const int B = f.Bottom();
    for (int i = 0; i < MaxDrawnObjects; ++i) {
        if (!v.inUse[i]) continue;
        const int r = v.point[i].x;
        // A line left of the window keeps the handle it had, and can still be hit there.
        if (r <= f.firstRowShown) continue;
        const int x = XOfRow(f.n, f.P, r, f.lastBarX);
        device.MoveTo(x, B);
        device.LineTo(x, f.Top());
        const int h = TruncatePixel((r - f.n + 1) * f.P + f.lastBarX + 3.0);
        PlaceFilledHandle(v.regions[i], h - HandleRadius, B - 2 * HandleRadius, h + HandleRadius, B,
                          chart, device, SolidBrush(colour));
    }
}

void DrawHorizontalLines(Chart& chart, DrawDevice& device, const ObjectFrame& f,
                         const PaintContext& ctx, ObjectKinds& converted) {
    if (!chart.drawings || !chart.drawings->horizontalLines) return;
    HorizontalLineSet& hl = *chart.drawings->horizontalLines;
    const ChartScale& s = f.scale;
    const Colour colour = ctx.ColourOf(PaletteHorizontalLines);
    device.SetPen(AttachmentPen(ctx.style, colour, false));
    if (ctx.placed.kinds.horizontal && !converted.horizontal) {
        const int i = ctx.placed.horizontal;
        if (i >= 0 && i < MaxDrawnObjects)
            hl.value[i] =
                YToValue(s.bottom, s.bandHeight, s.pixelsPerValue, s.valueMin, hl.point[i].y);
        converted.horizontal = true;
    }
    for (int i = 0; i < MaxDrawnObjects; ++i) {
        if (!hl.inUse[i]) continue;
        const double value = hl.value[i];
        if (!(value > s.valueMin && value < s.valueMax)) continue;
        const int y = TruncatePixel(f.Y(value));
        device.MoveTo(s.scaleWidth, y);
        device.LineTo(s.right, y);
        PlaceFilledHandle(hl.regions[i], s.scaleWidth, y - HandleRadius,
                          s.scaleWidth + 2 * HandleRadius, y + HandleRadius, chart, device,
                          SolidBrush(colour));
    }
}

void DrawHighlightRegions(Chart& chart, DrawDevice& device, const ObjectFrame& frame,
                          const PaintContext& ctx, int selectedRegion, std::int32_t& regionTool) {
    if (!chart.drawings || !chart.drawings->highlights || !chart.view) return;
    HighlightSet& h = *chart.drawings->highlights;
    const ChartScale& s = frame.scale;
    const int pairCount = chart.pairData ? chart.pairData->pairCount : 0;
    const double P = chart.view->resolution;
    if (regionTool && selectedRegion >= 0 && selectedRegion < MaxDrawnObjects) {
        const int i = selectedRegion;
        for (int k = 0; k < h.pointCount[i] && k < 10; ++k) {
            HighlightPoint& p = h.points[i][k];
            p.row = pairCount - ((frame.lastBarX - p.row) + 1) / P;
            p.value = YToValue(s.bottom, s.bandHeight, s.pixelsPerValue, s.valueMin,
                               TruncatePixel(p.value));
        }
        regionTool = 0;
    }
    const Brush hatch{BrushStyle::Hatch, HatchStyle::BackwardDiagonal,
                      ctx.ColourOf(PaletteChannelLines)};
    for (int i = 0; i < MaxDrawnObjects; ++i) {
        if (!h.inUse[i]) continue;
        DeleteAndClear(h.regions[i]);
        if (h.resolution[i] != P) continue; // shown only at the resolution it was drawn at
        const int count = h.pointCount[i] < 10 ? h.pointCount[i] : 10;
        if (count <= 0) continue;
        PixelPoint pts[10];
        bool skipped = false;
        for (int k = 0; k < count; ++k) {
            const HighlightPoint& p = h.points[i][k];
            if (p.row <= frame.firstRowShown) {
                skipped = true;
                break;
            }
            pts[k].x = TruncatePixel((p.row - pairCount) * P + frame.lastBarX + 1.0);
            pts[k].y = TruncatePixel(frame.Y(p.value));
        }
        if (skipped) continue;
        for (int k = count; k < 10; ++k)
            pts[k] = pts[count - 1];
        h.regions[i] = CreatePolygonRegion(pts, 10);
        if (h.regions[i]) device.FillRegion(*h.regions[i], hatch);
    }
}

} // namespace velorin
