#include "rendering/analysis_curves.h"

#include "rendering/series_draw.h"

namespace velorin {

namespace {
using W = CurveWidth;
} // namespace

const KindCurves* CurvesOfKind(const char* kindName) {
    const ChartKindInfo* info = KindByName(kindName);
    return info ? info->curves : nullptr;
}

int PenWidthOf(CurveWidth width, const DrawingStyle& style) {
    switch (width) {
    case CurveWidth::Model:
        return style.modelThickness;
    case CurveWidth::Price:
        return style.priceThickness;
    case CurveWidth::One:
        break;
    }
    return 1;
}

int FibonacciCurves(const FibonacciExtra& extra, FibonacciCurve* out) {
    int count = 0;
    if (extra.fibonacciLines == 1) {
        out[count++] = {FibonacciLower, 3, 0, W::Model};
        out[count++] = {FibonacciUpper, 9, 0, W::Model};
    } else {
        for (int i = 0; i < ModelSlotCount; ++i)
            out[count++] = {i, 3 + i, 0, W::One};
    }
    out[count++] = {FibonacciLower, 10, -1, W::One};
    out[count++] = {FibonacciUpper, 12, 1, W::One};
    if (extra.extendEnvelopes == 1) {
        out[count++] = {FibonacciLower, 11, -2, W::One};
        out[count++] = {FibonacciUpper, 13, 2, W::One};
    }
    return count;
}

int DrawKindSeries(Chart& chart, DrawDevice& device, const ChartScale& scale,
                   const PaintContext& ctx, int& lastBarX) {
    const KindCurves* kc = CurvesOfKind(chart.kindName);
    if (!kc) return -1;
    const int n = RowCountOf(chart);
    int first = -1;
    if (kc->priceGroup) first = DrawPriceGroup(chart, device, scale, ctx, lastBarX);
    if (kc->volumeColumn) {
        const DataColumns* cols = ColumnsOf(chart);
        first = DrawCurve(0, 0.0, cols ? cols->volume : nullptr, chart, device, scale, ctx,
                          lastBarX, n, PenWidthOf(kc->width, ctx.style));
    }
    if (chart.modelSeries) {
        for (int i = 0; i < kc->curveCount; ++i) {
            const CurveEntry& e = kc->curves[i];
            const double* s = chart.modelSeries->slot[e.modelCurve];
            if (s)
                DrawCurve(e.slot, 0.0, s, chart, device, scale, ctx, lastBarX, n,
                          PenWidthOf(kc->width, ctx.style));
        }
    }
    if (kc->fibonacci && chart.fibonacciExtra) {
        const FibonacciExtra& fx = *chart.fibonacciExtra;
        FibonacciCurve curves[11];
        const int count = FibonacciCurves(fx, curves);
        for (int i = 0; i < count; ++i) {
            const FibonacciCurve& c = curves[i];
            const double* s = c.source == FibonacciLower   ? fx.lowerEnvelope
                              : c.source == FibonacciUpper ? fx.upperEnvelope
                              : chart.modelSeries          ? chart.modelSeries->slot[c.source]
                                                           : nullptr;
            if (s)
                DrawCurve(c.slot, c.widthMultiple * fx.priceStdev, s, chart, device, scale, ctx,
                          lastBarX, n, PenWidthOf(c.width, ctx.style));
        }
    }
    return first;
}

} // namespace velorin
