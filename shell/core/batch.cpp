#include "shell/core/batch.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <thread>

#include "chart_model/analysis_chart.h"
#include "chart_model/price_chart.h"
#include "chart_model/two_series_chart.h"
#include "market_data/connect.h"
#include "market_data/data_source.h"
#include "market_data/odbc_feed.h"
#include "market_data/odbc_state.h"
#include "output/chart_image.h"
#include "persistence/settings_file.h"
#include "shell/core/frame_commands.h"
#include "shell/core/shell_state.h"

namespace velorin {
namespace {

namespace fs = std::filesystem;

BitmapConverter commandProcessor;
BitmapConverter* converter = &commandProcessor;

enum class Style { Keep, Line, Bar, HighLow };

// The chain after the first price image, in order.
struct BatchImage {
    Style style;
    const char* kindName;
    const char* suffix;
    bool needsVolume; // only for a source with all six columns
};
constexpr BatchImage singleImages[] = {
    {Style::Bar, "Price", "bar", false},        {Style::HighLow, "Price", "hlc", false},
    {Style::Line, "RMA", "rma", false},         {Style::Keep, "ESMA", "ema", false},
    {Style::Keep, "WMA", "wma", false},         {Style::Keep, "MACD", "mac", false},
    {Style::Keep, "Perc. Range", "pcr", false}, {Style::Keep, "RSI", "rsi", false},
    {Style::Keep, "Oscillator", "osc", false},  {Style::Keep, "Momentum", "mom", false},
    {Style::Keep, "Stdev", "std", false},       {Style::Keep, "Stochastics", "stc", false},
    {Style::Keep, "Trend", "trd", false},       {Style::Keep, "Swing Charting", "swg", false},
    {Style::Keep, "Volume", "vol", true},       {Style::Keep, "OBV", "obv", true},
    {Style::Keep, "RVI", "rvi", true},
};

struct PairImage {
    const char* kindName;
    const char* suffix;
    bool overlay;
};
constexpr PairImage pairImages[] = {
    {"Correlation", "cor", false},
    {"Price Ratio", "rto", false},
    {"Spread", "spd", false},
    {"Relative Strength", "rst", false},
    {"Relative Performance", "rpf", false},
    {"Overlay", "ovl", true},
};

// The style a new batch chart takes from the defaults.
void SetStyleDefaults(Style style) {
    if (style == Style::Keep) return;
    chartDefaults.defaultShowLine = style == Style::Line;
    chartDefaults.defaultShowBar = style == Style::Bar;
    chartDefaults.defaultShowHighLow = style == Style::HighLow;
    chartDefaults.defaultShowCandle = 0;
}

template <std::size_t N> void CopyText(char (&target)[N], const char* text) {
    std::snprintf(target, N, "%s", text);
}

// The desk as it shows now, into `path`, with no message on failure.
bool SaveImage(Frame& frame, const std::string& path) {
    return SaveChartImage(&frame, path, true) == ChartImageSaved;
}

// The list of a run on the first statement, its text column bound to
// `code` (`size` bytes). False when the list query failed.
bool OpenList(const char* listStatement, char* code, int size) {
    OdbcCalls& odbc = TheOdbcCalls();
    OdbcHandle statement = odbcFeed.statement[0];
    odbc.Cancel(statement);
    odbc.FreeStmt(statement, OdbcResetParams);
    const short prepared = odbc.Prepare(statement, listStatement);
    if (prepared != OdbcSuccess && prepared != OdbcSuccessWithInfo) return false;
    const short executed = odbc.Execute(statement);
    if (executed != OdbcSuccess && executed != OdbcSuccessWithInfo) return false;
    odbc.FreeStmt(statement, OdbcUnbind);
    odbc.BindTextColumn(statement, 1, code, size);
    return true;
}

// The next row of the list into the bound text; a null cell leaves it empty.
short FetchListRow(char* code, int size) {
    std::memset(code, 0, static_cast<std::size_t>(size));
    return TheOdbcCalls().Fetch(odbcFeed.statement[0]);
}

// The current connection goes back to the first entry of the lists.
void RestoreSelection() {
    ConnectionSelection& sel = marketData.selection;
    CopyText(sel.currentSource, settings.sourceList[0]);
    CopyText(sel.currentTopic, settings.topicList[0]);
    CopyText(sel.currentItem, settings.itemList[0]);
}

// The price chart of `code` as the run's first (`role` 0) or second chart.
// -1 when the query failed, 0 when the source or chart failed, 1 when made.
int PriceChartOf(const char* dataStatement, const char* code, int role) {
    if (RunPriceQuery(dataStatement, code) != 0) return -1;
    CopyText(marketData.selection.currentItem, code);
    if (!ConnectDataSource(true)) return 0;
    return CreatePriceChart("Price", role, CreationMode::InBatch()) == 1 ? 1 : 0;
}

// The conversion of what the chain saved, and the wait for it.
void Convert(const char* folder, const char* prefix) {
    ConvertBitmaps(folder, prefix);
    WaitAndClean(folder);
}

// The next row of a run's list, unless the user has cancelled the run.
bool NextListRow(char* code, int size, short& fetched) {
    if (shell.batchCancelled) return false;
    fetched = FetchListRow(code, size);
    return fetched == OdbcSuccess || fetched == OdbcSuccessWithInfo;
}

// One instrument: its line price chart, then the chain, every chart filling
// the desk on top of the last. A chart that cannot be made is left out; a
// save that fails ends the chain (the first one ends the instrument).
void RunSingle(Frame& frame, const char* dataStatement, const char* code, const char* folder) {
    frame.CloseAllChildren();
    SetStyleDefaults(Style::Line);
    if (PriceChartOf(dataStatement, code, 0) != 1) return;
    if (!SaveImage(frame, BatchImagePath(folder, code, "prc"))) return;

    const bool volume = marketData.hasFullColumns == 1;
    for (const BatchImage& image : singleImages) {
        if (image.needsVolume && !volume) continue;
        SetStyleDefaults(image.style);
        if (CreateAnalysisChart(image.kindName, CreationMode::InBatch()) != 1) continue;
        if (!SaveImage(frame, BatchImagePath(folder, code, image.suffix))) break;
    }
    Convert(folder, code);
}

// One pair row "first/second": both price charts, then the pair charts made
// from them. A failed query leaves its chart out and goes on; a failed
// source or chart ends the row.
void RunPair(Frame& frame, const char* dataStatement, const char* row, const char* folder) {
    frame.CloseAllChildren();
    const char* slash = std::strchr(row, '/');
    if (!slash) return;
    const std::string first(row, slash), second(slash + 1);
    chartDefaults.batchFirstChart = chartDefaults.batchSecondChart = 0;
    SetStyleDefaults(Style::Line);
    if (PriceChartOf(dataStatement, first.c_str(), 0) == 0) return;
    if (PriceChartOf(dataStatement, second.c_str(), 1) == 0) return;

    for (const PairImage& image : pairImages) {
        const CreationMode mode = CreationMode::InBatch();
        const int made = image.overlay ? CreateOverlayChart(image.kindName, mode)
                                       : CreateTwoSeriesChart(image.kindName, mode);
        if (made != 1) continue;
        const std::string path =
            BatchPairImagePath(folder, first.c_str(), second.c_str(), image.suffix);
        if (SaveImage(frame, path)) continue;
        if (&image == &pairImages[0]) return;
        break;
    }
    Convert(folder, first.c_str());
}

// A shell word in single quotes.
std::string Quoted(const std::string& text) {
    std::string out = "'";
    for (char c : text)
        out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

// The conversion script beside the program, else the one on the path.
std::string ConversionTool() {
    std::error_code ec;
    const fs::path program = fs::read_symlink("/proc/self/exe", ec);
    if (!ec) {
        const fs::path beside = program.parent_path() / "cnvtogif";
        if (fs::exists(beside, ec)) return beside.string();
    }
    return "cnvtogif";
}

} // namespace

void BitmapConverter::Start(const std::string& command) {
    // The trailing "&" hands the tool to the background: the run goes on,
    // and only the log tells that the tool has done its work.
    [[maybe_unused]] const int handedOver = std::system((command + " >/dev/null 2>&1 &").c_str());
}

bool BitmapConverter::Pause() {
    for (int waited = 0; waited < 5000 && !fs::exists(LogPath()); waited += 100)
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    return true;
}

BitmapConverter& TheBitmapConverter() {
    return *converter;
}

BitmapConverter* InstallBitmapConverter(BitmapConverter* next) {
    BitmapConverter* previous = converter == &commandProcessor ? nullptr : converter;
    converter = next ? next : &commandProcessor;
    return previous;
}

std::string BatchImagePath(const char* folder, const char* code, const char* suffix) {
    return std::string(folder) + "/" + code + suffix + ".bmp";
}

std::string BatchPairImagePath(const char* folder, const char* first, const char* second,
                               const char* suffix) {
    return std::string(folder) + "/" + first + "_" + second + suffix + ".bmp";
}

std::string ConversionCommand(const char* folder, const char* prefix) {
    return Quoted(ConversionTool()) + " -r " +
           Quoted(std::string(folder) + "/" + prefix + "*.bmp") + " -l " +
           Quoted(TheBitmapConverter().LogPath());
}

void ConvertBitmaps(const char* folder, const char* prefix) {
    std::error_code ec;
    fs::remove(TheBitmapConverter().LogPath(), ec);
    TheBitmapConverter().Start(ConversionCommand(folder, prefix));
}

bool WaitAndClean(const char* folder) {
    // No time-out: a tool that never writes its log holds the run here
    // until the user gives the wait up.
    BitmapConverter& tool = TheBitmapConverter();
    bool logged = false;
    while (!(logged = std::ifstream(tool.LogPath()).is_open()) && tool.Pause()) {
    }
    tool.WaitEnded();
    if (!logged) {
        shell.batchCancelled = 1;
        return false;
    }
    std::error_code ec;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, ec))
        if (entry.path().extension() == ".bmp") fs::remove(entry.path(), ec);
    return true;
}

namespace {

// One batch table: each row the list statement gives goes through `run`;
// then the selection comes back and the desk is cleared. Rows are read
// into `rowSize` bytes. The last fetch
// result, or -1 when the list could not be opened.
using BatchRowRun = void (*)(Frame&, const char*, const char*, const char*);
int RunBatchTable(Frame& frame, const char* listStatement, const char* dataStatement,
                  const char* folder, int rowSize, BatchRowRun run) {
    char row[200]; // a code takes 100 bytes, a pair row 200
    if (!OpenList(listStatement, row, rowSize)) return -1;
    SetDatabaseSourceIdentity(); // item: each code in turn
    short fetched = OdbcSuccess;
    while (NextListRow(row, rowSize, fetched))
        run(frame, dataStatement, row, folder);
    RestoreSelection();
    frame.CloseAllChildren();
    return fetched;
}

} // namespace

int BatchSingles(Frame& frame, const char* listStatement, const char* dataStatement,
                 const char* folder) {
    return RunBatchTable(frame, listStatement, dataStatement, folder, 100, RunSingle);
}

int BatchPairs(Frame& frame, const char* listStatement, const char* dataStatement,
               const char* folder) {
    return RunBatchTable(frame, listStatement, dataStatement, folder, 200, RunPair);
}

void RunDatabaseBatch(Frame& frame) {
    shell.batchRunning = 1;
    shell.batchCancelled = 0;
    const ChartDefaults styles = chartDefaults;
    char dataStatement[StatementTextSize];
    BuildStatementText(dataStatement);
    const char* where = marketData.selection.currentSqlWhere;
    // No folder named yet (a first run writes its "." only at exit): the
    // working directory, never the root of the file system.
    const char* folder = settings.batchFolder[0] ? settings.batchFolder : ".";
    const char* tables[] = {settings.batchTable1, settings.batchTable2, settings.batchPairTable};
    for (const char* table : tables) {
        if (shell.batchCancelled) break; // a cancelled wait ends the whole run
        char list[StatementTextSize];
        std::snprintf(list, sizeof list, "SELECT distinct %s FROM %s", where, table);
        if (table == settings.batchPairTable)
            BatchPairs(frame, list, dataStatement, folder);
        else
            BatchSingles(frame, list, dataStatement, folder);
    }
    // The user's chart styles come back once the run has used its own.
    chartDefaults.defaultShowLine = styles.defaultShowLine;
    chartDefaults.defaultShowBar = styles.defaultShowBar;
    chartDefaults.defaultShowHighLow = styles.defaultShowHighLow;
    chartDefaults.defaultShowCandle = styles.defaultShowCandle;
    UpdateFrameMenuState(frame);
    shell.batchRunning = 0;
}

} // namespace velorin
