#pragma once
// The settings file "velorin.vln" and the layouts "*.vl": one text format
// of thirteen sections, its image in memory (`settings`), the reader and the
// writer. Bringing the rows back as windows is not done here.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "chart_model/chart.h"

namespace velorin {

inline constexpr int SettingsListRows = 100;
inline constexpr int LayoutRowCount = 50;    // rows kept by the reader
inline constexpr int LayoutRecordLimit = 51; // records written: one more than are kept
inline constexpr int SettingsColourCount = 24;
inline constexpr int SystemTextSize = 260;

// One "[Connection]" record: the chart line and its drawing lines.
struct LayoutRow {
    char source[100];
    char topic[255];
    char item[255];
    char timerText[100]; // the source's Timer in seconds, as text
    std::int32_t hasFullColumns;
    char resolutionCode; // 'd', 'w' or 'm'
    char kindName[50];
    std::int32_t x, y; // relative to the desk's client area
    std::int32_t width, height;
    std::int32_t priceScaleDenominator;
    double resolution;
    std::int32_t gridOn;
    std::int32_t filtered;
    std::int32_t showBar, showCandle, showHighLow, showLine;
    double param1, param2, param3;
    // Drawn objects by date and price; the region handles stay null.
    TrendLineSet trendLines;
    ChannelSet channelLines;
    VerticalLineSet verticalLines;
    HorizontalLineSet horizontalLines;
};

struct Settings {
    char sourceList[SettingsListRows][100];
    char topicList[SettingsListRows][255];
    char itemList[SettingsListRows][255];
    char tickvalList[SettingsListRows][100];
    char dsnList[SettingsListRows][100];
    char sqlTableList[SettingsListRows][100];
    char sqlFieldsList[SettingsListRows][255];
    char sqlWhereList[SettingsListRows][100];
    char sqlCodesList[SettingsListRows][100];
    std::int32_t colours[SettingsColourCount];
    std::int32_t defaultColours[SettingsColourCount];
    LayoutRow connections[LayoutRowCount];
    // "[System]"
    std::int32_t fetchFrequencyMinutes;
    std::int32_t frameX, frameY, frameWidth, frameHeight; // written back as read
    double defaultResolution;
    char batchFolder[SystemTextSize];
    char batchTable1[SystemTextSize];
    char batchTable2[SystemTextSize];
    char batchPairTable[SystemTextSize];
};

extern Settings settings;
// Everything to zero: empty lists and rows, zero frame and resolution.
void ResetSettings();

// How the three analysis values of a chart line are written.
enum class ParamForm {
    None,            // no analysis parameters: 0 0 0
    FirstSmoothing,  // ESMA: the first smoothing, then 0 0
    ThreeSmoothings, // MACD: the three smoothings
    Periods,         // periods 1 to 3 as whole numbers
};

// One record as the writer takes it, gathered from a chart, its window and
// its data source. Null drawing blocks are written as unused slots.
struct LayoutRecord {
    const char* source;
    const char* topic;
    const char* item;
    std::int32_t tickSeconds;
    char resolutionCode;
    std::int32_t hasFullColumns;
    std::int32_t x, y, width, height;
    std::int32_t priceScaleDenominator;
    double resolution;
    std::int32_t gridOn;
    std::int32_t filtered;
    std::int32_t showBar, showCandle, showHighLow, showLine;
    ParamForm paramForm;
    double smoothing[3];
    std::int32_t periods[3];
    const char* kindName;
    const TrendLineSet* trendLines;
    const ChannelSet* channelLines;
    const VerticalLineSet* verticalLines;
    const HorizontalLineSet* horizontalLines;
};

// A child window of the desk for the gathering walk.
struct DeskWindow {
    const Chart* chart; // nullptr: a window without its chart yet
    bool iconic;        // its caption is empty (an icon title)
    std::int32_t x, y, width, height;
};

// The records of the open charts, as the writer stores them: by data source
// slot, and within one source bottom window first (`windows` are given
// bottom of the Z order first). Icon titles, charts of two sources, Levels
// Views and sources of unsaved SQL text are left out; at most 51 records,
// and no more than `out` holds. Returns the number of records.
int GatherLayoutRecords(std::span<const DeskWindow> windows, std::span<LayoutRecord> out);

// The record that writes a row back as it was read: the parameters take
// the form of the row's kind (whole periods are truncated).
LayoutRecord RecordOfRow(const LayoutRow& row);

// The whole file text for `records` (at most 51 are written).
std::string SettingsText(const Settings& s, std::span<const LayoutRecord> records);

// Writes the file: 1 on success, 0 on failure. The text goes to a new file
// beside `path`, readable by its owner only, which replaces `path` once all
// of it is written; a failure leaves the old file as it was.
int SaveSettings(const Settings& s, std::span<const LayoutRecord> records, const char* path);

// Fills `s` from file text, which ends at its first zero byte. Lists,
// colours, rows and system values are replaced as far as the text reaches.
void ParseSettingsText(Settings& s, std::string_view text);

// Reads a settings file or layout: 1 when read, 0 when the file could not
// be opened, memory failed, or the arrival copy could not be made. When
// `path` is `settingsPath`, the text read is first copied to "velorig.vln"
// in the same folder.
int LoadSettings(Settings& s, const char* path, const char* settingsPath = nullptr);

// The resolution line of "[System]" brought to an allowed value.
double SnapResolution(double value);

} // namespace velorin
