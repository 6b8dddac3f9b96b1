#pragma once
// Keeping charts current: the rows a live conversation pushes, the charts
// that wait for a pending row while Real Time is off, and the periodic
// refetch of file and database sources.

#include <cstddef>
#include <cstdint>

#include "market_data/dde_transport.h"

namespace velorin {

struct Chart;
struct DataSource;

// The program's answer to a transaction a server starts: advise data parsed
// and applied (acknowledged only when parsed), a forced disconnect shown.
std::uint32_t DdeCallback(DdeTransaction type, Conversation conversation, const char* data,
                          std::size_t size);

// The staged rows of an advise update written into the source of
// `conversation`: the live last row of a history, the whole series, or one
// tick; the charts told once the source's Timer period has passed.
void ApplyAdviseRows(Conversation conversation);

// Timer 1 with Real Time off: the charts of every source with a pending row
// whose Timer period has passed are told.
void RefreshPendingCharts();

// Timer 3: every data file and database source read again, its whole series
// replaced, and its charts told.
void RefetchAllSources();

// Every chart window on `conversation` takes the source's row count (and,
// when `fullColumns` is 0 or 1, that column form) and is recomputed. Charts
// of two sources keep the rows they were made with. `clearOneRowHandles`
// drops the curve handles of a chart that had a single row.
void TellCharts(Conversation conversation, const DataSource& source, int fullColumns,
                bool clearOneRowHandles);

} // namespace velorin

namespace velorin {

// A chart taken over by the source in `slot`: one reference moved from its
// old source, the row count and conversation copied, and the title and
// caption made anew from the new source's instrument and dates.
void MoveChartToSource(Chart& chart, int slot);

} // namespace velorin
