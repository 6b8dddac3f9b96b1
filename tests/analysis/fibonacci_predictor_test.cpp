#include <gtest/gtest.h>

#include "analysis/fibonacci.h"
#include "analysis/moving_averages.h"
#include "analysis/oscillators.h"
#include "analysis/predictor.h"
#include "test_support.h"

namespace velorin {
namespace {

using test::SameBits;
using Series = std::vector<double>;

struct Fibonacci {
    explicit Fibonacci(const Series& close) : n(static_cast<int>(close.size())) {
        for (int k = 0; k < FibonacciLineCount; ++k) {
            lines[k].resize(n);
            ComputeRMA(close.data(), lines[k].data(), n, FibonacciPeriods[k]);
            ptr[k] = lines[k].data();
        }
        upper.resize(n);
        lower.resize(n);
        ComputeFibonacciEnvelopes(close.data(), ptr[0], ptr[1], ptr[2], ptr[3], ptr[4], ptr[5],
                                  ptr[6], upper.data(), lower.data(), &sd, n);
        levels = ComputeFibonacciLevels(close.data(), ptr, upper.data(), lower.data(), sd, n);
    }
    int n;
    Series lines[FibonacciLineCount], upper, lower;
    const double* ptr[FibonacciLineCount];
    double sd = -1;
    std::array<double, FibonacciLevelCount> levels;
};

TEST(Fibonacci, EnvelopesStartOnShortestAndLongestLine) {
    const Series close = test::PriceHistory(400);
    const Fibonacci f(close);
    for (int i = 0; i < 143; ++i)
        ASSERT_EQ(f.upper[i], MISSING_VALUE);
    EXPECT_EQ(f.upper[143], f.lines[0][143]);
    EXPECT_EQ(f.lower[143], f.lines[6][143]);
    // A steady rise never crosses: the envelopes stay on their first lines.
    Series rise(300);
    for (int i = 0; i < 300; ++i)
        rise[i] = 10 + 0.5 * i;
    const Fibonacci r(rise);
    for (int i = 143; i < 300; ++i) {
        ASSERT_EQ(r.upper[i], r.lines[0][i]);
        ASSERT_EQ(r.lower[i], r.lines[6][i]);
    }
}

TEST(Fibonacci, CrossingWalkTakesFarthestAndStrictTies) {
    const Series far(4, 100.0), close(4, 1.0);
    auto walk = [&](const Series& l1, const Series& l2) {
        const Series l0{5, 5, 5, 5};
        Series up(4), lo(4);
        double sd;
        ComputeFibonacciEnvelopes(close.data(), l0.data(), l1.data(), l2.data(), far.data(),
                                  far.data(), far.data(), far.data(), up.data(), lo.data(), &sd, 4);
        return up;
    };
    // Both cross line 0 in row 1; line 2 ends farther and is taken from row 2.
    Series up = walk({6, 4, 4, 4}, {7, 2, 2, 2});
    EXPECT_EQ(up[1], 5.0);
    EXPECT_EQ(up[2], 2.0);
    // Equal distances: the lower line number wins.
    up = walk({6, 3, 1, 1}, {6, 3, 2, 2});
    EXPECT_EQ(up[2], 1.0);
    // Touching at equal values is a crossing at distance 0: no switch.
    up = walk({6, 5, 1, 1}, {7, 9, 9, 9});
    EXPECT_EQ(up[2], 5.0);
}

TEST(Fibonacci, LevelsAtLastRow) {
    const Series flat(300, 42.0);
    const Fibonacci f(flat);
    EXPECT_EQ(f.sd, 0.0);
    for (double v : f.levels)
        EXPECT_DOUBLE_EQ(v, 42.0);

    const Series close = test::PriceHistory(500);
    const Fibonacci g(close);
    double sd;
    ComputeSeriesStdev(close.data(), &sd, 500);
    EXPECT_TRUE(SameBits(g.sd, sd));
    EXPECT_EQ(g.levels[Resistance2], g.upper[499] + 2 * sd);
    EXPECT_EQ(g.levels[Level4], g.lines[3][499]);
    EXPECT_EQ(g.levels[Support2], g.lower[499] - 2 * sd);
    EXPECT_EQ(g.levels[PriceLevel], close[499]);
    const Series three{1, 3, 3};
    ComputeSeriesStdev(three.data(), &sd, 3);
    EXPECT_DOUBLE_EQ(sd, std::sqrt(4.0 / 3));
}

TEST(Predictor, ChainWithStartUpDip) {
    const Series close = test::PriceHistory(300);
    for (int t : {PredictorShortTerm, PredictorMediumTerm, PredictorLongTerm}) {
        Series a(300), b(300), c(300);
        ComputePredictor(close.data(), a.data(), b.data(), c.data(), 300, t);
        EXPECT_EQ(a[t - 2], MISSING_VALUE);
        EXPECT_EQ(b[t - 2], MISSING_VALUE);
        for (int i = t - 1; i <= t + 2; ++i)
            EXPECT_TRUE(SameBits(b[i], 0.0)) << i;
        EXPECT_GT(b[t + 3], 0.0);
        EXPECT_EQ(c[t + 31], MISSING_VALUE);
        double sum = 0;
        for (int i = t - 1; i <= t + 32; ++i)
            sum += b[i]; // four zeros and 30 values
        EXPECT_DOUBLE_EQ(c[t + 32], sum / 34);
    }
    const Series flat(120, 9.0);
    Series a(120), b(120), c(120);
    ComputePredictor(flat.data(), a.data(), b.data(), c.data(), 120, 20);
    for (int i = 19; i < 120; ++i)
        EXPECT_EQ(a[i] + b[i], 0.0);
    EXPECT_EQ(c[51], MISSING_VALUE);
    for (int i = 52; i < 120; ++i)
        EXPECT_EQ(c[i], 0.0);
}

TEST(Predictor, SkippingGapIsStdevOfTheTail) {
    Series s = test::PriceHistory(200);
    for (int i = 0; i < 17; ++i)
        s[i] = MISSING_VALUE;
    Series skip(200), tail(200);
    ComputeStdevSkippingGap(s.data(), skip.data(), 200, 6);
    ComputeStdev(s.data() + 17, tail.data(), 183, 6);
    for (int i = 0; i < 17; ++i)
        EXPECT_EQ(skip[i], MISSING_VALUE);
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(SameBits(skip[17 + i], 0.0));
    for (int i = 5; i < 183; ++i)
        ASSERT_TRUE(SameBits(skip[17 + i], tail[i])) << i;
    // Fewer rows after the gap than the period: only the zeroed rows remain.
    ComputeStdevSkippingGap(s.data(), skip.data(), 20, 6);
    for (int i = 17; i < 20; ++i)
        EXPECT_TRUE(SameBits(skip[i], 0.0));
}

} // namespace
} // namespace velorin
