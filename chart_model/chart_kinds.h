#pragma once
// One record per chart kind: its name, the command that opens it, the
// blocks and window it gets, the rows it needs, how its parameters start
// and come back from a layout, the engines it runs, the curves it draws and
// what its menus offer. Code that differs by kind reads the record; nothing
// else tests kind names or numbers.

#include <cstdint>

namespace velorin {

struct Chart;
struct DataColumns;

// Block layouts given to NewChart.
enum ChartLayout : int {
    LayoutPlain = 0,    // no model series
    LayoutOneCurve = 1, // one model series
    LayoutThreeCurves = 2,
    LayoutFourCurves = 3,
    LayoutFibonacci = 4, // seven series and the envelopes
    LayoutPair = 5,      // one series and the common rows of two sources
    LayoutCompanion = 6, // Data View and Levels View: view only
};

enum class WindowClass { PriceChild, CorrChild, OverlayChild, DataView, ResView };

// The pen of a drawn curve.
enum class CurveWidth : int {
    One,   // a curve in a chart of its own
    Model, // the model thickness: a curve over the price
    Price, // the price thickness
};

struct CurveEntry {
    int modelCurve; // index into Chart::modelSeries
    int slot;       // curve slot: palette entry and handle
};

// What a kind draws and what enters its value range.
struct KindCurves {
    bool priceGroup;   // the price is drawn under the curves and its set enters the range
    bool volumeColumn; // the volume column on slot 0 instead of model curves
    bool padded;       // the range is widened by 0.001 at both ends
    bool fibonacci;    // base lines and envelopes by the Fibonacci tables
    CurveWidth width;
    int curveCount;
    CurveEntry curves[4];
};

// Runs a kind's engines into the chart's model series over `rows` rows of
// the source's columns.
using EngineRunner = void (*)(Chart& chart, const DataColumns& columns, std::int32_t rows);
// Runs a kind of two sources on the chart's common rows (`pairData`).
using PairEngine = void (*)(Chart& chart);
// The engine of one curve: `period` over `source` into `output`.
using CurveEngine = void (*)(const double* source, double* output, std::int32_t rows,
                             std::int32_t period);

// The parameters a new chart starts with.
enum class ParamDefaults {
    None,             // nothing set
    Period14,         // period 1 is 14
    RmaPeriods,       // 5 and two more by the row count
    EsmaSmoothing,    // the ESMA smoothing
    Stochastics,      // 14, 5, 14, 21
    TrendSmoothing,   // 11
    FibonacciPeriods, // the seven Fibonacci periods
    PredictorTerm,    // the period of the term chosen in the chart in front
    MacdSmoothings,   // long, short and signal smoothing
};

// What the three stored values of a layout row set over the defaults.
enum class ParamRestore {
    Keep,            // the defaults stay
    OnePeriod,       // the first value, truncated, is period 1
    ThreePeriods,    // the three values are periods 1 to 3
    Stochastics,     // periods 1, 2 and 4; period 3 follows period 1
    OneSmoothing,    // the first value is the smoothing
    ThreeSmoothings, // the three values are the smoothings
};

// What runs again after the period dialogs' OK.
enum class PeriodChange {
    Nothing,       // the statistic of a correlation and the fixed kinds stay
    SelectedCurve, // only the curve the handle menu picked, by `curveEngine`
    AllEngines,
    PairStatistic, // the historical correlation over the common rows
};

// The top-level items of the chart context menu, in the order they appear
// after "Resolution" and "Colour".
enum class DrawItems : std::uint8_t {
    Grid,  // no "Draw": the "Grid" submenu at the top level
    Full,  // "Draw" with trends and channels, lines only from 25 rows
    Short, // "Draw" with vertical and horizontal lines
    None,  // neither "Draw" nor "Grid"
};

struct ChartMenuFeatures {
    bool shown = false;         // false: a right click shows nothing
    bool endPointItems = false; // "Select End Point" and "Get All" in "Resolution"
    DrawItems draw = DrawItems::Grid;
    bool periodsItem = false;    // "Periods ...", the three-smoothing dialog
    bool fibonacciItems = false; // "Fibonacci Lines", "Extend Envelopes", "Levels..."
    bool priceScaleItem = false;
    bool dataSourceItem = false;
    bool highlightItem = false; // "Highlight Region"
};

// Bits of HandleMenuFeatures::noPeriodItem: the curve handles whose menu
// leaves out "Period ...".
inline constexpr std::uint8_t NoPeriodSlot3 = 1;
inline constexpr std::uint8_t NoPeriodSlot4 = 2;
inline constexpr std::uint8_t NoPeriodLaterSlots = 4; // slots 5 to 13
inline constexpr std::uint8_t NoPeriodAnySlot = 7;

struct HandleMenuFeatures {
    bool styleSubmenu = true;    // "Style" on the slot 0 handle (with full columns)
    bool predictorTerms = false; // slot 3 opens the "Period" submenu of the terms
    std::uint8_t noPeriodItem = 0;
    std::int8_t slot4Period = 1; // the period the slot 4 curve uses; slots 5, 6 follow
};

struct ChartKindInfo {
    int kind;
    const char* kindName;
    int commandId = 0; // 0: reached from the chart context menu only
    WindowClass windowClass = WindowClass::PriceChild;
    int layout = LayoutOneCurve;

    // Making one from the chart in front.
    bool volumeKind = false; // needs the volume column
    int frontRows = 25;      // rows the chart in front must have
    // The kind's own minimum, tested once the chart exists (on the common
    // rows for a kind of two sources).
    int rowMinimum = 0;
    const char* rowMinimumMessage = nullptr;

    // Computing.
    int recomputeMinimum = -1; // fewest rows a data change runs the engines for; -1 never
    ParamDefaults defaults = ParamDefaults::Period14;
    ParamRestore restore = ParamRestore::OnePeriod;
    EngineRunner runEngines = nullptr; // nullptr: no engines here
    PairEngine pairEngine = nullptr;   // the statistic of a kind of two sources
    PeriodChange periodChange = PeriodChange::Nothing;
    CurveEngine curveEngine = nullptr; // for PeriodChange::SelectedCurve

    // Drawing and menus.
    const KindCurves* curves = nullptr; // nullptr: no series drawn by the price paint
    ChartMenuFeatures chartMenu = {};
    HandleMenuFeatures handleMenu = {};
};

// The table of kinds, in the order of kind ids.
const ChartKindInfo* ChartKinds(int* count);
// Lookups; nullptr when unknown. Names match whole and case sensitive.
const ChartKindInfo* KindByName(const char* kindName);
const ChartKindInfo* KindById(int kind);
const ChartKindInfo* KindByCommand(int commandId);

} // namespace velorin
