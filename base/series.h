#pragma once
// Series conventions shared by every subsystem: fixed row capacity and the
// marker values that live inside price and volume columns.

namespace velorin {

// Rows in every series of the program; nothing ever grows past it.
inline constexpr int MaxRows = 2000;

// A cell with no value: the column does not exist or the cell has no data.
// Always compared exactly.
inline constexpr double MISSING_VALUE = -999.0;

// In the volume column of a data source: a quote that carried no volume.
inline constexpr double NO_VOLUME_MARKER = -998.0;

// A zero volume read from a file is stored as this so the row stays valid.
inline constexpr double ZERO_VOLUME = 0.00001;

// Width of a date text, terminator included.
inline constexpr int DateTextSize = 20;

} // namespace velorin
