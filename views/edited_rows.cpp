#include "views/edited_rows.h"

#include "chart_model/analysis_chart.h"
#include "chart_model/desk.h"
#include "market_data/data_source.h"
#include "market_data/source_rows.h"

namespace velorin {

int ApplyEditedRows(std::intptr_t conversation) {
    DataSource* source = nullptr;
    for (int slot = 0; slot < MaxSourceSlots && !source; ++slot)
        if (DataSource* s = SourceAt(slot); s && s->conversation == conversation) source = s;
    if (!source || RebuildSourceRows(*source) < 0) return 0;
    // The windows are taken first: a recomputation repaints but never
    // closes one.
    ChartWindowRef windows[MaxCharts];
    const int n = TheDesk().ChartWindows(windows, MaxCharts);
    for (int i = 0; i < n; ++i) {
        Chart& chart = *windows[i].chart;
        if (chart.connectionId != conversation) continue;
        chart.rowCount = source->rowCount;
        chart.anchorsPending = 1;
        RecomputeChart(windows[i].window, chart);
    }
    return 1;
}

} // namespace velorin
