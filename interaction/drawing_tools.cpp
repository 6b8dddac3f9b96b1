#include "interaction/drawing_tools.h"

#include <algorithm>
#include <cmath>

#include "interaction/chart_menu.h"
#include "market_data/data_source.h"
#include "interaction/mouse_state.h"
#include "rendering/scale.h"

namespace velorin {
namespace {

// The date and value under a click, from a scale worked out afresh the way
// the paint does it.
struct Anchor {
    double value = 0.0;
    char date[DateTextSize] = {};
};

class Anchoring {
  public:
    Anchoring(const ChartWindowPort& window, Chart& chart)
        : chart_(chart), lastBarX_(window.LastBarX()),
          scale_(MakeChartScale(window.Right(), window.Bottom())) {
        FindValueRange(chart_, scale_);
        ComputeScale(chart, scale_);
    }

    Anchor At(int x, int y) const {
        Anchor a;
        a.value = scale_.pixelsPerValue != 0.0 ? YToValue(scale_.bottom, scale_.bandHeight,
                                                          scale_.pixelsPerValue, scale_.valueMin, y)
                                               : scale_.valueMin;
        XToDateText(chart_, x, lastBarX_, a.date);
        return a;
    }

  private:
    const Chart& chart_;
    int lastBarX_;
    ChartScale scale_;
};

template <std::size_t N> void Store(const Anchor& a, double& value, char (&date)[N]) {
    static_assert(N == DateTextSize);
    value = a.value;
    std::copy(std::begin(a.date), std::end(a.date), date);
}

// Length and direction from A to B on the screen. Two clicks on one pixel
// give length 0 and no direction: the units are then 0.
void Direction(IntPoint a, IntPoint b, double& length, double& unitX, double& unitY) {
    const double dx = static_cast<double>(b.x) - a.x;
    const double dy = static_cast<double>(b.y) - a.y;
    length = std::sqrt(dx * dx + dy * dy);
    if (length == 0.0) {
        unitX = 0.0;
        unitY = 0.0;
        return;
    }
    unitY = std::fabs(dy) / length;
    if (b.y <= a.y) unitY = -unitY;
    unitX = dx / length;
}

int PlotRight(const ChartWindowPort& window) {
    return window.Right() - 2;
}
int PlotBottom(const ChartWindowPort& window) {
    return window.Bottom() - BandHeight;
}

// The far end of a moved line: the old length and direction from the new
// start, held inside the plot.
IntPoint MovedEnd(const ChartWindowPort& window, int x, int y, double length, double unitX,
                  double unitY) {
    const int bx = TruncatePixel(x + length * unitX);
    const int by = TruncatePixel(y + length * unitY);
    return {std::clamp(bx, ScaleWidth, std::max(ScaleWidth, PlotRight(window))),
            std::clamp(by, BandHeight, std::max(BandHeight, PlotBottom(window)))};
}

// The last click of a drawing tool: all back as before the tool, and a
// repaint, which derives the object and clears the tool flag.
void Finish(ChartWindowPort& window) {
    window.RestoreCursor();
    window.SetCaption(SavedCaption(chartMouse));
    window.Capture(false);
    chartMouse.toolArmed = 0;
    window.Invalidate();
}

// The end of a move: the object's own tool flag is set for the paint.
void FinishMove(ChartWindowPort& window, std::int32_t& moveFlag, std::int32_t& toolFlag) {
    window.RestoreCursor();
    window.Capture(false);
    moveFlag = 0;
    toolFlag = 1;
    chartMouse.toolArmed = 0;
    window.Invalidate();
}

void TrendClick(ChartWindowPort& window, Chart& chart, TrendLineSet& t, int i, int x, int y) {
    ChartMouseState& m = chartMouse;
    const Anchoring anchoring(window, chart);
    if (m.toolStep == 0) {
        t.pointA[i] = {x, y};
        Store(anchoring.At(x, y), t.valueA[i], t.dateA[i]);
        m.toolStep = 1;
        m.firstClickX = x;
        m.firstClickY = y;
        window.SetCaption(TrendPrompts[1]);
        return;
    }
    m.toolStep = 0;
    t.pointB[i] = {x, y};
    t.inUse[i] = 1;
    Direction(t.pointA[i], t.pointB[i], t.length[i], t.unitX[i], t.unitY[i]);
    Store(anchoring.At(x, y), t.valueB[i], t.dateB[i]);
    Finish(window);
}

void ChannelClick(ChartWindowPort& window, Chart& chart, ChannelSet& c, int i, int x, int y) {
    ChartMouseState& m = chartMouse;
    const Anchoring anchoring(window, chart);
    if (m.toolStep == 0) {
        c.pointA[i] = {x, y};
        Store(anchoring.At(x, y), c.valueA[i], c.dateA[i]);
        m.toolStep = 1;
        m.firstClickX = x;
        m.firstClickY = y;
        window.SetCaption(ChannelPrompts[1]);
        return;
    }
    if (m.toolStep == 1) {
        c.pointB[i] = {x, y};
        Store(anchoring.At(x, y), c.valueB[i], c.dateB[i]);
        m.toolStep = 2;
        window.SetCaption(ChannelPrompts[2]);
        return;
    }
    m.toolStep = 0;
    c.pointC[i] = {x, y};
    c.inUse[i] = 1;
    Direction(c.pointA[i], c.pointB[i], c.length[i], c.unitX[i], c.unitY[i]);
    Store(anchoring.At(x, y), c.valueC[i], c.dateC[i]);
    Finish(window);
}

void MoveTrendClick(ChartWindowPort& window, Chart& chart, TrendLineSet& t, int i, int x, int y) {
    const Anchoring anchoring(window, chart);
    t.pointA[i] = {x, y};
    t.pointB[i] = MovedEnd(window, x, y, t.length[i], t.unitX[i], t.unitY[i]);
    Store(anchoring.At(t.pointA[i].x, t.pointA[i].y), t.valueA[i], t.dateA[i]);
    Store(anchoring.At(t.pointB[i].x, t.pointB[i].y), t.valueB[i], t.dateB[i]);
    FinishMove(window, chartMouse.moveTrendTool, chartMouse.trendTool);
}

// A moved channel keeps its shape on the screen, so it is free placed from
// then on. The second line stays on the side of the handle picked.
void MoveChannelClick(ChartWindowPort& window, Chart& chart, ChannelSet& c, int i, int x, int y) {
    const Anchoring anchoring(window, chart);
    c.freePlaced[i] = 1;
    c.pointA[i] = {x, y};
    c.pointB[i] = MovedEnd(window, x, y, c.length[i], c.unitX[i], c.unitY[i]);
    const double gap = chartMouse.lowerLineHit == 1 ? -c.pixelGap[i] : c.pixelGap[i];
    const int cy = TruncatePixel(y + gap);
    c.pointC[i] = {x, std::clamp(cy, BandHeight, std::max(BandHeight, PlotBottom(window)))};
    Store(anchoring.At(c.pointA[i].x, c.pointA[i].y), c.valueA[i], c.dateA[i]);
    Store(anchoring.At(c.pointB[i].x, c.pointB[i].y), c.valueB[i], c.dateB[i]);
    Store(anchoring.At(c.pointC[i].x, c.pointC[i].y), c.valueC[i], c.dateC[i]);
    FinishMove(window, chartMouse.moveChannelTool, chartMouse.channelTool);
}

// The chart is cut at the row under the click; fewer than 25 rows aren't
// allowed, and the cut is then ignored. Either way the chart goes back to
// its finest resolution.
void EndPointClick(ChartWindowPort& window, Chart& chart, int x) {
    if (chart.view && chart.view->resolution > 0.0) {
        const double end = chart.rowCount - (window.LastBarX() - x + 1) / chart.view->resolution;
        // Right of the last bar there are no rows to show.
        const DataSource* source = SourceAt(chart.sourceSlot);
        const int available = source ? std::min(source->rowCount, MaxRows) : MaxRows;
        if (end >= 25.0)
            chart.rowCount = static_cast<std::int32_t>(std::min<double>(end, available));
    }
    window.RestoreCursor();
    window.SetCaption(SavedCaption(chartMouse));
    window.Capture(false);
    chartMouse.endPointTool = 0;
    chartMouse.toolArmed = 0;
    if (chart.view) chart.view->resolution = 0.25;
    window.Invalidate();
}

bool ValidSlot(int i) {
    return i >= 0 && i < MaxDrawnObjects;
}

// A trend or channel with its first point down is given up past the left of
// that point or out of the plot; right - 2 itself is still in.
bool LeavesTwoPointTool(const ChartWindowPort& window, int x, int y) {
    return x < chartMouse.firstClickX || x < ScaleWidth || x > PlotRight(window) ||
           y < BandHeight || y > PlotBottom(window);
}

void GiveUp(ChartWindowPort& window, std::int32_t& flag) {
    flag = 0;
    window.RestoreCursor();
    window.SetCaption(SavedCaption(chartMouse));
    chartMouse.toolArmed = 0;
    window.Invalidate();
    window.Capture(false);
}

} // namespace

bool InPlotLimits(const ChartWindowPort& window, int x, int y) {
    return x >= ScaleWidth && x < PlotRight(window) && y >= BandHeight && y <= PlotBottom(window);
}

void ToolClick(ChartWindowPort& window, Chart& chart, int x, int y) {
    ChartMouseState& m = chartMouse;
    if (m.crosshairOn || !InPlotLimits(window, x, y)) return;
    DrawingSet* d = chart.drawings;
    if (!d) {
        if (m.endPointTool) EndPointClick(window, chart, x);
        return;
    }

    if (m.channelTool) {
        if (ValidSlot(m.selectedChannel))
            ChannelClick(window, chart, *d->channels, m.selectedChannel, x, y);
    } else if (m.trendTool) {
        if (ValidSlot(m.selectedTrend))
            TrendClick(window, chart, *d->trendLines, m.selectedTrend, x, y);
    } else if (m.gannTool) {
        if (!ValidSlot(m.selectedGann)) return;
        d->gannLines->point[m.selectedGann] = {x, y};
        d->gannLines->inUse[m.selectedGann] = 1;
        Finish(window);
    } else if (m.verticalTool) {
        if (!ValidSlot(m.selectedVertical)) return;
        d->verticalLines->point[m.selectedVertical] = {x, y};
        d->verticalLines->inUse[m.selectedVertical] = 1;
        Finish(window);
    } else if (m.horizontalTool) {
        if (!ValidSlot(m.selectedHorizontal)) return;
        d->horizontalLines->point[m.selectedHorizontal] = {x, y};
        d->horizontalLines->inUse[m.selectedHorizontal] = 1;
        Finish(window);
    } else if (m.moveTrendTool) {
        if (ValidSlot(m.selectedTrend))
            MoveTrendClick(window, chart, *d->trendLines, m.selectedTrend, x, y);
    } else if (m.moveChannelTool) {
        if (ValidSlot(m.selectedChannel))
            MoveChannelClick(window, chart, *d->channels, m.selectedChannel, x, y);
    } else if (m.moveVerticalTool) {
        if (!ValidSlot(m.selectedVertical)) return;
        d->verticalLines->point[m.selectedVertical] = {x, y};
        FinishMove(window, m.moveVerticalTool, m.verticalTool);
    } else if (m.moveHorizontalTool) {
        if (!ValidSlot(m.selectedHorizontal)) return;
        d->horizontalLines->point[m.selectedHorizontal] = {x, y};
        FinishMove(window, m.moveHorizontalTool, m.horizontalTool);
    } else if (m.endPointTool) {
        EndPointClick(window, chart, x);
    }
}

void ToolMouseMove(ChartWindowPort& window, Chart& chart, int x, int y) {
    (void)chart;
    ChartMouseState& m = chartMouse;
    if (m.trendTool && m.toolStep != 0 && LeavesTwoPointTool(window, x, y))
        GiveUp(window, m.trendTool);
    if (m.channelTool && m.toolStep != 0 && LeavesTwoPointTool(window, x, y))
        GiveUp(window, m.channelTool);
    if (InPlotLimits(window, x, y) && m.toolArmed) window.InvalidateReadout();
}

} // namespace velorin
