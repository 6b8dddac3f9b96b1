#pragma once
// Volume tools. Conventions as in analysis/moving_averages.h. The relative
// volume index is ComputeRSI over the volume column.

#include <cstdint>

namespace velorin {

// On balance volume, starting at volume[0].
void ComputeOBV(const double* close, const double* volume, double* output, std::int32_t n);

// Net count of up and down moves over rows whose volume is above 100.0,
// divided by 100. Row 0 of the output is left as it stands.
void ComputeTicVolume(const double* close, const double* volume, double* output, std::int32_t n);

} // namespace velorin
