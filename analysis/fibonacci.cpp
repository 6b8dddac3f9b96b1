#include "analysis/fibonacci.h"

#include <cmath>

#include "analysis/engine_support.h"

namespace velorin {

using detail::FillMissing;

namespace {

// Walks one envelope from row start + 1, beginning on line `c`. At each row
// the line that crossed the current one and ended farthest from it is taken
// next; the switch shows from the following row.
void WalkEnvelope(const double* const lines[FibonacciLineCount], int c, double* envelope,
                  std::int32_t start, std::int32_t n) {
    for (std::int32_t i = start + 1; i < n; ++i) {
        const double* lc = lines[c];
        double best = 0.0;
        int next = c;
        for (int k = 0; k < FibonacciLineCount; ++k) {
            if (k == c) continue;
            const double* lk = lines[k];
            const bool crossed = (lc[i] >= lk[i] && lc[i - 1] < lk[i - 1]) ||
                                 (lc[i] <= lk[i] && lc[i - 1] > lk[i - 1]);
            if (!crossed) continue;
            // Strictly farther: among equal distances the lower line number
            // wins, and a crossing at equal values (distance 0) never switches.
            const double d = std::fabs(lc[i] - lk[i]);
            if (d > best) {
                next = k;
                best = d;
            }
        }
        envelope[i] = lc[i];
        c = next;
    }
}

} // namespace

void ComputeFibonacciEnvelopes(const double* close, const double* line0, const double* line1,
                               const double* line2, const double* line3, const double* line4,
                               const double* line5, const double* line6, double* upper,
                               double* lower, double* stdevResult, std::int32_t n) {
    // The lines are only read, so the walk works on them in place.
    const double* const lines[FibonacciLineCount] = {line0, line1, line2, line3,
                                                     line4, line5, line6};
    if (n > 0) {
        FillMissing(upper, n);
        FillMissing(lower, n);
        // The envelopes start where the longest average starts; a source
        // without any value leaves both wholly missing.
        const std::int32_t s = detail::FirstPresentRow(line6, n);
        if (s < n) {
            upper[s] = line0[s];
            lower[s] = line6[s];
            WalkEnvelope(lines, 0, upper, s, n);
            WalkEnvelope(lines, FibonacciLineCount - 1, lower, s, n);
        }
    }
    ComputeSeriesStdev(close, stdevResult, n);
}

void ComputeSeriesStdev(const double* series, double* result, std::int32_t n) {
    // With n of 0 or 1 the divisions give the IEEE NaN.
    double sum = 0.0;
    for (std::int32_t i = 0; i < n; ++i)
        sum += series[i];
    const double mean = sum / n;
    double squares = 0.0;
    for (std::int32_t i = 0; i < n; ++i) {
        const double d = series[i] - mean;
        squares += d * d;
    }
    *result = std::sqrt(squares / (n - 1));
}

std::array<double, FibonacciLevelCount>
ComputeFibonacciLevels(const double* close, const double* const lines[FibonacciLineCount],
                       const double* upper, const double* lower, double priceStdev,
                       std::int32_t n) {
    std::array<double, FibonacciLevelCount> levels;
    levels.fill(MISSING_VALUE);
    if (n <= 0) return levels;
    const std::int32_t last = n - 1;
    const double u = upper[last];
    const double l = lower[last];
    const double sd = priceStdev;
    levels[Resistance2] = u + 2 * sd;
    levels[Resistance1] = u + sd;
    for (int k = 0; k < FibonacciLineCount; ++k)
        levels[Level1 + k] = lines[k][last];
    levels[Support1] = l - sd;
    levels[Support2] = l - 2 * sd;
    levels[PriceLevel] = close[last];
    return levels;
}

} // namespace velorin
