#include <gtest/gtest.h>

#include "analysis/two_series.h"
#include "test_support.h"

namespace velorin {
namespace {

using test::SameBits;
using Series = std::vector<double>;

RegressionResult Regress(const Series& b, const Series& a, int w) {
    RegressionResult r;
    ComputeRegression(b.data(), a.data(), &r, static_cast<int>(b.size()), w);
    return r;
}

TEST(Regression, IdenticalScaledAndConstantSeries) {
    const Series b = test::PriceHistory(300);
    RegressionResult r = Regress(b, b, 300);
    EXPECT_DOUBLE_EQ(r.rSquared, 1.0);
    EXPECT_DOUBLE_EQ(r.beta, 1.0);
    EXPECT_DOUBLE_EQ(r.adjustedBeta, 0.99); // the constants do not add up to 1
    EXPECT_NEAR(r.alpha, 0.0, 1e-9);
    Series twice(300);
    for (int i = 0; i < 300; ++i)
        twice[i] = 2 * b[i];
    r = Regress(b, twice, 300);
    EXPECT_DOUBLE_EQ(r.rSquared, 1.0);
    EXPECT_DOUBLE_EQ(r.beta, 2.0);
    EXPECT_DOUBLE_EQ(r.adjustedBeta, 1.65);
    // A constant b: the divisions by zero give NaN, without a trap.
    r = Regress(Series(50, 4.0), Series(b.begin(), b.begin() + 50), 50);
    EXPECT_TRUE(std::isnan(r.beta));
    EXPECT_TRUE(std::isnan(r.rSquared));
    EXPECT_TRUE(std::isnan(r.alpha));
}

TEST(Regression, UsesLastRowsAndClampsWindow) {
    const Series b = test::PriceHistory(200, 5), a = test::PriceHistory(200, 6);
    const RegressionResult whole = Regress(b, a, 200), over = Regress(b, a, 5000);
    EXPECT_TRUE(SameBits(whole.beta, over.beta) && SameBits(whole.alpha, over.alpha));
    Series changed = a;
    changed[0] = 1e6;
    EXPECT_TRUE(SameBits(Regress(b, a, 199).beta, Regress(b, changed, 199).beta));
    double four[4];
    ComputeRegression(b.data(), a.data(), four, 200, 200);
    EXPECT_TRUE(SameBits(four[0], whole.rSquared) && SameBits(four[3], whole.alpha));
}

TEST(Regression, MatchesDirectLeastSquares) {
    test::Lcg g(4);
    for (int trial = 0; trial < 2000; ++trial) {
        const int n = 3 + static_cast<int>(g.Uniform() * 300);
        const int w = 2 + static_cast<int>(g.Uniform() * (n - 1));
        const Series b = test::RandomSeries(g, n);
        Series a(n);
        const double slope = g.Range(-3, 3);
        for (int i = 0; i < n; ++i)
            a[i] = slope * b[i] + g.Range(-40, 40);
        long double mb = 0, ma = 0;
        for (int i = n - w; i < n; ++i)
            mb += b[i], ma += a[i];
        mb /= w;
        ma /= w;
        long double sbb = 0, sab = 0, saa = 0;
        for (int i = n - w; i < n; ++i) {
            sbb += (b[i] - mb) * (b[i] - mb);
            sab += (b[i] - mb) * (a[i] - ma);
            saa += (a[i] - ma) * (a[i] - ma);
        }
        const double beta = static_cast<double>(sab / sbb);
        const RegressionResult r = Regress(b, a, w);
        ASSERT_NEAR(r.beta, beta, 1e-8 * (1 + std::fabs(beta)));
        ASSERT_NEAR(r.alpha, static_cast<double>(ma - beta * mb), 1e-6);
        ASSERT_NEAR(r.rSquared, static_cast<double>(sab * sab / (sbb * saa)), 1e-9);
    }
}

TEST(HistoricalCorrelation, EachRowIsTheWindowRegression) {
    const Series b = test::PriceHistory(400, 5), a = test::PriceHistory(400, 6);
    Series out(400);
    ComputeHistoricalCorrelation(b.data(), a.data(), out.data(), 400, 100);
    for (int i = 0; i < 99; ++i)
        EXPECT_EQ(out[i], MISSING_VALUE);
    for (int e = 99; e < 400; ++e) {
        double r[4];
        ComputeRegression(b.data(), a.data(), r, e + 1, 100);
        ASSERT_TRUE(SameBits(out[e], r[0])) << e;
        ASSERT_TRUE(out[e] >= 0.0 && out[e] <= 1.0 + 1e-12);
    }
    ComputeHistoricalCorrelation(b.data(), a.data(), out.data(), 400, 400);
    EXPECT_EQ(out[398], MISSING_VALUE);
    EXPECT_NE(out[399], MISSING_VALUE);
}

TEST(Ratios, ZeroDivisorGivesMissingAndGapsAreNumbers) {
    const Series b{2, 0, 4, 5}, a{6, 3, MISSING_VALUE, 10};
    Series out(4);
    ComputePriceRatio(b.data(), a.data(), out.data(), 4);
    EXPECT_EQ(out[0], 3.0);
    EXPECT_EQ(out[1], MISSING_VALUE);
    EXPECT_EQ(out[2], -999.0 / 4);
    ComputeSpread(b.data(), a.data(), out.data(), 4);
    EXPECT_EQ(out[0], 4.0);
    EXPECT_EQ(out[1], MISSING_VALUE); // tested like a divisor on purpose
    ComputeRelativeStrength(b.data(), a.data(), out.data(), 4);
    EXPECT_EQ(out[3], 200.0);
    ComputeRelativePerformance(b.data(), a.data(), out.data(), 4);
    EXPECT_EQ(out[0], 1.0);
    EXPECT_EQ(out[1], MISSING_VALUE);
    EXPECT_TRUE(SameBits(out[3], 2.0 / 6.0 * 10.0 / 5.0)); // left to right
    const Series a0{0, 3, 4, 5};
    ComputeRelativePerformance(b.data(), a0.data(), out.data(), 4);
    for (double v : out)
        EXPECT_EQ(v, MISSING_VALUE);
}

} // namespace
} // namespace velorin
