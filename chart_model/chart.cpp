#include "chart_model/chart.h"

#include "market_data/data_source.h"
#include "market_data/dde_client.h"

namespace velorin {
namespace {

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

Chart* NewChart(int layout) {
    if (layout < LayoutPlain || layout > LayoutCompanion) return nullptr;
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
        for (int s = 1; ok && s < seriesCount; ++s)
            ok = (m->slot[s] = TakeSeries(chart, next));
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
        for (RegionHandle& r : chart->view->curveRegions)
            DeleteAndClear(r);
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
            for (auto& fan : d.gannLines->regions)
                fan[i] = nullptr;
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
