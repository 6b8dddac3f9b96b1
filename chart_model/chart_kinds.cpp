#include "chart_model/chart_kinds.h"

#include <cstring>
#include <iterator>

#include "analysis/fibonacci.h"
#include "analysis/moving_averages.h"
#include "analysis/oscillators.h"
#include "analysis/predictor.h"
#include "analysis/trend.h"
#include "analysis/two_series.h"
#include "analysis/volume.h"
#include "chart_model/chart.h"
#include "market_data/data_source.h"
#include "resources/command_ids.h"

namespace velorin {
namespace {

// The engines of each kind. The callers have checked that the chart has
// its model series and parameters.

double* const* Series(Chart& chart) {
    return chart.modelSeries->slot;
}
const std::int32_t* Periods(const Chart& chart) {
    return chart.analysisParams->period;
}

void RunRma(Chart& chart, const DataColumns& c, std::int32_t n) {
    for (int i = 0; i < 3; ++i)
        ComputeRMA(c.close, Series(chart)[i], n, Periods(chart)[i + 1]);
}
void RunStdev(Chart& chart, const DataColumns& c, std::int32_t n) {
    for (int i = 0; i < 3; ++i)
        ComputeStdev(c.close, Series(chart)[i], n, Periods(chart)[i + 1]);
}
void RunEsma(Chart& chart, const DataColumns& c, std::int32_t n) {
    ComputeESMA(c.close, Series(chart)[0], n, chart.smoothing[0]);
}
void RunWma(Chart& chart, const DataColumns& c, std::int32_t n) {
    ComputeWMA(c.close, Series(chart)[0], n, Periods(chart)[1]);
}
void RunRsi(Chart& chart, const DataColumns& c, std::int32_t n) {
    ComputeRSI(c.close, Series(chart)[0], n, Periods(chart)[1]);
}
void RunRvi(Chart& chart, const DataColumns& c, std::int32_t n) {
    ComputeRSI(c.volume, Series(chart)[0], n, Periods(chart)[1]);
}
void RunOscillator(Chart& chart, const DataColumns& c, std::int32_t n) {
    ComputeOscillator(c.close, Series(chart)[0], n, Periods(chart)[1]);
}
void RunMomentum(Chart& chart, const DataColumns& c, std::int32_t n) {
    ComputeMomentum(c.close, Series(chart)[0], n, Periods(chart)[1]);
}
void RunPercRange(Chart& chart, const DataColumns& c, std::int32_t n) {
    ComputePercRange(c.close, Series(chart)[0], n, Periods(chart)[1]);
}
void RunOverboughtSold(Chart& chart, const DataColumns& c, std::int32_t n) {
    ComputeOverboughtSold(c.close, Series(chart)[0], n, Periods(chart)[1]);
}
void RunStochastics(Chart& chart, const DataColumns& c, std::int32_t n) {
    double* const* s = Series(chart);
    const std::int32_t* period = Periods(chart);
    // The third curve smooths with the first period again, not the third.
    ComputeStochastics(c.close, s[0], s[1], s[2], s[3], n, period[1], period[2], period[1],
                       period[4]);
}
void RunObv(Chart& chart, const DataColumns& c, std::int32_t n) {
    ComputeOBV(c.close, c.volume, Series(chart)[0], n);
}
void RunTicVolume(Chart& chart, const DataColumns& c, std::int32_t n) {
    ComputeTicVolume(c.close, c.volume, Series(chart)[0], n);
}
void RunTrend(Chart& chart, const DataColumns& c, std::int32_t n) {
    ComputeTrend(c.close, Series(chart)[0], n, static_cast<std::int32_t>(chart.smoothing[0]));
}
void RunSwingChart(Chart& chart, const DataColumns& c, std::int32_t n) {
    ComputeSwingChart(c.close, Series(chart)[0], n);
}
void RunMacd(Chart& chart, const DataColumns& c, std::int32_t n) {
    ComputeMACD(c.close, Series(chart)[1], Series(chart)[2], n, chart.smoothing[0],
                chart.smoothing[1], chart.smoothing[2]);
}
void RunPredictor(Chart& chart, const DataColumns& c, std::int32_t n) {
    double* const* s = Series(chart);
    ComputePredictor(c.close, s[0], s[1], s[2], n, Periods(chart)[1]);
}
void RunFibonacci(Chart& chart, const DataColumns& c, std::int32_t n) {
    if (!chart.fibonacciExtra) return;
    double* const* s = Series(chart);
    for (int i = 0; i < FibonacciLineCount; ++i)
        ComputeRMA(c.close, s[i], n, Periods(chart)[i + 1]);
    FibonacciExtra& f = *chart.fibonacciExtra;
    ComputeFibonacciEnvelopes(c.close, s[0], s[1], s[2], s[3], s[4], s[5], s[6], f.upperEnvelope,
                              f.lowerEnvelope, &f.priceStdev, n);
}

// The statistics of two sources read only the common rows: `a` the first
// chart's closes, `b` the second's.
void RunRegression(Chart& chart) {
    PairData& p = *chart.pairData;
    // The whole common span counts: the period becomes the pair count.
    chart.analysisParams->period[1] = p.pairCount;
    RegressionResult r{};
    ComputeRegression(p.secondSeries, p.firstSeries, &r, p.pairCount, p.pairCount);
    p.rSquared = r.rSquared;
    p.adjustedBeta = r.adjustedBeta;
    p.beta = r.beta;
    p.alpha = r.alpha;
}
void RunHistoricalCorrelation(Chart& chart) {
    const PairData& p = *chart.pairData;
    ComputeHistoricalCorrelation(p.secondSeries, p.firstSeries, Series(chart)[0], p.pairCount,
                                 Periods(chart)[1]);
}
template <void (*Engine)(const double*, const double*, double*, std::int32_t)>
void RunPairRatio(Chart& chart) {
    const PairData& p = *chart.pairData;
    Engine(p.secondSeries, p.firstSeries, Series(chart)[0], p.pairCount);
}

// Curves.
using W = CurveWidth;
constexpr KindCurves priceCurves{true, false, true, false, W::Price, 0, {}};
constexpr KindCurves volumeCurves{false, true, false, false, W::Price, 0, {}};
constexpr KindCurves overPrice{true, false, true, false, W::Model, 1, {{0, 4}}};
constexpr KindCurves threeOverPrice{
    true, false, true, false, W::Model, 3, {{0, 4}, {1, 5}, {2, 6}}};
constexpr KindCurves ownCurve{false, false, false, false, W::One, 1, {{0, 3}}};
constexpr KindCurves threeOwnCurves{
    false, false, false, false, W::One, 3, {{0, 4}, {1, 5}, {2, 6}}};
constexpr KindCurves stochasticsCurves{
    false, false, false, false, W::One, 4, {{0, 3}, {1, 4}, {2, 5}, {3, 6}}};
constexpr KindCurves pairCurve{false, false, false, false, W::Model, 1, {{0, 3}}};
// Curve 0 of the predictor is an intermediate and is neither drawn nor
// ranged; the MACD fills curves 1 and 2 only.
constexpr KindCurves secondAndThirdCurves{false, false, false, false, W::One, 2, {{1, 3}, {2, 4}}};
constexpr KindCurves fibonacciCurves{true, false, true, true, W::One, 0, {}};

// Chart context menus.
constexpr ChartMenuFeatures fullMenu{.shown = true,
                                     .endPointItems = true,
                                     .draw = DrawItems::Full,
                                     .priceScaleItem = true,
                                     .dataSourceItem = true};
constexpr ChartMenuFeatures shortMenu{
    .shown = true, .endPointItems = true, .draw = DrawItems::Short, .dataSourceItem = true};
constexpr ChartMenuFeatures predictorMenu{
    .shown = true, .endPointItems = true, .draw = DrawItems::Grid, .dataSourceItem = true};
constexpr ChartMenuFeatures macdMenu{.shown = true,
                                     .endPointItems = true,
                                     .draw = DrawItems::Grid,
                                     .periodsItem = true,
                                     .dataSourceItem = true};
// Kinds on the common rows of two sources, and the Fibonacci and overlay
// charts, can't be cut at an end point.
constexpr ChartMenuFeatures fibonacciMenu{.shown = true,
                                          .draw = DrawItems::Grid,
                                          .fibonacciItems = true,
                                          .priceScaleItem = true,
                                          .dataSourceItem = true};
constexpr ChartMenuFeatures pairMenu{.shown = true, .draw = DrawItems::Grid};
constexpr ChartMenuFeatures overlayMenu{
    .shown = true, .draw = DrawItems::None, .highlightItem = true};

constexpr HandleMenuFeatures noPeriodOnSlot3{.noPeriodItem = NoPeriodSlot3};

constexpr ChartKindInfo kindTable[] = {
    {.kind = 1,
     .kindName = "Price",
     .commandId = cmd::Price,
     .layout = LayoutPlain,
     .frontRows = 0,
     .defaults = ParamDefaults::None,
     .restore = ParamRestore::Keep,
     .curves = &priceCurves,
     .chartMenu = fullMenu},
    {.kind = 2,
     .kindName = "Volume",
     .commandId = cmd::Volume,
     .layout = LayoutPlain,
     .volumeKind = true,
     .frontRows = 0,
     .defaults = ParamDefaults::None,
     .restore = ParamRestore::Keep,
     .curves = &volumeCurves,
     .chartMenu = shortMenu,
     .handleMenu = {.styleSubmenu = false}},
    {.kind = 3,
     .kindName = "RMA",
     .commandId = cmd::Rma,
     .layout = LayoutThreeCurves,
     .recomputeMinimum = 25,
     .defaults = ParamDefaults::RmaPeriods,
     .restore = ParamRestore::ThreePeriods,
     .runEngines = RunRma,
     .periodChange = PeriodChange::SelectedCurve,
     .curveEngine = ComputeRMA,
     .curves = &threeOverPrice,
     .chartMenu = fullMenu},
    {.kind = 4,
     .kindName = "ESMA",
     .commandId = cmd::Esma,
     .recomputeMinimum = 25,
     .defaults = ParamDefaults::EsmaSmoothing,
     .restore = ParamRestore::OneSmoothing,
     .runEngines = RunEsma,
     .periodChange = PeriodChange::AllEngines,
     .curves = &overPrice,
     .chartMenu = fullMenu},
    {.kind = 5,
     .kindName = "WMA",
     .commandId = cmd::Wma,
     .recomputeMinimum = 25,
     .runEngines = RunWma,
     .periodChange = PeriodChange::AllEngines,
     .curves = &overPrice,
     .chartMenu = fullMenu},
    {.kind = 6,
     .kindName = "RSI",
     .commandId = cmd::Rsi,
     .recomputeMinimum = 25,
     .runEngines = RunRsi,
     .periodChange = PeriodChange::AllEngines,
     .curves = &ownCurve,
     .chartMenu = shortMenu},
    {.kind = 7,
     .kindName = "Oscillator",
     .commandId = cmd::Oscillator,
     .recomputeMinimum = 25,
     .runEngines = RunOscillator,
     .periodChange = PeriodChange::AllEngines,
     .curves = &ownCurve,
     .chartMenu = shortMenu},
    {.kind = 8,
     .kindName = "Momentum",
     .commandId = cmd::Momentum,
     .recomputeMinimum = 25,
     .runEngines = RunMomentum,
     .periodChange = PeriodChange::AllEngines,
     .curves = &ownCurve,
     .chartMenu = shortMenu},
    {.kind = 9,
     .kindName = "Stochastics",
     .commandId = cmd::Stochastics,
     .layout = LayoutFourCurves,
     .rowMinimum = 61,
     .rowMinimumMessage = "Insufficient data for Stochastics Analysis",
     .recomputeMinimum = 61,
     .defaults = ParamDefaults::Stochastics,
     .restore = ParamRestore::Stochastics,
     .runEngines = RunStochastics,
     .periodChange = PeriodChange::AllEngines,
     .curves = &stochasticsCurves,
     .chartMenu = shortMenu,
     .handleMenu = {.slot4Period = 2}},
    {.kind = 10,
     .kindName = "RVI",
     .commandId = cmd::Rvi,
     .volumeKind = true,
     .recomputeMinimum = 25,
     .runEngines = RunRvi,
     .periodChange = PeriodChange::AllEngines,
     .curves = &ownCurve,
     .chartMenu = shortMenu},
    // OBV and Tic Volume keep a period of 14 that no engine reads.
    {.kind = 11,
     .kindName = "OBV",
     .commandId = cmd::Obv,
     .volumeKind = true,
     .recomputeMinimum = 25,
     .runEngines = RunObv,
     .curves = &ownCurve,
     .chartMenu = shortMenu,
     .handleMenu = noPeriodOnSlot3},
    {.kind = 12,
     .kindName = "Tic Volume",
     .commandId = cmd::TicVolume,
     .volumeKind = true,
     .recomputeMinimum = 25,
     .runEngines = RunTicVolume,
     .curves = &ownCurve,
     .chartMenu = shortMenu,
     .handleMenu = noPeriodOnSlot3},
    {.kind = 13,
     .kindName = "Trend",
     .commandId = cmd::Trend,
     .recomputeMinimum = 25,
     .defaults = ParamDefaults::TrendSmoothing,
     .restore = ParamRestore::Keep,
     .runEngines = RunTrend,
     .curves = &overPrice,
     .chartMenu = fullMenu,
     .handleMenu = {.noPeriodItem = NoPeriodAnySlot}},
    {.kind = 14,
     .kindName = "Stdev",
     .commandId = cmd::Stdev,
     .layout = LayoutThreeCurves,
     .recomputeMinimum = 25,
     .defaults = ParamDefaults::RmaPeriods,
     .restore = ParamRestore::ThreePeriods,
     .runEngines = RunStdev,
     .periodChange = PeriodChange::SelectedCurve,
     .curveEngine = ComputeStdev,
     .curves = &threeOwnCurves,
     .chartMenu = shortMenu},
    {.kind = 15,
     .kindName = "Swing Charting",
     .commandId = cmd::SwingCharting,
     .recomputeMinimum = 25,
     .defaults = ParamDefaults::None,
     .restore = ParamRestore::Keep,
     .runEngines = RunSwingChart,
     .curves = &overPrice,
     .chartMenu = fullMenu,
     .handleMenu = {.noPeriodItem = NoPeriodSlot4}},
    // The kinds of two sources run on the common rows of the two, frozen
    // at creation; only a new period recomputes the historical correlation.
    {.kind = 16,
     .kindName = "Correlation",
     .commandId = cmd::Correlation,
     .windowClass = WindowClass::CorrChild,
     .layout = LayoutPair,
     .pairEngine = RunRegression,
     .chartMenu = pairMenu},
    {.kind = 17,
     .kindName = "Historical Correlation",
     .commandId = cmd::HistoricalCorrelation,
     .layout = LayoutPair,
     .rowMinimum = 151,
     .rowMinimumMessage = "Insufficient data for Historical Correlation Analysis",
     .pairEngine = RunHistoricalCorrelation,
     .periodChange = PeriodChange::PairStatistic,
     .curves = &pairCurve,
     .chartMenu = pairMenu},
    {.kind = 18,
     .kindName = "Price Ratio",
     .commandId = cmd::PriceRatio,
     .layout = LayoutPair,
     .pairEngine = RunPairRatio<ComputePriceRatio>,
     .curves = &pairCurve,
     .chartMenu = pairMenu,
     .handleMenu = noPeriodOnSlot3},
    {.kind = 19,
     .kindName = "Fibonacci",
     .commandId = cmd::Fibonacci,
     .layout = LayoutFibonacci,
     .rowMinimum = 251,
     .rowMinimumMessage = "Insufficient data for Fibonacci Analysis",
     .recomputeMinimum = 251,
     .defaults = ParamDefaults::FibonacciPeriods,
     .restore = ParamRestore::Keep,
     .runEngines = RunFibonacci,
     .curves = &fibonacciCurves,
     .chartMenu = fibonacciMenu,
     .handleMenu = {.styleSubmenu = false, .noPeriodItem = NoPeriodAnySlot}},
    {.kind = 20,
     .kindName = "Predictor",
     .commandId = cmd::Predictor,
     .layout = LayoutThreeCurves,
     .rowMinimum = 76,
     .rowMinimumMessage = "Insufficient data for Time Series Analysis",
     .recomputeMinimum = 61,
     .defaults = ParamDefaults::PredictorTerm,
     .restore = ParamRestore::Keep,
     .runEngines = RunPredictor,
     .curves = &secondAndThirdCurves,
     .chartMenu = predictorMenu,
     .handleMenu = {.predictorTerms = true, .noPeriodItem = NoPeriodSlot3 | NoPeriodSlot4}},
    {.kind = 21,
     .kindName = "Perc. Range",
     .commandId = cmd::PercRange,
     .recomputeMinimum = 25,
     .runEngines = RunPercRange,
     .periodChange = PeriodChange::AllEngines,
     .curves = &ownCurve,
     .chartMenu = shortMenu},
    {.kind = 22,
     .kindName = "Spread",
     .commandId = cmd::Spread,
     .layout = LayoutPair,
     .pairEngine = RunPairRatio<ComputeSpread>,
     .curves = &pairCurve,
     .chartMenu = pairMenu,
     .handleMenu = noPeriodOnSlot3},
    {.kind = 23,
     .kindName = "Relative Strength",
     .commandId = cmd::RelativeStrength,
     .layout = LayoutPair,
     .pairEngine = RunPairRatio<ComputeRelativeStrength>,
     .curves = &pairCurve,
     .chartMenu = pairMenu,
     .handleMenu = noPeriodOnSlot3},
    {.kind = 24,
     .kindName = "Relative Performance",
     .commandId = cmd::RelativePerformance,
     .layout = LayoutPair,
     .pairEngine = RunPairRatio<ComputeRelativePerformance>,
     .curves = &pairCurve,
     .chartMenu = pairMenu,
     .handleMenu = noPeriodOnSlot3},
    {.kind = 25,
     .kindName = "OverboughtSold",
     .commandId = cmd::OverboughtSold,
     .recomputeMinimum = 25,
     .runEngines = RunOverboughtSold,
     .periodChange = PeriodChange::AllEngines,
     .curves = &ownCurve,
     .chartMenu = shortMenu},
    {.kind = 26,
     .kindName = "MACD",
     .commandId = cmd::Macd,
     .layout = LayoutThreeCurves,
     .recomputeMinimum = 25,
     .defaults = ParamDefaults::MacdSmoothings,
     .restore = ParamRestore::ThreeSmoothings,
     .runEngines = RunMacd,
     .periodChange = PeriodChange::AllEngines,
     .curves = &secondAndThirdCurves,
     .chartMenu = macdMenu,
     .handleMenu = {.noPeriodItem = NoPeriodSlot3 | NoPeriodSlot4}},
    {.kind = 50,
     .kindName = "Overlay",
     .commandId = cmd::Overlay,
     .windowClass = WindowClass::OverlayChild,
     .layout = LayoutPair,
     .chartMenu = overlayMenu},
    // The companion views show another chart's rows and have no menu.
    {.kind = 100,
     .kindName = "Data View",
     .commandId = cmd::DataViewButton,
     .windowClass = WindowClass::DataView,
     .layout = LayoutCompanion,
     .defaults = ParamDefaults::None,
     .restore = ParamRestore::Keep},
    {.kind = 101,
     .kindName = "Levels View",
     .windowClass = WindowClass::ResView,
     .layout = LayoutCompanion,
     .defaults = ParamDefaults::None,
     .restore = ParamRestore::Keep},
};

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

} // namespace velorin
