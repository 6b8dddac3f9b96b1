#pragma once
// Turning staged rows into a data source.

#include <cstdint>

namespace velorin {

struct DataSource;

// Builds a DataSource in slot marketData.nextSourceSlot from the staging
// area and the selection. Returns 1, or 0 with the slot empty.
int ConnectDataSource();

// --- The live value of a Reuter time series (Part 2.3 steps 8 to 10) -----
//
// The DDE feed (Part 2.4) installs these hooks; it is the one seam through
// which ConnectDataSource reaches DDE. ConnectDataSource itself does step 8a
// (disconnect, clear, currentTopic = "IDN"), shows every message of Part 2.3,
// frees the slot on failure, and does steps 9 and 10 on success.
enum class LiveValueResult {
    Ok,            // conversation open, reply parsed into staging row 0
    NoConnection,  // 8c: DdeConnect gave no conversation
    NoData,        // 8e: the request returned no data (conversation still open)
    ReplyRejected, // 8f: ParseDdeReply returned 0 (conversation still open)
};

struct LiveFeedHooks {
    // DdeDisconnect. nullptr (no DDE feed): there is nothing to disconnect.
    void (*disconnect)(std::intptr_t conversation) = nullptr;
    // Steps 8b to 8f for the selection (currentTopic already "IDN"): make the
    // service and topic strings, BuildDdeItem, DdeConnect and free the
    // strings; store the conversation in marketData.liveConversation; free
    // an earlier marketData.liveItem and make the new one from the item
    // text; request with CF_TEXT and 60000 ms; ParseDdeReply into the
    // staging area. nullptr (no DDE feed): treated as NoConnection.
    LiveValueResult (*openLiveValue)() = nullptr;
};
extern LiveFeedHooks liveFeed;

// True when the selection names the Reuter time series (step 7): source
// "Reuter", "REUTER" or "reuter", topic "TS1" or "ts1", item not beginning
// with "K%" or "k%".
bool SelectionIsReuterTimeSeries();

// Step 9: writes staging row 0 behind the first `kept` rows of `source`:
// dateText, high, low, open, close and volume / 1000.0 (dateNumber of that
// row is left as it is). With `kept` at MaxRows the rows 1 to 1998 first take
// the row after them (all but dateNumber; row 0 stays), and the row goes to
// 1999. Returns the row written; the caller sets rowCount to that plus one.
int AppendStagedRow(DataSource& source, int kept);

} // namespace velorin
