#include "shell/core/layout_commands.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "base/user_seam.h"
#include "chart_model/analysis_chart.h"
#include "chart_model/price_chart.h"
#include "market_data/data_source.h"
#include "market_data/odbc_feed.h"
#include "market_data/odbc_state.h"
#include "market_data/source_dialog.h"
#include "rendering/palette.h"
#include "resources/command_ids.h"
#include "shell/core/live_commands.h"
#include "shell/core/shell_state.h"
#include "views/data_view.h"

namespace velorin {
namespace {

constexpr const char* LayoutFilter = "Velorin Layout (*.vl)";
constexpr const char* LayoutExtension = "vl";

template <std::size_t N> void CopyText(char (&to)[N], const char* from) {
    std::snprintf(to, N, "%s", from);
}

// The nine lists the settings file shares with the connection dialogs,
// copied whole from the file's record to the program's copies or back; the
// types keep the entry widths equal.
void CopySharedLists(bool intoSettings) {
    const auto copy = [intoSettings](auto& stored, auto& live) {
        static_assert(sizeof stored == sizeof live);
        if (intoSettings)
            std::memcpy(stored, live, sizeof stored);
        else
            std::memcpy(live, stored, sizeof live);
    };
    copy(settings.dsnList, sqlLists.dsnList);
    copy(settings.sqlTableList, sqlLists.sqlTableList);
    copy(settings.sqlFieldsList, sqlLists.sqlFieldsList);
    copy(settings.sqlWhereList, sqlLists.sqlWhereList);
    copy(settings.sqlCodesList, sqlLists.sqlCodesList);
    copy(settings.sourceList, sourceLists.sourceList);
    copy(settings.topicList, sourceLists.topicList);
    copy(settings.itemList, sourceLists.itemList);
    copy(settings.tickvalList, sourceLists.tickvalList);
}

// The first entry of each list on a first run. The reader takes the line
// after a list's header as its first entry whatever it holds, so a list
// written empty would swallow the next header; these keep each section
// whole. The database entries name the sample database's price table.
struct FirstRunEntry {
    char* list; // entry 0 of the list
    std::size_t width;
    const char* text;
};

void FillFirstRunEntries(Settings& s) {
    const FirstRunEntry lists[] = {
        {s.tickvalList[0], sizeof s.tickvalList[0], "5"},
        {s.itemList[0], sizeof s.itemList[0], "ACME"},
        {s.topicList[0], sizeof s.topicList[0], "TS1"},
        {s.sourceList[0], sizeof s.sourceList[0], "Reuter"},
        {s.dsnList[0], sizeof s.dsnList[0], "VelorinSample"},
        {s.sqlTableList[0], sizeof s.sqlTableList[0], "prices"},
        {s.sqlFieldsList[0], sizeof s.sqlFieldsList[0], "tradedate,close,open,high,low,volume"},
        {s.sqlWhereList[0], sizeof s.sqlWhereList[0], "code"},
        {s.sqlCodesList[0], sizeof s.sqlCodesList[0], "ACME"},
        // "[System]": an empty text line would shift the lines after it.
        {s.batchFolder, sizeof s.batchFolder, "."},
        {s.batchTable1, sizeof s.batchTable1, "codes"},
        {s.batchTable2, sizeof s.batchTable2, "codes"},
        {s.batchPairTable, sizeof s.batchPairTable, "codes"},
    };
    for (const FirstRunEntry& e : lists)
        if (e.list[0] == '\0') std::snprintf(e.list, e.width, "%s", e.text);
}

void Inform(const char* text) {
    Seam().ShowMessage(text, "QDX-Velorin", MessageIcon::Information);
}

// The Save dialog; on OK the layout is written.
void SaveLayoutDialog(Frame& frame) {
    std::string path;
    const int answer =
        Seam().AskFile({LayoutFilter, "Save Velorin Layout As", LayoutExtension, true}, path);
    if (answer == 1) {
        SaveLayoutFile(frame, path.c_str());
    } else if (answer < 0) {
        Inform("Unable to save file");
        shell.layoutPath[0] = '\0';
    }
}

// The Open dialog; on OK the layout is read and its windows come back.
void OpenLayoutDialog(Frame& frame) {
    std::string path;
    const int answer =
        Seam().AskFile({LayoutFilter, "Open Velorin Layout", LayoutExtension, false}, path);
    if (answer == 0) return;
    if (answer < 0 || LoadSettings(settings, path.c_str(), shell.settingsPath) != 1) {
        Inform("Unable to open file");
        shell.layoutPath[0] = '\0';
        return;
    }
    ApplySettings();
    CopyText(shell.layoutPath, path.c_str());
    RestoreLayout(frame);
}

// The open source a row names, matched on all six fields; -1 for none.
int MatchingSource(const LayoutRow& row) {
    const long timer = std::strtol(row.timerText, nullptr, 10);
    for (int slot = 0; slot < MaxSourceSlots; ++slot) {
        const DataSource* s = marketData.dataSources[slot];
        if (s && std::strcmp(s->source, row.source) == 0 && std::strcmp(s->topic, row.topic) == 0 &&
            std::strcmp(s->item, row.item) == 0 && s->filtered == row.filtered &&
            s->resolutionCode == row.resolutionCode && s->tickSeconds == timer)
            return slot;
    }
    return -1;
}

// A row's source connected again the way it was first connected, with no
// dialog.
void ConnectRow(Frame& frame, const LayoutRow& row, const CreationMode& mode) {
    if (std::strcmp(row.source, "DATAFILE") == 0) return ConnectDataFile(frame, mode);
    shell.lastConnectOk = 0;
    if (std::strncmp(row.source, "DSN,", 4) != 0) return ConnectLive(frame, mode);
    if (SplitDatabaseSource(row.source, row.topic, row.item) == 1) ConnectDatabase(frame, mode);
}

// The request fields the connection dialogs fill, from a row.
void RequestFromRow(const LayoutRow& row) {
    ConnectionSelection& sel = marketData.selection;
    CopyText(sel.currentSource, row.source);
    CopyText(sel.currentTopic, row.topic);
    CopyText(sel.currentItem, row.item);
    CopyText(sel.currentTickval, row.timerText);
    marketData.resolutionCode = row.resolutionCode;
    marketData.hasFullColumns = row.hasFullColumns;
    marketData.filterOn = row.filtered;
    chartDefaults.defaultGrid = row.gridOn;
    chartDefaults.defaultShowBar = row.showBar;
    chartDefaults.defaultShowCandle = row.showCandle;
    chartDefaults.defaultShowHighLow = row.showHighLow;
    chartDefaults.defaultShowLine = row.showLine;
}

} // namespace

int ReadSettingsAtStart() {
    const int read = LoadSettings(settings, shell.settingsPath, shell.settingsPath);
    if (read == 1) ApplySettings();
    ConnectionSelection& sel = marketData.selection;
    CopyText(sel.currentSource, settings.sourceList[0]);
    CopyText(sel.currentTopic, settings.topicList[0]);
    CopyText(sel.currentItem, settings.itemList[0]);
    CopyText(sel.currentTickval, settings.tickvalList[0]);
    CopyText(sel.currentDsn, settings.dsnList[0]);
    CopyText(sel.currentSqlTable, settings.sqlTableList[0]);
    CopyText(sel.currentSqlFields, settings.sqlFieldsList[0]);
    CopyText(sel.currentSqlWhere, settings.sqlWhereList[0]);
    CopyText(sel.currentSqlCode, settings.sqlCodesList[0]);
    sel.currentSqlText[0] = '\0';
    return read;
}

bool SettingsFrameRectangle(int* x, int* y, int* width, int* height) {
    if (settings.frameWidth <= 0 || settings.frameHeight <= 0) return false;
    *x = settings.frameX, *y = settings.frameY;
    *width = settings.frameWidth, *height = settings.frameHeight;
    return true;
}

void WriteSettingsAtExit(Frame& frame) {
    if (shell.settingsPath[0] == '\0') return;
    const std::string path = shell.settingsPath;
    SaveLayoutFile(frame, path.c_str());
}

void ApplySettings() {
    for (int i = 0; i < PaletteSize; ++i) {
        palette.current[i] = static_cast<Colour>(settings.colours[i]);
        palette.defaults[i] = static_cast<Colour>(settings.defaultColours[i]);
    }
    CopySharedLists(false);
    refreshCycle.fetchFrequencyMinutes = settings.fetchFrequencyMinutes;
    chartDefaults.defaultResolution = settings.defaultResolution;
}

void CollectSettings() {
    for (int i = 0; i < PaletteSize; ++i) {
        settings.colours[i] = static_cast<std::int32_t>(palette.current[i]);
        settings.defaultColours[i] = static_cast<std::int32_t>(palette.defaults[i]);
    }
    CopySharedLists(true);
    settings.fetchFrequencyMinutes = refreshCycle.fetchFrequencyMinutes;
    settings.defaultResolution = chartDefaults.defaultResolution;
    FillFirstRunEntries(settings);
}

int SaveLayoutFile(Frame& frame, const char* path) {
    const std::string target = path; // may be the layout path itself
    CollectSettings();
    const std::vector<DeskWindow> windows = frame.DeskWindows();
    std::vector<LayoutRecord> records(LayoutRecordLimit);
    const int count = GatherLayoutRecords(windows, records);
    const int ok = SaveSettings(
        settings, std::span<const LayoutRecord>(records.data(), static_cast<std::size_t>(count)),
        target.c_str());
    if (ok == 1)
        CopyText(shell.layoutPath, target.c_str());
    else
        shell.layoutPath[0] = '\0';
    return ok;
}

void LayoutCommand(Frame& frame, int commandId) {
    WaitCursor wait;
    switch (commandId) {
    case cmd::New:
        shell.layoutPath[0] = '\0';
        CloseAllCharts(frame);
        break;
    case cmd::Open:
        CloseAllCharts(frame);
        OpenLayoutDialog(frame);
        break;
    case cmd::Save:
        if (shell.layoutPath[0] == '\0')
            SaveLayoutDialog(frame);
        else
            SaveLayoutFile(frame, shell.layoutPath);
        break;
    case cmd::SaveAs:
        SaveLayoutDialog(frame);
        break;
    case cmd::Restore:
        shell.layoutPath[0] = '\0';
        CloseAllCharts(frame);
        RestoreLayout(frame);
        break;
    default:
        break;
    }
}

void RestoreLayout(Frame& frame) {
    // The filter option and the style of new charts are the user's: the
    // rows borrow them while they connect, and they come back at the end.
    const std::int32_t filterOn = marketData.filterOn;
    const ChartDefaults defaults = chartDefaults;
    const SettingsRowReader reader;
    std::vector<WindowId> connectionCharts;
    shell.restoringLayout = 1;
    for (int index = 0; index < LayoutRowCount && settings.connections[index].source[0]; ++index) {
        const LayoutRow& row = settings.connections[index];
        RequestFromRow(row);
        const CreationMode mode = CreationMode::Restore(reader, index);
        chartDefaults.reuseSource = 0;
        if (const int slot = MatchingSource(row); slot >= 0) {
            // Shared with the open source; the last connection's outcome
            // still decides whether the row gets its window.
            chartDefaults.reuseSource = 1;
            chartDefaults.reuseSlot = slot;
            chartDefaults.reuseConnectionId = marketData.dataSources[slot]->conversation;
        } else {
            chartDefaults.batchFirstChart = 0;
            ConnectRow(frame, row, mode);
            if (shell.lastConnectOk == 1 && chartDefaults.batchFirstChart)
                connectionCharts.push_back(chartDefaults.batchFirstChart);
        }
        if (shell.lastConnectOk == 1 && row.kindName[0] != '\0') {
            if (std::strcmp(row.kindName, "Data View") == 0)
                CreateDataView(mode);
            else
                CreateAnalysisChart(row.kindName, mode);
        }
    }
    // The connection charts go, last made first; the restored charts keep
    // their sources by reference.
    for (auto it = connectionCharts.rbegin(); it != connectionCharts.rend(); ++it)
        frame.DestroyChild(*it);
    shell.restoringLayout = 0;
    chartDefaults = defaults;
    chartDefaults.reuseSource = 0;
    marketData.filterOn = filterOn;
    UpdateFrameMenuState(frame);
}

double SettingsRowReader::Resolution(int row) const {
    return settings.connections[row].resolution;
}

void SettingsRowReader::Rectangle(int row, int* x, int* y, int* width, int* height) const {
    const LayoutRow& r = settings.connections[row];
    *x = r.x, *y = r.y, *width = r.width, *height = r.height;
}

void SettingsRowReader::CopyDrawnObjects(int row, Chart* chart) const {
    DrawingSet* d = chart->drawings;
    if (!d) return;
    // The rows' region handles are null, as those of a new chart are.
    const LayoutRow& r = settings.connections[row];
    *d->trendLines = r.trendLines;
    *d->channels = r.channelLines;
    *d->verticalLines = r.verticalLines;
    *d->horizontalLines = r.horizontalLines;
}

void SettingsRowReader::Parameters(int row, double* param1, double* param2, double* param3) const {
    const LayoutRow& r = settings.connections[row];
    *param1 = r.param1, *param2 = r.param2, *param3 = r.param3;
}

int SettingsRowReader::PriceScale(int row) const {
    return settings.connections[row].priceScaleDenominator;
}

void SettingsRowReader::View(int row, ChartView* view) const {
    const LayoutRow& r = settings.connections[row];
    view->showBar = r.showBar, view->showCandle = r.showCandle;
    view->showHighLow = r.showHighLow, view->showLine = r.showLine;
    view->gridOn = r.gridOn;
    view->resolution = r.resolution;
}

} // namespace velorin
