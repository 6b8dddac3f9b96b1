#include "rendering/series_draw.h"

#include <cstdio>

#include "market_data/data_source.h"

namespace velorin {

namespace {

inline bool IsValue(double v) {
    return v != MISSING_VALUE;
}

inline double YReal(const ChartScale& s, double value) {
    return ValueToY(s.bottom, s.bandHeight, s.pixelsPerValue, s.valueMin, value);
}
inline int YOf(const ChartScale& s, double value) {
    return TruncatePixel(YReal(s, value));
}
inline int XOf(const ChartScale& s, double offset) {
    return TruncatePixel(s.scaleWidth + offset);
}

double ResolutionOf(const Chart& chart) {
    return chart.view ? chart.view->resolution : 1.0;
}

// Replaces the handle of `slot`: the old region goes; with handles on a
// new one is made around (x, y) and filled.
void PlaceHandle(int slot, bool found, int x, int y, Chart& chart, DrawDevice& device,
                 const Brush& brush) {
    if (!chart.view || slot < 0 || slot >= CurveSlotCount) return;
    DeleteAndClear(chart.view->curveRegions[slot]);
    if (!found || !chart.showCurveHandles) return;
    RegionHandle r = CreateEllipticRegion(x - HandleRadius, y - HandleRadius, x + HandleRadius,
                                          y + HandleRadius);
    chart.view->curveRegions[slot] = r;
    if (r) device.FillRegion(*r, brush);
}

int FirstRowOf(int n, int W, double P) {
    return WindowIsFull(n, W, P) ? TruncatePixel(static_cast<double>(n) - W / P) : 0;
}

} // namespace

bool FindHandleCentre(const double* series, double offset, int firstRow, int n,
                      const ChartScale& scale, double P, int& x, int& y) {
    if (!series || firstRow < 0 || firstRow >= n) return false;
    if (IsValue(series[firstRow])) {
        x = scale.scaleWidth + HandleRadius;
        y = YOf(scale, series[firstRow] + offset);
        return true;
    }
    double px = 0.0;
    for (int r = firstRow; r < n && r < MaxRows; ++r, px += P) {
        if (IsValue(series[r])) {
            x = XOf(scale, px);
            y = YOf(scale, series[r] + offset);
            return true;
        }
    }
    return false;
}

int DrawCurve(int curveSlot, double offset, const double* series, Chart& chart, DrawDevice& device,
              const ChartScale& scale, const PaintContext& ctx, int& lastBarX, int n,
              int thickness) {
    const double P = ResolutionOf(chart);
    const int W = scale.Width();
    if (n > MaxRows) n = MaxRows;
    const Colour colour = ctx.ColourOf(PaletteEntryOfSlot(curveSlot));
    device.SetPen(Pen{PenStyle::Solid, thickness < 1 ? 1 : thickness, colour});
    const Brush brush = SolidBrush(colour);
    const int first = FirstRowOf(n, W, P);
    if (!series || n <= 0) {
        PlaceHandle(curveSlot, false, 0, 0, chart, device, brush);
        return first;
    }

    double lastOffset = 0.0;
    bool havePrevious = false;
    bool previousValue = false;
    const bool full = WindowIsFull(n, W, P);
    ForEachShownRow(n, W, P, [&](int row, double off) {
        const double v = series[row];
        const bool value = IsValue(v);
        if (!havePrevious) {
            // The first row: a full window whose first row is a gap parks
            // the pen at the bottom-left corner.
            if (value)
                device.MoveTo(XOf(scale, off), YOf(scale, v + offset));
            else if (full)
                device.MoveTo(0, scale.bottom);
        } else if (value) {
            if (previousValue)
                device.LineTo(XOf(scale, off), YOf(scale, v + offset));
            else
                device.MoveTo(XOf(scale, off), YOf(scale, v + offset));
        }
        havePrevious = true;
        previousValue = value;
        lastOffset = off;
    });
    lastBarX = XOf(scale, lastOffset);

    int hx = 0, hy = 0;
    const bool found = FindHandleCentre(series, offset, first, n, scale, P, hx, hy);
    PlaceHandle(curveSlot, found, hx, hy, chart, device, brush);
    return first;
}

namespace {

// The walk shared by bars and candles: draw(row, x) for each row whose
// tested columns are all values; lastBarX follows the drawn rows.
template <typename Draw>
int WalkPriceRows(const double* a, const double* b, const double* c, Chart& chart,
                  const ChartScale& scale, int& lastBarX, int n, Draw&& draw) {
    const double P = ResolutionOf(chart);
    const int W = scale.Width();
    if (n > MaxRows) n = MaxRows;
    const int first = FirstRowOf(n, W, P);
    if (!a || !b || !c) return first;
    ForEachShownRow(n, W, P, [&](int row, double off) {
        if (!IsValue(a[row]) || !IsValue(b[row]) || !IsValue(c[row])) return;
        const int x = XOf(scale, off);
        draw(row, x);
        lastBarX = x;
    });
    return first;
}

void PlacePriceHandles(const double* close, const double* high, int first, Chart& chart,
                       DrawDevice& device, const ChartScale& scale, const PaintContext& ctx,
                       int n) {
    const double P = ResolutionOf(chart);
    if (n > MaxRows) n = MaxRows;
    int x = 0, y = 0;
    bool found = FindHandleCentre(close, 0.0, first, n, scale, P, x, y);
    PlaceHandle(0, found, x, y, chart, device, SolidBrush(ctx.ColourOf(PaletteClose)));
    found = FindHandleCentre(high, 0.0, first, n, scale, P, x, y);
    PlaceHandle(1, found, x, y, chart, device, SolidBrush(ctx.ColourOf(PaletteHighLow)));
}

} // namespace

int DrawBars(const double* high, const double* low, const double* close, Chart& chart,
             DrawDevice& device, const ChartScale& scale, const PaintContext& ctx, int& lastBarX,
             int n) {
    const Pen barPen{PenStyle::Solid, 1, ctx.ColourOf(PaletteHighLow)};
    const Pen closePen{PenStyle::Solid, 1, ctx.ColourOf(PaletteClose)};
    device.SetBrush(SolidBrush(ctx.ColourOf(PaletteBackground)));
    const int first =
        WalkPriceRows(high, low, close, chart, scale, lastBarX, n, [&](int row, int x) {
            device.SetPen(barPen);
            device.MoveTo(x, YOf(scale, high[row]));
            device.LineTo(x, YOf(scale, low[row]));
            device.SetPen(closePen);
            const double yc = YReal(scale, close[row]);
            device.Rectangle(x - 2, TruncatePixel(yc - 1.0), x + 2, TruncatePixel(yc + 1.0));
        });
    PlacePriceHandles(close, high, first, chart, device, scale, ctx, n);
    return first;
}

int DrawCandles(const double* high, const double* low, const double* open, const double* close,
                Chart& chart, DrawDevice& device, const ChartScale& scale, const PaintContext& ctx,
                int& lastBarX, int n) {
    const Pen wickPen{PenStyle::Solid, 1, ctx.ColourOf(PaletteHighLow)};
    const Pen bodyPen{PenStyle::Solid, 1, ctx.ColourOf(PaletteClose)};
    const Brush bodyFill = SolidBrush(ctx.ColourOf(PaletteClose));
    device.SetBrush(SolidBrush(ctx.ColourOf(PaletteBackground)));
    const double vMin = scale.valueMin, ppv = scale.pixelsPerValue;
    const int bh = scale.bandHeight;
    const int first =
        WalkPriceRows(high, low, open, chart, scale, lastBarX, n, [&](int row, int x) {
            device.SetPen(wickPen);
            device.MoveTo(x, YOf(scale, high[row]));
            device.LineTo(x, YOf(scale, low[row]));
            device.SetPen(bodyPen);
            const double c = close ? close[row] : MISSING_VALUE;
            // The two ends compared in pixels, each pushed a pixel apart: a
            // body under 2 pixels tall counts as falling.
            const int a = TruncatePixel((c - vMin) * ppv - bh - 1);
            const int b = TruncatePixel((open[row] - vMin) * ppv - bh + 1);
            const double yClose = YReal(scale, c);
            if (a != b) {
                const int top = TruncatePixel(YReal(scale, open[row]) - 1.0);
                const int bottom = TruncatePixel(yClose + 1.0);
                device.Rectangle(x - 2, top, x + 2, bottom);
                if (a < b) device.FillRect(x - 2, top, x + 2, bottom, bodyFill);
            } else {
                device.Rectangle(x - 2, TruncatePixel(yClose - 1.0), x + 2,
                                 TruncatePixel(yClose + 1.0));
            }
        });
    PlacePriceHandles(close, high, first, chart, device, scale, ctx, n);
    return first;
}

int DrawPriceGroup(Chart& chart, DrawDevice& device, const ChartScale& scale,
                   const PaintContext& ctx, int& lastBarX) {
    const DataColumns* cols = ColumnsOf(chart);
    const int n = chart.rowCount;
    if (!cols || !chart.view) return 0;
    const ChartView& v = *chart.view;
    if (v.showBar)
        return DrawBars(cols->high, cols->low, cols->close, chart, device, scale, ctx, lastBarX, n);
    if (v.showCandle)
        return DrawCandles(cols->high, cols->low, cols->open, cols->close, chart, device, scale,
                           ctx, lastBarX, n);
    const int thickness = ctx.style.priceThickness;
    const int first =
        DrawCurve(0, 0.0, cols->close, chart, device, scale, ctx, lastBarX, n, thickness);
    if (v.showHighLow) {
        DrawCurve(1, 0.0, cols->high, chart, device, scale, ctx, lastBarX, n, thickness);
        DrawCurve(2, 0.0, cols->low, chart, device, scale, ctx, lastBarX, n, thickness);
    }
    return first;
}

bool HasTooFewRows(const Chart& chart) {
    const int n = RowCountOf(chart);
    if (n < 25 && !KindIs(chart, "Price") && !KindIs(chart, "Volume")) return true;
    if (n < 61 && (KindIs(chart, "Stochastics") || KindIs(chart, "Predictor"))) return true;
    if (n < 251 && KindIs(chart, "Fibonacci")) return true;
    return false;
}

void FormatInsufficientDataCaption(const Chart& chart, char (&caption)[CaptionSize]) {
    std::snprintf(caption, CaptionSize, "%.*s      INSUFFICIENT DATA",
                  static_cast<int>(sizeof chart.windowCaption) - 1, chart.windowCaption);
}

} // namespace velorin
