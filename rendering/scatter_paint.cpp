#include "rendering/scatter_paint.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "market_data/data_source.h"
#include "rendering/overlay_paint.h"

namespace velorin {

namespace {

// The texts of the heading in the program's code page: "²" and "ß" are one
// byte each.
constexpr const char* HeadingFormat = "R\xB2=%3.2f   \xDF=%3.3f  Adj_\xDF=%3.3f";

constexpr int BoxHalfWidth = 1;
constexpr int BoxHeight = 2;
constexpr int AxisTick = 4;

void FormatValue(double value, char (&out)[16]) {
    char text[400];
    std::snprintf(text, sizeof text, "%f", value);
    std::snprintf(out, sizeof out, "%.*s", LabelChars, text);
}

} // namespace

ChartScale ScatterLayout::VerticalScale() const {
    ChartScale s = MakeChartScale(right, bottom);
    s.valueMin = low1;
    s.valueMax = high1;
    s.valueRange = high1 - low1;
    s.pixelsPerValue = pixelsPerValue1;
    s.priceSteps = priceSteps;
    return s;
}

int ScatterLayout::XOf(double second) const {
    return TruncatePixel(ScaleWidth + (second - low2) * pixelsPerValue2);
}

int ScatterLayout::YOf(double first) const {
    return TruncatePixel(PlotBottom() - (first - low1) * pixelsPerValue1);
}

double ScatterLayout::FirstAtY(int y) const {
    return (PlotBottom() - y) / pixelsPerValue1 + low1;
}

double ScatterLayout::SecondAtX(int x) const {
    return pixelsPerValue2 != 0.0 ? (x - ScaleWidth) / pixelsPerValue2 + low2 : low2;
}

void StretchScatter(Chart& chart, int plotWidth) {
    if (!chart.pairData || !chart.view) return;
    const DataSource* source = SourceAt(chart.sourceSlot);
    const int count = chart.pairData->pairCount - (source ? source->firstRow : 0);
    if (count != 0 && count * chart.view->resolution < plotWidth)
        chart.view->resolution = static_cast<double>(plotWidth) / count;
}

ScatterLayout ComputeScatterLayout(Chart& chart, int right, int bottom) {
    ScatterLayout l;
    l.right = right;
    l.bottom = bottom;
    const PairData* pair = chart.pairData;
    if (!pair || !chart.view) return l;
    StretchScatter(chart, l.PlotWidth());
    l.pairCount = std::clamp(pair->pairCount, 0, MaxRows);
    l.firstVisible = FirstVisiblePairRow(l.pairCount, l.PlotWidth(), chart.view->resolution);
    PaddedRange(pair->firstSeries, l.firstVisible, l.pairCount, l.low1, l.high1);
    PaddedRange(pair->secondSeries, l.firstVisible, l.pairCount, l.low2, l.high2);

    l.priceSteps = PriceStepsForHeight(bottom);
    if (l.high1 - l.low1 != 0.0) l.pixelsPerValue1 = (bottom - 2 * BandHeight) / (l.high1 - l.low1);
    if (l.high2 - l.low2 != 0.0) l.pixelsPerValue2 = l.PlotWidth() / (l.high2 - l.low2);
    return l;
}

double HeadingAdjustedBeta(double beta) {
    return beta < 0.0 ? (2.0 * beta - 1.0) / 3.0 : (2.0 * beta + 1.0) / 3.0;
}

void FormatScatterHeading(const PairData& pair, char (&heading)[HeadingSize]) {
    std::snprintf(heading, HeadingSize, HeadingFormat, pair.rSquared, pair.beta,
                  HeadingAdjustedBeta(pair.beta));
}

bool FittedLineInPlot(const ScatterLayout& l, double beta, double alpha, PixelPoint& from,
                      PixelPoint& to) {
    if (!std::isfinite(beta) || !std::isfinite(alpha) || beta == 0.0) return false;
    // Where the line meets the bottom and the top of the first series'
    // range; between the two it lies inside, and the plot's left and right
    // edges cut it further.
    const double atLow = (l.low1 - alpha) / beta;
    const double atHigh = (l.high1 - alpha) / beta;
    const double x0 = std::max(l.low2, std::min(atLow, atHigh));
    const double x1 = std::min(l.high2, std::max(atLow, atHigh));
    if (!(x0 <= x1)) return false;
    auto valueAt = [&](double second) {
        if (second == atLow) return l.low1;
        if (second == atHigh) return l.high1;
        return second * beta + alpha;
    };
    from = PixelPoint{l.XOf(x0), l.YOf(valueAt(x0))};
    to = PixelPoint{l.XOf(x1), l.YOf(valueAt(x1))};
    return true;
}

ScatterPaintResult PaintScatterChart(DrawDevice& device, Chart& chart, int right, int bottom,
                                     const PaintContext& ctx, bool crossActive, int mouseX,
                                     int mouseY) {
    ScatterPaintResult result;
    if (bottom < MinimumPaintHeight) {
        result.outcome = PaintOutcome::Minimise;
        return result;
    }
    PairData* pair = chart.pairData;
    if (!pair || !chart.view) return result;
    ScatterLayout& l = result.layout = ComputeScatterLayout(chart, right, bottom);

    const Colour grid = ctx.ColourOf(PaletteGrid);
    const Colour text = ctx.ColourOf(PaletteText);
    device.SetBrush(SolidBrush(ctx.ColourOf(PaletteBackground)));
    device.SetFont(ScaleFont());
    device.SetPen(Pen{PenStyle::Solid, 1, grid});
    device.Rectangle(ScaleWidth, BandHeight, right, l.PlotBottom());
    device.SetTextColours(text, Black);
    DrawPriceScale(chart, device, l.VerticalScale(), grid);

    char heading[HeadingSize];
    FormatScatterHeading(*pair, heading);
    device.SetTextAlign(AlignRight);
    device.Text(right, 0, heading);

    // The second series' axis: as many equal steps as the vertical one.
    device.SetPen(Pen{PenStyle::Solid, 1, grid});
    device.SetTextAlign(AlignCentre);
    const int steps = l.priceSteps > 0 ? l.priceSteps : 1;
    for (int c = 0; c <= steps; ++c) {
        const double v = l.low2 + c * (l.high2 - l.low2) / steps;
        const int x = ScaleWidth + (c * l.PlotWidth()) / steps;
        char label[400];
        std::snprintf(label, sizeof label, "%f", v);
        device.Text(x, bottom - 15, label);
        if (chart.view->gridOn) {
            device.MoveTo(x, l.PlotBottom());
            device.LineTo(x, BandHeight);
        } else {
            device.MoveTo(x, l.PlotBottom());
            device.LineTo(x, l.PlotBottom() - AxisTick);
        }
    }

    const Colour boxes = ctx.ColourOf(PaletteClose);
    device.SetPen(
        Pen{PenStyle::Solid, std::max(1, static_cast<int>(ctx.style.priceThickness)), boxes});
    device.SetBrush(SolidBrush(boxes));
    for (int r = l.firstVisible; r < l.pairCount; ++r) {
        const double first = pair->firstSeries[r], second = pair->secondSeries[r];
        if (first == MISSING_VALUE || second == MISSING_VALUE) continue;
        const int x = l.XOf(second), y = l.YOf(first);
        device.Rectangle(x - BoxHalfWidth, y, x + BoxHalfWidth, y + BoxHeight);
    }

    if (pair->beta == 0.0) pair->beta = 0.000001;
    PixelPoint from{}, to{};
    if (FittedLineInPlot(l, pair->beta, pair->alpha, from, to)) {
        device.SetPen(Pen{PenStyle::Solid, std::max(1, static_cast<int>(ctx.style.modelThickness)),
                          ctx.ColourOf(PaletteSlot3)});
        device.MoveTo(from.x, from.y);
        device.LineTo(to.x, to.y);
    }

    if (crossActive) DrawScatterReadout(device, l, mouseX, mouseY, text);
    return result;
}

void DrawScatterReadout(DrawDevice& device, const ScatterLayout& layout, int mouseX, int mouseY,
                        Colour text) {
    device.SetFont(ReadoutFont());
    device.SetTextColours(text, Black);
    device.SetTextAlign(AlignLeftTop);
    char value[16];
    FormatValue(layout.FirstAtY(mouseY), value);
    device.Text(0, 0, value);
    FormatValue(layout.SecondAtX(mouseX), value);
    // Blanks wipe the tail of a longer text written before.
    char line[32];
    std::snprintf(line, sizeof line, "%s   ", value);
    device.Text(ReadoutDateX, 0, line);
}

} // namespace velorin
