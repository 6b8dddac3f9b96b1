#pragma once
// The table of loaded instruments, the staging area every feed writes into,
// and the current connection selection.

#include <cstdint>

#include "market_data/block.h"
#include "base/series.h"

namespace velorin {

inline constexpr int MaxSourceSlots = 1000;
// The connect commands refuse a new source at this slot number or above.
inline constexpr int SourceSlotLimit = 999;
// Raw text buffers: six columns of 32 characters for 2000 rows, plus one,
// held in 16 bits (384001 mod 65536).
inline constexpr int FileTextSize = 56321;
// Largest data file accepted, in bytes.
inline constexpr long MaxDataFileBytes = 56320;

using DateText = char[DateTextSize];

// One set of columns, each MaxRows long.
struct DataColumns {
    DateText* dateText;  // short date as shown on the axis
    double* dateNumber;  // days since 30 December 1899; 0.0: no known date
    double* low;
    double* high;
    double* open;
    double* close;       // the only price of a two-column source
    double* volume;      // thousands in a DataSource, as delivered when staged
};

struct DataSource {
    std::int32_t refCount;   // charts (and companion views) using it
    std::int32_t filtered;   // the spike filter was on at connection
    char topic[255];         // DDE topic, file path, ODBC table;where,fields or "SQLFreeText"
    char source[100];        // DDE service, "DATAFILE" or "DSN,name,user,password"
    char item[255];          // DDE item, file stem, SQL code or "Unsaved"
    std::intptr_t adviseItem;    // item kept for a live advise loop, else 0
    std::intptr_t conversation;  // live conversation, or -(slot+1) for file and ODBC sources
    std::int32_t firstRow;   // first row to draw: 0
    std::int32_t rowCount;   // rows in the columns, at most MaxRows
    char resolutionCode;     // 'd', 'w' or 'm'
    std::int32_t tick;       // tick-by-tick data
    std::int32_t tickSeconds;    // minimum seconds between chart updates
    std::int64_t lastUpdateTime; // seconds; when the charts were last brought up to date
    std::int32_t chartsCurrent;  // 1: charts show all data; 0: an update is pending
    DataColumns* columns;
    BlockHandle blockHandles[9]; // [0] record, [1] columns, [2..8] the seven arrays
};

// What the next connection will use.
struct ConnectionSelection {
    char currentSource[100];
    char currentTopic[255];
    char currentItem[255];
    char currentTickval[100];
    char currentDsn[100];
    char currentSqlTable[100];
    char currentSqlFields[255];
    char currentSqlWhere[100];
    char currentSqlCode[100];
    char currentSqlText[8192];
};

// Everything the market data subsystem keeps for the whole run.
struct MarketDataState {
    DataSource* dataSources[MaxSourceSlots]; // empty slot: nullptr
    std::int32_t nextSourceSlot;             // slot the next connection uses

    // Staging area of every feed.
    DataColumns fetchColumns;
    BlockHandle fetchBlockHandles[7];
    std::int32_t fetchRowCount;
    std::int32_t hasFullColumns; // 1: all columns; 0: date and one price (starts at 1)
    std::int32_t fetchIsTick;
    char* fileText;  // FileTextSize bytes: raw text of a file or a feed reply
    char* tokenText; // FileTextSize bytes: second copy for the row pass
    BlockHandle fileTextHandle;
    BlockHandle tokenTextHandle;

    // Spike filter and the connection in progress.
    std::int32_t filterOn;  // the "Filter data" option; 0 at start
    double filterBand;      // 0.1
    char resolutionCode;    // of the selection: 'd' at start
    std::intptr_t liveConversation;
    std::intptr_t liveItem;

    ConnectionSelection selection;
};

extern MarketDataState marketData;

// Resets the state to its start-up values without touching blocks
// (nullptr tables, filter off, band 0.1, 'd', hasFullColumns 1).
// The staging blocks (fetchColumns, fileText, tokenText and their handles)
// keep their addresses; the records of the data source table are not
// released, only forgotten: free the slots first.
void ResetMarketDataState();

// Allocates the staging columns and the two text buffers. Returns false on
// the first failure, leaving what was allocated for ReleaseStagingBlocks.
bool AllocateStagingBlocks();
void ReleaseStagingBlocks();

// Slot records. NewDataSource returns 1 or 0 (partial record left in place
// for FreeDataSource, which copes with it).
int NewDataSource(int slot);
void FreeDataSource(int slot);

// The source in `slot`, or nullptr for an empty or out-of-range slot.
DataSource* SourceAt(int slot);

} // namespace velorin
