#include "rendering/analysis_curves.h"

#include <cstring>

#include "rendering/series_draw.h"
#include "shell/core/shell_state.h"

namespace velorin {

namespace {

using W = CurveWidth;

constexpr KindCurves kindCurves[] = {
    // kind, price group, volume, padded, fibonacci, width, count, curves
    {"Price", true, false, true, false, W::Price, 0, {}},
    {"Volume", false, true, false, false, W::Price, 0, {}},
    {"RMA", true, false, true, false, W::Model, 3, {{0, 4}, {1, 5}, {2, 6}}},
    {"ESMA", true, false, true, false, W::Model, 1, {{0, 4}}},
    {"WMA", true, false, true, false, W::Model, 1, {{0, 4}}},
    {"Trend", true, false, true, false, W::Model, 1, {{0, 4}}},
    {"Swing Charting", true, false, true, false, W::Model, 1, {{0, 4}}},
    {"RSI", false, false, false, false, W::One, 1, {{0, 3}}},
    {"Oscillator", false, false, false, false, W::One, 1, {{0, 3}}},
    {"Momentum", false, false, false, false, W::One, 1, {{0, 3}}},
    {"RVI", false, false, false, false, W::One, 1, {{0, 3}}},
    {"OBV", false, false, false, false, W::One, 1, {{0, 3}}},
    {"Tic Volume", false, false, false, false, W::One, 1, {{0, 3}}},
    {"Perc. Range", false, false, false, false, W::One, 1, {{0, 3}}},
    {"OverboughtSold", false, false, false, false, W::One, 1, {{0, 3}}},
    {"Stochastics", false, false, false, false, W::One, 4, {{0, 3}, {1, 4}, {2, 5}, {3, 6}}},
    {"Stdev", false, false, false, false, W::One, 3, {{0, 4}, {1, 5}, {2, 6}}},
    {"Historical Correlation", false, false, false, false, W::Model, 1, {{0, 3}}},
    {"Price Ratio", false, false, false, false, W::Model, 1, {{0, 3}}},
    {"Spread", false, false, false, false, W::Model, 1, {{0, 3}}},
    {"Relative Strength", false, false, false, false, W::Model, 1, {{0, 3}}},
    {"Relative Performance", false, false, false, false, W::Model, 1, {{0, 3}}},
    // Curve 0 of the predictor is an intermediate and is neither drawn nor ranged.
    {"Predictor", false, false, false, false, W::One, 2, {{1, 3}, {2, 4}}},
    {"MACD", false, false, false, false, W::One, 2, {{1, 3}, {2, 4}}},
    {"Fibonacci", true, false, true, true, W::One, 0, {}},
};

} // namespace

const KindCurves* CurvesOfKind(const char* kindName) {
    if (!kindName) return nullptr;
    for (const KindCurves& k : kindCurves)
        if (std::strcmp(k.kindName, kindName) == 0) return &k;
    return nullptr;
}

int PenWidthOf(CurveWidth width) {
    switch (width) {
    case CurveWidth::Model:
        return shell.modelThickness;
    case CurveWidth::Price:
        return shell.priceThickness;
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

int DrawKindSeries(Chart& chart, DrawDevice& device, const ChartScale& scale, int& lastBarX) {
    const KindCurves* kc = CurvesOfKind(chart.kindName);
    if (!kc) return -1;
    const int n = RowCountOf(chart);
    int first = -1;
    if (kc->priceGroup) first = DrawPriceGroup(chart, device, scale, lastBarX);
    if (kc->volumeColumn) {
        const DataColumns* cols = ColumnsOf(chart);
        first = DrawCurve(0, 0.0, cols ? cols->volume : nullptr, chart, device, scale, lastBarX, n,
                          PenWidthOf(kc->width));
    }
    if (chart.modelSeries) {
        for (int i = 0; i < kc->curveCount; ++i) {
            const CurveEntry& e = kc->curves[i];
            const double* s = chart.modelSeries->slot[e.modelCurve];
            if (s)
                DrawCurve(e.slot, 0.0, s, chart, device, scale, lastBarX, n, PenWidthOf(kc->width));
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
                DrawCurve(c.slot, c.widthMultiple * fx.priceStdev, s, chart, device, scale,
                          lastBarX, n, PenWidthOf(c.width));
        }
    }
    return first;
}

} // namespace velorin
