#pragma once
// Statistics of two aligned series: `a` the first-picked, `b` the second.
// Note the argument order: `b` comes first everywhere. Conventions as in
// analysis/moving_averages.h; no engine here tests for MISSING_VALUE, and a
// division by zero yields its IEEE result.

#include <cstdint>

namespace velorin {

// The result of a regression, in the order it is stored in a pair chart.
struct RegressionResult {
    double rSquared;
    double adjustedBeta; // beta * 0.66 + 0.33
    double beta;         // slope of a on b
    double alpha;        // intercept of a on b
};

// Least squares of `a` on `b` over the last `w` rows (w above n becomes n).
// `rSquared` addresses four consecutive doubles: rSquared, adjustedBeta, beta,
// alpha. A window below 1 holds no row, so all four come out NaN.
void ComputeRegression(const double* b, const double* a, double* rSquared, std::int32_t n,
                       std::int32_t w);
void ComputeRegression(const double* b, const double* a, RegressionResult* result, std::int32_t n,
                       std::int32_t w);

// Moving coefficient of determination over windows of `w` rows.
void ComputeHistoricalCorrelation(const double* b, const double* a, double* output, std::int32_t n,
                                  std::int32_t w);

void ComputePriceRatio(const double* b, const double* a, double* output, std::int32_t n);
void ComputeSpread(const double* b, const double* a, double* output, std::int32_t n);
void ComputeRelativeStrength(const double* b, const double* a, double* output, std::int32_t n);
void ComputeRelativePerformance(const double* b, const double* a, double* output, std::int32_t n);

inline constexpr std::int32_t DefaultCorrelationWindow = 100;

} // namespace velorin
