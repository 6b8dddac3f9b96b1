#pragma once
// Fibonacci analysis: seven moving averages over the price, two envelopes
// walked along them from crossing to crossing, and twelve levels read at the
// last row. Conventions as in analysis/moving_averages.h.

#include <array>
#include <cstdint>

namespace velorin {

inline constexpr int FibonacciLineCount = 7;
inline constexpr std::array<std::int32_t, FibonacciLineCount> FibonacciPeriods = {8,  13, 21, 34,
                                                                                  55, 89, 144};

// The seven lines are the moving averages of `close`, shortest first.
// `upper` starts on line0, `lower` on line6, at the first row where line6 has
// a value; `*stdevResult` receives ComputeSeriesStdev of `close`.
void ComputeFibonacciEnvelopes(const double* close, const double* line0, const double* line1,
                               const double* line2, const double* line3, const double* line4,
                               const double* line5, const double* line6, double* upper,
                               double* lower, double* stdevResult, std::int32_t n);

// Sample standard deviation of all n rows (divisor n - 1); MISSING_VALUE rows
// count as numbers.
void ComputeSeriesStdev(const double* series, double* result, std::int32_t n);

// The twelve levels in the order the Levels View lists them.
inline constexpr int FibonacciLevelCount = 12;
enum FibonacciLevel : int {
    Resistance2 = 0,
    Resistance1,
    Level1, // 8-row average
    Level2,
    Level3,
    Level4,
    Level5,
    Level6,
    Level7, // 144-row average
    Support1,
    Support2,
    PriceLevel,
};
inline constexpr std::array<const char*, FibonacciLevelCount> FibonacciLevelNames = {
    "Resistance 2", "Resistance 1", "Level 1", "Level 2",   "Level 3",   "Level 4",
    "Level 5",      "Level 6",      "Level 7", "Support 1", "Support 2", "Price"};

// Levels at row n - 1. `lines` are the seven averages, shortest first.
// With n <= 0 every level is MISSING_VALUE.
std::array<double, FibonacciLevelCount>
ComputeFibonacciLevels(const double* close, const double* const lines[FibonacciLineCount],
                       const double* upper, const double* lower, double priceStdev, std::int32_t n);

} // namespace velorin
