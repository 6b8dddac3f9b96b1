#include <gtest/gtest.h>

#include "analysis/moving_averages.h"
#include "test_support.h"

namespace velorin {
namespace {

using test::SameBits;
using Series = std::vector<double>;

TEST(RMA, StartsAtPeriodAfterLeadingGap) {
    const Series close = test::PriceHistory(25);
    Series out(25);
    ComputeRMA(close.data(), out.data(), 25, 5);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(out[i], MISSING_VALUE);
    EXPECT_DOUBLE_EQ(out[4], (close[0] + close[1] + close[2] + close[3] + close[4]) / 5);

    Series gapped = test::PriceHistory(40);
    for (int i = 0; i < 10; ++i)
        gapped[i] = MISSING_VALUE;
    Series g(40);
    ComputeRMA(gapped.data(), g.data(), 40, 5);
    for (int i = 0; i < 14; ++i)
        EXPECT_EQ(g[i], MISSING_VALUE);
    EXPECT_DOUBLE_EQ(g[14], (gapped[10] + gapped[11] + gapped[12] + gapped[13] + gapped[14]) / 5);
}

TEST(RMA, InnerGapIsNeverReseeded) {
    Series s = test::PriceHistory(60);
    s[30] = MISSING_VALUE;
    Series out(60);
    ComputeRMA(s.data(), out.data(), 60, 5);
    EXPECT_EQ(out[30], MISSING_VALUE);
    EXPECT_EQ(out[35], MISSING_VALUE);
    EXPECT_TRUE(SameBits(out[31], (5 * -999.0 - s[26] + s[31]) / 5));
    // The drift from -999.0 stays in the curve far after the gap.
    const double trueMean = (s[51] + s[52] + s[53] + s[54] + s[55]) / 5;
    EXPECT_GT(std::fabs(out[55] - trueMean), 100.0);
}

TEST(RMA, MatchesWindowedMeanOnCleanSeries) {
    test::Lcg g(1);
    for (int trial = 0; trial < 2000; ++trial) {
        const int n = 2 + static_cast<int>(g.Uniform() * 400);
        const int p = 1 + static_cast<int>(g.Uniform() * n);
        const Series s = test::RandomSeries(g, n);
        Series out(n);
        ComputeRMA(s.data(), out.data(), n, p);
        for (int i = p - 1; i < n; ++i) {
            long double sum = 0;
            for (int j = i - p + 1; j <= i; ++j)
                sum += s[j];
            ASSERT_NEAR(out[i], static_cast<double>(sum / p), 1e-9) << "n=" << n << " p=" << p;
        }
    }
}

TEST(ESMA, WeightIsOnTheOldValueAndLagsOneRow) {
    const Series s = test::PriceHistory(50);
    Series slow(50), copy(50), out(50);
    ComputeESMA(s.data(), slow.data(), 50, 1.0);
    ComputeESMA(s.data(), copy.data(), 50, 0.0);
    EXPECT_EQ(slow[0], MISSING_VALUE);
    for (int i = 1; i < 50; ++i) {
        EXPECT_EQ(slow[i], s[0]);
        EXPECT_EQ(copy[i], s[i - 1]);
    }
    ComputeESMA(s.data(), out.data(), 50, 0.5);
    EXPECT_TRUE(SameBits(out[10], 0.5 * s[9] + 0.5 * out[9]));
    // The newest source row never reaches the same output row.
    Series changed = s;
    changed[49] += 1000.0;
    Series out2(50);
    ComputeESMA(changed.data(), out2.data(), 50, 0.5);
    EXPECT_TRUE(SameBits(out[49], out2[49]));
}

TEST(WMA, WeighsOldestOneNewestP) {
    const Series s{1, 2, 3};
    Series out(3);
    ComputeWMA(s.data(), out.data(), 3, 2);
    EXPECT_EQ(out[0], MISSING_VALUE);
    EXPECT_DOUBLE_EQ(out[1], 5.0 / 3);
    EXPECT_DOUBLE_EQ(out[2], 8.0 / 3);
    // A leading gap is not skipped: -999.0 is weighed like a price.
    const Series gap{MISSING_VALUE, 10, 10};
    ComputeWMA(gap.data(), out.data(), 3, 2);
    EXPECT_DOUBLE_EQ(out[1], (1 * -999.0 + 2 * 10.0) / 3);
}

TEST(WMA, MatchesWeightedSumOnCleanSeries) {
    test::Lcg g(2);
    for (int trial = 0; trial < 2000; ++trial) {
        const int n = 1 + static_cast<int>(g.Uniform() * 300);
        const int p = 1 + static_cast<int>(g.Uniform() * n);
        const Series s = test::RandomSeries(g, n);
        Series out(n);
        ComputeWMA(s.data(), out.data(), n, p);
        for (int i = p - 1; i < n; ++i) {
            long double sum = 0;
            for (int j = 0; j < p; ++j)
                sum += (j + 1.0L) * s[i - p + 1 + j];
            ASSERT_NEAR(out[i], static_cast<double>(sum / (p * (p + 1) / 2.0L)), 1e-9);
            // The sum runs oldest row first, whatever the loop layout.
            double plain = 0.0;
            for (int j = 0; j < p; ++j)
                plain += (j + 1) * s[i - p + 1 + j];
            ASSERT_TRUE(SameBits(out[i], plain / (p * (p + 1) / 2)));
        }
    }
}

TEST(MACD, FractionsNotPeriodsAndZeroStart) {
    const Series flat(40, 12.5);
    Series line(40), signal(40);
    ComputeMACD(flat.data(), line.data(), signal.data(), 40, 0.8, 0.2, 0.5);
    for (int i = 0; i < 40; ++i)
        EXPECT_EQ(line[i], 0.0);
    EXPECT_EQ(signal[0], MISSING_VALUE);
    for (int i = 1; i < 40; ++i)
        EXPECT_EQ(signal[i], 0.0);
    // After a step the quick curve (new value weighed 0.8) leads the slow one.
    const Series step{0, 0, 0, 10, 10, 10};
    ComputeMACD(step.data(), line.data(), signal.data(), 6, 0.8, 0.2, 0.5);
    EXPECT_DOUBLE_EQ(line[4], 8.0 - 2.0);
    EXPECT_DOUBLE_EQ(signal[5], 0.5 * line[4] + 0.5 * signal[4]);
}

} // namespace
} // namespace velorin
