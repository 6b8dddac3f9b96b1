#include "market_data/connect.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "base/series.h"
#include "base/user_seam.h"
#include "market_data/data_source.h"
#include "market_data/dde_client.h"
#include "market_data/source_rows.h"

namespace velorin {

namespace {

constexpr const char* Caption = "QDX-Velorin";

void Inform(const char* text) {
    Seam().ShowMessage(text, Caption, MessageIcon::Information);
}

// Messages of the first two failures are held back during a Make All run.
void InformUnless(bool silent, const char* text) {
    if (!silent) Inform(text);
}

void CopyField(char* destination, std::size_t destinationSize, const char* source,
               std::size_t sourceSize) {
    std::size_t length = strnlen(source, sourceSize);
    if (length > destinationSize - 1) length = destinationSize - 1;
    std::memmove(destination, source, length);
    destination[length] = '\0';
}

template <std::size_t D, std::size_t S>
void CopyField(char (&destination)[D], const char (&source)[S]) {
    CopyField(destination, D, source, S);
}

template <std::size_t D> void SetField(char (&destination)[D], const char* text) {
    CopyField(destination, D, text, std::strlen(text));
}

// Ends the connection in progress, if it is a live one, and forgets it.
void DisconnectLive() {
    DisconnectConversation(marketData.liveConversation);
    marketData.liveConversation = 0;
}

bool StagingReady() {
    const DataColumns& c = marketData.fetchColumns;
    return c.dateText && c.dateNumber && c.low && c.high && c.open && c.close && c.volume;
}

std::int32_t TickSeconds(const char (&text)[100]) {
    char copy[sizeof text + 1];
    CopyField(copy, sizeof copy, text, sizeof text);
    const long value = std::strtol(copy, nullptr, 10);
    if (value > INT32_MAX) return INT32_MAX;
    if (value < INT32_MIN) return INT32_MIN;
    return static_cast<std::int32_t>(value);
}

} // namespace

bool SelectionIsReuterTimeSeries() {
    const ConnectionSelection& s = marketData.selection;
    const bool reuter = std::strcmp(s.currentSource, "Reuter") == 0 ||
                        std::strcmp(s.currentSource, "REUTER") == 0 ||
                        std::strcmp(s.currentSource, "reuter") == 0;
    const bool ts1 =
        std::strcmp(s.currentTopic, "TS1") == 0 || std::strcmp(s.currentTopic, "ts1") == 0;
    const bool chain =
        std::strncmp(s.currentItem, "K%", 2) == 0 || std::strncmp(s.currentItem, "k%", 2) == 0;
    return reuter && ts1 && !chain;
}

int AppendStagedRow(DataSource& source, int kept) {
    DataColumns& to = *source.columns;
    const DataColumns& from = marketData.fetchColumns;
    if (kept < 0) kept = 0;
    if (kept >= MaxRows) {
        // Row 0 stays; rows 1 to 1998 take the next row; dateNumber stays.
        const std::size_t moved = static_cast<std::size_t>(MaxRows - 2);
        std::memmove(to.dateText[1], to.dateText[2], moved * sizeof(DateText));
        std::memmove(to.high + 1, to.high + 2, moved * sizeof(double));
        std::memmove(to.low + 1, to.low + 2, moved * sizeof(double));
        std::memmove(to.open + 1, to.open + 2, moved * sizeof(double));
        std::memmove(to.close + 1, to.close + 2, moved * sizeof(double));
        std::memmove(to.volume + 1, to.volume + 2, moved * sizeof(double));
        kept = MaxRows - 1;
    }
    CopyField(to.dateText[kept], sizeof(DateText), from.dateText[0], sizeof(DateText));
    to.high[kept] = from.high[0];
    to.low[kept] = from.low[0];
    to.open[kept] = from.open[0];
    to.close[kept] = from.close[0];
    to.volume[kept] = from.volume[0] / 1000.0;
    return kept;
}

int ConnectDataSource(bool silent) {
    ConnectionSelection& selection = marketData.selection;
    const bool full = marketData.hasFullColumns != 0;
    int rows = marketData.fetchRowCount;
    if (rows > MaxRows) rows = MaxRows;
    if (!StagingReady()) rows = 0;
    const int slot = marketData.nextSourceSlot;

    // 1. The first valid row.
    const int first = FirstValidStagedRow(rows, full);
    if (first < 0) {
        DisconnectLive();
        InformUnless(silent, "No valid data - Please try again");
        return 0;
    }

    // 2. The slot's record.
    if (!NewDataSource(slot)) {
        DisconnectLive();
        InformUnless(silent, "Too Many Open Connections - Please close some");
        FreeDataSource(slot);
        return 0;
    }
    DataSource& source = *marketData.dataSources[slot];

    // 3. The description.
    CopyField(source.source, selection.currentSource);
    CopyField(source.topic, selection.currentTopic);
    CopyField(source.item, selection.currentItem);
    source.filtered = marketData.filterOn;
    const bool pseudoConversation = std::strcmp(selection.currentSource, "DATAFILE") == 0 ||
                                    std::strncmp(selection.currentSource, "DSN,", 4) == 0;
    source.conversation =
        pseudoConversation ? -(static_cast<std::intptr_t>(slot) + 1) : marketData.liveConversation;
    source.resolutionCode = marketData.resolutionCode;
    source.tick = marketData.fetchIsTick;
    source.tickSeconds = TickSeconds(selection.currentTickval);
    source.lastUpdateTime = LiveNowSeconds();

    // 4 and 5. Copy the valid rows that pass the filter.
    int kept = CopyStagedRows(*source.columns, first, rows, full, marketData.filterOn != 0);

    // 6.
    source.refCount = 1;
    source.rowCount = kept;
    source.firstRow = 0;
    source.adviseItem = marketData.liveItem;
    source.chartsCurrent = 1;

    // 7.
    if (!SelectionIsReuterTimeSeries()) return 1;

    // 8. The second conversation, for the live value.
    DisconnectLive();
    SetField(selection.currentTopic, "IDN");
    switch (RequestLiveSnapshot()) {
    case LiveRequestResult::Ok:
        break;
    case LiveRequestResult::NoConversation:
        Inform("Data source for IDN not available");
        FreeDataSource(slot);
        return 0;
    case LiveRequestResult::NoData:
        Inform("Data for IDN not available from server");
        FreeDataSource(slot);
        return 0;
    case LiveRequestResult::ReplyRejected:
        FreeDataSource(slot);
        return 0;
    }

    // 9. Append the live row.
    kept = AppendStagedRow(source, kept);

    // 10. The selection gets the stored description back; the source
    // becomes the live time series.
    CopyField(selection.currentSource, source.source);
    CopyField(selection.currentTopic, source.topic);
    CopyField(selection.currentItem, source.item);
    SetField(source.source, "REUTER");
    SetField(source.topic, "TS1");
    source.conversation = marketData.liveConversation;
    source.adviseItem = marketData.liveItem;
    source.rowCount = kept + 1;
    marketData.fetchIsTick = 0;
    source.tick = 0;
    return 1;
}

} // namespace velorin
