// One contract for every engine: rows from n on are never written, nothing is
// read past row n - 1, a period above n gives a wholly missing result, a
// wholly missing source gives a wholly missing result where the engine skips
// gaps, and no engine carries anything from one call to the next.

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "analysis/engines.h"
#include "test_support.h"

namespace velorin {
namespace {

using test::SameBits;

// A copy of a series whose row n - 1 is the last readable double before an
// inaccessible page: any read past it faults.
class FencedSeries {
  public:
    explicit FencedSeries(const std::vector<double>& values) {
        const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        const std::size_t bytes = values.size() * sizeof(double);
        dataBytes_ = (bytes + page - 1) / page * page;
        total_ = dataBytes_ + page;
        base_ = static_cast<char*>(
            mmap(nullptr, total_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        mprotect(base_ + dataBytes_, page, PROT_NONE);
        data_ = reinterpret_cast<double*>(base_ + dataBytes_ - bytes);
        std::copy(values.begin(), values.end(), data_);
    }
    ~FencedSeries() { munmap(base_, total_); }
    FencedSeries(const FencedSeries&) = delete;
    FencedSeries& operator=(const FencedSeries&) = delete;
    const double* get() const { return data_; }

  private:
    char* base_;
    std::size_t dataBytes_;
    std::size_t total_;
    double* data_;
};

using Runner =
    std::function<void(const double* x, const double* y, double* const* out, int n, int p)>;
struct Engine {
    std::string name;
    int outputs;
    bool periodic;            // a period above n leaves every output missing
    bool missingGivesMissing; // a wholly missing x leaves every output missing
    bool keepsRow0;           // output row 0 is left as it stands
    Runner run;
};

std::vector<Engine> AllEngines() {
    using P = const double*;
    using O = double* const*;
    auto one = [](void (*f)(P, double*, std::int32_t, std::int32_t)) {
        return [f](P x, P, O o, int n, int p) { f(x, o[0], n, p); };
    };
    auto pair = [](void (*f)(P, P, double*, std::int32_t)) {
        return [f](P x, P y, O o, int n, int) { f(y, x, o[0], n); };
    };
    return {
        {"RMA", 1, true, true, false, one(ComputeRMA)},
        {"ESMA", 1, false, false, false,
         [](P x, P, O o, int n, int) { ComputeESMA(x, o[0], n, 0.5); }},
        {"WMA", 1, true, false, false, one(ComputeWMA)},
        {"MACD", 2, false, false, false,
         [](P x, P, O o, int n, int) { ComputeMACD(x, o[0], o[1], n, 0.8, 0.2, 0.5); }},
        {"RSI", 1, true, false, false, one(ComputeRSI)},
        {"PercRange", 1, true, false, false, one(ComputePercRange)},
        {"Oscillator", 1, true, false, false, one(ComputeOscillator)},
        {"Momentum", 1, true, false, false, one(ComputeMomentum)},
        {"Stdev", 1, true, false, false, one(ComputeStdev)},
        {"Stochastics", 4, true, false, false,
         [](P x, P, O o, int n, int p) {
             ComputeStochastics(x, o[0], o[1], o[2], o[3], n, p, 5, p, 21);
         }},
        {"OverboughtSold", 1, true, true, false, one(ComputeOverboughtSold)},
        {"StdevSkippingGap", 1, true, true, false, one(ComputeStdevSkippingGap)},
        {"Predictor", 3, true, false, false,
         [](P x, P, O o, int n, int p) { ComputePredictor(x, o[0], o[1], o[2], n, p); }},
        {"Fibonacci", 2, false, true, false,
         [](P x, P, O o, int n, int) { // every line is the close itself, fenced as well
             double sd = 0.0;
             ComputeFibonacciEnvelopes(x, x, x, x, x, x, x, x, o[0], o[1], &sd, n);
         }},
        {"HistoricalCorrelation", 1, true, false, false,
         [](P x, P y, O o, int n, int p) { ComputeHistoricalCorrelation(y, x, o[0], n, p); }},
        {"PriceRatio", 1, false, false, false, pair(ComputePriceRatio)},
        {"Spread", 1, false, false, false, pair(ComputeSpread)},
        {"RelativeStrength", 1, false, false, false, pair(ComputeRelativeStrength)},
        {"RelativePerformance", 1, false, false, false, pair(ComputeRelativePerformance)},
        {"Trend", 1, false, false, false,
         [](P x, P, O o, int n, int) { ComputeTrend(x, o[0], n, 11); }},
        {"SwingChart", 1, false, false, false,
         [](P x, P, O o, int n, int) { ComputeSwingChart(x, o[0], n); }},
        {"OBV", 1, false, false, false, pair(ComputeOBV)},
        {"TicVolume", 1, false, false, true, pair(ComputeTicVolume)},
    };
}

constexpr double Canary = 12345.678;

struct Outputs {
    explicit Outputs(double fill) {
        for (int k = 0; k < 4; ++k) {
            series[k].assign(MaxRows + 8, fill);
            ptr[k] = series[k].data();
        }
    }
    std::vector<double> series[4];
    double* ptr[4];
};

class EngineContract : public ::testing::TestWithParam<Engine> {};

TEST_P(EngineContract, WritesRowsBelowNOnlyAndReadsNothingPastIt) {
    const Engine& e = GetParam();
    const auto close = test::PriceHistory();
    const auto volume = test::VolumeHistory();
    for (int n : {0, 1, 2, 3, 25, 144, 145, 300, MaxRows}) {
        const FencedSeries x({close.begin(), close.begin() + n});
        const FencedSeries y({volume.begin(), volume.begin() + n});
        for (int p : {1, 2, 5, 14, n, n + 1, 1000}) {
            Outputs out(Canary);
            e.run(x.get(), y.get(), out.ptr, n, p);
            for (int k = 0; k < e.outputs; ++k) {
                for (int i = n; i < MaxRows + 8; ++i)
                    ASSERT_TRUE(SameBits(out.series[k][i], Canary)) << e.name << " n=" << n;
                if (!e.periodic || p <= n) continue;
                for (int i = 0; i < n; ++i)
                    ASSERT_EQ(out.series[k][i], MISSING_VALUE) << e.name << " p=" << p;
            }
        }
    }
    // Engines that skip gaps give a wholly missing result for a wholly missing
    // source; the others take -999.0 as a number.
    if (!e.missingGivesMissing) return;
    const std::vector<double> gap(300, MISSING_VALUE);
    Outputs out(Canary);
    e.run(gap.data(), volume.data(), out.ptr, 300, 14);
    for (int k = 0; k < e.outputs; ++k)
        for (int i = 0; i < 300; ++i)
            ASSERT_EQ(out.series[k][i], MISSING_VALUE) << e.name;
}

TEST_P(EngineContract, KeepsNoStateAndIgnoresWhatTheOutputHeld) {
    const Engine& e = GetParam();
    const auto close = test::PriceHistory();
    const auto volume = test::VolumeHistory();
    const auto other = test::PriceHistory(MaxRows, 99);
    Outputs first(0.0), between(3.0), again(-7.5);
    e.run(close.data(), volume.data(), first.ptr, MaxRows, 14);
    e.run(other.data(), volume.data(), between.ptr, MaxRows, 30);
    e.run(close.data(), volume.data(), again.ptr, MaxRows, 14);
    for (int k = 0; k < e.outputs; ++k)
        for (int i = e.keepsRow0 ? 1 : 0; i < MaxRows; ++i)
            ASSERT_TRUE(SameBits(first.series[k][i], again.series[k][i])) << e.name << " row " << i;
}

INSTANTIATE_TEST_SUITE_P(AllEngines, EngineContract, ::testing::ValuesIn(AllEngines()),
                         [](const auto& info) { return info.param.name; });

} // namespace
} // namespace velorin
