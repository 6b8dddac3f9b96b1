#pragma once
// The predictor: volatility of volatility. A moving standard deviation of the
// price over the term period, a moving standard deviation of that over 5 rows
// after its leading gap, and a 34-row average of the second as signal.
// Conventions as in analysis/moving_averages.h.

#include <cstdint>

namespace velorin {

inline constexpr std::int32_t PredictorShortTerm = 5;
inline constexpr std::int32_t PredictorMediumTerm = 20;
inline constexpr std::int32_t PredictorLongTerm = 60;
inline constexpr std::int32_t PredictorStdevPeriod = 5;
inline constexpr std::int32_t PredictorSignalPeriod = 34;

// Moving sample standard deviation over the part of `source` after its
// leading gap. The first p - 1 rows after the gap are 0.0, not MISSING_VALUE.
void ComputeStdevSkippingGap(const double* source, double* output, std::int32_t n, std::int32_t p);

// The chain: ComputeStdev(close -> seriesA, termPeriod),
// ComputeStdevSkippingGap(seriesA -> seriesB, 5), ComputeRMA(seriesB -> seriesC, 34).
void ComputePredictor(const double* close, double* seriesA, double* seriesB, double* seriesC,
                      std::int32_t n, std::int32_t termPeriod);

} // namespace velorin
