// Every engine over a full series of MaxRows rows with the default parameters
// of a new chart (periods for 76 rows or more).

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "analysis/engines.h"
#include "base/series.h"

namespace velorin {
namespace {

constexpr int N = MaxRows;

struct Data {
    Data() : close(N), second(N), volume(N) {
        std::uint64_t state = 12345;
        auto uniform = [&state] {
            state = state * 6364136223846793005ULL + 1442695040888963407ULL;
            return static_cast<double>(state >> 11) * (1.0 / 9007199254740992.0);
        };
        double p = 100.0, q = 50.0;
        for (int i = 0; i < N; ++i) {
            p += uniform() * 3.0 - 1.48 + 0.4 * std::sin(i / 40.0);
            q += uniform() * 2.0 - 0.99;
            close[i] = std::round(std::fabs(p) * 100.0) / 100.0 + 1.0;
            second[i] = std::round(std::fabs(q) * 100.0) / 100.0 + 1.0;
            volume[i] = std::round(50.0 + uniform() * 350.0);
        }
    }
    std::vector<double> close, second, volume;
};

const Data& Input() {
    static const Data data;
    return data;
}

struct Out {
    Out() {
        for (auto& s : series)
            s.assign(MaxRows, 0.0);
    }
    double* operator[](int k) { return series[k].data(); }
    std::vector<double> series[7];
};

#define VELORIN_BENCH(name, ...)                                                                   \
    void BM_##name(benchmark::State& state) {                                                      \
        const Data& d = Input();                                                                   \
        Out o;                                                                                     \
        const auto arg = static_cast<std::int32_t>(state.range(0));                                \
        (void)arg;                                                                                 \
        for (auto _ : state) {                                                                     \
            __VA_ARGS__;                                                                           \
            benchmark::ClobberMemory();                                                            \
        }                                                                                          \
    }

VELORIN_BENCH(RMA, ComputeRMA(d.close.data(), o[0], N, arg))
VELORIN_BENCH(ESMA, ComputeESMA(d.close.data(), o[0], N, DefaultEsmaSmoothing))
VELORIN_BENCH(WMA, ComputeWMA(d.close.data(), o[0], N, arg))
VELORIN_BENCH(MACD, ComputeMACD(d.close.data(), o[0], o[1], N, 0.8, 0.2, 0.5))
VELORIN_BENCH(RSI, ComputeRSI(d.close.data(), o[0], N, arg))
VELORIN_BENCH(RVI, ComputeRSI(d.volume.data(), o[0], N, arg))
VELORIN_BENCH(PercRange, ComputePercRange(d.close.data(), o[0], N, arg))
VELORIN_BENCH(Oscillator, ComputeOscillator(d.close.data(), o[0], N, arg))
VELORIN_BENCH(Momentum, ComputeMomentum(d.close.data(), o[0], N, arg))
VELORIN_BENCH(Stdev, ComputeStdev(d.close.data(), o[0], N, arg))
VELORIN_BENCH(Stochastics,
              ComputeStochastics(d.close.data(), o[0], o[1], o[2], o[3], N, 14, 5, 14, 21))
VELORIN_BENCH(OverboughtSold, ComputeOverboughtSold(d.close.data(), o[0], N, arg))
void BM_FibonacciEnvelopes(benchmark::State& state) {
    const Data& d = Input();
    Out lines;
    for (int k = 0; k < FibonacciLineCount; ++k)
        ComputeRMA(d.close.data(), lines[k], N, FibonacciPeriods[k]);
    std::vector<double> upper(N), lower(N);
    for (auto _ : state) {
        double sd;
        ComputeFibonacciEnvelopes(d.close.data(), lines[0], lines[1], lines[2], lines[3], lines[4],
                                  lines[5], lines[6], upper.data(), lower.data(), &sd, N);
        benchmark::DoNotOptimize(sd);
        benchmark::ClobberMemory();
    }
}
VELORIN_BENCH(FibonacciAnalysis, {
    for (int k = 0; k < FibonacciLineCount; ++k)
        ComputeRMA(d.close.data(), o[k], N, FibonacciPeriods[k]);
    static std::vector<double> upper(N), lower(N);
    double sd;
    ComputeFibonacciEnvelopes(d.close.data(), o[0], o[1], o[2], o[3], o[4], o[5], o[6],
                              upper.data(), lower.data(), &sd, N);
    benchmark::DoNotOptimize(sd);
})
VELORIN_BENCH(SeriesStdev, {
    double sd;
    ComputeSeriesStdev(d.close.data(), &sd, N);
    benchmark::DoNotOptimize(sd);
})
VELORIN_BENCH(StdevSkippingGap, ComputeStdevSkippingGap(d.close.data(), o[0], N, arg))
VELORIN_BENCH(Predictor, ComputePredictor(d.close.data(), o[0], o[1], o[2], N, arg))
VELORIN_BENCH(Regression, {
    RegressionResult r;
    ComputeRegression(d.second.data(), d.close.data(), &r, N, N);
    benchmark::DoNotOptimize(r);
})
VELORIN_BENCH(HistoricalCorrelation,
              ComputeHistoricalCorrelation(d.second.data(), d.close.data(), o[0], N, arg))
VELORIN_BENCH(PriceRatio, ComputePriceRatio(d.second.data(), d.close.data(), o[0], N))
VELORIN_BENCH(Spread, ComputeSpread(d.second.data(), d.close.data(), o[0], N))
VELORIN_BENCH(RelativeStrength, ComputeRelativeStrength(d.second.data(), d.close.data(), o[0], N))
VELORIN_BENCH(RelativePerformance,
              ComputeRelativePerformance(d.second.data(), d.close.data(), o[0], N))
VELORIN_BENCH(Trend, ComputeTrend(d.close.data(), o[0], N, arg))
VELORIN_BENCH(SwingChart, ComputeSwingChart(d.close.data(), o[0], N))
VELORIN_BENCH(OBV, ComputeOBV(d.close.data(), d.volume.data(), o[0], N))
VELORIN_BENCH(TicVolume, ComputeTicVolume(d.close.data(), d.volume.data(), o[0], N))

// The price analyses of one Make All run, each with its default parameters.
VELORIN_BENCH(MakeAllPrices, {
    const double* c = d.close.data();
    ComputeRMA(c, o[0], N, 5);
    ComputeRMA(c, o[1], N, 30);
    ComputeRMA(c, o[2], N, 60);
    ComputeESMA(c, o[3], N, DefaultEsmaSmoothing);
    ComputeWMA(c, o[3], N, 14);
    ComputeMACD(c, o[4], o[5], N, 0.8, 0.2, 0.5);
    ComputePercRange(c, o[3], N, 14);
    ComputeRSI(c, o[3], N, 14);
    ComputeOscillator(c, o[3], N, 14);
    ComputeMomentum(c, o[3], N, 14);
    ComputeStdev(c, o[0], N, 5);
    ComputeStdev(c, o[1], N, 30);
    ComputeStdev(c, o[2], N, 60);
    ComputeStochastics(c, o[0], o[1], o[2], o[3], N, 14, 5, 14, 21);
})

BENCHMARK(BM_RMA)->Arg(5)->Arg(30)->Arg(60);
BENCHMARK(BM_ESMA)->Arg(0);
BENCHMARK(BM_WMA)->Arg(14);
BENCHMARK(BM_MACD)->Arg(0);
BENCHMARK(BM_RSI)->Arg(14);
BENCHMARK(BM_RVI)->Arg(14);
BENCHMARK(BM_PercRange)->Arg(14);
BENCHMARK(BM_Oscillator)->Arg(14);
BENCHMARK(BM_Momentum)->Arg(14);
BENCHMARK(BM_Stdev)->Arg(5)->Arg(30)->Arg(60);
BENCHMARK(BM_Stochastics)->Arg(0);
BENCHMARK(BM_OverboughtSold)->Arg(14);
BENCHMARK(BM_FibonacciEnvelopes)->Arg(0);
BENCHMARK(BM_FibonacciAnalysis)->Arg(0);
BENCHMARK(BM_SeriesStdev)->Arg(0);
BENCHMARK(BM_StdevSkippingGap)->Arg(PredictorStdevPeriod);
BENCHMARK(BM_Predictor)->Arg(PredictorShortTerm)->Arg(PredictorMediumTerm)->Arg(PredictorLongTerm);
BENCHMARK(BM_Regression)->Arg(0);
BENCHMARK(BM_HistoricalCorrelation)->Arg(DefaultCorrelationWindow);
BENCHMARK(BM_PriceRatio)->Arg(0);
BENCHMARK(BM_Spread)->Arg(0);
BENCHMARK(BM_RelativeStrength)->Arg(0);
BENCHMARK(BM_RelativePerformance)->Arg(0);
BENCHMARK(BM_Trend)->Arg(DefaultTrendOrder);
BENCHMARK(BM_SwingChart)->Arg(0);
BENCHMARK(BM_OBV)->Arg(0);
BENCHMARK(BM_TicVolume)->Arg(0);
BENCHMARK(BM_MakeAllPrices)->Arg(0);

} // namespace
} // namespace velorin
