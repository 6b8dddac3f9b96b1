#include "analysis/moving_averages.h"

#include "analysis/engine_support.h"

namespace velorin {

using detail::FillMissing;
using detail::FirstPresentRow;

void ComputeRMA(const double* source, double* output, std::int32_t n, std::int32_t p) {
    if (n <= 0) return;
    const std::int32_t first = FirstPresentRow(source, n);
    // A wholly missing source, a period below 1 or one longer than the rows
    // after the leading gap: no row reaches first + p - 1, all stay missing.
    if (p < 1 || p > n - first) {
        FillMissing(output, n);
        return;
    }
    const std::int32_t seed = first + p - 1;
    FillMissing(output, seed);
    double sum = 0.0;
    for (std::int32_t j = first; j <= seed; ++j)
        sum += source[j];
    double previous = sum / p;
    output[seed] = previous;
    // Running update from the previous output (held in `previous`). A gap
    // inside the series makes one output MISSING_VALUE, and the next row
    // computes from -999.0 as if it were a mean: the average is deliberately
    // never re-seeded.
    for (std::int32_t i = seed + 1; i < n; ++i) {
        if (source[i - p] == MISSING_VALUE || source[i] == MISSING_VALUE)
            previous = MISSING_VALUE;
        else
            previous = (p * previous - source[i - p] + source[i]) / p;
        output[i] = previous;
    }
}

void ComputeESMA(const double* source, double* output, std::int32_t n, double a) {
    if (n <= 0) return;
    output[0] = MISSING_VALUE;
    if (n == 1) return;
    double previous = source[0];
    output[1] = previous;
    // `a` weighs the old value; row i holds nothing of source row i. A gap
    // enters as -999.0.
    for (std::int32_t i = 2; i < n; ++i) {
        previous = (1 - a) * source[i - 1] + a * previous;
        output[i] = previous;
    }
}

void ComputeWMA(const double* source, double* output, std::int32_t n, std::int32_t p) {
    if (n <= 0) return;
    FillMissing(output, n);
    if (p < 1 || p > n) return;
    double d = 0.0;
    for (std::int32_t j = 1; j <= p; ++j)
        d += j;
    // No gap test and no skipping of a leading gap: -999.0 is weighed like a
    // price. Four windows run side by side; each sum still adds its terms
    // oldest first.
    const std::int32_t last = n - p;
    std::int32_t i = 0;
    for (; i + 3 <= last; i += 4) {
        double s0 = 0.0, s1 = 0.0, s2 = 0.0, s3 = 0.0;
        const double* x = source + i;
        for (std::int32_t j = 0; j < p; ++j) {
            const double w = j + 1;
            s0 += w * x[j];
            s1 += w * x[j + 1];
            s2 += w * x[j + 2];
            s3 += w * x[j + 3];
        }
        output[i + p - 1] = s0 / d;
        output[i + p] = s1 / d;
        output[i + p + 1] = s2 / d;
        output[i + p + 2] = s3 / d;
    }
    for (; i <= last; ++i) {
        double s = 0.0;
        for (std::int32_t j = 0; j < p; ++j)
            s += (j + 1) * source[i + j];
        output[i + p - 1] = s / d;
    }
}

void ComputeMACD(const double* source, double* line, double* signal, std::int32_t n,
                 double longSmoothing, double shortSmoothing, double signalSmoothing) {
    if (n <= 0) return;
    ComputeESMA(source, line, n, shortSmoothing);
    ComputeESMA(source, signal, n, longSmoothing); // signal as scratch
    for (std::int32_t i = 2; i < n; ++i)
        line[i] = line[i] - signal[i];
    line[0] = 0.0;
    if (n > 1) line[1] = 0.0;
    ComputeESMA(line, signal, n, signalSmoothing);
}

} // namespace velorin
