#pragma once
// The row rules every feed shares once rows are staged: which rows are
// valid, the spike filter, and the rebuild of a source's rows from the
// staging area.

#include "market_data/data_source.h"

namespace velorin {

// A row has no gap: with all columns none of open, close, volume, low and
// high is missing (-999.0) or 0; with two columns only close is looked at.
bool StagedRowIsValid(int row, bool fullColumns);

// The first valid staged row below `rows`, or -1.
int FirstValidStagedRow(int rows, bool fullColumns);

// Copies the valid staged rows from `first` to `rows` that pass the spike
// filter (when `filtered`) into `to`, closing up gaps and refused rows:
// dateText, dateNumber and the prices as they are, volume over 1000.
// Returns the rows copied.
int CopyStagedRows(DataColumns& to, int first, int rows, bool fullColumns, bool filtered);

// The whole series of `source` replaced by the staged rows (fetchRowCount,
// hasFullColumns) under the source's own filter; rowCount set. Returns the
// new row count, or -1 (the source as it was) when no staged row is valid.
int RebuildSourceRows(DataSource& source);

} // namespace velorin
