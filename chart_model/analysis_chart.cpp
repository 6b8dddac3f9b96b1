#include "chart_model/analysis_chart.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "analysis/fibonacci.h"
#include "analysis/moving_averages.h"
#include "analysis/predictor.h"
#include "analysis/two_series.h"
#include "base/format_field.h"
#include "base/user_seam.h"
#include "chart_model/desk.h"
#include "chart_model/price_chart.h"
#include "market_data/data_source.h"

namespace velorin {

namespace {

constexpr const char* AppCaption = "QDX-Velorin";
constexpr const char* DisciplineCaption = "QDX-Velorin Trading Discipline";

void SayUnless(bool batch, const char* text, const char* caption) {
    if (!batch) Seam().ShowMessage(text, caption, MessageIcon::Information);
}

// The record of a chart's kind by its name; nullptr for a name no kind has.
const ChartKindInfo* KindOf(const Chart& chart) {
    return KindByName(chart.kindName);
}

int PredictorTermPeriod(const Chart& chart) {
    if (chart.predictorShort == 1) return PredictorShortTerm;
    if (chart.predictorMedium == 1) return PredictorMediumTerm;
    return PredictorLongTerm;
}

void SetDefaultParameters(Chart& chart, const ChartKindInfo& info) {
    if (!chart.analysisParams) return; // "Price" and "Volume" have none
    std::int32_t* period = chart.analysisParams->period;
    switch (info.defaults) {
    case ParamDefaults::None:
        break;
    case ParamDefaults::Period14:
        period[1] = 14;
        break;
    case ParamDefaults::RmaPeriods:
        DefaultRmaPeriods(chart.rowCount, period);
        break;
    case ParamDefaults::EsmaSmoothing:
        chart.smoothing[0] = DefaultEsmaSmoothing;
        break;
    case ParamDefaults::Stochastics:
        period[1] = 14;
        period[2] = 5;
        period[3] = 14;
        period[4] = 21;
        break;
    case ParamDefaults::TrendSmoothing:
        chart.smoothing[0] = 11.0;
        break;
    case ParamDefaults::FibonacciPeriods:
        for (int i = 0; i < FibonacciLineCount; ++i)
            period[i + 1] = FibonacciPeriods[static_cast<std::size_t>(i)];
        break;
    case ParamDefaults::PredictorTerm:
        period[1] = PredictorTermPeriod(chart);
        break;
    case ParamDefaults::MacdSmoothings:
        chart.smoothing[0] = DefaultMacdLongSmoothing;
        chart.smoothing[1] = DefaultMacdShortSmoothing;
        chart.smoothing[2] = DefaultMacdSignalSmoothing;
        break;
    }
}

// The stored parameters of a layout row over the defaults: whole periods
// for the period kinds, the fractions as they are for the smoothing kinds.
void RestoredParameters(Chart& chart, const ChartKindInfo& info, const LayoutRowReader& layout,
                        int row) {
    if (!chart.analysisParams) return;
    double p[3] = {0.0, 0.0, 0.0};
    layout.Parameters(row, &p[0], &p[1], &p[2]);
    std::int32_t* period = chart.analysisParams->period;
    switch (info.restore) {
    case ParamRestore::Keep:
        break;
    case ParamRestore::OnePeriod:
        period[1] = static_cast<std::int32_t>(p[0]);
        break;
    case ParamRestore::ThreePeriods:
        for (int i = 0; i < 3; ++i)
            period[i + 1] = static_cast<std::int32_t>(p[i]);
        break;
    case ParamRestore::Stochastics:
        // The third stored value fills the fourth period; the third
        // period follows the first.
        period[1] = static_cast<std::int32_t>(p[0]);
        period[2] = static_cast<std::int32_t>(p[1]);
        period[4] = static_cast<std::int32_t>(p[2]);
        period[3] = period[1];
        break;
    case ParamRestore::OneSmoothing:
        chart.smoothing[0] = p[0];
        break;
    case ParamRestore::ThreeSmoothings:
        for (int i = 0; i < 3; ++i)
            chart.smoothing[i] = p[i];
        break;
    }
}

// The first four caption words split at white space; missing ones empty.
// Fixed buffers: a live update retitles its charts without allocating.
struct CaptionWords {
    char word[4][sizeof(Chart::windowCaption)] = {};
    explicit CaptionWords(const char* caption) {
        const char* p = caption;
        for (auto& w : word) {
            p += std::strspn(p, " \t\r\n");
            if (*p == '\0') break;
            const std::size_t len = std::strcspn(p, " \t\r\n");
            std::memcpy(w, p, len < sizeof w ? len : sizeof w - 1);
            p += len;
        }
    }
};

void RefreshTitle(Chart& chart, const DataSource& source) {
    if (source.tick || chart.rowCount < 1) return;
    const char* first = source.columns->dateText[0];
    const char* last = source.columns->dateText[chart.rowCount - 1];
    const CaptionWords c(chart.windowCaption);
    const auto& w = c.word;
    if (source.filtered == 1) {
        FormatField(chart.chartTitle, sizeof chart.chartTitle, "%s %s - %s", w[2], first, last);
        FormatField(chart.windowCaption, sizeof chart.windowCaption, "%s %s %s %s - %s", w[0], w[1],
                    w[2], first, last);
    } else {
        FormatField(chart.chartTitle, sizeof chart.chartTitle, "%s %s - %s", w[1], first, last);
        FormatField(chart.windowCaption, sizeof chart.windowCaption, "%s %s %s - %s", w[0], w[1],
                    first, last);
    }
}

} // namespace

void DefaultRmaPeriods(int rowCount, std::int32_t periods[4]) {
    periods[1] = 5;
    if (rowCount < 46) {
        periods[2] = 10;
        periods[3] = 20;
    } else if (rowCount < 76) {
        periods[2] = 20;
        periods[3] = 40;
    } else {
        periods[2] = 30;
        periods[3] = 60;
    }
}

void RunChartEngines(Chart& chart) {
    const DataSource* source = SourceAt(chart.sourceSlot);
    if (!source || !chart.modelSeries || !chart.analysisParams) return;
    const ChartKindInfo* info = KindOf(chart);
    if (info && info->runEngines) info->runEngines(chart, *source->columns, source->rowCount);
}

int CreateAnalysisChart(const char* kindName, const CreationMode& mode) {
    WindowId activeWindow = 0;
    Chart* from = TheDesk().ActiveChart(&activeWindow);
    if (!from) {
        SayUnless(mode.batch(), "Non Existent Connection To Data source", AppCaption);
        return 0;
    }
    const ChartKindInfo* fromInfo = KindOf(*from);
    if (!mode.restoring() && fromInfo && fromInfo->layout == LayoutCompanion) {
        SayUnless(mode.batch(), "Please Select Chart", AppCaption);
        return 0;
    }
    // An unknown name gets as far as the allocation, which it fails.
    const ChartKindInfo* info = KindByName(kindName);
    if (from->rowCount < (info ? info->frontRows : 25)) {
        SayUnless(mode.batch(), "Insufficient data", DisciplineCaption);
        return 0;
    }
    DataSource* source = SourceAt(from->sourceSlot);
    if (info && info->volumeKind) {
        const bool noVolume =
            from->hasFullColumns == 0 ||
            (source && source->rowCount > 0 && source->columns->volume[0] == NO_VOLUME_MARKER);
        if (noVolume) {
            SayUnless(mode.batch(), "No Volume Data Available", AppCaption);
            return 0;
        }
    }
    Chart* chart = info ? NewChart(info->layout) : nullptr;
    if (!chart) {
        SayUnless(mode.batch(),
                  "Memory Allocation For New Window failed - Please close some windows",
                  AppCaption);
        return 0;
    }
    chart->pairData = nullptr;
    std::snprintf(chart->kindName, sizeof chart->kindName, "%s", kindName);

    // A new chart borrows the source and the look of the one in front; it
    // never links back to it. A layout being restored names its own source,
    // view and drawn objects.
    const bool restoring = mode.restoring();
    const int row = mode.layoutRow;
    if (restoring && chartDefaults.reuseSource) {
        chart->connectionId = chartDefaults.reuseConnectionId;
        chart->sourceSlot = chartDefaults.reuseSlot;
        source = SourceAt(chart->sourceSlot);
    } else {
        chart->connectionId = from->connectionId;
        chart->sourceSlot = from->sourceSlot;
    }
    chart->rowCount = source ? source->rowCount : 0;
    chart->secondSourceSlot = -1;
    std::memcpy(chart->chartTitle, from->chartTitle, sizeof chart->chartTitle);
    chart->hasFullColumns = from->hasFullColumns;
    chart->predictorShort = from->predictorShort;
    chart->predictorMedium = from->predictorMedium;
    chart->predictorLong = from->predictorLong;
    chart->dataViewWindow = 0;
    chart->levelsViewWindow = 0;
    chart->priceScaleDenominator = 1;
    ChartView& view = *chart->view;
    view.gridOn = from->view->gridOn;
    if (restoring) {
        chart->priceScaleDenominator = mode.layout->PriceScale(row);
        chart->anchorsPending = 1;
        mode.layout->CopyDrawnObjects(row, chart);
        mode.layout->View(row, &view);
        chart->predictorShort = 1;
        chart->predictorMedium = chart->predictorLong = 0;
    } else if (mode.batch()) {
        view.showLine = chartDefaults.defaultShowLine;
        view.showBar = chartDefaults.defaultShowBar;
        view.showCandle = chartDefaults.defaultShowCandle;
        view.showHighLow = chartDefaults.defaultShowHighLow;
        view.resolution = chartDefaults.defaultResolution;
    } else {
        view.showLine = from->view->showLine;
        view.showBar = from->view->showBar;
        view.showCandle = from->view->showCandle;
        view.showHighLow = from->view->showHighLow;
        view.resolution = from->view->resolution;
    }
    if (chart->rowCount == 1) chart->showCurveHandles = 1;
    if (source) ++source->refCount;
    chart->secondConnectionId = 0;

    if (info->rowMinimum > 0 && chart->rowCount < info->rowMinimum) {
        SayUnless(mode.batch(), info->rowMinimumMessage, DisciplineCaption);
        ReleaseChart(chart); // gives the source back
        return 0;
    }

    SetDefaultParameters(*chart, *info);
    if (restoring) RestoredParameters(*chart, *info, *mode.layout, row);
    chart->kind = info->kind;
    if (chart->fibonacciExtra) {
        chart->fibonacciExtra->fibonacciLines = 0;
        chart->fibonacciExtra->extendEnvelopes = 0;
    }
    RunChartEngines(*chart);

    std::snprintf(chart->windowCaption, sizeof chart->windowCaption,
                  source && source->filtered ? "Filtered %s %s" : "%s %s", chart->kindName,
                  chart->chartTitle);

    ChildWindowRequest request{chart,
                               WindowClass::PriceChild,
                               chart->windowCaption,
                               mode.batch() ? WindowPlacement::FillClient
                                            : WindowPlacement::SystemDefault,
                               0,
                               0,
                               0,
                               0,
                               false};
    if (restoring) {
        request.placement = WindowPlacement::Given;
        mode.layout->Rectangle(row, &request.x, &request.y, &request.width, &request.height);
    }
    const WindowId window = TheDesk().CreateChild(request);
    if (!window) {
        SayUnless(mode.batch(), "Unable to create Window - Please close some", AppCaption);
        ReleaseChart(chart);
        return 0;
    }
    RegisterChart();
    return 1;
}

void RecomputeChart(WindowId window, Chart& chart) {
    const DataSource* source = SourceAt(chart.sourceSlot);
    if (source) RefreshTitle(chart, *source);
    const ChartKindInfo* info = KindOf(chart);
    const int minimum = info ? info->recomputeMinimum : -1;
    if (info && info->windowClass == WindowClass::ResView) return; // a levels view is left alone
    if (info && info->windowClass == WindowClass::DataView)
        return TheDesk().RefreshDataView(window);
    if (minimum > 0 && chart.rowCount >= minimum) RunChartEngines(chart);
    TheDesk().Invalidate(window);
    // The Levels Views show the last row's levels, whatever the row count.
    if (info && info->layout == LayoutFibonacci) TheDesk().UpdateLevelsViews();
}

void RecomputeAfterPeriodChange(Chart& chart, int selectedCurve) {
    const DataSource* source = SourceAt(chart.sourceSlot);
    if (!source || !chart.modelSeries || !chart.analysisParams) return;
    const std::int32_t n = source->rowCount;
    const double* close = source->columns->close;
    double* const* s = chart.modelSeries->slot;
    const std::int32_t* period = chart.analysisParams->period;
    const ChartKindInfo* info = KindById(chart.kind);
    switch (info ? info->periodChange : PeriodChange::Nothing) {
    case PeriodChange::SelectedCurve:
        if (selectedCurve >= 1 && selectedCurve <= 3)
            info->curveEngine(close, s[selectedCurve - 1], n, period[selectedCurve]);
        break;
    case PeriodChange::AllEngines:
        RunChartEngines(chart);
        break;
    case PeriodChange::PairStatistic:
        if (chart.pairData && s[0])
            ComputeHistoricalCorrelation(chart.pairData->secondSeries, chart.pairData->firstSeries,
                                         s[0], chart.pairData->pairCount, period[1]);
        break;
    case PeriodChange::Nothing:
        break;
    }
}

} // namespace velorin
