#include <gtest/gtest.h>

#include "analysis/oscillators.h"
#include "test_support.h"

namespace velorin {
namespace {

using test::SameBits;
using Series = std::vector<double>;

Series Ramp(int n, double start, double step) {
    Series s(n);
    for (int i = 0; i < n; ++i)
        s[i] = start + step * i;
    return s;
}

TEST(RSI, ClampsAndFirstWindowHoldsTheZeroChange) {
    Series out(30);
    for (const Series& s : {Ramp(30, 10, 1), Series(30, 7.0)}) {
        ComputeRSI(s.data(), out.data(), 30, 14);
        for (int i = 0; i < 13; ++i)
            EXPECT_EQ(out[i], MISSING_VALUE);
        for (int i = 13; i < 30; ++i)
            EXPECT_EQ(out[i], 100.0); // nothing went down
    }
    const Series falling = Ramp(30, 100, -1);
    ComputeRSI(falling.data(), out.data(), 30, 14);
    for (int i = 13; i < 30; ++i)
        EXPECT_TRUE(SameBits(out[i], 0.0));
    // Changes 0, +1, -2 in the first window, then +11 enters as the 0 leaves.
    const Series s{10, 11, 9, 20};
    ComputeRSI(s.data(), out.data(), 4, 3);
    EXPECT_DOUBLE_EQ(out[2], 100 - 100 / (1.0 / 2 + 1));
    EXPECT_DOUBLE_EQ(out[3], 100 - 100 / (12.0 / 2 + 1));
}

TEST(RSI, RunningSumsAgreeWithFreshSums) {
    const Series s = test::PriceHistory();
    Series out(MaxRows);
    ComputeRSI(s.data(), out.data(), MaxRows, 14);
    for (int i = 14; i < MaxRows; ++i) {
        double up = 0, down = 0;
        for (int j = i - 13; j <= i; ++j)
            (s[j] > s[j - 1] ? up : down) += std::fabs(s[j] - s[j - 1]);
        ASSERT_NEAR(out[i], down == 0 ? 100.0 : 100 - 100 / (up / down + 1), 1e-7) << i;
    }
}

TEST(PercRange, ZeroAtTopAndFlatWindowsCopyTheClampedGap) {
    Series out(20);
    const Series flat(20, 5.0);
    ComputePercRange(flat.data(), out.data(), 20, 5);
    for (int i = 4; i < 20; ++i)
        EXPECT_TRUE(SameBits(out[i], 0.0));
    const Series s{1, 5, 3, 5, 1};
    ComputePercRange(s.data(), out.data(), 5, 3);
    EXPECT_EQ(out[2], 50.0);  // middle of 1..5
    EXPECT_EQ(out[3], 0.0);   // at the top
    EXPECT_EQ(out[4], 100.0); // at the bottom
    // The high starts at 0.0, so a negative window measures from zero.
    const Series neg{-5, -3, -4};
    ComputePercRange(neg.data(), out.data(), 3, 3);
    EXPECT_DOUBLE_EQ(out[2], 80.0);
}

TEST(Oscillator, FirstWindowLooksAtOneStepLess) {
    Series out(5);
    const Series s{0, 1, 2, 10, 11};
    ComputeOscillator(s.data(), out.data(), 5, 3);
    EXPECT_EQ(out[1], MISSING_VALUE);
    EXPECT_DOUBLE_EQ(out[2], 2.0 / 3);  // steps 1, 1
    EXPECT_DOUBLE_EQ(out[3], 9.0 / 24); // steps 1, 1, 8 but numerator over 2 steps
    EXPECT_DOUBLE_EQ(out[4], 9.0 / 24);
    const Series flat(10, 3.0);
    ComputeOscillator(flat.data(), out.data(), 5, 3);
    for (int i = 2; i < 5; ++i)
        EXPECT_EQ(out[i], 0.0);
}

TEST(Momentum, LagIsPeriodLessOne) {
    const Series s{1, 3, 6};
    Series out(3);
    ComputeMomentum(s.data(), out.data(), 3, 2);
    EXPECT_EQ(out[0], MISSING_VALUE);
    EXPECT_EQ(out[1], 2.0);
    EXPECT_EQ(out[2], 3.0);
}

TEST(Stdev, SampleDeviationAndGapMeanUsedAsNumber) {
    const Series s{1, 3, 3};
    Series out(3);
    ComputeStdev(s.data(), out.data(), 3, 2);
    EXPECT_EQ(out[0], MISSING_VALUE);
    EXPECT_NEAR(out[1], 1.41421356, 1e-8);
    EXPECT_EQ(out[2], 0.0);
    Series g = test::PriceHistory(40);
    g[20] = MISSING_VALUE;
    Series o(40);
    ComputeStdev(g.data(), o.data(), 40, 5);
    double sq = 0;
    for (int j = 16; j <= 20; ++j)
        sq += (g[j] - MISSING_VALUE) * (g[j] - MISSING_VALUE);
    EXPECT_TRUE(SameBits(o[20], std::sqrt(sq / 4)));
}

TEST(Stdev, MatchesTwoPassSampleDeviation) {
    test::Lcg g(3);
    for (int trial = 0; trial < 2000; ++trial) {
        const int n = 2 + static_cast<int>(g.Uniform() * 300);
        const int p = 2 + static_cast<int>(g.Uniform() * (n - 1));
        const Series s = test::RandomSeries(g, n);
        Series out(n);
        ComputeStdev(s.data(), out.data(), n, p);
        for (int i = p - 1; i < n; ++i) {
            long double mean = 0, sq = 0;
            for (int j = i - p + 1; j <= i; ++j)
                mean += s[j];
            mean /= p;
            for (int j = i - p + 1; j <= i; ++j)
                sq += (s[j] - mean) * (s[j] - mean);
            ASSERT_NEAR(out[i], std::sqrt(static_cast<double>(sq / (p - 1))), 1e-8);
        }
    }
}

TEST(Stochastics, StagesStartOneRowEarlierAndAverage) {
    const Series s = test::PriceHistory(300);
    Series k(300), sk(300), s1(300), s2(300);
    ComputeStochastics(s.data(), k.data(), sk.data(), s1.data(), s2.data(), 300, 14, 5, 14, 21);
    const Series* curves[] = {&k, &sk, &s1, &s2};
    const int starts[] = {13, 17, 30, 50};
    for (int c = 0; c < 4; ++c) {
        EXPECT_EQ((*curves[c])[starts[c] - 1], MISSING_VALUE);
        EXPECT_NE((*curves[c])[starts[c]], MISSING_VALUE);
    }
    for (int i = 30; i < 300; ++i) {
        double a = 0;
        for (int j = i - 13; j <= i; ++j)
            a += sk[j];
        ASSERT_NEAR(s1[i], a / 14, 1e-9);
    }
    for (int i = 50; i < 300; ++i) {
        double a = 0;
        for (int j = i - 20; j <= i; ++j)
            a += s1[j];
        ASSERT_NEAR(s2[i], a / 21, 1e-9);
    }
    // A flat first window gives 0.0 (the clamped copy of MISSING_VALUE).
    const Series flat(20, 4.0);
    ComputeStochastics(flat.data(), k.data(), sk.data(), s1.data(), s2.data(), 20, 5, 2, 5, 2);
    EXPECT_TRUE(SameBits(k[4], 0.0));
}

TEST(Stochastics, SignalCounterStartsAtK) {
    // With r unlike k the first signal row comes from the loop that starts at
    // k: row 2k+q-2 = 6 is written from missing rows before the seed row 7.
    const Series s = test::PriceHistory(40);
    Series k(40), sk(40), s1(40), s2(40);
    ComputeStochastics(s.data(), k.data(), sk.data(), s1.data(), s2.data(), 40, 3, 2, 5, 2);
    EXPECT_TRUE(SameBits(s1[6], (5 * MISSING_VALUE - MISSING_VALUE + sk[6]) / 5));
    EXPECT_EQ(s1[5], MISSING_VALUE);
}

TEST(OverboughtSold, RecursesOnItsOwnOutput) {
    const Series s{MISSING_VALUE, 1, 3, 6, 10};
    Series out(5);
    ComputeOverboughtSold(s.data(), out.data(), 5, 2);
    EXPECT_EQ(out[1], MISSING_VALUE);
    EXPECT_EQ(out[2], 2.0); // the average itself
    EXPECT_EQ(out[3], 1.5); // 6 - (2*2 - 1 + 6)/2
    EXPECT_EQ(out[4], 5.0); // 10 - (2*1.5 - 3 + 10)/2
}

} // namespace
} // namespace velorin
