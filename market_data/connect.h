#pragma once
// Turning staged rows into a data source.

#include <cstdint>

namespace velorin {

struct DataSource;

// Builds a DataSource in slot marketData.nextSourceSlot from the staging
// area and the selection. Returns 1, or 0 with the slot empty. `silent`
// (a Make All run) holds back the messages of the first two failures.
int ConnectDataSource(bool silent = false);

// --- The live time series -----------------------------------------------
//
// A connect to the history topic of the live service opens a second
// conversation for the live value through RequestLiveSnapshot
// (market_data/dde_client.h) on the topic "IDN".

// True when the selection names the Reuter time series: source
// "Reuter", "REUTER" or "reuter", topic "TS1" or "ts1", item not beginning
// with "K%" or "k%".
bool SelectionIsReuterTimeSeries();

// The live row: writes staging row 0 behind the first `kept` rows of `source`:
// dateText, high, low, open, close and volume / 1000.0 (dateNumber of that
// row is left as it is). With `kept` at MaxRows the rows 1 to 1998 first take
// the row after them (all but dateNumber; row 0 stays), and the row goes to
// 1999. Returns the row written; the caller sets rowCount to that plus one.
int AppendStagedRow(DataSource& source, int kept);

} // namespace velorin
