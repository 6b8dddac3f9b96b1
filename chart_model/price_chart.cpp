#include "chart_model/price_chart.h"

#include <cstdio>
#include <cstring>

#include "base/format_field.h"
#include "base/user_seam.h"
#include "chart_model/desk.h"
#include "market_data/data_source.h"

namespace velorin {

ChartDefaults chartDefaults;

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

void ShowUnless(bool batch, const char* text) {
    if (!batch) Seam().ShowMessage(text, "QDX-Velorin", MessageIcon::Information);
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

int CreatePriceChart(const char* kindName, int role, const CreationMode& mode) {
    const ConnectionSelection& sel = marketData.selection;
    if (role == 0)
        chartDefaults.batchFirstChart = 0;
    else
        chartDefaults.batchSecondChart = 0;

    Chart* chart = NewChart(LayoutPlain);
    if (!chart) {
        ShowUnless(mode.batch(),
                   "Memory Allocation For New Window failed - Please close some windows");
        FreeDataSource(marketData.nextSourceSlot);
        return 0;
    }

    if (!chartDefaults.reuseSource) {
        chart->connectionId = IsDataFileOrDatabase(sel.currentSource)
                                  ? -(marketData.nextSourceSlot + 1)
                                  : marketData.liveConversation;
        chart->sourceSlot = ClaimSourceSlot();
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
    if (mode.restoring())
        view.resolution = mode.layout->Resolution(mode.layoutRow);
    else if (mode.batch())
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
        FormatField(chart->chartTitle, sizeof chart->chartTitle, tick ? "%s,%s- Tick" : "%s,%s",
                    sel.currentDsn, sel.currentItem);
    } else if (tick) {
        FormatField(chart->chartTitle, sizeof chart->chartTitle, "%s - Tick", name);
    } else {
        const char* first = (source && rows > 0) ? source->columns->dateText[0] : "";
        const char* last = (source && rows > 0) ? source->columns->dateText[rows - 1] : "";
        FormatField(chart->chartTitle, sizeof chart->chartTitle, "%s %s - %s", name, first, last);
    }
    FormatField(chart->windowCaption, sizeof chart->windowCaption,
                marketData.filterOn ? "Filtered %s %s" : "%s %s", chart->kindName,
                chart->chartTitle);
    std::snprintf(chartDefaults.lastChartTitle, sizeof chartDefaults.lastChartTitle, "%s",
                  chart->chartTitle);

    ChildWindowRequest request{chart,
                               WindowClass::PriceChild,
                               chart->windowCaption,
                               WindowPlacement::SystemDefault,
                               0,
                               0,
                               0,
                               0,
                               false};
    if (mode.restoring()) {
        request.placement = WindowPlacement::Given;
        request.hidden = true;
        chart->anchorsPending = 1;
        mode.layout->Rectangle(mode.layoutRow, &request.x, &request.y, &request.width,
                               &request.height);
        mode.layout->CopyDrawnObjects(mode.layoutRow, chart);
    } else if (mode.batch()) {
        request.placement = WindowPlacement::FillClient;
    }

    const WindowId window = TheDesk().CreateChild(request);
    if (!window) {
        ShowUnless(mode.batch(), "Unable to create Window - Please close some");
        ReleaseDrawnObjects(chart);
        ReleaseChart(chart);
        return 0;
    }
    if (role == 0)
        chartDefaults.batchFirstChart = window;
    else
        chartDefaults.batchSecondChart = window;
    if (mode.restoring()) TheDesk().KeepHidden(window);
    RegisterChart();
    return 1;
}

} // namespace velorin
