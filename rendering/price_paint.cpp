#include "rendering/price_paint.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "market_data/data_source.h"
#include "rendering/analysis_curves.h"
#include "rendering/drawn_objects.h"

namespace velorin {

namespace {

bool Intersects(const PixelRect& clip, int left, int top, int right, int bottom) {
    if (left > right) std::swap(left, right);
    if (top > bottom) std::swap(top, bottom);
    return left < clip.right && right > clip.left && top < clip.bottom && bottom > clip.top;
}

// Passes to the device only what can touch the clip; the device clips the rest.
class CullingDevice final : public DrawDevice {
  public:
    CullingDevice(DrawDevice& inner, const PixelRect& clip) : inner_(inner), clip_(clip) {}

    void SetPen(const Pen& pen) override {
        penWidth_ = pen.width;
        inner_.SetPen(pen);
    }
    void SetBrush(const Brush& brush) override { inner_.SetBrush(brush); }
    void SetFont(const Font& font) override {
        fontHeight_ = font.height;
        inner_.SetFont(font);
    }
    void SetTextColours(Colour text, Colour background) override {
        inner_.SetTextColours(text, background);
    }
    void SetTextAlign(int align) override { inner_.SetTextAlign(align); }
    void MoveTo(int x, int y) override {
        x_ = x;
        y_ = y;
        moved_ = true;
    }
    void LineTo(int x, int y) override {
        const int m = penWidth_ + 1;
        if (Intersects(clip_, std::min(x_, x) - m, std::min(y_, y) - m, std::max(x_, x) + m,
                       std::max(y_, y) + m)) {
            if (moved_) inner_.MoveTo(x_, y_);
            inner_.LineTo(x, y);
            moved_ = false;
        } else {
            moved_ = true;
        }
        x_ = x;
        y_ = y;
    }
    void Rectangle(int left, int top, int right, int bottom) override {
        if (Intersects(clip_, left, top, right, bottom)) inner_.Rectangle(left, top, right, bottom);
    }
    void FillRect(int left, int top, int right, int bottom, const Brush& brush) override {
        if (Intersects(clip_, left, top, right, bottom))
            inner_.FillRect(left, top, right, bottom, brush);
    }
    void Text(int x, int y, std::string_view text) override {
        // The width of a text is the device's business; its rows are not.
        (void)x;
        if (y < clip_.bottom && y + fontHeight_ + 1 > clip_.top) {
            if (moved_) inner_.MoveTo(x_, y_);
            moved_ = false;
            inner_.Text(x, y, text);
        }
    }
    void FillRegion(const Region& region, const Brush& brush) override {
        const PixelRect& b = region.box;
        if (Intersects(clip_, b.left, b.top, b.right, b.bottom)) inner_.FillRegion(region, brush);
    }
    void InvertRegion(const Region& region) override { inner_.InvertRegion(region); }
    void InvertRect(int left, int top, int right, int bottom) override {
        inner_.InvertRect(left, top, right, bottom);
    }
    void SetClipRect(const PixelRect* rect) override { inner_.SetClipRect(rect); }

  private:
    DrawDevice& inner_;
    PixelRect clip_;
    int penWidth_ = 1;
    int fontHeight_ = 16;
    int x_ = 0, y_ = 0;
    bool moved_ = true;
};

void CopyCaption(const char* text, char (&caption)[CaptionSize]) {
    std::snprintf(caption, CaptionSize, "%.*s", 99, text);
}

void SetReadoutText(DrawDevice& device, Colour text) {
    device.SetFont(ReadoutFont());
    device.SetTextColours(text, Black);
    device.SetTextAlign(AlignLeftTop);
}

} // namespace

Font ScaleFont() {
    return Font{ChartFontFace, ScaleFontHeight, 400};
}
Font ReadoutFont() {
    return Font{ChartFontFace, ReadoutFontHeight, 400};
}

PaintResult PaintPriceChart(DrawDevice& device, Chart& chart, int right, int bottom,
                            const PaintContext& ctx) {
    PaintResult result;
    result.scale = MakeChartScale(right, bottom);
    if (bottom < MinimumPaintHeight) {
        result.outcome = PaintOutcome::Minimise;
        return result;
    }
    if (HasTooFewRows(chart)) {
        result.outcome = PaintOutcome::InsufficientData;
        FormatInsufficientDataCaption(chart, result.caption);
        return result;
    }
    CopyCaption(chart.windowCaption, result.caption);
    if (!chart.view) return result;

    ChartScale& scale = result.scale;
    const Font scaleFont = ScaleFont();
    const Colour grid = ctx.ColourOf(PaletteGrid);
    const Colour text = ctx.ColourOf(PaletteText);
    device.SetBrush(SolidBrush(ctx.ColourOf(PaletteBackground)));
    device.SetFont(scaleFont);
    device.SetPen(Pen{PenStyle::Solid, 1, grid});

    if (KindIs(chart, "Fibonacci") && chart.fibonacciExtra && chart.fibonacciExtra->upperEnvelope) {
        const double* upper = chart.fibonacciExtra->upperEnvelope;
        const int n = std::min(chart.rowCount, MaxRows);
        int r = 0;
        while (r < n && upper[r] == MISSING_VALUE)
            ++r;
        chart.firstRow = 1 + r;
    }

    FindValueRange(chart, scale);
    ComputeScale(chart, scale);

    device.Rectangle(scale.scaleWidth, scale.bandHeight, right, bottom - scale.bandHeight);
    device.SetTextColours(text, Black);
    device.SetTextAlign(AlignLeftTop);

    const bool priceFamily = IsPriceFamily(chart.kindName);
    const int n = RowCountOf(chart);
    const DateText* dates = DateColumnOf(chart);
    // In the price family this pass is for the grid lines; the labels are
    // written again over the bands at the end.
    if (!priceFamily || chart.view->gridOn) {
        DrawPriceScale(chart, device, scale, grid);
        DrawTimeScale(chart, dates, device, scale, AlignCentre, chart.view->resolution, n, grid);
    }

    // A series that plots no row leaves the x of this window's last paint.
    PaintMemory& memory = ctx.memory;
    int lastBarX = memory.lastBarX;
    const int first = DrawKindSeries(chart, device, scale, ctx, lastBarX);
    memory.lastBarX = lastBarX;
    if (first >= 0) memory.firstRowShown = first;

    if (chart.anchorsPending == 1)
        ReanchorDrawnObjects(chart, scale, lastBarX, memory.firstRowShown);
    const ObjectFrame frame = MakeObjectFrame(chart, scale, lastBarX, memory.firstRowShown);
    DrawHorizontalLines(chart, device, frame, ctx, result.converted);
    DrawVerticalLines(chart, device, frame, ctx, result.converted);

    if (priceFamily) {
        DrawTrendLines(chart, device, frame, scaleFont, ctx, result.converted);
        DrawChannelLines(chart, device, frame, scaleFont, ctx, result.converted);
        // The bands are black whatever the palette says, so nothing spills
        // into the margins; the scales go on top.
        const Brush black = SolidBrush(Black);
        device.SetBrush(black);
        device.SetFont(scaleFont);
        device.SetPen(Pen{PenStyle::Null, 1, Black});
        device.FillRect(0, 0, right, scale.bandHeight, black);
        device.FillRect(0, bottom - scale.bandHeight, right, bottom, black);
        device.FillRect(0, 0, scale.scaleWidth, bottom, black);
        device.SetTextColours(text, Black);
        device.SetTextAlign(AlignLeftTop);
        DrawPriceTicks(chart, device, scale, grid);
        DrawTimeTicks(chart, dates, device, scale, AlignCentre, chart.view->resolution, n, grid);
    }

    if (ReadoutShown(ctx.readout, right)) {
        DrawValueReadout(device, scale, ctx.readout.mouseY, text);
        result.readoutRow = DrawDateReadout(device, chart, ctx.readout.mouseX, lastBarX, text);
    }
    return result;
}

PaintResult PaintPriceChartClipped(DrawDevice& device, Chart& chart, int right, int bottom,
                                   const PixelRect& clip, const PaintContext& ctx) {
    device.SetClipRect(&clip);
    CullingDevice culled(device, clip);
    PaintResult result = PaintPriceChart(culled, chart, right, bottom, ctx);
    device.SetClipRect(nullptr);
    return result;
}

bool ReadoutShown(const ReadoutState& readout, int right) {
    return (readout.crosshairOn || readout.toolArmed) &&
           readout.mouseX < right - ReadoutRightMargin;
}

void DrawValueReadout(DrawDevice& device, const ChartScale& scale, int mouseY, Colour textColour) {
    SetReadoutText(device, textColour);
    const double value =
        (scale.bottom - scale.bandHeight - mouseY) / scale.pixelsPerValue + scale.valueMin;
    char text[400];
    std::snprintf(text, sizeof text, "%f", value);
    const std::size_t len = std::min<std::size_t>(std::strlen(text), 7);
    device.Text(0, 0, std::string_view(text, len));
}

int DrawDateReadout(DrawDevice& device, const Chart& chart, int mouseX, int lastBarX,
                    Colour textColour) {
    SetReadoutText(device, textColour);
    const int n = RowCountOf(chart);
    const double P = chart.view ? chart.view->resolution : 1.0;
    const int row = ReadoutRowAtX(n, P, mouseX, lastBarX);
    char text[DateTextSize + 10] = {};
    const DateText* dates = DateColumnOf(chart);
    if (dates && row >= 0 && row < n && row < MaxRows)
        std::snprintf(text, sizeof text, "%.*s", DateTextSize - 1, dates[row]);
    // The blanks wipe the tail of a longer date written before.
    std::strcat(text, "         ");
    device.Text(ReadoutDateX, 0, text);
    return row;
}

void InvertVerticalHair(DrawDevice& device, int x, int bottom) {
    device.InvertRect(x - 1, BandHeight, x, bottom - BandHeight);
}

void InvertHorizontalHair(DrawDevice& device, int y, int right) {
    device.InvertRect(ScaleWidth, y - 1, right, y);
}

void MoveHairs(DrawDevice& device, bool hadHairs, int oldX, int oldY, int x, int y, int right,
               int bottom) {
    if (hadHairs) InvertVerticalHair(device, oldX, bottom);
    InvertVerticalHair(device, x, bottom);
    if (hadHairs) InvertHorizontalHair(device, oldY, right);
    InvertHorizontalHair(device, y, right);
}

} // namespace velorin
