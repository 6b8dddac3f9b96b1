#include "rendering/overlay_paint.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "rendering/drawn_objects.h"
#include "rendering/series_draw.h"

namespace velorin {

namespace {

// The second series' labels: the rising scale's heights, written so that
// they end at the right edge of the plot.
void DrawRightRisingScale(DrawDevice& device, const ChartScale& s) {
    if (s.priceSteps <= 0) return;
    device.SetTextAlign(AlignRight);
    double v = s.valueMin;
    for (int c = 0;; ++c) {
        const int y = s.bandHeight + (c * (s.bottom - 2 * s.bandHeight)) / s.priceSteps;
        if (y >= s.bottom - s.bandHeight || c >= 100000) break;
        char text[400];
        std::snprintf(text, sizeof text, "%f", v);
        text[LabelChars] = '\0';
        device.Text(s.right - 2, s.bottom - LabelRaise - y, text);
        v += s.valueRange / s.priceSteps;
    }
}

// Range and pixels per value of one series on the scale's client.
void RangeScale(const double* series, int first, int n, ChartScale& s) {
    PaddedRange(series, first, n, s.valueMin, s.valueMax);
    s.valueRange = s.valueMax - s.valueMin;
    if (s.valueRange != 0.0) s.pixelsPerValue = (s.bottom - 2 * s.bandHeight) / s.valueRange;
}

} // namespace

int FirstVisiblePairRow(int pairCount, int plotWidth, double resolution) {
    if (!(resolution > 0.0)) return 0;
    const double start = pairCount - plotWidth / resolution;
    return start < 0.0 ? 0 : TruncatePixel(start);
}

void PaddedRange(const double* series, int first, int n, double& low, double& high) {
    low = InitialValueMin;
    high = InitialValueMax;
    for (int r = std::max(first, 0); series && r < n && r < MaxRows; ++r) {
        const double v = series[r];
        if (v == MISSING_VALUE) continue;
        low = std::min(low, v);
        high = std::max(high, v);
    }
    if (low == InitialValueMin) {
        // Nothing on screen: a range the arithmetic can still use.
        low = 0.0;
        high = 1.0;
    }
    low *= 0.99;
    high *= 1.01;
    if (high == low) low = high * 0.9;
}

bool OverlayShowsSecondSeries(const Chart& chart) {
    return chart.connectionId != chart.secondConnectionId;
}

OverlayPaintResult PaintOverlayChart(DrawDevice& device, Chart& chart, int right, int bottom,
                                     const PaintContext& ctx, int selectedRegion,
                                     std::int32_t& regionTool) {
    OverlayPaintResult result;
    result.scale = MakeChartScale(right, bottom);
    if (bottom < MinimumPaintHeight) {
        result.outcome = PaintOutcome::Minimise;
        return result;
    }
    std::snprintf(result.caption, CaptionSize, "%.*s", 99, chart.windowCaption);
    PairData* pair = chart.pairData;
    if (!pair || !chart.view) return result;

    ChartScale& scale = result.scale;
    const int n = std::clamp(pair->pairCount, 0, MaxRows);
    const int first = FirstVisiblePairRow(n, scale.Width(), chart.view->resolution);
    PaddedRange(pair->firstSeries, first, n, scale.valueMin, scale.valueMax);
    ComputeScale(chart, scale);

    const Colour grid = ctx.ColourOf(PaletteGrid);
    device.SetBrush(SolidBrush(ctx.ColourOf(PaletteBackground)));
    device.SetFont(ScaleFont());
    device.SetPen(Pen{PenStyle::Solid, 1, grid});
    device.Rectangle(scale.scaleWidth, scale.bandHeight, right, scale.PlotBottom());
    device.SetTextColours(ctx.ColourOf(PaletteText), Black);
    DrawTimeScale(chart, pair->pairDateText, device, scale, AlignCentre, chart.view->resolution, n,
                  grid);
    device.SetTextColours(ctx.ColourOf(PaletteEntryOfSlot(0)), Black);
    DrawRisingScale(device, right, bottom, scale.bandHeight, scale.priceSteps, scale.valueMin,
                    scale.valueRange, LabelChars, LabelRaise);

    PaintMemory& memory = ctx.memory;
    int lastBarX = memory.lastBarX;
    memory.firstRowShown = DrawCurve(0, 0.0, pair->firstSeries, chart, device, scale, ctx, lastBarX,
                                     n, ctx.style.priceThickness);
    memory.lastBarX = lastBarX;

    result.secondShown = OverlayShowsSecondSeries(chart);
    if (result.secondShown) {
        ChartScale& second = result.secondScale = MakeChartScale(right, bottom);
        second.priceSteps = scale.priceSteps;
        RangeScale(pair->secondSeries, first, n, second);
        device.SetFont(ScaleFont());
        device.SetTextColours(ctx.ColourOf(PaletteEntryOfSlot(3)), Black);
        DrawRightRisingScale(device, second);
        int secondLastBarX = lastBarX;
        DrawCurve(3, 0.0, pair->secondSeries, chart, device, second, ctx, secondLastBarX, n,
                  ctx.style.priceThickness);
    } else {
        DeleteAndClear(chart.view->curveRegions[3]);
    }

    const ObjectFrame frame = MakeObjectFrame(chart, scale, lastBarX, memory.firstRowShown);
    DrawHighlightRegions(chart, device, frame, ctx, selectedRegion, regionTool);
    return result;
}

} // namespace velorin
