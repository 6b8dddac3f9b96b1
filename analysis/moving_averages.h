#pragma once
// Smoothing engines: regular, exponentially smoothed and weighted moving
// averages, and MACD built from three smoothing passes.
//
// Conventions of every engine in this folder:
// - A series is `n` contiguous doubles, row 0 the oldest; `n` is at most
//   MaxRows in the program, and any n <= 0 writes nothing.
// - MISSING_VALUE (-999.0) marks a row without value and is compared exactly.
// - Outputs are written from row 0 to row n - 1 and never beyond; nothing is
//   read beyond row n - 1 of an input.
// - A period above `n` (or below 1) leaves a periodic output wholly
//   MISSING_VALUE.
// - No engine keeps state between calls or allocates on the heap unless its
//   header says so. Arithmetic is IEEE double with exceptions masked and in the
//   order written, so a division by zero gives an infinity or a NaN.

#include <cstdint>

namespace velorin {

// Simple moving average with a running update. The leading gap is skipped;
// after a gap inside the series the average is never re-seeded.
void ComputeRMA(const double* source, double* output, std::int32_t n, std::int32_t p);

// Exponential smoothing where `a` is the weight of the old value; the curve
// lags one row (row i holds nothing of source row i). Row 0 is MISSING_VALUE.
void ComputeESMA(const double* source, double* output, std::int32_t n, double a);

// Linearly weighted moving average, oldest weight 1, newest weight p.
void ComputeWMA(const double* source, double* output, std::int32_t n, std::int32_t p);

// MACD from smoothing fractions (never periods). Line rows 0 and 1 are 0.0.
void ComputeMACD(const double* source, double* line, double* signal, std::int32_t n,
                 double longSmoothing, double shortSmoothing, double signalSmoothing);

// Default smoothing fractions of a new chart.
inline constexpr double DefaultEsmaSmoothing = 0.5;
inline constexpr double DefaultMacdLongSmoothing = 0.8;
inline constexpr double DefaultMacdShortSmoothing = 0.2;
inline constexpr double DefaultMacdSignalSmoothing = 0.5;

} // namespace velorin
