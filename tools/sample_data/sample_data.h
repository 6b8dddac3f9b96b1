#pragma once
// Deterministic sample price files for a demonstration desk: synthetic
// instruments (no third-party market data), the same bytes on every run and
// every platform (integer arithmetic only).

#include <cstdint>
#include <string>
#include <vector>

namespace velorin::sample_data {

struct Instrument {
    std::string fileName; // e.g. "ACME.PRC"
    int rows;             // weekday rows
    bool sixColumns;      // date, close, open, high, low, volume; else date, close
    std::uint64_t seed;
    std::int64_t startCents; // first close, in cents
    int moveBasisPoints;     // typical daily move
    std::int64_t baseVolume; // typical daily volume
    int spikeRow;            // a one-day bad print at this row (for the 10 % filter), -1: none
    int zeroVolumeRow;       // a row traded with volume 0, -1: none
};

// Every file ends on this day. The dates are written "mm/dd/yyyy"; the
// reader's date shortening turns "12/31/2009" into "12/31/09"
// but keeps a ten-character date of 2010 or later whole and then refuses
// the file, so the desk stays within 1990 to 2009.
inline constexpr int LastYear = 2009;
inline constexpr int LastMonth = 12;
inline constexpr int LastDay = 31;

// The ".PRC" size limit of the reader.
inline constexpr std::size_t MaxFileBytes = 56320;

// The demonstration desk: ACME, GLOBEX, INITECH (six columns), BONDFUT (two
// columns), SHORT (24 rows, six columns).
std::vector<Instrument> DefaultDesk();

// One file's text: rising weekday dates ending on the last day, CR LF line
// ends, prices with two decimals.
std::string InstrumentText(const Instrument& instrument);

// `count` weekday dates, oldest first, ending on (year, month, day) or on
// the weekday before it, as "mm/dd/yyyy".
std::vector<std::string> WeekdayDates(int count, int year, int month, int day);

// Writes every file of the desk into `folder` (created when missing).
// Returns true, or false with `error` set.
bool WriteDesk(const std::string& folder, std::string* error,
               std::vector<std::string>* written = nullptr);

} // namespace velorin::sample_data
