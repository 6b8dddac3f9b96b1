#include "chart_model/price_chart.h"

#include <cstdio>
#include <cstring>

#include "chart_model/layout_hooks.h"
#include "market_data/data_source.h"
#include "shell/core/shell_state.h"
#include "shell/core/user_seam.h"

namespace velorin {

ChartDefaults chartDefaults;
WindowHooks windowHooks;
LayoutRestoreHooks layoutRestoreHooks;

void ResetChartDefaults() {
    std::memset(&chartDefaults, 0, sizeof chartDefaults);
    chartDefaults.defaultGrid = 1;
    chartDefaults.defaultShowLine = 1;
    chartDefaults.defaultPredictorShort = 1;
    chartDefaults.defaultResolution = 4.0;
}

namespace {

bool IsDataFileOrDatabase(const char* source) {
    return std::strcmp(source, "DATAFILE") == 0 || std::strncmp(source, "DSN,", 4) == 0;
}

// strtok-like: the `index`-th run of characters not in `separators`.
bool NthPiece(const char* text, const char* separators, int index, char* out, int outSize) {
    const char* p = text;
    for (int i = 0;; ++i) {
        p += std::strspn(p, separators);
        if (*p == '\0') return false;
        const std::size_t len = std::strcspn(p, separators);
        if (i == index) {
            std::snprintf(out, static_cast<std::size_t>(outSize), "%.*s", static_cast<int>(len), p);
            return true;
        }
        p += len;
    }
}

// Formats into a fixed record field, cutting what does not fit.
template <typename... Args>
void Format(char* out, std::size_t size, const char* format, Args... args) {
    const int written = std::snprintf(out, size, format, args...);
    if (written < 0) out[0] = '\0';
}

void ShowUnlessBatch(const char* text) {
    if (!shell.batchRunning) Seam().ShowMessage(text, "QDX-Velorin", MessageIcon::Information);
}

} // namespace

void InstrumentName(const char* topic, const char* item, char* out, int outSize) {
    if (outSize <= 0) return;
    out[0] = '\0';
    if (NthPiece(topic, "];", 1, out, outSize)) return;
    const char* rest = item;
    if (std::strncmp(rest, "/RIC=", 5) == 0) rest += 5;
    if (!NthPiece(rest, " \t,", 0, out, outSize)) out[0] = '\0';
}

int CreatePriceChart(const char* kindName, int role) {
    const ConnectionSelection& sel = marketData.selection;
    if (role == 0)
        chartDefaults.batchFirstChart = 0;
    else
        chartDefaults.batchSecondChart = 0;

    Chart* chart = NewChart(LayoutPlain);
    if (!chart) {
        ShowUnlessBatch("Memory Allocation For New Window failed - Please close some windows");
        FreeDataSource(marketData.nextSourceSlot);
        return 0;
    }

    if (!chartDefaults.reuseSource) {
        chart->connectionId = IsDataFileOrDatabase(sel.currentSource)
                                  ? -(marketData.nextSourceSlot + 1)
                                  : marketData.liveConversation;
        chart->sourceSlot = marketData.nextSourceSlot++;
    } else {
        chart->connectionId = chartDefaults.reuseConnectionId;
        chart->sourceSlot = chartDefaults.reuseSlot;
    }
    chart->secondConnectionId = 0;
    chart->secondSourceSlot = -1;
    chart->priceScaleDenominator = 1;

    const DataSource* source = SourceAt(chart->sourceSlot);
    const int rows = source ? source->rowCount : 0;
    const bool tick = source && source->tick;
    ChartView& view = *chart->view;
    if (shell.restoringLayout && layoutRestoreHooks.rowResolution)
        view.resolution = layoutRestoreHooks.rowResolution(chartDefaults.layoutRowIndex);
    else if (shell.batchRunning)
        view.resolution = chartDefaults.defaultResolution;
    else
        view.resolution = (!tick && rows > 24) ? 4.0 : 50.0;

    if (rows == 1) chart->showCurveHandles = 1;
    view.gridOn = chartDefaults.defaultGrid;
    chart->predictorShort = chartDefaults.defaultPredictorShort;
    chart->predictorMedium = chartDefaults.defaultPredictorMedium;
    chart->predictorLong = chartDefaults.defaultPredictorLong;

    if (marketData.hasFullColumns == 1) {
        view.showLine = chartDefaults.defaultShowLine;
        view.showBar = chartDefaults.defaultShowBar;
        view.showCandle = chartDefaults.defaultShowCandle;
        view.showHighLow = chartDefaults.defaultShowHighLow;
    } else {
        view.showLine = 1;
        view.showBar = view.showCandle = view.showHighLow = 0;
    }
    chart->hasFullColumns = marketData.hasFullColumns;
    chart->kind = 1;
    std::snprintf(chart->kindName, sizeof chart->kindName, "%s", kindName);
    chart->rowCount = rows;

    char name[256];
    InstrumentName(sel.currentTopic, sel.currentItem, name, sizeof name);
    if (std::strncmp(sel.currentSource, "DSN,", 4) == 0) {
        Format(chart->chartTitle, sizeof chart->chartTitle, tick ? "%s,%s- Tick" : "%s,%s",
               sel.currentDsn, sel.currentItem);
    } else if (tick) {
        Format(chart->chartTitle, sizeof chart->chartTitle, "%s - Tick", name);
    } else {
        const char* first = (source && rows > 0) ? source->columns->dateText[0] : "";
        const char* last = (source && rows > 0) ? source->columns->dateText[rows - 1] : "";
        Format(chart->chartTitle, sizeof chart->chartTitle, "%s %s - %s", name, first, last);
    }
    Format(chart->windowCaption, sizeof chart->windowCaption,
           marketData.filterOn ? "Filtered %s %s" : "%s %s", chart->kindName, chart->chartTitle);
    std::snprintf(chartDefaults.lastChartTitle, sizeof chartDefaults.lastChartTitle, "%s",
                  chart->chartTitle);

    ChildWindowRequest request{chart, WindowClass::PriceChild, chart->windowCaption,
                               WindowPlacement::SystemDefault, 0, 0, 0, 0, false};
    if (shell.restoringLayout) {
        request.placement = WindowPlacement::Given;
        request.hidden = true;
        chart->anchorsPending = 1;
        if (layoutRestoreHooks.rowRectangle)
            layoutRestoreHooks.rowRectangle(chartDefaults.layoutRowIndex, &request.x, &request.y,
                                            &request.width, &request.height);
        if (layoutRestoreHooks.copyDrawnObjects)
            layoutRestoreHooks.copyDrawnObjects(chartDefaults.layoutRowIndex, chart);
    } else if (shell.batchRunning) {
        request.placement = WindowPlacement::FillClient;
    }

    const WindowId window = windowHooks.createChild ? windowHooks.createChild(request) : 0;
    if (!window) {
        ShowUnlessBatch("Unable to create Window - Please close some");
        ReleaseDrawnObjects(chart);
        ReleaseChart(chart);
        return 0;
    }
    if (role == 0)
        chartDefaults.batchFirstChart = window;
    else
        chartDefaults.batchSecondChart = window;
    if (shell.restoringLayout && windowHooks.keepHidden) windowHooks.keepHidden(window);
    ++shell.chartCount;
    return 1;
}

} // namespace velorin
