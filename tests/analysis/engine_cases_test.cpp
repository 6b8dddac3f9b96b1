// Engines on short series worked out by hand, and the rules about gaps,
// start-up rows and chained stages.
#include <functional>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "analysis/engines.h"
#include "test_support.h"

namespace velorin {
namespace {

using test::SameBits;
using test::Series;

constexpr double M = MISSING_VALUE;
constexpr double Any = std::numeric_limits<double>::quiet_NaN(); // row not checked

using Runner = std::function<void(const double* x, const double* y, double* out, int n)>;
Runner Periodic(void (*f)(const double*, double*, std::int32_t, std::int32_t), int p) {
    return [=](const double* x, const double*, double* o, int n) { f(x, o, n, p); };
}
Runner Paired(void (*f)(const double*, const double*, double*, std::int32_t)) {
    return [=](const double* x, const double* y, double* o, int n) { f(x, y, o, n); };
}
Runner Esma(double a) {
    return [=](const double* x, const double*, double* o, int n) { ComputeESMA(x, o, n, a); };
}

void Swing(const double* x, const double*, double* o, int n) {
    ComputeSwingChart(x, o, n);
}

// A zero must match in sign too; other values within a few units in the last place.
void ExpectRows(const Series& got, const Series& want, const std::string& what) {
    ASSERT_EQ(got.size(), want.size()) << what;
    for (std::size_t i = 0; i < got.size(); ++i) {
        if (std::isnan(want[i])) continue;
        if (want[i] == 0.0)
            EXPECT_TRUE(SameBits(got[i], want[i])) << what << " row " << i << ": " << got[i];
        else
            EXPECT_DOUBLE_EQ(got[i], want[i]) << what << " row " << i;
    }
}

TEST(EngineCases, ShortSeriesWorkedByHand) {
    const Series up{1, 2, 3, 4, 5, 6}, down{6, 5, 4, 3, 2, 1}, flat(6, 7.0), b{2, 0, 4, 5},
        a{6, 3, M, 10}, moves{10, 12, 11, 9, 9.5, 9.5}, busy{1e3, 101, 100.5, 100, 150, 200};
    const Runner wma = Periodic(ComputeWMA, 2), rsi = Periodic(ComputeRSI, 3),
                 range = Periodic(ComputePercRange, 3), osc = Periodic(ComputeOscillator, 3),
                 tic = Paired(ComputeTicVolume), perf = Paired(ComputeRelativePerformance),
                 obs = Periodic(ComputeOverboughtSold, 2), swing = Swing;
    const struct {
        const char* what;
        Runner run;
        Series x, want, y = {};
        double fill = 0.0; // what the output held before
    } cases[] = {
        {"WMA weights 1 and 2", wma, {1, 2, 3}, {M, 5.0 / 3, 8.0 / 3}},
        {"WMA weighs a leading gap", wma, {M, 10, 10}, {M, (1 * -999.0 + 2 * 10.0) / 3, Any}},
        // The weight is on the old value and the curve lags one row.
        {"ESMA all old", Esma(1.0), {3, 5, 8, 2}, {M, 3, 3, 3}},
        {"ESMA all new", Esma(0.0), {3, 5, 8, 2}, {M, 3, 5, 8}},
        {"ESMA halves", Esma(0.5), {3, 5, 8, 2}, {M, 3, 4, 6}},
        {"Stdev sample", Periodic(ComputeStdev, 2), {1, 3, 3}, {M, std::sqrt(2.0), 0}},
        {"RSI rising", rsi, up, {M, M, 100, 100, 100, 100}},
        {"RSI flat", rsi, flat, {M, M, 100, 100, 100, 100}},
        {"RSI falling", rsi, down, {M, M, 0, 0, 0, 0}},
        // 0 at the top; a flat window copies the gap clamped to 0; the high
        // starts at 0.0, so a negative window measures from zero.
        {"PercRange", range, {1, 5, 3, 5, 1}, {Any, Any, 50, 0, 100}},
        {"PercRange flat", range, flat, {Any, Any, 0, 0, 0, 0}},
        {"PercRange negative", range, {-5, -3, -4}, {Any, Any, 80}},
        // The first window looks at one step less: steps 1, 1 then 1, 1, 8 over 2 steps.
        {"Oscillator", osc, {0, 1, 2, 10, 11}, {Any, M, 2.0 / 3, 9.0 / 24, 9.0 / 24}},
        {"Oscillator flat", osc, flat, {Any, Any, 0, 0, 0, 0}},
        // The average itself, then 6 - (2*2 - 1 + 6)/2 and 10 - (2*1.5 - 3 + 10)/2.
        {"OverboughtSold", obs, {M, 1, 3, 6, 10}, {Any, M, 2, 1.5, 5}},
        {"OBV", Paired(ComputeOBV), {10, 11, 11, 9}, {500, 700, 700, 650}, {500, 200, 300, 50}},
        // Volumes of 100 or less neither count nor move the previous close; row 0 is kept.
        {"Tic flat", tic, Series(6, 20), {77, .01, .02, M, .03, .04}, busy, 77},
        {"Tic moves", tic, moves, {77, M, 0.01, 0.0, M, 0.01}, {0, 50, 300, 300, 100, 300}, 77},
        {"Tic quiet", tic, moves, {77, M, M, M, M, M}, Series(6, 100.0), 77},
        // A zero divisor gives MISSING_VALUE (the spread tests it too); gaps are numbers.
        {"PriceRatio", Paired(ComputePriceRatio), b, {3, M, -999.0 / 4, Any}, a},
        {"Spread", Paired(ComputeSpread), b, {4, M, Any, Any}, a},
        {"RelativeStrength", Paired(ComputeRelativeStrength), b, {Any, Any, Any, 200}, a},
        {"RelativePerformance", perf, b, {1, M, Any, 2.0 / 6.0 * 10.0 / 5.0}, a},
        {"RelativePerformance from 0", perf, b, {M, M, M, M}, {0, 3, 4, 5}},
        // Turning points at a 2 percent reversal of the last value, joined by lines.
        {"Swing into the end", swing, {1, 2, 3, 4, 5}, {1, M, M, M, M}},
        {"Swing one top",
         swing,
         {100, 102, 104, 106, 108, 110, 108, 106, 104, 102, 100, 98},
         {100, 102, 104, 106, 108, 110, M, M, M, M, M, M}},
        {"Swing last price 0", swing, {5, 6, 4, 7, 0}, {5, 6, 4, 7, M}},
        // A first turn equal to row 0 gets no line; the small move before it is inside.
        {"Swing equal first turn", swing, {100, 100.5, 100, 90, 95, 99}, {100, M, 100, 90, M, M}},
        {"Swing latest equal high", swing, {100, 110, 110, 90, 100}, {100, 105, 110, 90, M}},
    };
    for (const auto& c : cases) {
        Series out(c.x.size(), c.fill);
        c.run(c.x.data(), c.y.empty() ? c.x.data() : c.y.data(), out.data(),
              static_cast<int>(c.x.size()));
        ExpectRows(out, c.want, c.what);
    }
}

TEST(EngineCases, RmaSkipsTheLeadingGapButNotAnInnerOne) {
    Series s = test::PriceHistory(60);
    for (int i = 0; i < 10; ++i)
        s[i] = M;
    s[40] = M;
    Series out(60);
    ComputeRMA(s.data(), out.data(), 60, 5);
    for (int i = 0; i < 14; ++i)
        EXPECT_EQ(out[i], M);
    EXPECT_DOUBLE_EQ(out[14], (s[10] + s[11] + s[12] + s[13] + s[14]) / 5);
    EXPECT_EQ(out[40], M);
    EXPECT_EQ(out[45], M);
    EXPECT_TRUE(SameBits(out[41], (5 * -999.0 - s[36] + s[41]) / 5));
    // The drift from -999.0 stays in the curve far after the gap.
    EXPECT_GT(std::fabs(out[58] - (s[54] + s[55] + s[56] + s[57] + s[58]) / 5), 100.0);
}

TEST(EngineCases, MacdTakesFractionsAndStartsAtZero) {
    const Series flat(40, 12.5);
    Series line(40), signal(40);
    ComputeMACD(flat.data(), line.data(), signal.data(), 40, 0.8, 0.2, 0.5);
    for (int i = 0; i < 40; ++i) {
        EXPECT_EQ(line[i], 0.0);
        EXPECT_EQ(signal[i], i ? 0.0 : M);
    }
    // After a step the quick curve (new value weighed 0.8) leads the slow one.
    const Series step{0, 0, 0, 10, 10, 10};
    ComputeMACD(step.data(), line.data(), signal.data(), 6, 0.8, 0.2, 0.5);
    EXPECT_DOUBLE_EQ(line[4], 8.0 - 2.0);
    EXPECT_DOUBLE_EQ(signal[5], 0.5 * line[4] + 0.5 * signal[4]);
}

TEST(EngineCases, StochasticsStagesStartOneRowEarlierAndAverage) {
    const Series s = test::PriceHistory(300);
    Series k(300), sk(300), s1(300), s2(300);
    ComputeStochastics(s.data(), k.data(), sk.data(), s1.data(), s2.data(), 300, 14, 5, 14, 21);
    const Series* curves[] = {&k, &sk, &s1, &s2};
    const int starts[] = {13, 17, 30, 50};
    for (int c = 0; c < 4; ++c) {
        EXPECT_EQ((*curves[c])[starts[c] - 1], M);
        EXPECT_NE((*curves[c])[starts[c]], M);
    }
    // The signals average the stage before (the average is checked on its own).
    Series avg1(300), avg2(300);
    ComputeRMA(sk.data(), avg1.data(), 300, 14);
    ComputeRMA(s1.data(), avg2.data(), 300, 21);
    for (int i = 30; i < 300; ++i)
        ASSERT_NEAR(s1[i], avg1[i], 1e-9) << i;
    for (int i = 50; i < 300; ++i)
        ASSERT_NEAR(s2[i], avg2[i], 1e-9) << i;
    // With the signal period unlike k the first signal row comes from the loop
    // that starts at k: row 2k+q-2 = 6 is written from missing rows.
    ComputeStochastics(s.data(), k.data(), sk.data(), s1.data(), s2.data(), 40, 3, 2, 5, 2);
    EXPECT_TRUE(SameBits(s1[6], (5 * M - M + sk[6]) / 5));
    EXPECT_EQ(s1[5], M);
    // A flat first window gives 0.0 (the clamped copy of MISSING_VALUE).
    const Series flat(20, 4.0);
    ComputeStochastics(flat.data(), k.data(), sk.data(), s1.data(), s2.data(), 20, 5, 2, 5, 2);
    EXPECT_TRUE(SameBits(k[4], 0.0));
}

TEST(EngineCases, FibonacciEnvelopesAndLevels) {
    Series rise(300), flat(300, 42.0);
    for (int i = 0; i < 300; ++i)
        rise[i] = 10 + 0.5 * i;
    for (const Series* close : {&rise, &flat}) {
        Series lines[FibonacciLineCount], upper(300), lower(300);
        const double* p[FibonacciLineCount];
        for (int k = 0; k < FibonacciLineCount; ++k) {
            lines[k].resize(300);
            ComputeRMA(close->data(), lines[k].data(), 300, FibonacciPeriods[k]);
            p[k] = lines[k].data();
        }
        double sd = -1;
        ComputeFibonacciEnvelopes(close->data(), p[0], p[1], p[2], p[3], p[4], p[5], p[6],
                                  upper.data(), lower.data(), &sd, 300);
        const auto levels =
            ComputeFibonacciLevels(close->data(), p, upper.data(), lower.data(), sd, 300);
        if (close == &flat) { // no spread: every level at the price
            EXPECT_EQ(sd, 0.0);
            for (double v : levels)
                EXPECT_DOUBLE_EQ(v, 42.0);
            continue;
        }
        // A steady rise never crosses: the envelopes stay on the shortest and
        // longest lines from the first row the longest has.
        for (int i = 0; i < 300; ++i) {
            ASSERT_EQ(upper[i], i < 143 ? M : lines[0][i]) << i;
            ASSERT_EQ(lower[i], i < 143 ? M : lines[6][i]) << i;
        }
    }
    const Series three{1, 3, 3};
    double sd;
    ComputeSeriesStdev(three.data(), &sd, 3);
    EXPECT_DOUBLE_EQ(sd, std::sqrt(4.0 / 3));
}

TEST(EngineCases, FibonacciCrossingWalkTakesFarthestAndStrictTies) {
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

TEST(EngineCases, PredictorChainWithStartUpDip) {
    const Series close = test::PriceHistory(300);
    for (int t : {PredictorShortTerm, PredictorMediumTerm, PredictorLongTerm}) {
        Series a(300), b(300), c(300);
        ComputePredictor(close.data(), a.data(), b.data(), c.data(), 300, t);
        EXPECT_EQ(a[t - 2], M);
        EXPECT_EQ(b[t - 2], M);
        for (int i = t - 1; i <= t + 2; ++i)
            EXPECT_TRUE(SameBits(b[i], 0.0)) << i;
        EXPECT_GT(b[t + 3], 0.0);
        EXPECT_EQ(c[t + 31], M);
        double sum = 0;
        for (int i = t - 1; i <= t + 32; ++i)
            sum += b[i]; // four zeros and 30 values
        EXPECT_DOUBLE_EQ(c[t + 32], sum / 34);
    }
    const Series flat(120, 9.0);
    Series a(120), b(120), c(120);
    ComputePredictor(flat.data(), a.data(), b.data(), c.data(), 120, 20);
    for (int i = 19; i < 120; ++i) {
        EXPECT_EQ(a[i] + b[i], 0.0);
        EXPECT_EQ(c[i], i < 52 ? M : 0.0) << i;
    }
}

TEST(EngineCases, StdevSkippingGapIsStdevOfTheTail) {
    Series s = test::PriceHistory(200);
    for (int i = 0; i < 17; ++i)
        s[i] = M;
    Series skip(200), tail(200);
    ComputeStdevSkippingGap(s.data(), skip.data(), 200, 6);
    ComputeStdev(s.data() + 17, tail.data(), 183, 6);
    for (int i = 0; i < 200; ++i) {
        const double want = i < 17 ? M : i < 22 ? 0.0 : tail[i - 17];
        ASSERT_TRUE(SameBits(skip[i], want)) << i;
    }
    // Fewer rows after the gap than the period: only the zeroed rows remain.
    ComputeStdevSkippingGap(s.data(), skip.data(), 20, 6);
    for (int i = 17; i < 20; ++i)
        EXPECT_TRUE(SameBits(skip[i], 0.0));
}

} // namespace
} // namespace velorin
