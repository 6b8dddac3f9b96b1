#include <gtest/gtest.h>

#include "analysis/trend.h"
#include "analysis/volume.h"
#include "test_support.h"

namespace velorin {
namespace {

using test::SameBits;
using Series = std::vector<double>;
constexpr double M = MISSING_VALUE;

// The fit written out with whole matrices, step by step, as an independent
// check of the order of operations of the engine.
Series TrendWithFullMatrices(const Series& y, int m) {
    const int n = static_cast<int>(y.size());
    std::vector<Series> x(n, Series(m)), t(m, Series(n));
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < m; ++j)
            t[j][i] = x[i][j] = std::pow(i + 1, j);
    std::vector<Series> a(m, Series(2 * m, 0.0));
    for (int r = 0; r < m; ++r) {
        for (int c = 0; c < m; ++c)
            for (int i = 0; i < n; ++i)
                a[r][c] += t[r][i] * x[i][c];
        a[r][m + r] = 1.0;
    }
    for (int k = 0; k < m; ++k) {
        double v = a[k][k];
        if (v == 0.0) a[k][k] = v = 1.0;
        for (double& e : a[k])
            e /= v;
        for (int r = k + 1; r < m; ++r) {
            const double f = a[r][k];
            for (int j = 0; j < 2 * m; ++j)
                a[r][j] -= a[k][j] * f;
        }
    }
    for (int k = m - 1; k >= 0; --k)
        for (int r = k - 1; r >= 0; --r) {
            const double f = a[r][k];
            for (int j = 0; j < 2 * m; ++j)
                a[r][j] -= a[k][j] * f;
        }
    Series q(m, 0.0), beta(m, 0.0), out(n, 0.0);
    for (int r = 0; r < m; ++r)
        for (int c = 0; c < n; ++c)
            q[r] += t[r][c] * y[c];
    for (int r = 0; r < m; ++r)
        for (int k = 0; k < m; ++k)
            beta[r] += a[r][m + k] * q[k];
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < m; ++j)
            out[i] += std::pow(i + 1, j) * beta[j];
    return out;
}

TEST(Trend, FollowsTheWrittenOrderBitForBit) {
    const Series close = test::PriceHistory();
    Series out(MaxRows);
    ComputeTrend(close.data(), out.data(), MaxRows, DefaultTrendOrder);
    const Series expect = TrendWithFullMatrices(close, DefaultTrendOrder);
    for (int i = 0; i < MaxRows; ++i)
        ASSERT_TRUE(SameBits(out[i], expect[i])) << i;
}

TEST(Trend, ConstantAndLineAreReproduced) {
    for (int n : {25, 300, MaxRows}) {
        const Series flat(n, 5.0);
        Series out(n);
        ComputeTrend(flat.data(), out.data(), n, DefaultTrendOrder);
        for (double v : out)
            ASSERT_NEAR(v, 5.0, 0.05); // within what the order loses
    }
    Series line(500), out(500);
    for (int i = 0; i < 500; ++i)
        line[i] = 3 + 0.25 * i;
    ComputeTrend(line.data(), out.data(), 500, 2);
    for (int i = 0; i < 500; ++i)
        ASSERT_NEAR(out[i], line[i], 1e-6);
}

Series Swing(const Series& s) {
    Series out(s.size());
    ComputeSwingChart(s.data(), out.data(), static_cast<int>(s.size()));
    return out;
}

void ExpectSeries(const Series& got, const Series& want) {
    ASSERT_EQ(got.size(), want.size());
    for (std::size_t i = 0; i < got.size(); ++i)
        EXPECT_DOUBLE_EQ(got[i], want[i]) << "row " << i;
}

TEST(SwingChart, TurningPointsAndLines) {
    ExpectSeries(Swing({1, 2, 3, 4, 5}), {1, M, M, M, M}); // the leg runs into the end
    // Up 10 percent, back down: one top, a line to it, nothing after.
    Series updown;
    for (int v = 100; v <= 110; ++v)
        updown.push_back(v);
    for (int v = 109; v >= 99; --v)
        updown.push_back(v);
    Series want(updown.size(), M);
    for (int i = 0; i <= 10; ++i)
        want[i] = 100 + i;
    ExpectSeries(Swing(updown), want);
    // A last price of 0.0: no threshold, every row turns.
    ExpectSeries(Swing({5, 6, 4, 7, 0}), {5, 6, 4, 7, M});
    // A first turning point equal to row 0 gets no line; the small move
    // before it is inside the threshold.
    ExpectSeries(Swing({100, 100.5, 100, 90, 95, 99}), {100, M, 100, 90, M, M});
}

TEST(SwingChart, LatestOfEqualHighsWins) {
    ExpectSeries(Swing({100, 110, 110, 90, 100}), {100, 105, 110, 90, M});
}

TEST(Volume, OnBalanceVolume) {
    const Series close{10, 11, 11, 9}, volume{500, 200, 300, 50};
    Series out(4);
    ComputeOBV(close.data(), volume.data(), out.data(), 4);
    ExpectSeries(out, {500, 700, 700, 650});
}

TEST(Volume, TicVolumeSkipsSmallVolumesAndKeepsRow0) {
    Series out(6, 77.0);
    const Series flat(6, 20.0), busy{1000, 101, 100.5, 100.0, 150, 200};
    ComputeTicVolume(flat.data(), busy.data(), out.data(), 6);
    ExpectSeries(out, {77, 0.01, 0.02, M, 0.03, 0.04});
    // A skipped row neither counts nor moves the previous close.
    const Series close{10, 12, 11, 9, 9.5, 9.5}, volume{0, 50, 300, 300, 100, 300};
    ComputeTicVolume(close.data(), volume.data(), out.data(), 6);
    ExpectSeries(out, {77, M, 0.01, 0.0, M, 0.01});
    const Series quiet(6, 100.0);
    ComputeTicVolume(close.data(), quiet.data(), out.data(), 6);
    ExpectSeries(out, {77, M, M, M, M, M});
}

} // namespace
} // namespace velorin
