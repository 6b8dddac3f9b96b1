// The engines: one contract for all of them (nothing written from row n on
// nor read past row n - 1, missing results for a period above n or a wholly
// missing source, no state kept between calls); values against independent
// formulas; short series worked out by hand.

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "analysis/engines.h"
#include "base/series.h"

namespace velorin {
namespace {

using Series = std::vector<double>;
constexpr double M = MISSING_VALUE;

const auto SameBits = [](double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; };

// Portable generator (the standard distributions differ between libraries).
class Lcg {
  public:
    explicit Lcg(std::uint64_t seed) : state_(seed) {}
    double Uniform() { // [0, 1)
        state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<double>(state_ >> 11) * (1.0 / 9007199254740992.0);
    }
    double Range(double lo, double hi) { return lo + (hi - lo) * Uniform(); }
    int Below(int n) { return static_cast<int>(Uniform() * n); }

  private:
    std::uint64_t state_;
};

Series RandomSeries(Lcg& g, int n, double lo = 10.0, double hi = 200.0) {
    Series s(n);
    for (double& v : s)
        v = g.Range(lo, hi);
    return s;
}

// A daily close: a random walk with a slow cycle, kept positive and rounded to
// cents, so that flat days and equal closes occur.
Series PriceHistory(int n = MaxRows, std::uint64_t seed = 7) {
    Lcg g(seed);
    Series close(n);
    double price = 100.0;
    for (int i = 0; i < n; ++i) {
        price += g.Range(-1.5, 1.55) + 0.4 * std::sin(i / 40.0);
        if (price < 5.0) price = 5.0 + g.Uniform();
        close[i] = std::round(price * 100.0) / 100.0;
    }
    return close;
}

// A copy of a series whose row n - 1 is the last readable double before an
// inaccessible page: any read past it faults.
class FencedSeries {
  public:
    explicit FencedSeries(const Series& values) {
        const std::size_t page = sysconf(_SC_PAGESIZE), bytes = values.size() * sizeof(double);
        const std::size_t dataBytes = (bytes + page - 1) / page * page;
        base_ = static_cast<char*>(mmap(nullptr, total_ = dataBytes + page, PROT_READ | PROT_WRITE,
                                        MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        mprotect(base_ + dataBytes, page, PROT_NONE);
        data_ = reinterpret_cast<double*>(base_ + dataBytes - bytes);
        std::copy(values.begin(), values.end(), data_);
    }
    ~FencedSeries() { munmap(base_, total_); }
    FencedSeries(const FencedSeries&) = delete;
    FencedSeries& operator=(const FencedSeries&) = delete;
    const double* get() const { return data_; }

  private:
    char* base_;
    std::size_t total_;
    double* data_;
};

using P = const double*;
using O = double* const*;
enum Flags {
    Periodic = 1, // a period above n leaves every output missing
    GapsSkip = 2, // a wholly missing x leaves every output missing
    KeepsRow0 = 4 // output row 0 is left as it stands
};
struct Engine {
    std::string name;
    int outputs, flags;
    std::function<void(P x, P y, O out, int n, int p)> run;
};

std::vector<Engine> AllEngines() {
    auto one = [](void (*f)(P, double*, std::int32_t, std::int32_t)) {
        return [f](P x, P, O o, int n, int p) { f(x, o[0], n, p); };
    };
    auto pair = [](void (*f)(P, P, double*, std::int32_t)) {
        return [f](P x, P y, O o, int n, int) { f(x, y, o[0], n); };
    };
    return {
        {"RMA", 1, Periodic | GapsSkip, one(ComputeRMA)},
        {"ESMA", 1, 0, [](P x, P, O o, int n, int) { ComputeESMA(x, o[0], n, 0.75); }},
        {"WMA", 1, Periodic, one(ComputeWMA)},
        {"MACD", 2, 0, [](P x, P, O o, int n, int) { ComputeMACD(x, o[0], o[1], n, .8, .2, .5); }},
        {"RSI", 1, Periodic, one(ComputeRSI)},
        {"PercRange", 1, Periodic, one(ComputePercRange)},
        {"Oscillator", 1, Periodic, one(ComputeOscillator)},
        {"Momentum", 1, Periodic, one(ComputeMomentum)},
        {"Stdev", 1, Periodic, one(ComputeStdev)},
        {"Stochastics", 4, Periodic,
         [](P x, P, O o, int n, int p) {
             ComputeStochastics(x, o[0], o[1], o[2], o[3], n, p, 5, p, 21);
         }},
        {"OverboughtSold", 1, Periodic | GapsSkip, one(ComputeOverboughtSold)},
        {"StdevSkippingGap", 1, Periodic | GapsSkip, one(ComputeStdevSkippingGap)},
        {"Predictor", 3, Periodic,
         [](P x, P, O o, int n, int p) { ComputePredictor(x, o[0], o[1], o[2], n, p); }},
        {"Fibonacci", 2, GapsSkip,
         [](P x, P, O o, int n, int) { // every line is the close itself
             double sd = 0.0;
             ComputeFibonacciEnvelopes(x, x, x, x, x, x, x, x, o[0], o[1], &sd, n);
         }},
        {"HistoricalCorrelation", 1, Periodic,
         [](P x, P y, O o, int n, int p) { ComputeHistoricalCorrelation(x, y, o[0], n, p); }},
        {"PriceRatio", 1, 0, pair(ComputePriceRatio)},
        {"Spread", 1, 0, pair(ComputeSpread)},
        {"RelativeStrength", 1, 0, pair(ComputeRelativeStrength)},
        {"RelativePerformance", 1, 0, pair(ComputeRelativePerformance)},
        {"Trend", 1, 0, [](P x, P, O o, int n, int) { ComputeTrend(x, o[0], n, 11); }},
        {"SwingChart", 1, 0, [](P x, P, O o, int n, int) { ComputeSwingChart(x, o[0], n); }},
        {"OBV", 1, 0, pair(ComputeOBV)},
        {"TicVolume", 1, KeepsRow0, pair(ComputeTicVolume)},
    };
}

constexpr double Canary = 12345.678;

struct Outputs {
    explicit Outputs(double fill) : series(4, Series(MaxRows + 8, fill)) {}
    std::vector<Series> series;
    double* ptr[4] = {series[0].data(), series[1].data(), series[2].data(), series[3].data()};
};

const Engine& Named(const std::string& name) {
    static const std::vector<Engine> all = AllEngines();
    return *std::find_if(all.begin(), all.end(), [&](const Engine& e) { return e.name == name; });
}

class EngineContract : public ::testing::TestWithParam<Engine> {};

// Each call runs between two others: the same call into an output holding
// something else, and another series with another period.
TEST_P(EngineContract, WritesBelowNOnlyReadsNothingPastItAndKeepsNoState) {
    const Engine& e = GetParam();
    const auto close = PriceHistory(), volume = PriceHistory(MaxRows, 11),
               other = PriceHistory(MaxRows, 99);
    for (int n : {0, 1, 2, 3, 25, 144, 145, 300, MaxRows}) {
        const FencedSeries x({close.begin(), close.begin() + n});
        const FencedSeries y({volume.begin(), volume.begin() + n});
        for (int p : {1, 2, 5, 14, n, n + 1, 1000}) {
            Outputs first(Canary), between(3.0), again(-7.5);
            e.run(x.get(), y.get(), first.ptr, n, p);
            e.run(other.data(), volume.data(), between.ptr, MaxRows, 30);
            e.run(x.get(), y.get(), again.ptr, n, p);
            for (int k = 0; k < e.outputs; ++k) {
                for (int i = n; i < MaxRows + 8; ++i)
                    ASSERT_TRUE(SameBits(first.series[k][i], Canary) &&
                                SameBits(again.series[k][i], -7.5))
                        << e.name << " n=" << n << " row " << i;
                for (int i = e.flags & KeepsRow0 ? 1 : 0; i < n; ++i)
                    ASSERT_TRUE(SameBits(first.series[k][i], again.series[k][i]))
                        << e.name << " n=" << n << " p=" << p << " row " << i;
                for (int i = 0; e.flags & Periodic && p > n && i < n; ++i)
                    ASSERT_EQ(first.series[k][i], MISSING_VALUE) << e.name << " p=" << p;
            }
        }
    }
    // Engines that skip gaps give a wholly missing result for a wholly missing
    // source; the others take -999.0 as a number.
    if (!(e.flags & GapsSkip)) return;
    const std::vector<double> gap(300, MISSING_VALUE);
    Outputs out(Canary);
    e.run(gap.data(), volume.data(), out.ptr, 300, 14);
    for (int k = 0; k < e.outputs; ++k)
        for (int i = 0; i < 300; ++i)
            ASSERT_EQ(out.series[k][i], MISSING_VALUE) << e.name;
}

INSTANTIATE_TEST_SUITE_P(AllEngines, EngineContract, ::testing::ValuesIn(AllEngines()),
                         [](const auto& info) { return info.param.name; });

long double WindowSum(const Series& s, int i, int p) {
    long double sum = 0;
    for (int j = i - p + 1; j <= i; ++j)
        sum += s[j];
    return sum;
}

// Row i of a windowed engine with period p, computed afresh from the window.
struct Reference {
    const char* name;
    void (*engine)(const double*, double*, std::int32_t, std::int32_t);
    double tolerance;
    double (*at)(const Series& s, int i, int p);
};

const Reference References[] = {
    {"RMA", ComputeRMA, 1e-9,
     [](const Series& s, int i, int p) { return static_cast<double>(WindowSum(s, i, p) / p); }},
    // The change into row 0 counts as zero; a window without a fall gives 100.
    {"RSI", ComputeRSI, 1e-7,
     [](const Series& s, int i, int p) {
         double up = 0, down = 0;
         for (int j = std::max(i - p + 1, 1); j <= i; ++j)
             (s[j] > s[j - 1] ? up : down) += std::fabs(s[j] - s[j - 1]);
         return down == 0 ? 100.0 : 100 - 100 / (up / down + 1);
     }},
};

// The first four trials run over the price history, with periods of MaxRows
// down to 3; the others over random series.
TEST(EngineValues, WindowedEnginesAgreeWithFreshWindows) {
    Lcg g(1);
    for (const Reference& r : References) {
        for (int trial = 0; trial < 300; ++trial) {
            const int n = trial < 4 ? MaxRows : 1 + g.Below(400);
            const int p = trial < 4 ? MaxRows >> (3 * trial) : 1 + g.Below(n);
            const Series s = trial < 4 ? PriceHistory() : RandomSeries(g, n);
            Series out(n);
            r.engine(s.data(), out.data(), n, p);
            for (int i = 0; i < n; ++i) {
                const double want = i < p - 1 ? M : r.at(s, i, p);
                ASSERT_TRUE(SameBits(out[i], want) || std::fabs(out[i] - want) <= r.tolerance)
                    << r.name << " n=" << n << " p=" << p << " row " << i << ": " << out[i];
            }
        }
    }
}

// Only the last w rows count; a window above n is clamped to n.
TEST(EngineValues, RegressionIsDirectLeastSquaresOverTheLastRows) {
    Lcg g(4);
    for (int trial = 0; trial < 1000; ++trial) {
        const int n = 3 + g.Below(300), w = 2 + g.Below(n + 20), used = std::min(w, n);
        const Series b = RandomSeries(g, n);
        Series a(n);
        const double slope = g.Range(-3, 3);
        for (int i = 0; i < n; ++i)
            a[i] = slope * b[i] + g.Range(-40, 40);
        const long double mb = WindowSum(b, n - 1, used) / used;
        const long double ma = WindowSum(a, n - 1, used) / used;
        long double sbb = 0, sab = 0, saa = 0;
        for (int i = n - used; i < n; ++i) {
            sbb += (b[i] - mb) * (b[i] - mb);
            sab += (b[i] - mb) * (a[i] - ma);
            saa += (a[i] - ma) * (a[i] - ma);
        }
        const double beta = static_cast<double>(sab / sbb);
        double r[4]; // r squared, adjusted beta, beta, alpha
        ComputeRegression(b.data(), a.data(), r, n, w);
        ASSERT_NEAR(r[2], beta, 1e-8 * (1 + std::fabs(beta)));
        ASSERT_NEAR(r[3], static_cast<double>(ma - beta * mb), 1e-6);
        ASSERT_NEAR(r[0], static_cast<double>(sab * sab / (sbb * saa)), 1e-9);
    }
}

// Fits whose answer is known without solving anything: one coefficient gives
// the mean, and a polynomial of the fitted degree comes back as it is. At the
// default order (trial 0) most digits are lost, yet a constant stays close.
TEST(EngineValues, TrendIsTheLeastSquaresPolynomial) {
    Lcg g(5);
    for (int trial = 0; trial < 300; ++trial) {
        const int m = trial ? 1 + trial % 4 : DefaultTrendOrder;
        const int n = trial ? m + g.Below(300) : MaxRows;
        Series y = trial ? RandomSeries(g, n) : Series(n, 5.0);
        Series want(n, static_cast<double>(WindowSum(y, n - 1, n) / n));
        for (int i = 0; i < n && m > 1 && trial; ++i) {
            const double t = i;
            want[i] = y[i] =
                50 + 0.3 * t - (m > 2 ? 1e-3 * t * t : 0) + (m > 3 ? 2e-6 * t * t * t : 0);
        }
        Series out(n);
        ComputeTrend(y.data(), out.data(), n, m);
        for (int i = 0; i < n; ++i)
            ASSERT_NEAR(out[i], want[i], trial ? 1e-6 : 0.05)
                << "n=" << n << " m=" << m << " " << i;
    }
}

// x is the close, or b of two series; y the volume, or a.
TEST(EngineValues, ShortSeriesWorkedByHand) {
    const double Any = std::nan(""); // row not checked
    const Series flat(6, 7.0), b{2, 0, 4, 5}, a{6, 3, M, 10};
    const Series volumes1{1e3, 101, 100.5, 100, 150, 200}, volumes2{0, 50, 300, 300, 100, 300};
    const struct {
        const char* engine;
        int p;
        Series x, want, y = {};
        double fill = 0.0; // what the output held before
    } cases[] = {
        // The weight (0.75) is on the old value and the curve lags one row.
        {"ESMA", 0, {3, 5, 8, 2}, {M, 3, 3.5, 4.625}},
        // 0 at the top; a flat window copies the gap clamped to 0; the high
        // starts at 0.0, so a negative window measures from zero.
        {"WMA", 3, {1, 2, 3, 6}, {M, M, 14.0 / 6, 26.0 / 6}}, // weights 1, 2, 3, oldest first
        {"PercRange", 3, {1, 5, 3, 5, 1}, {Any, Any, 50, 0, 100}},
        {"PercRange", 3, flat, {Any, Any, 0, 0, 0, 0}},
        {"PercRange", 3, {-5, -3, -4}, {Any, Any, 80}},
        // The first window looks at one step less: steps 1, 1 then 1, 1, 8 over 2 steps.
        {"Oscillator", 3, {0, 1, 2, 10, 11}, {Any, M, 2.0 / 3, 9.0 / 24, 9.0 / 24}},
        // The average itself, then 6 - (2*2 - 1 + 6)/2 and 10 - (2*1.5 - 3 + 10)/2.
        {"OverboughtSold", 2, {M, 1, 3, 6, 10}, {Any, M, 2, 1.5, 5}},
        {"OBV", 0, {10, 11, 11, 9}, {500, 700, 700, 650}, {500, 200, 300, 50}},
        // Volumes of 100 or less neither count nor move the previous close; row 0 is kept.
        {"TicVolume", 0, Series(6, 20), {77, .01, .02, M, .03, .04}, volumes1, 77},
        {"TicVolume", 0, {10, 12, 11, 9, 9.5, 9.5}, {77, M, .01, 0, M, .01}, volumes2, 77},
        // A zero divisor gives MISSING_VALUE (the spread tests it too); gaps are numbers.
        {"PriceRatio", 0, b, {3, M, -999.0 / 4, Any}, a},
        {"Spread", 0, b, {4, M, Any, Any}, a},
        {"RelativePerformance", 0, b, {1, M, Any, 2.0 / 6.0 * 10.0 / 5.0}, a},
        {"RelativePerformance", 0, b, {M, M, M, M}, {0, 3, 4, 5}},
        // Turning points at a 2 percent reversal of the last value, joined by
        // lines; a first turn equal to row 0 gets no line.
        {"SwingChart", 0, {5, 6, 4, 7, 0}, {5, 6, 4, 7, M}},
        {"SwingChart", 0, {100, 100.5, 100, 90, 95, 99}, {100, M, 100, 90, M, M}},
        {"SwingChart", 0, {100, 110, 110, 90, 100}, {100, 105, 110, 90, M}},
    };
    for (const auto& c : cases) {
        Series out(c.x.size(), c.fill);
        double* o = out.data();
        Named(c.engine).run(c.x.data(), c.y.empty() ? c.x.data() : c.y.data(), &o,
                            static_cast<int>(c.x.size()), c.p);
        for (std::size_t i = 0; i < out.size(); ++i) // a zero must match in sign too
            EXPECT_TRUE(std::isnan(c.want[i]) ||
                        (c.want[i] ? out[i] == c.want[i] : SameBits(out[i], 0.0)))
                << c.engine << " " << c.x[0] << "... row " << i << ": " << out[i];
    }
}

// The leading gap is skipped; a gap inside is taken as -999.0.
TEST(EngineValues, RmaSkipsTheLeadingGapButNotAnInnerOne) {
    Series s = PriceHistory(60), out(60);
    std::fill(s.begin(), s.begin() + 10, M);
    s[40] = M;
    ComputeRMA(s.data(), out.data(), 60, 5);
    EXPECT_TRUE(out[13] == M && out[40] == M && out[45] == M);
    EXPECT_DOUBLE_EQ(out[14], (s[10] + s[11] + s[12] + s[13] + s[14]) / 5);
    EXPECT_TRUE(SameBits(out[41], (5 * -999.0 - s[36] + s[41]) / 5));
}

TEST(EngineValues, FibonacciCrossingWalkTakesFarthestAndStrictTies) {
    const Series far(4, 100.0), close(4, 1.0), l0(4, 5.0);
    const struct {
        Series l1, l2;
        int row;
        double upper;
    } walks[] = {
        {{6, 4, 4, 4}, {7, 2, 2, 2}, 1, 5.0}, // both cross line 0 in row 1 ...
        {{6, 4, 4, 4}, {7, 2, 2, 2}, 2, 2.0}, // ... line 2 ends farther and is taken
        {{6, 3, 1, 1}, {6, 3, 2, 2}, 2, 1.0}, // equal distances: the lower line wins
        {{6, 5, 1, 1}, {7, 9, 9, 9}, 2, 5.0}, // touching is a crossing at distance 0
    };
    for (const auto& w : walks) {
        Series up(4), lo(4);
        double sd;
        ComputeFibonacciEnvelopes(close.data(), l0.data(), w.l1.data(), w.l2.data(), far.data(),
                                  far.data(), far.data(), far.data(), up.data(), lo.data(), &sd, 4);
        EXPECT_EQ(up[w.row], w.upper) << w.l1[1] << " " << w.l2[1];
    }
}

} // namespace
} // namespace velorin
