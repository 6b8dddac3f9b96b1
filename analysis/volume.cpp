#include "analysis/volume.h"

#include "base/series.h"

namespace velorin {

void ComputeOBV(const double* close, const double* volume, double* output, std::int32_t n) {
    if (n <= 0) return;
    double total = volume[0]; // starts at the first day's volume, not at zero
    output[0] = total;
    for (std::int32_t i = 1; i < n; ++i) {
        if (close[i] > close[i - 1])
            total = total + volume[i];
        else if (close[i] < close[i - 1])
            total = total - volume[i];
        output[i] = total;
    }
}

void ComputeTicVolume(const double* close, const double* volume, double* output, std::int32_t n) {
    if (n <= 0) return;
    double up = 0.0;
    double down = 0.0;
    double prev = close[0];
    // Row 0 keeps whatever the array held.
    for (std::int32_t i = 1; i < n; ++i)
        output[i] = MISSING_VALUE;
    for (std::int32_t i = 1; i < n; ++i) {
        // Rows of 100.0 or less don't count and don't move prev.
        if (!(volume[i] > 100.0)) continue;
        if (close[i] >= prev) // an unchanged price counts as up
            up += 1;
        else
            down += 1;
        prev = close[i];
        output[i] = (up - down) / 100.0;
    }
}

} // namespace velorin
