#include "chart_model/chart.h"

#include <cstring>
#include <iterator>

#include "market_data/data_source.h"
#include "market_data/feed_hooks.h"

namespace velorin {
namespace {

constexpr ChartKindInfo kindTable[] = {
    {1, "Price", 10201, WindowClass::PriceChild, 0},
    {2, "Volume", 10301, WindowClass::PriceChild, 0},
    {3, "RMA", 10203, WindowClass::PriceChild, 2},
    {4, "ESMA", 10204, WindowClass::PriceChild, 1},
    {5, "WMA", 10205, WindowClass::PriceChild, 1},
    {6, "RSI", 10206, WindowClass::PriceChild, 1},
    {7, "Oscillator", 10210, WindowClass::PriceChild, 1},
    {8, "Momentum", 10209, WindowClass::PriceChild, 1},
    {9, "Stochastics", 10208, WindowClass::PriceChild, 3},
    {10, "RVI", 10305, WindowClass::PriceChild, 1},
    {11, "OBV", 10303, WindowClass::PriceChild, 1},
    {12, "Tic Volume", 10304, WindowClass::PriceChild, 1},
    {13, "Trend", 10401, WindowClass::PriceChild, 1},
    {14, "Stdev", 10403, WindowClass::PriceChild, 2},
    {15, "Swing Charting", 10402, WindowClass::PriceChild, 1},
    {16, "Correlation", 10404, WindowClass::CorrChild, 5},
    {17, "Historical Correlation", 10405, WindowClass::PriceChild, 5},
    {18, "Price Ratio", 10406, WindowClass::PriceChild, 5},
    {19, "Fibonacci", 10407, WindowClass::PriceChild, 4},
    {20, "Predictor", 10408, WindowClass::PriceChild, 2},
    {21, "Perc. Range", 10207, WindowClass::PriceChild, 1},
    {22, "Spread", 10412, WindowClass::PriceChild, 5},
    {23, "Relative Strength", 10413, WindowClass::PriceChild, 5},
    {24, "Relative Performance", 10414, WindowClass::PriceChild, 5},
    {25, "OverboughtSold", 10415, WindowClass::PriceChild, 1},
    {26, "MACD", 10416, WindowClass::PriceChild, 2},
    {50, "Overlay", 10409, WindowClass::OverlayChild, 5},
    {100, "Data View", 10706, WindowClass::DataView, 6},
    {101, "Levels View", 0, WindowClass::ResView, 6},
};

// Allocates one block of the chart into the next free handle entry.
template <typename T> T* TakeBlock(Chart* chart, int& next, std::size_t size = sizeof(T)) {
    if (next >= ChartBlockCount) return nullptr;
    BlockHandle handle = nullptr;
    void* p = AllocateBlock(&handle, static_cast<std::uint16_t>(size));
    if (!p) return nullptr;
    chart->blockHandles[next++] = handle;
    return static_cast<T*>(p);
}

double* TakeSeries(Chart* chart, int& next) {
    return TakeBlock<double>(chart, next, sizeof(double) * MaxRows);
}

void GiveBackSource(int slot) {
    DataSource* source = SourceAt(slot);
    if (!source) return;
    if (--source->refCount <= 0) {
        DisconnectConversation(source->conversation);
        FreeDataSource(slot);
    }
}

} // namespace

const ChartKindInfo* ChartKinds(int* count) {
    if (count) *count = static_cast<int>(std::size(kindTable));
    return kindTable;
}

const ChartKindInfo* KindByName(const char* kindName) {
    if (!kindName) return nullptr;
    for (const auto& k : kindTable)
        if (std::strcmp(k.kindName, kindName) == 0) return &k;
    return nullptr;
}

const ChartKindInfo* KindById(int kind) {
    for (const auto& k : kindTable)
        if (k.kind == kind) return &k;
    return nullptr;
}

const ChartKindInfo* KindByCommand(int commandId) {
    if (commandId == 0) return nullptr;
    for (const auto& k : kindTable)
        if (k.commandId == commandId) return &k;
    return nullptr;
}

Chart* NewChart(int layout) {
    if (layout < 0 || layout > 6) return nullptr;
    BlockHandle recordHandle = nullptr;
    auto* chart = static_cast<Chart*>(AllocateBlock(&recordHandle, sizeof(Chart)));
    if (!chart) return nullptr;
    chart->blockHandles[0] = recordHandle;
    int next = 1;
    bool ok = (chart->view = TakeBlock<ChartView>(chart, next)) != nullptr;

    if (ok && layout != LayoutCompanion) {
        DrawingSet* d = chart->drawings = TakeBlock<DrawingSet>(chart, next);
        ok = d && (d->channels = TakeBlock<ChannelSet>(chart, next)) &&
             (d->trendLines = TakeBlock<TrendLineSet>(chart, next)) &&
             (d->gannLines = TakeBlock<GannSet>(chart, next)) &&
             (d->verticalLines = TakeBlock<VerticalLineSet>(chart, next)) &&
             (d->horizontalLines = TakeBlock<HorizontalLineSet>(chart, next)) &&
             (d->highlights = TakeBlock<HighlightSet>(chart, next));
    }
    if (ok && layout >= LayoutOneCurve && layout <= LayoutPair) {
        ModelSeries* m = chart->modelSeries = TakeBlock<ModelSeries>(chart, next);
        ok = m && (m->slot[0] = TakeSeries(chart, next));
        if (ok && layout == LayoutPair) {
            PairData* p = chart->pairData = TakeBlock<PairData>(chart, next);
            ok = p &&
                 (p->pairDateText = TakeBlock<char[DateTextSize]>(
                      chart, next, sizeof(char[DateTextSize]) * MaxRows)) &&
                 (p->firstSeries = TakeSeries(chart, next)) &&
                 (p->secondSeries = TakeSeries(chart, next));
        }
        const int seriesCount = layout == LayoutThreeCurves  ? 3
                                : layout == LayoutFourCurves ? 4
                                : layout == LayoutFibonacci  ? 7
                                                             : 1;
        for (int s = 1; ok && s < seriesCount; ++s) ok = (m->slot[s] = TakeSeries(chart, next));
        ok = ok && (chart->analysisParams = TakeBlock<AnalysisParams>(chart, next));
        if (ok && layout == LayoutFibonacci) {
            FibonacciExtra* f = chart->fibonacciExtra = TakeBlock<FibonacciExtra>(chart, next);
            ok = f && (f->upperEnvelope = TakeSeries(chart, next)) &&
                 (f->lowerEnvelope = TakeSeries(chart, next));
        }
    }
    if (!ok) {
        FreeChartBlocks(chart);
        return nullptr;
    }
    return chart;
}

void FreeChartBlocks(Chart* chart) {
    if (!chart) return;
    // The record's own handle is entry 0 and goes last; read it before the
    // record disappears.
    for (int i = ChartBlockCount - 1; i >= 1; --i)
        if (chart->blockHandles[i]) ReleaseBlock(chart->blockHandles[i]);
    ReleaseBlock(chart->blockHandles[0]);
}

void ReleaseChart(Chart* chart) {
    if (!chart) return;
    if (chart->view)
        for (RegionHandle& r : chart->view->curveRegions) DeleteAndClear(r);
    GiveBackSource(chart->sourceSlot);
    if (chart->secondSourceSlot != -1) GiveBackSource(chart->secondSourceSlot);
    FreeChartBlocks(chart);
}

void ReleaseDrawnObjects(Chart* chart) {
    if (!chart || !chart->drawings) return;
    DrawingSet& d = *chart->drawings;
    for (int i = 0; i < MaxDrawnObjects; ++i) {
        if (d.trendLines->inUse[i]) {
            d.trendLines->inUse[i] = 0;
            DeleteAndClear(d.trendLines->regions[i]);
        }
        if (d.channels->inUse[i]) {
            d.channels->inUse[i] = 0;
            DeleteAndClear(d.channels->regions[i]);
            DeleteAndClear(d.channels->secondRegions[i]);
        }
        if (d.gannLines->inUse[i]) {
            d.gannLines->inUse[i] = 0;
            // Only the second fan line owns a live region; all three handles are cleared.
            DeleteRegion(d.gannLines->regions[1][i]);
            for (auto& fan : d.gannLines->regions) fan[i] = nullptr;
        }
        if (d.verticalLines->inUse[i]) {
            d.verticalLines->inUse[i] = 0;
            DeleteAndClear(d.verticalLines->regions[i]);
        }
        if (d.horizontalLines->inUse[i]) {
            d.horizontalLines->inUse[i] = 0;
            DeleteAndClear(d.horizontalLines->regions[i]);
        }
        if (d.highlights->inUse[i]) {
            d.highlights->inUse[i] = 0;
            DeleteAndClear(d.highlights->regions[i]);
        }
    }
}

} // namespace velorin
