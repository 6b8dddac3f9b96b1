#pragma once
// Rows corrected in a Data View going back into their data source.

#include <cstdint>

namespace velorin {

// The staged rows become the whole series of the source on `conversation`,
// under the row rules and the source's own filter, as a full reply of a
// live feed would; then every chart window on that conversation takes the
// new row count, has its drawn objects placed anew by date, and is
// recomputed. A source with no valid staged row is left as it was and no
// chart is told. The source's update time and pending state are not
// touched. Returns 1 when the source took the rows, else 0.
int ApplyEditedRows(std::intptr_t conversation);

} // namespace velorin
