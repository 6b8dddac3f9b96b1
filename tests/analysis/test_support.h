#pragma once
// Shared material of the engine tests: one deterministic price history, random
// series and bit-exact comparison.

#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "base/series.h"

namespace velorin::test {

using Series = std::vector<double>;

// Portable generator (the standard distributions differ between libraries).
class Lcg {
  public:
    explicit Lcg(std::uint64_t seed) : state_(seed) {}
    double Uniform() { // [0, 1)
        state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<double>(state_ >> 11) * (1.0 / 9007199254740992.0);
    }
    double Range(double lo, double hi) { return lo + (hi - lo) * Uniform(); }
    int Below(int n) { return static_cast<int>(Uniform() * n); }

  private:
    std::uint64_t state_;
};

// A daily close: a random walk with drift and a slow cycle, kept positive and
// rounded to cents, so that flat days and equal closes occur.
inline Series PriceHistory(int n = MaxRows, std::uint64_t seed = 7) {
    Lcg g(seed);
    Series close(n);
    double price = 100.0;
    for (int i = 0; i < n; ++i) {
        price += g.Range(-1.5, 1.55) + 0.4 * std::sin(i / 40.0);
        if (price < 5.0) price = 5.0 + g.Uniform();
        close[i] = std::round(price * 100.0) / 100.0;
    }
    return close;
}

// Volumes in thousands, some at or below 100 for the tick counter.
inline Series VolumeHistory(int n = MaxRows, std::uint64_t seed = 11) {
    Lcg g(seed);
    Series volume(n);
    for (double& v : volume)
        v = std::round(g.Range(50.0, 400.0));
    return volume;
}

inline Series RandomSeries(Lcg& g, int n, double lo = 10.0, double hi = 200.0) {
    Series s(n);
    for (double& v : s)
        v = g.Range(lo, hi);
    return s;
}

inline bool SameBits(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

} // namespace velorin::test
