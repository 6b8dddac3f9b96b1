#pragma once
// Bringing two price histories together: rows are paired by equal date,
// the first source leading, and rows without a partner drop out.

#include <cstdint>

#include "chart_model/chart.h"
#include "market_data/data_source.h"

namespace velorin {

// Fills `pairs` with the rows of `first` (its `firstRows` rows, in order)
// whose date `second` also has: the first source's date text and close, and
// the close of the second source's first row with that date. A date twice in
// the first source is paired twice. Dates compare as numbers, or as texts
// when row 0 of either source's date numbers is 0.0 (no usable numbers).
// Returns the pair count, also stored in `pairs.pairCount`. Linear time, with
// no memory taken.
std::int32_t PairByDate(const DataColumns& first, std::int32_t firstRows, const DataColumns& second,
                        std::int32_t secondRows, PairData& pairs);

} // namespace velorin
