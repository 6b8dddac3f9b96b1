#pragma once
// The sample desk as a database: the rows of every sample instrument, the
// list of codes and a date-and-close view, as one SQL script that both
// SQLite and PostgreSQL run, and an SQLite file made from it.
//
//   prices (code, tradedate DATE, close, open, high, low, volume DOUBLE)
//   codes  (code)                         the instruments, one row each
//   closes (code, tradedate, close)       a view: two-column queries
//
// A two-column instrument has nulls in open, high, low and volume.

#include <string>
#include <vector>

namespace velorin::sample_data {

// Name of the sample database file beside the ".PRC" files.
inline constexpr const char* SampleDatabaseName = "velorin_sample.db";

struct DatabaseInstrument {
    std::string code;   // "ACME"
    std::string prices; // the ".PRC" text of its rows
};

// The desk's instruments (code = the file's stem) and LONGRUN, 2500 rows of
// six columns that only the database holds: more than one query reads.
std::vector<DatabaseInstrument> DatabaseInstruments();

// The script that creates and fills the three objects, in one transaction.
std::string SampleDatabaseScript();

// Writes a new SQLite database at `path` (an old file is replaced), then
// runs `extraScript` on it. Returns true, or false with `error` set.
bool WriteSampleDatabase(const std::string& path, std::string* error,
                         const std::string& extraScript = {});

} // namespace velorin::sample_data
