// Engines against independent formulas, over the price history and many
// random series.
#include <gtest/gtest.h>

#include "analysis/moving_averages.h"
#include "analysis/oscillators.h"
#include "analysis/trend.h"
#include "analysis/two_series.h"
#include "test_support.h"

namespace velorin {
namespace {

using test::SameBits;
using test::Series;

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
    int minPeriod;
    double tolerance; // 0: the same bits
    double (*at)(const Series& s, int i, int p);
};

const Reference References[] = {
    {"RMA", ComputeRMA, 1, 1e-9,
     [](const Series& s, int i, int p) { return static_cast<double>(WindowSum(s, i, p) / p); }},
    // In double, oldest row first: the engine sums in that order too.
    {"WMA", ComputeWMA, 1, 0.0,
     [](const Series& s, int i, int p) {
         double sum = 0.0;
         for (int j = 0; j < p; ++j)
             sum += (j + 1) * s[i - p + 1 + j];
         return sum / (p * (p + 1) / 2);
     }},
    {"Stdev", ComputeStdev, 2, 1e-8,
     [](const Series& s, int i, int p) {
         const long double mean = WindowSum(s, i, p) / p;
         long double sq = 0;
         for (int j = i - p + 1; j <= i; ++j)
             sq += (s[j] - mean) * (s[j] - mean);
         return std::sqrt(static_cast<double>(sq / (p - 1)));
     }},
    // The change into row 0 counts as zero.
    {"RSI", ComputeRSI, 1, 1e-7,
     [](const Series& s, int i, int p) {
         double up = 0, down = 0;
         for (int j = std::max(i - p + 1, 1); j <= i; ++j)
             (s[j] > s[j - 1] ? up : down) += std::fabs(s[j] - s[j - 1]);
         return down == 0 ? 100.0 : 100 - 100 / (up / down + 1);
     }},
    {"Momentum", ComputeMomentum, 1, 0.0,
     [](const Series& s, int i, int p) { return s[i] - s[i - p + 1]; }},
};

void ExpectReference(const Reference& r, const Series& s, int p) {
    const int n = static_cast<int>(s.size());
    Series out(n);
    r.engine(s.data(), out.data(), n, p);
    for (int i = 0; i < n; ++i) {
        const double want = i < p - 1 ? MISSING_VALUE : r.at(s, i, p);
        if (r.tolerance == 0.0 || i < p - 1)
            ASSERT_TRUE(SameBits(out[i], want))
                << r.name << " n=" << n << " p=" << p << " row " << i;
        else
            ASSERT_NEAR(out[i], want, r.tolerance) << r.name << " n=" << n << " p=" << p;
    }
}

TEST(CrossCheck, WindowedEnginesAgreeWithFreshWindows) {
    const Series close = test::PriceHistory();
    test::Lcg g(1);
    for (const Reference& r : References) {
        for (int p : {2, 14, 100, MaxRows})
            ASSERT_NO_FATAL_FAILURE(ExpectReference(r, close, p));
        for (int trial = 0; trial < 500; ++trial) {
            const int n = r.minPeriod + g.Below(400);
            ExpectReference(r, test::RandomSeries(g, n),
                            r.minPeriod + g.Below(n - r.minPeriod + 1));
        }
    }
}

// Only the last w rows count; a window above n is clamped to n.
TEST(CrossCheck, RegressionIsDirectLeastSquaresOverTheLastRows) {
    test::Lcg g(4);
    for (int trial = 0; trial < 2000; ++trial) {
        const int n = 3 + g.Below(300);
        const int w = 2 + g.Below(n + 20);
        const int used = std::min(w, n);
        const Series b = test::RandomSeries(g, n);
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
        RegressionResult r;
        ComputeRegression(b.data(), a.data(), &r, n, w);
        ASSERT_NEAR(r.beta, beta, 1e-8 * (1 + std::fabs(beta)));
        ASSERT_NEAR(r.adjustedBeta, beta * 0.66 + 0.33, 1e-8 * (1 + std::fabs(beta)));
        ASSERT_NEAR(r.alpha, static_cast<double>(ma - beta * mb), 1e-6);
        ASSERT_NEAR(r.rSquared, static_cast<double>(sab * sab / (sbb * saa)), 1e-9);
        double values[4]; // the array form: r squared, adjusted beta, beta, alpha
        ComputeRegression(b.data(), a.data(), values, n, w);
        ASSERT_TRUE(SameBits(values[0], r.rSquared) && SameBits(values[3], r.alpha));
    }
    // A constant b: the divisions by zero give NaN, without a trap.
    const Series four(50, 4.0), a = test::PriceHistory(50);
    RegressionResult r;
    ComputeRegression(four.data(), a.data(), &r, 50, 50);
    EXPECT_TRUE(std::isnan(r.beta) && std::isnan(r.rSquared) && std::isnan(r.alpha));
}

TEST(CrossCheck, HistoricalCorrelationIsTheWindowRegression) {
    const Series b = test::PriceHistory(400, 5), a = test::PriceHistory(400, 6);
    Series out(400);
    ComputeHistoricalCorrelation(b.data(), a.data(), out.data(), 400, 100);
    for (int e = 0; e < 400; ++e) {
        double r[4];
        ComputeRegression(b.data(), a.data(), r, e + 1, 100);
        ASSERT_TRUE(SameBits(out[e], e < 99 ? MISSING_VALUE : r[0])) << e;
        ASSERT_TRUE(e < 99 || (out[e] >= 0.0 && out[e] <= 1.0 + 1e-12));
    }
    ComputeHistoricalCorrelation(b.data(), a.data(), out.data(), 400, 400);
    EXPECT_EQ(out[398], MISSING_VALUE);
    EXPECT_NE(out[399], MISSING_VALUE);
}

// Fits whose answer is known without solving anything: one coefficient gives
// the mean, two the regression line on x, and a polynomial of the fitted
// degree comes back as it is.
TEST(CrossCheck, TrendIsTheLeastSquaresPolynomial) {
    test::Lcg g(5);
    for (int trial = 0; trial < 300; ++trial) {
        const int m = 1 + trial % 4;
        const int n = m + g.Below(300);
        Series y = test::RandomSeries(g, n), x(n), want(n);
        for (int i = 0; i < n; ++i)
            x[i] = i + 1;
        const long double my = WindowSum(y, n - 1, n) / n, mx = (n + 1) / 2.0L;
        long double sxy = 0, sxx = 0;
        for (int i = 0; i < n; ++i)
            sxy += (x[i] - mx) * (y[i] - my), sxx += (x[i] - mx) * (x[i] - mx);
        for (int i = 0; i < n; ++i) {
            const double t = i;
            if (m == 1) want[i] = static_cast<double>(my);
            if (m == 2) want[i] = static_cast<double>(my + sxy / sxx * (x[i] - mx));
            if (m >= 3)
                want[i] = y[i] = 50 + 0.3 * t - 1e-3 * t * t + (m == 4 ? 2e-6 * t * t * t : 0);
        }
        Series out(n);
        ComputeTrend(y.data(), out.data(), n, m);
        for (int i = 0; i < n; ++i)
            ASSERT_NEAR(out[i], want[i], 1e-6) << "n=" << n << " m=" << m << " row " << i;
    }
    // At the default order most digits are lost, yet a constant stays close.
    for (int n : {25, 300, MaxRows}) {
        const Series flat(n, 5.0);
        Series out(n);
        ComputeTrend(flat.data(), out.data(), n, DefaultTrendOrder);
        for (double v : out)
            ASSERT_NEAR(v, 5.0, 0.05) << n;
    }
}

} // namespace
} // namespace velorin
