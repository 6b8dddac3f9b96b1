#pragma once
// Bounded or centred indicators of one series. Conventions as in
// analysis/moving_averages.h.

#include <cstdint>

namespace velorin {

// Relative strength index from running sums of up and down moves; the first
// value stands in row p - 1, values are clamped to [0, 100].
void ComputeRSI(const double* source, double* output, std::int32_t n, std::int32_t p);

// Position of the value in the window's range: 0 at the top, 100 at the bottom.
void ComputePercRange(const double* source, double* output, std::int32_t n, std::int32_t p);

// Change over the window measured in its largest single step, in [-1, 1].
void ComputeOscillator(const double* source, double* output, std::int32_t n, std::int32_t p);

// Difference to the value p - 1 rows back.
void ComputeMomentum(const double* source, double* output, std::int32_t n, std::int32_t p);

// Moving sample standard deviation (divisor p - 1), leading gap not skipped.
void ComputeStdev(const double* source, double* output, std::int32_t n, std::int32_t p);

// Raw %K and three successive running averages of it.
void ComputeStochastics(const double* source, double* rawK, double* smoothK, double* signal1,
                        double* signal2, std::int32_t n, std::int32_t kPeriod,
                        std::int32_t smoothPeriod, std::int32_t signal1Period,
                        std::int32_t signal2Period);

// Price minus a running average that feeds on this curve's own previous row.
void ComputeOverboughtSold(const double* source, double* output, std::int32_t n, std::int32_t p);

inline constexpr std::int32_t DefaultOscillatorPeriod = 14; // RSI, Perc. Range, Oscillator, ...
inline constexpr std::int32_t DefaultStochasticsK = 14;
inline constexpr std::int32_t DefaultStochasticsSmooth = 5;
inline constexpr std::int32_t DefaultStochasticsSignal1 = 14;
inline constexpr std::int32_t DefaultStochasticsSignal2 = 21;

} // namespace velorin
