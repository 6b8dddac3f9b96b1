#include "chart_model/live_update.h"

#include <cstdio>
#include <cstring>

#include "base/format_field.h"
#include "base/user_seam.h"
#include "chart_model/analysis_chart.h"
#include "chart_model/chart_kinds.h"
#include "chart_model/desk.h"
#include "chart_model/price_chart.h"
#include "market_data/data_file.h"
#include "market_data/data_source.h"
#include "market_data/dde_client.h"
#include "market_data/dde_text.h"
#include "market_data/odbc_feed.h"
#include "market_data/source_rows.h"

namespace velorin {
namespace {

DataSource* SourceOfConversation(Conversation conversation) {
    for (int slot = 0; slot < MaxSourceSlots; ++slot) {
        DataSource* s = marketData.dataSources[slot];
        if (s && s->conversation == conversation) return s;
    }
    return nullptr;
}

// The history of the live service keeps its last row live: each update
// replaces it, all but its date number.
bool IsLiveHistory(const DataSource& s) {
    return std::strcmp(s.source, "REUTER") == 0 && std::strcmp(s.topic, "TS1") == 0 &&
           std::strncmp(s.item, "K%", 2) != 0 && std::strncmp(s.item, "k%", 2) != 0;
}

void WriteRow(DataColumns& to, int at, int from, bool withDateNumber) {
    const DataColumns& staged = marketData.fetchColumns;
    std::memcpy(to.dateText[at], staged.dateText[from], sizeof(DateText));
    to.dateText[at][DateTextSize - 1] = '\0';
    if (withDateNumber) to.dateNumber[at] = staged.dateNumber[from];
    to.high[at] = staged.high[from];
    to.low[at] = staged.low[from];
    to.open[at] = staged.open[from];
    to.close[at] = staged.close[from];
    to.volume[at] = staged.volume[from] / 1000.0;
}

// A full tick table drops its oldest 100 rows: rows 100 to 1999 move up,
// all but their date numbers, and the last 100 are blanked.
constexpr int TickShift = 100;
void DropOldestTicks(DataColumns& c) {
    const std::size_t kept = MaxRows - TickShift;
    std::memmove(c.dateText[0], c.dateText[TickShift], kept * sizeof(DateText));
    for (double* column : {c.high, c.low, c.open, c.close, c.volume}) {
        std::memmove(column, column + TickShift, kept * sizeof(double));
        std::memset(column + kept, 0, TickShift * sizeof(double));
    }
    std::memset(c.dateText[kept], 0, TickShift * sizeof(DateText));
}

// A tick passes the filter against its own values, so only a price that is
// not above zero refuses it.
bool TickPasses(const DataColumns& c, int row, bool full, bool filtered) {
    if (!filtered) return true;
    if (!full) return c.close[row] > 0.0;
    return c.open[row] > 0.0 && c.close[row] > 0.0 && c.low[row] > 0.0 && c.high[row] > 0.0;
}

int StagedRowCount() {
    const int rows = marketData.fetchRowCount;
    return rows < 0 ? 0 : rows > MaxRows ? MaxRows : rows;
}

} // namespace

void TellCharts(Conversation conversation, const DataSource& source, int fullColumns,
                bool clearOneRowHandles) {
    ChartWindowRef windows[MaxCharts];
    const int n = TheDesk().ChartWindows(windows, MaxCharts);
    for (int i = 0; i < n; ++i) {
        Chart& chart = *windows[i].chart;
        if (chart.connectionId != conversation) continue;
        const ChartKindInfo* kind = KindById(chart.kind);
        if (kind && kind->layout == LayoutPair) continue;
        if (clearOneRowHandles && chart.rowCount == 1) chart.showCurveHandles = 0;
        if (fullColumns >= 0) chart.hasFullColumns = fullColumns;
        chart.rowCount = source.rowCount;
        RecomputeChart(windows[i].window, chart);
    }
}

std::uint32_t DdeCallback(DdeTransaction type, Conversation conversation, const char* data,
                          std::size_t size) {
    switch (type) {
    case DdeTransaction::AdviseData:
        if (!data || ParseDdeReply(data, size) != 1) return 0;
        ApplyAdviseRows(conversation);
        return DdeAcknowledged;
    case DdeTransaction::Disconnect:
        Seam().ShowMessage("Server forced disconncect", "QDX-Velorin", MessageIcon::Information);
        return 0;
    }
    return 0;
}

void ApplyAdviseRows(Conversation conversation) {
    WaitCursor wait;
    DataSource* found = SourceOfConversation(conversation);
    if (!found || !found->columns) return;
    DataSource& s = *found;
    DataColumns& c = *s.columns;
    const bool full = marketData.hasFullColumns != 0;
    const int staged = StagedRowCount();

    if (IsLiveHistory(s)) {
        if (staged < 1 || s.rowCount < 1) return;
        WriteRow(c, s.rowCount - 1, 0, false);
    } else {
        const int first = FirstValidStagedRow(staged, full);
        if (first < 0) return; // nothing usable: the rows stay as they were
        if (s.tick == 0) {
            RebuildSourceRows(s);
        } else {
            int p = 0;
            if (s.chartsCurrent == 1 && s.rowCount >= MaxRows) {
                DropOldestTicks(c);
                p = MaxRows - TickShift;
            } else if (s.chartsCurrent == 1) {
                p = s.rowCount;
            } else {
                p = s.rowCount > 0 ? s.rowCount - 1 : 0; // the pending row is overwritten
            }
            WriteRow(c, p, first, true);
            const bool pass = StagedRowIsValid(first, full) &&
                              TickPasses(marketData.fetchColumns, first, full, s.filtered != 0);
            s.rowCount = pass ? p + 1 : p;
        }
    }

    // The Timer is the sampling period: updates within it wait.
    const std::int64_t now = LiveNowSeconds();
    if (now - s.lastUpdateTime < s.tickSeconds) {
        s.chartsCurrent = 0;
        return;
    }
    s.lastUpdateTime = now;
    TellCharts(conversation, s, -1, s.tick == 1);
    s.chartsCurrent = 1;
}

void RefreshPendingCharts() {
    const std::int64_t now = LiveNowSeconds();
    for (int slot = 0; slot < MaxSourceSlots; ++slot) {
        DataSource* s = marketData.dataSources[slot];
        if (!s || s->chartsCurrent != 0 || now - s->lastUpdateTime < s->tickSeconds) continue;
        TellCharts(s->conversation, *s, -1, false);
        s->chartsCurrent = 1;
    }
}

void RefetchAllSources() {
    ConnectionSelection& sel = marketData.selection;
    for (int slot = 0; slot < MaxSourceSlots; ++slot) {
        DataSource* s = marketData.dataSources[slot];
        if (!s) continue;
        const bool file = std::strcmp(s->source, "DATAFILE") == 0;
        const bool database = std::strncmp(s->source, "DSN,", 4) == 0;
        if (!file && !database) continue; // live sources are pushed, not fetched
        std::memcpy(sel.currentSource, s->source, sizeof sel.currentSource);
        std::memcpy(sel.currentTopic, s->topic, sizeof sel.currentTopic);
        std::memcpy(sel.currentItem, s->item, sizeof sel.currentItem);
        if (file) {
            if (!LoadDataFile(1)) continue;
        } else {
            // The connection is opened for the query and closed after it,
            // whatever the query gave, so that no cycle leaves handles open.
            if (SplitDatabaseSource(s->source, s->topic, s->item) != 1) continue;
            if (OdbcConnect() != 0) continue;
            char statement[StatementTextSize];
            BuildStatementText(statement);
            const int read = RunPriceQuery(statement, sel.currentSqlCode);
            OdbcDisconnect();
            if (read != 0) continue;
        }
        // The whole series is replaced; with no valid row the source is empty.
        if (RebuildSourceRows(*s) < 0) s->rowCount = 0;
        TellCharts(s->conversation, *s, marketData.hasFullColumns, false);
        s->chartsCurrent = 1;
    }
}

void MoveChartToSource(Chart& chart, int slot) {
    DataSource* to = SourceAt(slot);
    if (!to) return;
    if (DataSource* from = SourceAt(chart.sourceSlot)) --from->refCount;
    ++to->refCount;
    chart.sourceSlot = slot;
    chart.rowCount = to->rowCount;
    chart.connectionId = to->conversation;
    char name[256];
    InstrumentName(to->topic, to->item, name, sizeof name);
    const int rows = to->rowCount;
    if (to->tick) {
        FormatField(chart.chartTitle, sizeof chart.chartTitle, "%s - Tick", name);
    } else {
        const char* first = rows > 0 ? to->columns->dateText[0] : "";
        const char* last = rows > 0 ? to->columns->dateText[rows - 1] : "";
        FormatField(chart.chartTitle, sizeof chart.chartTitle, "%s %s - %s", name, first, last);
    }
    FormatField(chart.windowCaption, sizeof chart.windowCaption,
                to->filtered ? "Filtered %s %s" : "%s %s", chart.kindName, chart.chartTitle);
}

} // namespace velorin
