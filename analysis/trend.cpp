#include "analysis/trend.h"

#include <cmath>

#include "analysis/engine_support.h"

namespace velorin {

using detail::FillMissing;

void ComputeTrend(const double* source, double* output, std::int32_t n, std::int32_t order) {
    if (n <= 0) return;
    if (order < 1 || order > MaxTrendOrder) {
        FillMissing(output, n);
        return;
    }
    const int m = order;
    // X is n rows by m columns with X[i][j] = (i + 1)^j, T its transpose.
    // Neither is stored: each row of X is formed in turn and its products are
    // added into P = T * X and Q = T * source in the same order as a full
    // matrix product (over rows, oldest first). x is not scaled, and gaps
    // enter as -999.0.
    double p[MaxTrendOrder][MaxTrendOrder] = {};
    double q[MaxTrendOrder] = {};
    double x[MaxTrendOrder];
    for (std::int32_t i = 0; i < n; ++i) {
        for (int j = 0; j < m; ++j)
            x[j] = std::pow(i + 1, j);
        for (int r = 0; r < m; ++r) {
            const double t = x[r];
            for (int c = 0; c < m; ++c)
                p[r][c] += t * x[c];
            q[r] += t * source[i];
        }
    }

    // Gauss-Jordan on [P | I] without pivoting. P spans dozens of orders of
    // magnitude, so most digits are lost: the curve is what doubles give with
    // exactly this order of operations. The factor of each row operation is
    // read before the row changes.
    const int width = 2 * m;
    double a[MaxTrendOrder][2 * MaxTrendOrder];
    for (int r = 0; r < m; ++r) {
        for (int c = 0; c < m; ++c) {
            a[r][c] = p[r][c];
            a[r][m + c] = r == c ? 1.0 : 0.0;
        }
    }
    for (int k = 0; k < m; ++k) {
        double v = a[k][k];
        if (v == 0.0) {
            a[k][k] = 1.0;
            v = 1.0;
        }
        for (int j = 0; j < width; ++j)
            a[k][j] = a[k][j] / v;
        for (int r = k + 1; r < m; ++r) {
            const double f = a[r][k];
            for (int j = 0; j < width; ++j)
                a[r][j] = a[r][j] - a[k][j] * f;
        }
    }
    for (int k = m - 1; k >= 0; --k) {
        for (int r = k - 1; r >= 0; --r) {
            const double f = a[r][k];
            for (int j = 0; j < width; ++j)
                a[r][j] = a[r][j] - a[k][j] * f;
        }
    }

    double beta[MaxTrendOrder];
    for (int r = 0; r < m; ++r) {
        double s = 0.0;
        for (int k = 0; k < m; ++k)
            s += a[r][m + k] * q[k];
        beta[r] = s;
    }
    for (std::int32_t i = 0; i < n; ++i) {
        double s = 0.0;
        for (int j = 0; j < m; ++j)
            s += std::pow(i + 1, j) * beta[j];
        output[i] = s;
    }
}

void ComputeSwingChart(const double* source, double* output, std::int32_t n) {
    if (n <= 0) return;
    // The reversal threshold: 2 percent of the last value, for the whole series.
    const double t = source[n - 1] / 50;
    const double s0 = source[0];
    FillMissing(output, n);
    output[0] = s0;
    double hi = s0;
    double lo = s0;

    // Pass 1: turning points. Skip the rows within t of row 0 (but not equal
    // to it); with none stopping the scan, start from the last row.
    std::int32_t i = 1;
    while (i < n &&
           ((source[i] > s0 - t && source[i] < s0) || (source[i] > s0 && source[i] < s0 + t)))
        ++i;
    if (i >= n) i = n - 1;
    if (source[i] <= s0)
        lo = source[i];
    else
        hi = source[i];
    std::int32_t turn = 0;
    while (i < n) {
        if (source[i] == hi) {
            // Rising leg: goes on while the value is at or above the high, or
            // less than t below it; the latest of equal highs is the turn.
            while (i < n && (source[i] >= hi || (source[i] < hi && source[i] > hi - t))) {
                if (source[i] >= hi) {
                    hi = source[i];
                    turn = i;
                }
                ++i;
            }
            if (i < n) {
                lo = source[i];
                output[turn] = hi;
            }
        } else if (source[i] == lo) {
            while (i < n && (source[i] <= lo || (source[i] > lo && source[i] < lo + t))) {
                if (source[i] <= lo) {
                    lo = source[i];
                    turn = i;
                }
                ++i;
            }
            if (i < n) {
                hi = source[i];
                output[turn] = lo;
            }
        } else {
            // Only a NaN equals neither extreme it was just stored in; prices
            // never hold one, and the scan ends there instead of spinning.
            break;
        }
        // A leg that runs into the end of the data sets no turning point.
    }

    // Pass 2: straight lines between turning points. Equal neighbours get no
    // line, and the rows after the last turning point stay MISSING_VALUE.
    double prev = output[0];
    std::int32_t start = 0;
    for (;;) {
        std::int32_t next = start + 1;
        while (next < n && output[next] == MISSING_VALUE)
            ++next;
        if (next >= n) break;
        const double v = output[next];
        const std::int32_t span = next - start;
        if (v > prev && next < n - 1) {
            for (std::int32_t k = 0; k < span; ++k)
                output[start + k] = (v - prev) * k / span + prev;
        } else if (v < prev && next < n - 1) {
            for (std::int32_t k = 0; k < span; ++k)
                output[start + k] = prev - (prev - v) * k / span;
        }
        prev = v;
        start = next;
    }
}

} // namespace velorin
