#include "analysis/predictor.h"

#include <cmath>

#include "analysis/engine_support.h"
#include "analysis/moving_averages.h"
#include "analysis/oscillators.h"

namespace velorin {

using detail::FillMissing;

void ComputeStdevSkippingGap(const double* source, double* output, std::int32_t n, std::int32_t p) {
    if (n <= 0) return;
    FillMissing(output, n);
    const std::int32_t first = detail::FirstPresentRow(source, n);
    if (p < 1 || p > n || first == n) return;
    // The rows after the leading gap form the compact series z of m rows.
    const double* z = source + first;
    const std::int32_t m = n - first;
    // The deviations are kept in a zeroed column whose rows 0 to p - 2 are
    // never computed, so output rows first .. first + p - 2 are 0.0 and not
    // MISSING_VALUE; the 34-row average after this stage counts them as data.
    // That start-up dip belongs to the curve. When fewer than p rows follow
    // the gap, every row after it is one of those zeros.
    const std::int32_t zeros = p - 1 < m ? p - 1 : m;
    for (std::int32_t i = 0; i < zeros; ++i)
        output[first + i] = 0.0;
    if (p > m) return;
    double sum = 0.0;
    for (std::int32_t j = 0; j < p; ++j)
        sum += z[j];
    double mean = sum / p;
    auto deviation = [z, p](std::int32_t end, double windowMean) {
        double s = 0.0;
        for (std::int32_t row = end - p + 1; row <= end; ++row) {
            const double d = z[row] - windowMean;
            s += d * d;
        }
        return std::sqrt(s / (p - 1));
    };
    output[first + p - 1] = deviation(p - 1, mean);
    for (std::int32_t i = p; i < m; ++i) {
        if (z[i - p] == MISSING_VALUE || z[i] == MISSING_VALUE)
            mean = MISSING_VALUE;
        else
            mean = (p * mean - z[i - p] + z[i]) / p;
        output[first + i] = deviation(i, mean);
    }
}

void ComputePredictor(const double* close, double* seriesA, double* seriesB, double* seriesC,
                      std::int32_t n, std::int32_t termPeriod) {
    ComputeStdev(close, seriesA, n, termPeriod);
    ComputeStdevSkippingGap(seriesA, seriesB, n, PredictorStdevPeriod);
    ComputeRMA(seriesB, seriesC, n, PredictorSignalPeriod);
}

} // namespace velorin
