#include "rendering/scale.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "rendering/analysis_curves.h"

namespace velorin {

namespace {

// Safety valve for the scale loops: a range of infinities or a step lost
// against its value can never make a paint hang.
constexpr int MaxScaleIterations = 100000;

bool InList(const char* kindName, const char* const* list, int count) {
    if (!kindName) return false;
    for (int i = 0; i < count; ++i)
        if (std::strcmp(kindName, list[i]) == 0) return true;
    return false;
}

constexpr const char* pairKinds[] = {"Correlation",       "Historical Correlation",
                                     "Price Ratio",       "Spread",
                                     "Relative Strength", "Relative Performance"};

constexpr const char* priceFamily[] = {"Price", "RMA", "ESMA", "WMA", "Trend", "Swing Charting"};

// Kinds whose stretch counts the pair rows.
constexpr const char* pairStretchKinds[] = {
    "Price Ratio", "Spread", "Relative Strength", "Relative Performance", "Historical Correlation",
    "Overlay"};

std::size_t BoundedLength(const char* text, std::size_t limit) {
    std::size_t len = 0;
    while (len < limit && text[len] != '\0')
        ++len;
    return len;
}

inline void Widen(double v, double& lo, double& hi) {
    if (v < lo) lo = v;
    if (v > hi) hi = v;
}

inline void WidenValue(double v, double& lo, double& hi) {
    if (v != MISSING_VALUE) Widen(v, lo, hi);
}

int DenominatorOf(const Chart& chart) {
    return chart.priceScaleDenominator > 1 ? chart.priceScaleDenominator : 1;
}

} // namespace

ChartScale MakeChartScale(int right, int bottom) {
    ChartScale s;
    s.right = right;
    s.bottom = bottom;
    return s;
}

bool ReadsPairRows(const char* kindName) {
    return InList(kindName, pairKinds, 6);
}
bool IsPriceFamily(const char* kindName) {
    return InList(kindName, priceFamily, 6);
}
bool KindIs(const Chart& chart, const char* kindName) {
    return std::strcmp(chart.kindName, kindName) == 0;
}

int RowCountOf(const Chart& chart) {
    if (ReadsPairRows(chart.kindName)) return chart.pairData ? chart.pairData->pairCount : 0;
    return chart.rowCount;
}

const DataColumns* ColumnsOf(const Chart& chart) {
    const DataSource* source = SourceAt(chart.sourceSlot);
    return source ? source->columns : nullptr;
}

const DateText* DateColumnOf(const Chart& chart) {
    if (ReadsPairRows(chart.kindName))
        return chart.pairData ? chart.pairData->pairDateText : nullptr;
    const DataColumns* columns = ColumnsOf(chart);
    return columns ? columns->dateText : nullptr;
}

void FinishValueRange(int denominator, double& valueMin, double& valueMax) {
    if (valueMax == InitialValueMin || valueMax == InitialValueMax) valueMax = 1.0;
    if (valueMin == InitialValueMin || valueMin == InitialValueMax) valueMin = 0.0;
    if (valueMax - valueMin <= 0.0009) valueMax = valueMin + 0.001;
    if (denominator > 1) {
        const double D = denominator;
        const double t = std::trunc(valueMin);
        valueMin = t + std::trunc((valueMin - t) * D) / D;
        const double u = std::trunc(valueMax);
        valueMax = u + std::ceil((valueMax - u) * D) / D;
        if (valueMax - valueMin <= 0.0009) valueMax = valueMin + 1.0 / D;
    }
}

void FindValueRange(const Chart& chart, ChartScale& scale) {
    const int n = RowCountOf(chart);
    const double P = chart.view ? chart.view->resolution : 1.0;
    const int W = scale.Width();
    const bool fibonacci = KindIs(chart, "Fibonacci");
    const KindCurves* kc = CurvesOfKind(chart.kindName);
    const DataColumns* cols = ColumnsOf(chart);
    const ModelSeries* model = chart.modelSeries;
    double lo = scale.valueMin, hi = scale.valueMax;

    const bool withPrice = kc && kc->priceGroup && cols;
    const ChartView* view = chart.view;
    const bool withHighLow =
        withPrice && view && (view->showBar || view->showCandle || view->showHighLow);
    const bool withOpen = withPrice && view && view->showCandle;
    const FibonacciExtra* fib = fibonacci ? chart.fibonacciExtra : nullptr;
    const double E = fib ? fib->priceStdev : 0.0;
    const double envelopeWidth = fib && fib->extendEnvelopes ? 2.0 * E : E;

    auto addRow = [&](int r) {
        if (r < 0 || r >= MaxRows) return;
        if (withPrice) {
            Widen(cols->close[r], lo, hi);
            if (withHighLow) {
                Widen(cols->high[r], lo, hi);
                Widen(cols->low[r], lo, hi);
            }
            if (withOpen) Widen(cols->open[r], lo, hi);
        }
        if (kc && kc->volumeColumn && cols) Widen(cols->volume[r], lo, hi);
        if (kc && model) {
            for (int i = 0; i < kc->curveCount; ++i) {
                const double* s = model->slot[kc->curves[i].modelCurve];
                if (s) WidenValue(s[r], lo, hi);
            }
        }
        if (fibonacci && model) {
            for (int i = 0; i < ModelSlotCount; ++i)
                if (model->slot[i]) WidenValue(model->slot[i][r], lo, hi);
        }
        if (fib && fib->lowerEnvelope && fib->upperEnvelope) {
            const double l = fib->lowerEnvelope[r], u = fib->upperEnvelope[r];
            if (l != MISSING_VALUE) Widen(l - envelopeWidth, lo, hi);
            if (u != MISSING_VALUE) Widen(u + envelopeWidth, lo, hi);
        }
    };

    // The test uses the whole client width and the span W, so a chart that
    // nearly fills the window ranges over all its rows, a few of them hidden.
    const double start = static_cast<double>(n) - W / P;
    const bool allRows = fibonacci ? start < 0.0 : static_cast<double>(n) - scale.right / P < 0.0;
    if (allRows) {
        for (int r = fibonacci ? chart.firstRow : 0; r < n; ++r)
            addRow(r);
    } else {
        for (double pos = start; pos < n; pos += 1.0)
            addRow(static_cast<int>(pos));
    }

    if (kc && kc->padded) {
        lo -= 0.001;
        hi += 0.001;
    }
    FinishValueRange(DenominatorOf(chart), lo, hi);
    scale.valueMin = lo;
    scale.valueMax = hi;
}

int PriceStepsForHeight(int bottom) {
    static constexpr int limits[] = {101, 201, 301, 401, 501, 601, 701, 801};
    static constexpr int steps[] = {1, 2, 4, 6, 8, 10, 12, 14};
    for (int i = 0; i < 8; ++i)
        if (bottom < limits[i]) return steps[i];
    return 16;
}

void ComputeScale(Chart& chart, ChartScale& scale) {
    scale.priceSteps = PriceStepsForHeight(scale.bottom);
    const double P = chart.view ? chart.view->resolution : 1.0;
    if (P == 4.0 || P == 8.0 || P == 16.0) scale.tickSpacing = WholeRowTickSpacing;

    const DataSource* source = SourceAt(chart.sourceSlot);
    const bool tick = source && source->tick;
    const int n = RowCountOf(chart);
    if (!tick && n >= 25 && chart.view) {
        int c = n;
        if (InList(chart.kindName, pairStretchKinds, 6))
            c = chart.pairData ? chart.pairData->pairCount : 0;
        else if (KindIs(chart, "Fibonacci"))
            c = n - chart.firstRow;
        const int W = scale.Width();
        if (c != 0 && c * P < W) chart.view->resolution = static_cast<double>(W) / c;
    }

    scale.valueRange = scale.valueMax - scale.valueMin;
    if (scale.valueRange != 0.0)
        scale.pixelsPerValue = (scale.bottom - 2 * scale.bandHeight) / scale.valueRange;
}

double ValueToY(int bottom, int bandHeight, double pixelsPerValue, double valueMin, double value) {
    return bottom - (value - valueMin) * pixelsPerValue - bandHeight;
}

double YToValue(int bottom, int bandHeight, double pixelsPerValue, double valueMin, int y) {
    return (bottom - bandHeight - y) / pixelsPerValue + valueMin;
}

double DateTextToX(const Chart& chart, const char* dateText, int lastBarX) {
    const DateText* dates = DateColumnOf(chart);
    const int n = RowCountOf(chart);
    if (!dates || !dateText || !chart.view) return 0.0;
    const double P = chart.view->resolution;
    for (int i = std::min(n, MaxRows) - 1; i >= 0; --i)
        if (std::strncmp(dates[i], dateText, DateTextSize) == 0)
            return (i - n + 1) * P + lastBarX + 1.0;
    return 0.0;
}

int ReadoutRowAtX(int n, double P, int x, int lastBarX) {
    return TruncatePixel(n - (lastBarX - x + 1) / P - 1.0);
}

int ObjectRowAtX(int n, double P, int x, int lastBarX) {
    return TruncatePixel(n - (lastBarX - x + 1) / P);
}

int XOfRow(int n, double P, int row, int lastBarX) {
    return TruncatePixel((row - n + 1) * P + lastBarX + 1.0);
}

void XToDateText(const Chart& chart, int x, int lastBarX, char (&dateText)[DateTextSize]) {
    dateText[0] = '\0';
    const DateText* dates = DateColumnOf(chart);
    if (!dates || !chart.view) return;
    const int n = RowCountOf(chart);
    const int row = ReadoutRowAtX(n, chart.view->resolution, x, lastBarX);
    if (row < 0 || row >= n || row >= MaxRows) return;
    std::memcpy(dateText, dates[row], DateTextSize);
    dateText[DateTextSize - 1] = '\0';
}

double PriceScaleStep(double valueRange, int priceSteps, int denominator) {
    double s = valueRange / priceSteps;
    if (denominator > 1) {
        const double D = denominator;
        const double whole = std::trunc(s);
        s = whole + std::trunc((s - whole) * D) / D;
        if (1.0 / D >= s) s = 1.0 / D;
    }
    return s;
}

void FormatPriceLabel(double value, int denominator, char (&out)[64]) {
    if (denominator > 1) {
        const int w = TruncatePixel(value);
        const int f = TruncatePixel((value - w) * denominator);
        if (f != 0)
            std::snprintf(out, sizeof out, "%d-%d", w, f);
        else
            std::snprintf(out, sizeof out, "%d", w);
        return;
    }
    // Very large values still give a bounded text; only the first
    // LabelChars characters are shown.
    char text[400];
    std::snprintf(text, sizeof text, "%f", value);
    const std::size_t len = BoundedLength(text, LabelChars);
    std::memcpy(out, text, len);
    out[len] = '\0';
}

namespace {

void DrawPriceAxis(const Chart& chart, DrawDevice& device, const ChartScale& scale, bool gridLines,
                   Colour grid) {
    const int D = DenominatorOf(chart);
    device.SetPen(Pen{PenStyle::Solid, 1, grid});
    device.SetTextAlign(AlignLeftTop);
    const double s = PriceScaleStep(scale.valueRange, scale.priceSteps, D);
    char label[64];
    auto yOf = [&](double v) {
        return TruncatePixel(
            ValueToY(scale.bottom, scale.bandHeight, scale.pixelsPerValue, scale.valueMin, v));
    };
    int guard = 0;
    for (double v = scale.valueMax; v >= scale.valueMin && guard < MaxScaleIterations;
         v -= s, ++guard) {
        const int y = yOf(v);
        FormatPriceLabel(v, D, label);
        device.Text(0, y - LabelRaise, label);
        if (gridLines) {
            device.MoveTo(scale.scaleWidth, y);
            device.LineTo(scale.right, y);
        } else {
            device.MoveTo(scale.scaleWidth - 1, y);
            device.LineTo(scale.scaleWidth + 3, y);
        }
    }
    if (D == 1) {
        FormatPriceLabel(scale.valueMin, 1, label);
        device.Text(0, yOf(scale.valueMin) - LabelRaise, label);
    }
}

void DrawTimeAxis(const DateText* dates, DrawDevice& device, const ChartScale& scale, int align,
                  double P, int n, bool gridLines, Colour grid) {
    if (!(P > 0.0)) return;
    device.SetPen(Pen{PenStyle::Solid, 1, grid});
    device.SetTextAlign(align);
    const int W = scale.Width();
    const double step = scale.tickSpacing / P;
    const double start = static_cast<double>(n) - W / P;
    const bool full = P >= 1.0 && start > 0.0;
    // Rows against pixels in the bound of a full window: the loop goes on
    // past the right edge and draws only ticks there.
    const double bound = full ? static_cast<double>(W) : W / P;
    const bool testRight = full || P < 1.0;
    const int plotBottom = scale.bottom - scale.bandHeight;
    int guard = 0;
    for (double p = 0.0; p <= bound && guard < MaxScaleIterations; p += step, ++guard) {
        const int x = TruncatePixel(scale.scaleWidth + p * P);
        if (p < n && (!testRight || x <= scale.right)) {
            const int row = full ? TruncatePixel(start + p) : TruncatePixel(p);
            if (dates && row >= 0 && row < n && row < MaxRows)
                device.Text(x, scale.bottom - 15,
                            std::string_view(dates[row], BoundedLength(dates[row], DateTextSize)));
        }
        if (gridLines) {
            device.MoveTo(x, plotBottom);
            device.LineTo(x, scale.bandHeight);
        } else {
            device.MoveTo(x, plotBottom + 1);
            device.LineTo(x, plotBottom - 3);
        }
    }
}

} // namespace

void DrawPriceScale(const Chart& chart, DrawDevice& device, const ChartScale& scale, Colour grid) {
    DrawPriceAxis(chart, device, scale, chart.view && chart.view->gridOn, grid);
}

void DrawPriceTicks(const Chart& chart, DrawDevice& device, const ChartScale& scale, Colour grid) {
    DrawPriceAxis(chart, device, scale, false, grid);
}

void DrawRisingScale(DrawDevice& device, int right, int bottom, int bandHeight, int priceSteps,
                     double startValue, double valueRange, int labelChars, int raise) {
    (void)right;
    if (priceSteps <= 0) return;
    device.SetTextAlign(AlignLeftTop);
    const int count = labelChars < 63 ? labelChars : 63;
    double v = startValue;
    char text[400];
    for (int c = 0;; ++c) {
        const int y = bandHeight + (c * (bottom - 2 * bandHeight)) / priceSteps;
        if (y >= bottom - bandHeight || c >= MaxScaleIterations) break;
        std::snprintf(text, sizeof text, "%f", v);
        const std::size_t len = BoundedLength(text, sizeof text);
        device.Text(0, bottom - raise - y,
                    std::string_view(text, len < static_cast<std::size_t>(count) ? len : count));
        v += valueRange / priceSteps;
    }
}

void DrawTimeScale(const Chart& chart, const DateText* dates, DrawDevice& device,
                   const ChartScale& scale, int align, double resolution, int n, Colour grid) {
    DrawTimeAxis(dates, device, scale, align, resolution, n, chart.view && chart.view->gridOn,
                 grid);
}

void DrawTimeTicks(const Chart& chart, const DateText* dates, DrawDevice& device,
                   const ChartScale& scale, int align, double resolution, int n, Colour grid) {
    (void)chart;
    DrawTimeAxis(dates, device, scale, align, resolution, n, false, grid);
}

} // namespace velorin
