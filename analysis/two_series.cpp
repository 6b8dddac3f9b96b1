#include "analysis/two_series.h"

#include <cmath>

#include "analysis/engine_support.h"

namespace velorin {

using detail::FillMissing;

namespace {

struct WindowSums {
    double sb = 0.0, sa = 0.0, sbb = 0.0, saa = 0.0, sab = 0.0;
};

// Sums over rows from .. from + w - 1, oldest row first.
inline WindowSums SumWindow(const double* b, const double* a, std::int32_t from, std::int32_t w) {
    WindowSums s;
    for (std::int32_t i = from; i < from + w; ++i) {
        s.sb += b[i];
        s.sa += a[i];
        s.sbb += b[i] * b[i];
        s.saa += a[i] * a[i];
        s.sab += b[i] * a[i];
    }
    return s;
}

} // namespace

void ComputeRegression(const double* b, const double* a, double* rSquared, std::int32_t n,
                       std::int32_t w) {
    if (w > n) w = n;
    if (w < 0) w = 0; // an empty window: every sum 0, every quotient 0/0
    const WindowSums s = SumWindow(b, a, n - w, w);
    const double vb = s.sbb - s.sb * s.sb / w;
    const double cab = s.sab - s.sb * s.sa / w;
    const double va = s.saa - s.sa * s.sa / w;
    // A constant b makes vb zero; the quotients are then whatever IEEE gives.
    const double beta = cab / vb;
    const double r = cab / std::sqrt(vb * va);
    rSquared[0] = r * r;
    rSquared[1] = beta * 0.66 + 0.33; // adjusted beta; the constants stay as they are
    rSquared[2] = beta;
    rSquared[3] = s.sa / w - beta * (s.sb / w); // alpha
}

void ComputeRegression(const double* b, const double* a, RegressionResult* result, std::int32_t n,
                       std::int32_t w) {
    double values[4];
    ComputeRegression(b, a, values, n, w);
    result->rSquared = values[0];
    result->adjustedBeta = values[1];
    result->beta = values[2];
    result->alpha = values[3];
}

void ComputeHistoricalCorrelation(const double* b, const double* a, double* output, std::int32_t n,
                                  std::int32_t w) {
    if (n <= 0) return;
    FillMissing(output, n);
    if (w < 1 || w > n) return;
    // All sums are formed anew for every window; r squared, so the sign of the
    // relationship is gone.
    for (std::int32_t i = 0; i + w <= n; ++i) {
        const WindowSums s = SumWindow(b, a, i, w);
        const double vb = s.sbb - s.sb * s.sb / w;
        const double cab = s.sab - s.sb * s.sa / w;
        const double va = s.saa - s.sa * s.sa / w;
        const double r = cab / std::sqrt(vb * va);
        output[i + w - 1] = r * r;
    }
}

// The simple ratios compute only where the second series is not zero; -999.0
// is not recognised and enters as a number.
void ComputePriceRatio(const double* b, const double* a, double* output, std::int32_t n) {
    for (std::int32_t i = 0; i < n; ++i)
        output[i] = b[i] != 0 ? a[i] / b[i] : MISSING_VALUE;
}

void ComputeSpread(const double* b, const double* a, double* output, std::int32_t n) {
    // Tested like a divisor although nothing is divided: a zero in b gives
    // MISSING_VALUE on purpose.
    for (std::int32_t i = 0; i < n; ++i)
        output[i] = b[i] != 0 ? a[i] - b[i] : MISSING_VALUE;
}

void ComputeRelativeStrength(const double* b, const double* a, double* output, std::int32_t n) {
    for (std::int32_t i = 0; i < n; ++i)
        output[i] = b[i] != 0 ? a[i] / b[i] * 100.0 : MISSING_VALUE;
}

void ComputeRelativePerformance(const double* b, const double* a, double* output, std::int32_t n) {
    if (n <= 0) return;
    // The price ratio rebased to 1.0 at row 0, evaluated left to right.
    const bool base = a[0] != 0;
    for (std::int32_t i = 0; i < n; ++i)
        output[i] = base && b[i] != 0 ? b[0] / a[0] * a[i] / b[i] : MISSING_VALUE;
}

} // namespace velorin
