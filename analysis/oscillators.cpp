#include "analysis/oscillators.h"

#include <cmath>
#include <cstring>

#include "analysis/engine_support.h"

namespace velorin {

using detail::ClampPercent;
using detail::FillMissing;
using detail::FirstPresentRow;

namespace {

// 100.0 when nothing went down, else the classic ratio.
inline double RsiValue(double up, double down) {
    const double v = down == 0.0 ? 100.0 : 100 - 100 / (up / down + 1);
    return ClampPercent(v);
}

// Sum over `count` rows from `x` of the squared deviation from `mean`, oldest
// row first.
inline double SquaredDeviations(const double* x, std::int32_t count, double mean) {
    double s = 0.0;
    for (std::int32_t j = 0; j < count; ++j) {
        const double d = x[j] - mean;
        s += d * d;
    }
    return s;
}

} // namespace

void ComputeRSI(const double* source, double* output, std::int32_t n, std::int32_t p) {
    if (n <= 0) return;
    if (p < 1 || p > n) {
        FillMissing(output, n);
        return;
    }
    // The change of row i is source[i] - source[i-1], with 0.0 for row 0, so
    // the first window rests on p - 1 real changes. The changes are formed
    // where they are needed instead of in a scratch column; the values are the
    // same. A gap enters as -999.0.
    auto change = [source](std::int32_t i) { return i == 0 ? 0.0 : source[i] - source[i - 1]; };
    FillMissing(output, n - 1);
    double up = 0.0;
    double down = 0.0;
    for (std::int32_t i = 0; i < p; ++i) {
        const double d = change(i);
        if (d > 0.0)
            up += d;
        else
            down += d;
    }
    down = -down;
    output[p - 1] = RsiValue(up, down);
    // Running sums, not smoothing: the oldest change leaves, the newest enters.
    // The clamps also absorb the drift that the running sums collect.
    for (std::int32_t i = 0; i < n - p; ++i) {
        const double out = change(i);
        if (out > 0.0)
            up -= out;
        else
            down += out;
        const double in = change(i + p);
        if (in > 0.0)
            up += in;
        else
            down -= in;
        output[i + p] = RsiValue(up, down);
    }
}

void ComputePercRange(const double* source, double* output, std::int32_t n, std::int32_t p) {
    if (n <= 0) return;
    FillMissing(output, n);
    if (p < 1 || p > n) return;
    detail::ForEachWindowExtremes(source, n, p,
                                  [source, output](std::int32_t e, double hi, double lo) {
                                      double v;
                                      if (hi - lo == 0.0)
                                          // A flat window repeats the row before; in the first
                                          // window that is MISSING_VALUE, which the clamp turns
                                          // into 0.0. Row 0 (period 1) has no row before and takes
                                          // the same MISSING_VALUE.
                                          v = e > 0 ? output[e - 1] : MISSING_VALUE;
                                      else
                                          v = (hi - source[e]) * 100 / (hi - lo);
                                      output[e] = ClampPercent(v);
                                  });
}

void ComputeOscillator(const double* source, double* output, std::int32_t n, std::int32_t p) {
    if (n <= 0) return;
    FillMissing(output, n);
    if (p < 1 || p > n) return;
    // The first window looks at p - 1 steps, every later one at p steps, while
    // the numerator always spans p - 1 steps. Both asymmetries are intended.
    double m = 0.0;
    for (std::int32_t j = 1; j < p; ++j) {
        const double d = std::fabs(source[j] - source[j - 1]);
        if (d > m) m = d;
    }
    m = m * p;
    output[p - 1] = m == 0.0 ? 0.0 : (source[p - 1] - source[0]) / m;
    for (std::int32_t i = p; i < n; ++i) {
        m = 0.0;
        for (std::int32_t j = i - p + 1; j <= i; ++j) {
            const double d = std::fabs(source[j] - source[j - 1]);
            if (d > m) m = d;
        }
        m = m * p;
        output[i] = m == 0.0 ? 0.0 : (source[i] - source[i - p + 1]) / m;
    }
}

void ComputeMomentum(const double* source, double* output, std::int32_t n, std::int32_t p) {
    if (n <= 0) return;
    FillMissing(output, n);
    if (p < 1 || p > n) return;
    // The lag is p - 1 rows.
    for (std::int32_t i = p - 1; i < n; ++i)
        output[i] = source[i] - source[i - p + 1];
}

void ComputeStdev(const double* source, double* output, std::int32_t n, std::int32_t p) {
    if (n <= 0) return;
    if (p < 1 || p > n) {
        FillMissing(output, n);
        return;
    }
    FillMissing(output, p - 1);
    // Leading gaps are not skipped. The window mean runs like the moving
    // average; when it becomes MISSING_VALUE that -999.0 is used as a number
    // in the deviations and in the next update. Only the current mean is
    // needed, so it is kept in one variable.
    double sum = 0.0;
    for (std::int32_t j = 0; j < p; ++j)
        sum += source[j];
    double mean = sum / p;
    output[p - 1] = std::sqrt(SquaredDeviations(source, p, mean) / (p - 1));
    auto nextMean = [source, p](std::int32_t i, double previous) {
        if (source[i - p] == MISSING_VALUE || source[i] == MISSING_VALUE) return MISSING_VALUE;
        return (p * previous - source[i - p] + source[i]) / p;
    };
    // Eight rows side by side, two to a vector register: each lane does the
    // same IEEE operations as the plain loop, and each sum still runs oldest
    // row first. Lane pairs are (i, i+1), (i+2, i+3), ...; the window of row
    // i+1 starts one row after that of row i, so one load fills a pair.
    using Pair = double __attribute__((vector_size(16)));
    auto load = [](const double* at) {
        Pair v;
        std::memcpy(&v, at, sizeof v);
        return v;
    };
    std::int32_t i = p;
    for (; i + 7 < n; i += 8) {
        double m[8];
        m[0] = nextMean(i, mean);
        for (int k = 1; k < 8; ++k)
            m[k] = nextMean(i + k, m[k - 1]);
        mean = m[7];
        const Pair m01 = {m[0], m[1]}, m23 = {m[2], m[3]}, m45 = {m[4], m[5]}, m67 = {m[6], m[7]};
        const double* x = source + (i - p + 1);
        Pair s01 = {0.0, 0.0}, s23 = s01, s45 = s01, s67 = s01;
        for (std::int32_t j = 0; j < p; ++j) {
            const Pair d01 = load(x + j) - m01;
            const Pair d23 = load(x + j + 2) - m23;
            const Pair d45 = load(x + j + 4) - m45;
            const Pair d67 = load(x + j + 6) - m67;
            s01 += d01 * d01;
            s23 += d23 * d23;
            s45 += d45 * d45;
            s67 += d67 * d67;
        }
        const double sums[8] = {s01[0], s01[1], s23[0], s23[1], s45[0], s45[1], s67[0], s67[1]};
        for (int k = 0; k < 8; ++k)
            output[i + k] = std::sqrt(sums[k] / (p - 1));
    }
    for (; i < n; ++i) {
        mean = nextMean(i, mean);
        output[i] = std::sqrt(SquaredDeviations(source + (i - p + 1), p, mean) / (p - 1));
    }
}

void ComputeStochastics(const double* source, double* rawK, double* smoothK, double* signal1,
                        double* signal2, std::int32_t n, std::int32_t kPeriod,
                        std::int32_t smoothPeriod, std::int32_t signal1Period,
                        std::int32_t signal2Period) {
    if (n <= 0) return;
    FillMissing(rawK, n);
    FillMissing(smoothK, n);
    FillMissing(signal1, n);
    FillMissing(signal2, n);
    // Row arithmetic in 64 bits: the sums of four periods must not wrap.
    const std::int64_t k = kPeriod, q = smoothPeriod, r = signal1Period, s = signal2Period;
    const std::int64_t rows = n;
    if (k < 1 || k > rows) return;

    // Raw %K: where the value stands in the window's range, 0 at the bottom.
    detail::ForEachWindowExtremes(source, n, kPeriod,
                                  [source, rawK](std::int32_t e, double hi, double lo) {
                                      double v;
                                      if (hi - lo == 0.0)
                                          v = e > 0 ? rawK[e - 1] : MISSING_VALUE; // clamps to 0.0
                                      else
                                          v = (source[e] - lo) * 100 / (hi - lo);
                                      rawK[e] = ClampPercent(v);
                                  });

    // Three running averages, each seeded on the last row of the stage before,
    // so one row is gained at every stage. A stage whose period is below 1 or
    // above n stays missing, and so do the stages after it.
    //   smoothK row k+q-2: mean of rawK rows k-1 .. k+q-2, clamped;
    //           rows k+q-1 on: (q*smoothK[e-1] - rawK[e-q] + rawK[e]) / q, clamped.
    //   signal1 row k+q+r-3: mean of smoothK rows k+q-2 .. k+q+r-3;
    //           rows 2k+q-2 on: (r*signal1[e-1] - smoothK[e-r] + smoothK[e]) / r.
    //   signal2 row k+q+r+s-4: mean of signal1 rows k+q+r-3 .. k+q+r+s-4;
    //           rows k+q+r+s-3 on: (s*signal2[e-1] - signal1[e-s] + signal1[e]) / s.
    // The signal1 update starts at row 2k+q-2, that is with its counter at k
    // and not at r: the charts always pass r equal to k, when it is the row
    // after the seed. With another r the rows come out as that loop gives
    // them: it runs after the seed and may overwrite it, and a term before
    // row 0 reads as MISSING_VALUE, the value every row in front of a curve
    // holds.
    // The three stages run in one pass over the rows: every value reads only
    // rows at or before its own, which are final by then, so the results are
    // those of three passes one after the other, and the three running
    // updates overlap in time.
    const bool haveQ = q >= 1 && q <= rows;
    const bool haveR = haveQ && r >= 1 && r <= rows;
    const bool haveS = haveR && s >= 1 && s <= rows;
    if (!haveQ) return;
    const std::int64_t kSeed = k + q - 2;
    const std::int64_t s1Seed = k + q + r - 3, s1From = 2 * k + q - 2;
    const std::int64_t s2Seed = k + q + r + s - 4;
    auto smoothAt = [smoothK](std::int64_t row) { return row < 0 ? MISSING_VALUE : smoothK[row]; };
    // Row e - 1 of each stage is carried in a variable; rows never written
    // hold MISSING_VALUE.
    double lastK = MISSING_VALUE, last1 = MISSING_VALUE, last2 = MISSING_VALUE;
    for (std::int64_t e = kSeed; e < rows; ++e) {
        if (e == kSeed) {
            double sum = 0.0;
            for (std::int64_t j = k - 1; j <= kSeed; ++j)
                sum += rawK[j];
            lastK = ClampPercent(sum / q);
        } else {
            lastK = ClampPercent((q * lastK - rawK[e - q] + rawK[e]) / q);
        }
        smoothK[e] = lastK;
        if (!haveR) continue;
        double v1 = MISSING_VALUE;
        if (e == s1Seed) {
            double sum = 0.0;
            for (std::int64_t j = kSeed; j <= s1Seed; ++j)
                sum += smoothK[j];
            v1 = sum / r;
        }
        if (e >= s1From) v1 = (r * last1 - smoothAt(e - r) + lastK) / r;
        last1 = v1;
        signal1[e] = v1;
        if (!haveS) continue;
        if (e == s2Seed) {
            double sum = 0.0;
            for (std::int64_t j = s1Seed; j <= s2Seed; ++j)
                sum += signal1[j];
            last2 = sum / s;
        } else if (e > s2Seed) {
            last2 = (s * last2 - signal1[e - s] + last1) / s;
        } else {
            continue;
        }
        signal2[e] = last2;
    }
}

void ComputeOverboughtSold(const double* source, double* output, std::int32_t n, std::int32_t p) {
    if (n <= 0) return;
    const std::int32_t first = FirstPresentRow(source, n);
    if (p < 1 || p > n - first) {
        FillMissing(output, n);
        return;
    }
    const std::int32_t seed = first + p - 1;
    FillMissing(output, seed);
    double sum = 0.0;
    for (std::int32_t j = first; j <= seed; ++j)
        sum += source[j];
    double previous = sum / p; // the average itself, not a difference
    output[seed] = previous;
    // The running average is taken from this curve's own previous row, where
    // the previous difference stands. This recursion is what the curve is; it
    // is not the price minus its moving average.
    for (std::int32_t i = seed + 1; i < n; ++i) {
        if (source[i - p] == MISSING_VALUE || source[i] == MISSING_VALUE) {
            previous = MISSING_VALUE;
        } else {
            const double m = (p * previous - source[i - p] + source[i]) / p;
            previous = source[i] - m;
        }
        output[i] = previous;
    }
}

} // namespace velorin
