#include "chart_model/analysis_chart.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "analysis/fibonacci.h"
#include "analysis/moving_averages.h"
#include "analysis/oscillators.h"
#include "analysis/predictor.h"
#include "analysis/trend.h"
#include "analysis/two_series.h"
#include "analysis/volume.h"
#include "chart_model/layout_hooks.h"
#include "chart_model/price_chart.h"
#include "market_data/data_source.h"
#include "shell/core/shell_state.h"
#include "shell/core/user_seam.h"

namespace velorin {

DeskWindowHooks deskWindowHooks;

namespace {

constexpr const char* AppCaption = "QDX-Velorin";
constexpr const char* DisciplineCaption = "QDX-Velorin Trading Discipline";

void SayUnlessBatch(const char* text, const char* caption) {
    if (!shell.batchRunning) Seam().ShowMessage(text, caption, MessageIcon::Information);
}

bool Is(const char* kindName, const char* name) {
    return std::strcmp(kindName, name) == 0;
}

bool IsVolumeKind(const char* kindName) {
    return Is(kindName, "Volume") || Is(kindName, "Tic Volume") || Is(kindName, "OBV") ||
           Is(kindName, "RVI");
}

// The fewest rows an analysis can be made from; the guard of step three
// already holds every kind but these three to 25.
struct RowMinimum {
    const char* kindName;
    int rows;
    const char* message;
};
constexpr RowMinimum RowMinima[] = {
    {"Stochastics", 61, "Insufficient data for Stochastics Analysis"},
    {"Predictor", 76, "Insufficient data for Time Series Analysis"},
    {"Fibonacci", 251, "Insufficient data for Fibonacci Analysis"},
};

int PredictorTermPeriod(const Chart& chart) {
    if (chart.predictorShort == 1) return PredictorShortTerm;
    if (chart.predictorMedium == 1) return PredictorMediumTerm;
    return PredictorLongTerm;
}

void SetDefaultParameters(Chart& chart) {
    if (!chart.analysisParams) return; // "Price" and "Volume" have none
    std::int32_t* period = chart.analysisParams->period;
    const char* k = chart.kindName;
    if (Is(k, "RMA") || Is(k, "Stdev")) {
        DefaultRmaPeriods(chart.rowCount, period);
    } else if (Is(k, "ESMA")) {
        chart.smoothing[0] = DefaultEsmaSmoothing;
    } else if (Is(k, "Stochastics")) {
        period[1] = 14;
        period[2] = 5;
        period[3] = 14;
        period[4] = 21;
    } else if (Is(k, "Trend")) {
        chart.smoothing[0] = 11.0;
    } else if (Is(k, "Fibonacci")) {
        for (int i = 0; i < FibonacciLineCount; ++i)
            period[i + 1] = FibonacciPeriods[static_cast<std::size_t>(i)];
    } else if (Is(k, "Predictor")) {
        period[1] = PredictorTermPeriod(chart);
    } else if (Is(k, "MACD")) {
        chart.smoothing[0] = DefaultMacdLongSmoothing;
        chart.smoothing[1] = DefaultMacdShortSmoothing;
        chart.smoothing[2] = DefaultMacdSignalSmoothing;
    } else if (!Is(k, "Swing Charting")) {
        period[1] = 14;
    }
}

// The stored parameters of a layout row over the defaults: whole periods
// for the period kinds, the fractions as they are for "ESMA" and "MACD".
// "Trend", "Fibonacci" and "Predictor" keep what the defaults gave them.
void RestoredParameters(Chart& chart, int row) {
    if (!chart.analysisParams || !layoutRestoreHooks.rowParameters) return;
    double p[3] = {0.0, 0.0, 0.0};
    layoutRestoreHooks.rowParameters(row, &p[0], &p[1], &p[2]);
    std::int32_t* period = chart.analysisParams->period;
    const char* k = chart.kindName;
    if (Is(k, "Trend") || Is(k, "Fibonacci") || Is(k, "Predictor") || Is(k, "Swing Charting"))
        return;
    if (Is(k, "ESMA")) {
        chart.smoothing[0] = p[0];
    } else if (Is(k, "MACD")) {
        for (int i = 0; i < 3; ++i)
            chart.smoothing[i] = p[i];
    } else if (Is(k, "Stochastics")) {
        // The third stored value fills the fourth period; the third
        // period follows the first.
        period[1] = static_cast<std::int32_t>(p[0]);
        period[2] = static_cast<std::int32_t>(p[1]);
        period[4] = static_cast<std::int32_t>(p[2]);
        period[3] = period[1];
    } else if (Is(k, "RMA") || Is(k, "Stdev")) {
        for (int i = 0; i < 3; ++i)
            period[i + 1] = static_cast<std::int32_t>(p[i]);
    } else {
        period[1] = static_cast<std::int32_t>(p[0]);
    }
}

// Caption words split at white space, as many as asked; missing ones empty.
std::vector<std::string> CaptionWords(const char* caption, std::size_t count) {
    std::vector<std::string> words;
    const char* p = caption;
    while (words.size() < count) {
        p += std::strspn(p, " \t\r\n");
        if (*p == '\0') break;
        const std::size_t len = std::strcspn(p, " \t\r\n");
        words.emplace_back(p, len);
        p += len;
    }
    words.resize(count);
    return words;
}

void RefreshTitle(Chart& chart, const DataSource& source) {
    if (source.tick || chart.rowCount < 1) return;
    const char* first = source.columns->dateText[0];
    const char* last = source.columns->dateText[chart.rowCount - 1];
    if (source.filtered == 1) {
        const std::vector<std::string> w = CaptionWords(chart.windowCaption, 4);
        std::snprintf(chart.chartTitle, sizeof chart.chartTitle, "%s %s - %s", w[2].c_str(), first,
                      last);
        std::snprintf(chart.windowCaption, sizeof chart.windowCaption, "%s %s %s %s - %s",
                      w[0].c_str(), w[1].c_str(), w[2].c_str(), first, last);
    } else {
        const std::vector<std::string> w = CaptionWords(chart.windowCaption, 3);
        std::snprintf(chart.chartTitle, sizeof chart.chartTitle, "%s %s - %s", w[1].c_str(), first,
                      last);
        std::snprintf(chart.windowCaption, sizeof chart.windowCaption, "%s %s %s - %s",
                      w[0].c_str(), w[1].c_str(), first, last);
    }
}

// The row test of a recomputation: the fewest rows a kind is run again for.
// -1: never run (the kind has no engines here).
int RecomputeMinimum(const char* kindName) {
    static constexpr const char* AboveTwentyFour[] = {
        "RMA",        "ESMA",        "MACD",  "WMA",        "OverboughtSold",
        "RSI",        "Perc. Range", "Stdev", "Momentum",   "Swing Charting",
        "Oscillator", "Trend",       "OBV",   "Tic Volume", "RVI"};
    for (const char* name : AboveTwentyFour)
        if (Is(kindName, name)) return 25;
    if (Is(kindName, "Stochastics") || Is(kindName, "Predictor")) return 61;
    if (Is(kindName, "Fibonacci")) return 251;
    return -1;
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
    const DataColumns& c = *source->columns;
    const std::int32_t n = source->rowCount;
    double* const* s = chart.modelSeries->slot;
    const std::int32_t* period = chart.analysisParams->period;
    const char* k = chart.kindName;

    if (Is(k, "RMA")) {
        for (int i = 0; i < 3; ++i)
            ComputeRMA(c.close, s[i], n, period[i + 1]);
    } else if (Is(k, "Stdev")) {
        for (int i = 0; i < 3; ++i)
            ComputeStdev(c.close, s[i], n, period[i + 1]);
    } else if (Is(k, "ESMA")) {
        ComputeESMA(c.close, s[0], n, chart.smoothing[0]);
    } else if (Is(k, "WMA")) {
        ComputeWMA(c.close, s[0], n, period[1]);
    } else if (Is(k, "RSI")) {
        ComputeRSI(c.close, s[0], n, period[1]);
    } else if (Is(k, "RVI")) {
        ComputeRSI(c.volume, s[0], n, period[1]);
    } else if (Is(k, "Oscillator")) {
        ComputeOscillator(c.close, s[0], n, period[1]);
    } else if (Is(k, "Momentum")) {
        ComputeMomentum(c.close, s[0], n, period[1]);
    } else if (Is(k, "Perc. Range")) {
        ComputePercRange(c.close, s[0], n, period[1]);
    } else if (Is(k, "OverboughtSold")) {
        ComputeOverboughtSold(c.close, s[0], n, period[1]);
    } else if (Is(k, "Stochastics")) {
        // The third curve smooths with the first period again, not the third.
        ComputeStochastics(c.close, s[0], s[1], s[2], s[3], n, period[1], period[2], period[1],
                           period[4]);
    } else if (Is(k, "OBV")) {
        ComputeOBV(c.close, c.volume, s[0], n);
    } else if (Is(k, "Tic Volume")) {
        ComputeTicVolume(c.close, c.volume, s[0], n);
    } else if (Is(k, "Trend")) {
        ComputeTrend(c.close, s[0], n, static_cast<std::int32_t>(chart.smoothing[0]));
    } else if (Is(k, "Swing Charting")) {
        ComputeSwingChart(c.close, s[0], n);
    } else if (Is(k, "MACD")) {
        ComputeMACD(c.close, s[1], s[2], n, chart.smoothing[0], chart.smoothing[1],
                    chart.smoothing[2]);
    } else if (Is(k, "Predictor")) {
        ComputePredictor(c.close, s[0], s[1], s[2], n, period[1]);
    } else if (Is(k, "Fibonacci") && chart.fibonacciExtra) {
        for (int i = 0; i < FibonacciLineCount; ++i)
            ComputeRMA(c.close, s[i], n, period[i + 1]);
        FibonacciExtra& f = *chart.fibonacciExtra;
        ComputeFibonacciEnvelopes(c.close, s[0], s[1], s[2], s[3], s[4], s[5], s[6],
                                  f.upperEnvelope, f.lowerEnvelope, &f.priceStdev, n);
    }
}

int CreateAnalysisChart(const char* kindName) {
    WindowId activeWindow = 0;
    Chart* from =
        deskWindowHooks.activeChart ? deskWindowHooks.activeChart(&activeWindow) : nullptr;
    if (!from) {
        SayUnlessBatch("Non Existent Connection To Data source", AppCaption);
        return 0;
    }
    if (!shell.restoringLayout &&
        (Is(from->kindName, "Data View") || Is(from->kindName, "Levels View"))) {
        SayUnlessBatch("Please Select Chart", AppCaption);
        return 0;
    }
    const bool plainKind = Is(kindName, "Price") || Is(kindName, "Volume");
    if (from->rowCount < 25 && !plainKind) {
        SayUnlessBatch("Insufficient data", DisciplineCaption);
        return 0;
    }
    DataSource* source = SourceAt(from->sourceSlot);
    if (IsVolumeKind(kindName)) {
        const bool noVolume =
            from->hasFullColumns == 0 ||
            (source && source->rowCount > 0 && source->columns->volume[0] == NO_VOLUME_MARKER);
        if (noVolume) {
            SayUnlessBatch("No Volume Data Available", AppCaption);
            return 0;
        }
    }
    const ChartKindInfo* info = KindByName(kindName);
    Chart* chart = info ? NewChart(info->layout) : nullptr;
    if (!chart) {
        SayUnlessBatch("Memory Allocation For New Window failed - Please close some windows",
                       AppCaption);
        return 0;
    }
    chart->pairData = nullptr;
    std::snprintf(chart->kindName, sizeof chart->kindName, "%s", kindName);

    // A new chart borrows the source and the look of the one in front; it
    // never links back to it. A layout being restored names its own source,
    // view and drawn objects.
    const bool restoring = shell.restoringLayout != 0;
    const int row = chartDefaults.layoutRowIndex;
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
        if (layoutRestoreHooks.rowPriceScale)
            chart->priceScaleDenominator = layoutRestoreHooks.rowPriceScale(row);
        chart->anchorsPending = 1;
        if (layoutRestoreHooks.copyDrawnObjects) layoutRestoreHooks.copyDrawnObjects(row, chart);
        if (layoutRestoreHooks.rowView) layoutRestoreHooks.rowView(row, &view);
        chart->predictorShort = 1;
        chart->predictorMedium = chart->predictorLong = 0;
    } else if (shell.batchRunning) {
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

    for (const RowMinimum& minimum : RowMinima) {
        if (Is(kindName, minimum.kindName) && chart->rowCount < minimum.rows) {
            SayUnlessBatch(minimum.message, DisciplineCaption);
            ReleaseChart(chart); // gives the source back
            return 0;
        }
    }

    SetDefaultParameters(*chart);
    if (restoring) RestoredParameters(*chart, row);
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
                               shell.batchRunning ? WindowPlacement::FillClient
                                                  : WindowPlacement::SystemDefault,
                               0,
                               0,
                               0,
                               0,
                               false};
    if (restoring) {
        request.placement = WindowPlacement::Given;
        if (layoutRestoreHooks.rowRectangle)
            layoutRestoreHooks.rowRectangle(row, &request.x, &request.y, &request.width,
                                            &request.height);
    }
    const WindowId window = windowHooks.createChild ? windowHooks.createChild(request) : 0;
    if (!window) {
        SayUnlessBatch("Unable to create Window - Please close some", AppCaption);
        ReleaseChart(chart);
        return 0;
    }
    ++shell.chartCount;
    return 1;
}

void RecomputeChart(WindowId window, Chart& chart) {
    const DataSource* source = SourceAt(chart.sourceSlot);
    if (source) RefreshTitle(chart, *source);
    const int minimum = RecomputeMinimum(chart.kindName);
    if (Is(chart.kindName, "Levels View")) return;
    if (minimum > 0 && chart.rowCount >= minimum) RunChartEngines(chart);
    if (deskWindowHooks.invalidate) deskWindowHooks.invalidate(window);
}

void RecomputeAfterPeriodChange(Chart& chart, int selectedCurve) {
    const DataSource* source = SourceAt(chart.sourceSlot);
    if (!source || !chart.modelSeries || !chart.analysisParams) return;
    const std::int32_t n = source->rowCount;
    const double* close = source->columns->close;
    double* const* s = chart.modelSeries->slot;
    const std::int32_t* period = chart.analysisParams->period;
    switch (chart.kind) {
    case 3:
    case 14:
        if (selectedCurve >= 1 && selectedCurve <= 3) {
            if (chart.kind == 3)
                ComputeRMA(close, s[selectedCurve - 1], n, period[selectedCurve]);
            else
                ComputeStdev(close, s[selectedCurve - 1], n, period[selectedCurve]);
        }
        break;
    case 4:
    case 5:
    case 6:
    case 7:
    case 8:
    case 9:
    case 10:
    case 21:
    case 25:
    case 26:
        RunChartEngines(chart);
        break;
    case 17:
        if (chart.pairData && s[0])
            ComputeHistoricalCorrelation(chart.pairData->secondSeries, chart.pairData->firstSeries,
                                         s[0], chart.pairData->pairCount, period[1]);
        break;
    default:
        break; // the statistic of a correlation stays
    }
}

} // namespace velorin
