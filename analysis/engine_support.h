#pragma once
// Helpers shared by the engine sources; not part of the public interface.

#include <cstdint>

#include "base/series.h"

namespace velorin::detail {

inline void FillMissing(double* output, std::int32_t n) {
    for (std::int32_t i = 0; i < n; ++i)
        output[i] = MISSING_VALUE;
}

// Lowest row that is not MISSING_VALUE, or n when there is none.
inline std::int32_t FirstPresentRow(const double* source, std::int32_t n) {
    std::int32_t first = 0;
    while (first < n && source[first] == MISSING_VALUE)
        ++first;
    return first;
}

// 100.0 or more becomes exactly 100.0, 0.0 or less exactly 0.0; NaN passes.
inline double ClampPercent(double v) {
    if (v >= 100.0) return 100.0;
    if (v <= 0.0) return 0.0;
    return v;
}

// Highest and lowest value of rows from..to. `hi` starts at 0.0, so a window
// of negative values has hi 0.0; `lo` starts at 1.0e50.
inline void WindowExtremes(const double* source, std::int32_t from, std::int32_t to, double& hi,
                           double& lo) {
    double h = 0.0;
    double l = 1.0e50;
    for (std::int32_t j = from; j <= to; ++j) {
        const double v = source[j];
        if (v > h) h = v;
        if (v < l) l = v;
    }
    hi = h;
    lo = l;
}

// Calls f(e, hi, lo) for every window of p rows, e its last row, in row
// order. Four windows are walked side by side for speed; each is still walked
// oldest row first, exactly as WindowExtremes does.
template <class F>
inline void ForEachWindowExtremes(const double* source, std::int32_t n, std::int32_t p, F&& f) {
    std::int32_t i = 0;
    for (; i + 3 + p <= n; i += 4) {
        double h0 = 0.0, h1 = 0.0, h2 = 0.0, h3 = 0.0;
        double l0 = 1.0e50, l1 = 1.0e50, l2 = 1.0e50, l3 = 1.0e50;
        const double* x = source + i;
        for (std::int32_t j = 0; j < p; ++j) {
            const double v0 = x[j], v1 = x[j + 1], v2 = x[j + 2], v3 = x[j + 3];
            if (v0 > h0) h0 = v0;
            if (v0 < l0) l0 = v0;
            if (v1 > h1) h1 = v1;
            if (v1 < l1) l1 = v1;
            if (v2 > h2) h2 = v2;
            if (v2 < l2) l2 = v2;
            if (v3 > h3) h3 = v3;
            if (v3 < l3) l3 = v3;
        }
        f(i + p - 1, h0, l0);
        f(i + p, h1, l1);
        f(i + p + 1, h2, l2);
        f(i + p + 2, h3, l3);
    }
    for (; i + p <= n; ++i) {
        double hi;
        double lo;
        WindowExtremes(source, i, i + p - 1, hi, lo);
        f(i + p - 1, hi, lo);
    }
}

} // namespace velorin::detail
