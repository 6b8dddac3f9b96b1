#pragma once
// The shape of a series: a least-squares polynomial trend and the swing chart.
// Conventions as in analysis/moving_averages.h.

#include <cstdint>

namespace velorin {

// Coefficients of a trend chart: degree 10.
inline constexpr std::int32_t DefaultTrendOrder = 11;
// Largest order the engine takes; its matrices live on the stack.
inline constexpr std::int32_t MaxTrendOrder = 32;

// Polynomial of `order` coefficients fitted through the normal equations with
// x = 1 .. n, inverted by Gauss-Jordan without pivoting. Every row gets a
// value. An order outside 1 .. MaxTrendOrder leaves the output MISSING_VALUE.
void ComputeTrend(const double* source, double* output, std::int32_t n, std::int32_t order);

// Turning points at a reversal of 2 percent of the last value, joined by
// straight lines; rows after the last turning point stay MISSING_VALUE.
void ComputeSwingChart(const double* source, double* output, std::int32_t n);

} // namespace velorin
