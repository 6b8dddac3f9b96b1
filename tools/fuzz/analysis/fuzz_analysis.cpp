// Feeds random series, periods and row counts to every analysis engine. Each
// series lives in a buffer of exactly n rows, so a read or write past row
// n - 1 is caught by the address sanitizer; a few properties that must hold
// for any input are checked as well.

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "analysis/engines.h"
#include "base/series.h"

namespace {

using velorin::MISSING_VALUE;
using Series = std::vector<double>;

void Require(bool condition) {
    if (!condition) __builtin_trap();
}

bool WhollyMissing(const Series& s) {
    for (double v : s)
        if (v != MISSING_VALUE) return false;
    return true;
}

bool PercentOrMissing(const Series& s) {
    for (double v : s)
        if (!(v == MISSING_VALUE || std::isnan(v) || (v >= 0.0 && v <= 100.0))) return false;
    return true;
}

Series MakeSeries(FuzzedDataProvider& in, int n) {
    Series s(n);
    double walk = in.ConsumeFloatingPointInRange<double>(-50.0, 500.0);
    for (int i = 0; i < n; ++i) {
        if (in.remaining_bytes() == 0) {
            walk += std::sin(i * 0.37) * 2.0;
            s[i] = walk;
            continue;
        }
        switch (in.ConsumeIntegralInRange<int>(0, 7)) {
        case 0:
            s[i] = MISSING_VALUE;
            break;
        case 1:
            s[i] = 0.0;
            break;
        case 2: {
            std::uint64_t bits = in.ConsumeIntegral<std::uint64_t>();
            std::memcpy(&s[i], &bits, sizeof bits); // any double, NaN and infinities included
            break;
        }
        case 3:
            s[i] = s[i > 0 ? i - 1 : 0];
            break; // flat stretches and ties
        default:
            walk += in.ConsumeFloatingPointInRange<double>(-5.0, 5.0);
            s[i] = walk;
        }
    }
    return s;
}

// The three averaging stages of the stochastics written as three passes one
// after the other, to hold the engine's single pass against.
void StochasticsStagesInThreePasses(const Series& rawK, Series& smoothK, Series& signal1,
                                    Series& signal2, std::int64_t n, std::int64_t k, std::int64_t q,
                                    std::int64_t r, std::int64_t s) {
    auto clamp = [](double v) { return v >= 100.0 ? 100.0 : v <= 0.0 ? 0.0 : v; };
    std::fill(smoothK.begin(), smoothK.end(), MISSING_VALUE);
    std::fill(signal1.begin(), signal1.end(), MISSING_VALUE);
    std::fill(signal2.begin(), signal2.end(), MISSING_VALUE);
    if (k < 1 || k > n || q < 1 || q > n) return;
    if (k + q - 2 <= n - 1) {
        double sum = 0.0;
        for (std::int64_t j = k - 1; j <= k + q - 2; ++j)
            sum += rawK[j];
        smoothK[k + q - 2] = clamp(sum / q);
    }
    for (std::int64_t j = q; j <= n - k; ++j)
        smoothK[k + j - 1] =
            clamp((q * smoothK[k + j - 2] - rawK[k - q + j - 1] + rawK[k + j - 1]) / q);
    if (r < 1 || r > n) return;
    if (k + q + r - 3 <= n - 1) {
        double sum = 0.0;
        for (std::int64_t j = k + q - 2; j <= k + q + r - 3; ++j)
            sum += smoothK[j];
        signal1[k + q + r - 3] = sum / r;
    }
    for (std::int64_t j = k; j <= n - k - q + 1; ++j) {
        const std::int64_t back = k + q - r + j - 2;
        signal1[k + q + j - 2] =
            (r * signal1[k + q + j - 3] - (back < 0 ? MISSING_VALUE : smoothK[back]) +
             smoothK[k + q + j - 2]) /
            r;
    }
    if (s < 1 || s > n) return;
    if (k + q + r + s - 4 <= n - 1) {
        double sum = 0.0;
        for (std::int64_t j = k + q + r - 3; j <= k + q + r + s - 4; ++j)
            sum += signal1[j];
        signal2[k + q + r + s - 4] = sum / s;
    }
    for (std::int64_t j = s; j <= n - r - k - q + 2; ++j)
        signal2[k + q + r + j - 3] = (s * signal2[k + q + r + j - 4] -
                                      signal1[k + q + r + j - s - 3] + signal1[k + q + r + j - 3]) /
                                     s;
}

bool SameBits(const Series& a, const Series& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

std::int32_t Period(FuzzedDataProvider& in) {
    return in.ConsumeBool() ? in.ConsumeIntegralInRange<std::int32_t>(1, 30)
                            : in.ConsumeIntegralInRange<std::int32_t>(1, 1000);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velorin;
    FuzzedDataProvider in(data, size);
    int n;
    switch (in.ConsumeIntegralInRange<int>(0, 5)) {
    case 0:
        n = 0;
        break;
    case 1:
        n = 1;
        break;
    case 2:
        n = MaxRows;
        break;
    default:
        n = in.ConsumeIntegralInRange<int>(0, MaxRows);
    }
    const std::int32_t p = Period(in), q = Period(in), r = Period(in), s = Period(in);
    const double a = in.ConsumeProbability<double>();
    const std::int32_t order = in.ConsumeIntegralInRange<std::int32_t>(-2, MaxTrendOrder + 3);
    const std::int32_t w = in.ConsumeIntegralInRange<std::int32_t>(-3, MaxRows + 100);
    const Series x = MakeSeries(in, n);
    const Series y = MakeSeries(in, n);
    Series o0(n), o1(n), o2(n), o3(n), lines[FibonacciLineCount];
    const bool over = p > n;

    ComputeRMA(x.data(), o0.data(), n, p);
    Require(!over || WhollyMissing(o0));
    ComputeESMA(x.data(), o0.data(), n, a);
    ComputeWMA(x.data(), o0.data(), n, p);
    Require(!over || WhollyMissing(o0));
    ComputeMACD(x.data(), o0.data(), o1.data(), n, a, 1.0 - a, 0.5);
    ComputeRSI(x.data(), o0.data(), n, p);
    Require(PercentOrMissing(o0) && (!over || WhollyMissing(o0)));
    ComputePercRange(x.data(), o0.data(), n, p);
    Require(PercentOrMissing(o0) && (!over || WhollyMissing(o0)));
    ComputeOscillator(x.data(), o0.data(), n, p);
    Require(!over || WhollyMissing(o0));
    ComputeMomentum(x.data(), o0.data(), n, p);
    ComputeStdev(x.data(), o0.data(), n, p);
    Require(!over || WhollyMissing(o0));
    if (!over && x[0] != MISSING_VALUE) {
        // Without a leading gap the gap-skipping variant is the same curve
        // from row p - 1 on, computed by the plain loop.
        ComputeStdevSkippingGap(x.data(), o1.data(), n, p);
        Require(std::memcmp(o0.data() + (p - 1), o1.data() + (p - 1),
                            sizeof(double) * static_cast<std::size_t>(n - p + 1)) == 0);
    }
    ComputeStochastics(x.data(), o0.data(), o1.data(), o2.data(), o3.data(), n, p, q, r, s);
    Require(PercentOrMissing(o0) && PercentOrMissing(o1));
    if (n > 0) {
        Series e1(n), e2(n), e3(n);
        StochasticsStagesInThreePasses(o0, e1, e2, e3, n, p, q, r, s);
        Require(SameBits(o1, e1) && SameBits(o2, e2) && SameBits(o3, e3));
    }
    ComputeStochastics(x.data(), o0.data(), o1.data(), o2.data(), o3.data(), n, p, q, p, s);
    ComputeOverboughtSold(x.data(), o0.data(), n, p);
    ComputeStdevSkippingGap(x.data(), o0.data(), n, p);
    Require(!over || WhollyMissing(o0));
    ComputePredictor(x.data(), o0.data(), o1.data(), o2.data(), n, p);

    for (int k = 0; k < FibonacciLineCount; ++k) {
        lines[k].resize(n);
        ComputeRMA(x.data(), lines[k].data(), n, FibonacciPeriods[k]);
    }
    const double* lp[FibonacciLineCount];
    for (int k = 0; k < FibonacciLineCount; ++k)
        lp[k] = lines[k].data();
    double sd = 0.0;
    ComputeFibonacciEnvelopes(x.data(), lp[0], lp[1], lp[2], lp[3], lp[4], lp[5], lp[6], o0.data(),
                              o1.data(), &sd, n);
    const auto levels = ComputeFibonacciLevels(x.data(), lp, o0.data(), o1.data(), sd, n);
    Require(n > 0 || levels[PriceLevel] == MISSING_VALUE);
    // Envelopes of arbitrary lines, not only of averages.
    ComputeFibonacciEnvelopes(x.data(), x.data(), y.data(), x.data(), y.data(), y.data(), x.data(),
                              y.data(), o0.data(), o1.data(), &sd, n);

    RegressionResult reg;
    ComputeRegression(y.data(), x.data(), &reg, n, w);
    ComputeHistoricalCorrelation(y.data(), x.data(), o0.data(), n, w);
    ComputeHistoricalCorrelation(y.data(), x.data(), o0.data(), n, p);
    ComputePriceRatio(y.data(), x.data(), o0.data(), n);
    ComputeSpread(y.data(), x.data(), o0.data(), n);
    ComputeRelativeStrength(y.data(), x.data(), o0.data(), n);
    ComputeRelativePerformance(y.data(), x.data(), o0.data(), n);

    ComputeTrend(x.data(), o0.data(), n, order);
    ComputeSwingChart(x.data(), o0.data(), n);
    ComputeOBV(x.data(), y.data(), o0.data(), n);
    ComputeTicVolume(x.data(), y.data(), o0.data(), n);
    return 0;
}
