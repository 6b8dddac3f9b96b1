// The writer of the settings file and layouts, and the gathering of the
// records it writes from the charts on the desk.

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <string>

#include "base/user_seam.h"
#include "market_data/block.h"
#include "market_data/data_source.h"
#include "persistence/settings_file.h"

namespace velorin {
namespace {

constexpr std::size_t WriteBufferSize = 4096;
constexpr std::size_t FlushThreshold = 800;
constexpr int LevelsViewKind = 101;

// Where the text goes: a file descriptor, or a string for SettingsText.
struct Sink {
    int fd = -1;
    std::string* text = nullptr;
    bool failed = false;

    void Write(const char* data, std::size_t size) {
        if (text) {
            text->append(data, size);
            return;
        }
        while (size > 0 && !failed) {
            const ssize_t n = ::write(fd, data, size);
            if (n < 0 && errno == EINTR) continue;
            if (n <= 0) {
                failed = true;
                return;
            }
            data += n;
            size -= static_cast<std::size_t>(n);
        }
    }
};

// The text is built in a 4,096-byte buffer and handed on whenever it holds
// 800 characters or more after an entry or a record, and at each section's
// end. A piece that would not fit is preceded by a flush; one larger than
// the buffer goes straight through.
class Writer {
  public:
    Writer(char* buffer, Sink& sink) : buffer_(buffer), sink_(sink) {}

    void Put(std::string_view piece) {
        if (used_ + piece.size() > WriteBufferSize) Flush();
        if (piece.size() > WriteBufferSize) {
            sink_.Write(piece.data(), piece.size());
            return;
        }
        std::memcpy(buffer_ + used_, piece.data(), piece.size());
        used_ += piece.size();
    }
    // Text of a fixed buffer, as it stands up to its terminator.
    void Text(const char* text, std::size_t width) {
        if (text) Put(std::string_view(text, strnlen(text, width)));
    }
    void Int(std::int64_t value) {
        char digits[24];
        const auto r = std::to_chars(digits, digits + sizeof digits, value);
        Put(std::string_view(digits, static_cast<std::size_t>(r.ptr - digits)));
    }
    // printf's "%f", without the C library's locale: the desktop toolkit sets
    // LC_NUMERIC from the user's settings, and the file always uses a point.
    void Real(double value) {
        char digits[400]; // the widest double in fixed notation has 309 digits
        const auto r =
            std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, 6);
        Put(std::string_view(digits, static_cast<std::size_t>(r.ptr - digits)));
    }
    void MaybeFlush() {
        if (used_ >= FlushThreshold) Flush();
    }
    void Flush() {
        sink_.Write(buffer_, used_);
        used_ = 0;
    }

  private:
    char* buffer_;
    std::size_t used_ = 0;
    Sink& sink_;
};

// Every line of "[Connection]" ends so; the asterisk starts the next line.
constexpr std::string_view LineEnd = "\t\r\n*";

void WriteTrendLines(Writer& w, const TrendLineSet* set) {
    for (int i = 0; i < MaxDrawnObjects; ++i) {
        const int flag = set ? set->inUse[i] : 0;
        w.Int(flag);
        if (flag != 0) {
            w.Put("\t"), w.Int(set->extended[i]), w.Put("\t"), w.Int(set->freePlaced[i]);
            w.Put("\t"), w.Text(set->dateA[i], DateTextSize), w.Put("\t"), w.Real(set->valueA[i]);
            w.Put("\t"), w.Text(set->dateB[i], DateTextSize), w.Put("\t"), w.Real(set->valueB[i]);
            w.Put("\t"), w.Real(set->length[i]), w.Put("\t"), w.Real(set->unitY[i]);
            w.Put("\t"), w.Real(set->unitX[i]);
        }
        w.Put(LineEnd);
    }
}

void WriteChannels(Writer& w, const ChannelSet* set) {
    for (int i = 0; i < MaxDrawnObjects; ++i) {
        const int flag = set ? set->inUse[i] : 0;
        w.Int(flag);
        if (flag != 0) {
            w.Put("\t"), w.Int(set->extended[i]), w.Put("\t"), w.Int(set->freePlaced[i]);
            w.Put("\t"), w.Text(set->dateA[i], DateTextSize), w.Put("\t"), w.Real(set->valueA[i]);
            w.Put("\t"), w.Text(set->dateB[i], DateTextSize), w.Put("\t"), w.Real(set->valueB[i]);
            w.Put("\t"), w.Text(set->dateC[i], DateTextSize), w.Put("\t"), w.Real(set->valueC[i]);
            w.Put("\t"), w.Real(set->length[i]), w.Put("\t"), w.Real(set->unitY[i]);
            w.Put("\t"), w.Real(set->unitX[i]), w.Put("\t"), w.Real(set->pixelGap[i]);
        }
        w.Put(LineEnd);
    }
}

void WriteVerticalLines(Writer& w, const VerticalLineSet* set) {
    for (int i = 0; i < MaxDrawnObjects; ++i) {
        const int flag = set ? set->inUse[i] : 0;
        w.Int(flag);
        if (flag != 0) w.Put("\t"), w.Int(set->point[i].x), w.Put("\t"), w.Int(set->point[i].y);
        w.Put(LineEnd);
    }
}

void WriteHorizontalLines(Writer& w, const HorizontalLineSet* set) {
    for (int i = 0; i < MaxDrawnObjects; ++i) {
        const int flag = set ? set->inUse[i] : 0;
        w.Int(flag);
        if (flag != 0) {
            w.Put("\t"), w.Int(set->point[i].x), w.Put("\t"), w.Int(set->point[i].y);
            w.Put("\t"), w.Real(set->value[i]);
        }
        w.Put(LineEnd);
    }
}

void WriteRecord(Writer& w, const LayoutRecord& r) {
    w.Text(r.source, 100), w.Put("\t"), w.Text(r.topic, 255), w.Put("\t");
    w.Text(r.item, 255), w.Put("\t"), w.Int(r.tickSeconds), w.Put("\t");
    // A source always has its code; a missing one is written as the default.
    const char code = r.resolutionCode != '\0' ? r.resolutionCode : 'd';
    w.Put(std::string_view(&code, 1));
    for (const std::int32_t value :
         {r.hasFullColumns, r.x, r.y, r.width, r.height, r.priceScaleDenominator})
        w.Put("\t"), w.Int(value);
    w.Put("\t"), w.Real(r.resolution);
    for (const std::int32_t value :
         {r.gridOn, r.filtered, r.showBar, r.showCandle, r.showHighLow, r.showLine})
        w.Put("\t"), w.Int(value);
    switch (r.paramForm) {
    case ParamForm::None:
        w.Put("\t0\t0\t0");
        break;
    case ParamForm::FirstSmoothing:
        w.Put("\t"), w.Real(r.smoothing[0]), w.Put("\t0\t0");
        break;
    case ParamForm::ThreeSmoothings:
        for (const double value : r.smoothing)
            w.Put("\t"), w.Real(value);
        break;
    case ParamForm::Periods:
        for (const std::int32_t value : r.periods)
            w.Put("\t"), w.Int(value);
        break;
    }
    w.Put("\t"), w.Text(r.kindName, 50), w.Put(LineEnd);
    if (r.kindName && std::strcmp(r.kindName, "Data View") == 0) return;
    WriteTrendLines(w, r.trendLines);
    WriteChannels(w, r.channelLines);
    WriteVerticalLines(w, r.verticalLines);
    WriteHorizontalLines(w, r.horizontalLines);
}

template <std::size_t Width>
void WriteList(Writer& w, const char* header, const char (&list)[SettingsListRows][Width]) {
    w.Put(header), w.Put("\r\n");
    for (int i = 0; i < SettingsListRows && list[i][0] != '\0'; ++i) {
        w.Text(list[i], Width), w.Put("\r\n");
        w.MaybeFlush();
    }
    w.Put("\r\n");
    w.Flush();
}

void WriteColours(Writer& w, const char* header,
                  const std::int32_t (&colours)[SettingsColourCount]) {
    w.Put(header), w.Put("\r\n");
    for (const std::int32_t colour : colours) {
        w.Int(colour), w.Put("\r\n");
        w.MaybeFlush();
    }
    w.Put("\r\n");
    w.Flush();
}

void WriteAll(Writer& w, const Settings& s, std::span<const LayoutRecord> records) {
    w.Put("[Connection]\r\n*");
    int count = 0;
    for (const LayoutRecord& record : records) {
        if (count >= LayoutRecordLimit) break;
        WriteRecord(w, record);
        ++count;
        w.MaybeFlush();
    }
    w.Put("\r\n");
    w.Flush();
    WriteList(w, "[Tickval]", s.tickvalList);
    WriteList(w, "[Item]", s.itemList);
    WriteList(w, "[Topic]", s.topicList);
    WriteList(w, "[Source]", s.sourceList);
    WriteList(w, "[DSN]", s.dsnList);
    WriteList(w, "[SQLTable]", s.sqlTableList);
    WriteList(w, "[SQLFields]", s.sqlFieldsList);
    WriteList(w, "[SQLWhere]", s.sqlWhereList);
    WriteList(w, "[SQLCodes]", s.sqlCodesList);
    WriteColours(w, "[Default]", s.defaultColours);
    WriteColours(w, "[Colour]", s.colours);
    w.Put("[System]\r\n");
    for (const std::int32_t value :
         {s.fetchFrequencyMinutes, s.frameX, s.frameY, s.frameWidth, s.frameHeight})
        w.Int(value), w.Put("\r\n");
    w.Real(s.defaultResolution), w.Put("\r\n");
    for (const char* text : {s.batchFolder, s.batchTable1, s.batchTable2, s.batchPairTable})
        w.Text(text, SystemTextSize), w.Put("\r\n");
    w.Flush();
}

// Double to whole number toward zero, held within 32 bits; no number is 0.
std::int32_t TruncatedInt(double value) {
    if (!(value == value)) return 0;
    return static_cast<std::int32_t>(std::clamp(value, -2147483648.0, 2147483647.0));
}

// The Timer of a row as a number: its leading decimal digits.
double ReadTimerText(const char* text) {
    long value = 0;
    std::from_chars(text, text + strnlen(text, 100), value);
    return static_cast<double>(value);
}

void MemoryFailed() {
    Seam().ShowMessage("Memory alloc failed - Please close some windows", "QDX-Velorin",
                       MessageIcon::Information);
}

} // namespace

std::string SettingsText(const Settings& s, std::span<const LayoutRecord> records) {
    std::string text;
    Sink sink;
    sink.text = &text;
    char buffer[WriteBufferSize];
    Writer w(buffer, sink);
    WriteAll(w, s, records);
    return text;
}

int SaveSettings(const Settings& s, std::span<const LayoutRecord> records, const char* path) {
    if (!path || !*path) return 0;
    BlockHandle handle = nullptr;
    auto* buffer = static_cast<char*>(AllocateBlock(&handle, WriteBufferSize));
    if (!buffer) {
        MemoryFailed();
        return 0;
    }
    // A new file beside the old one (mkstemp makes it 0600: the file holds
    // database passwords), renamed over it only when every byte is written.
    std::string temporary = std::string(path) + ".XXXXXX";
    Sink sink;
    sink.fd = ::mkstemp(temporary.data());
    if (sink.fd < 0) {
        ReleaseBlock(handle);
        return 0;
    }
    Writer w(buffer, sink);
    WriteAll(w, s, records);
    ReleaseBlock(handle);
    bool ok = !sink.failed && ::fsync(sink.fd) == 0;
    ok = ::close(sink.fd) == 0 && ok;
    ok = ok && std::rename(temporary.c_str(), path) == 0;
    if (!ok) ::unlink(temporary.c_str());
    return ok ? 1 : 0;
}

LayoutRecord RecordOfRow(const LayoutRow& row) {
    LayoutRecord r{};
    r.source = row.source, r.topic = row.topic, r.item = row.item;
    r.tickSeconds = TruncatedInt(ReadTimerText(row.timerText));
    r.resolutionCode = row.resolutionCode;
    r.hasFullColumns = row.hasFullColumns;
    r.x = row.x, r.y = row.y, r.width = row.width, r.height = row.height;
    r.priceScaleDenominator = row.priceScaleDenominator;
    r.resolution = row.resolution;
    r.gridOn = row.gridOn, r.filtered = row.filtered;
    r.showBar = row.showBar, r.showCandle = row.showCandle;
    r.showHighLow = row.showHighLow, r.showLine = row.showLine;
    const ChartKindInfo* kind = KindByName(row.kindName);
    if (std::strcmp(row.kindName, "ESMA") == 0)
        r.paramForm = ParamForm::FirstSmoothing;
    else if (std::strcmp(row.kindName, "MACD") == 0)
        r.paramForm = ParamForm::ThreeSmoothings;
    else if (kind && (kind->layout == LayoutPlain || kind->layout == LayoutCompanion))
        r.paramForm = ParamForm::None;
    else
        r.paramForm = ParamForm::Periods;
    const double params[3] = {row.param1, row.param2, row.param3};
    for (int i = 0; i < 3; ++i)
        r.smoothing[i] = params[i], r.periods[i] = TruncatedInt(params[i]);
    r.kindName = row.kindName;
    r.trendLines = &row.trendLines, r.channelLines = &row.channelLines;
    r.verticalLines = &row.verticalLines, r.horizontalLines = &row.horizontalLines;
    return r;
}

int GatherLayoutRecords(std::span<const DeskWindow> windows, std::span<LayoutRecord> out) {
    const int capacity = static_cast<int>(std::min<std::size_t>(out.size(), LayoutRecordLimit));
    int count = 0;
    for (int slot = 0; slot < MaxSourceSlots; ++slot) {
        const DataSource* source = marketData.dataSources[slot];
        if (!source) continue;
        for (const DeskWindow& window : windows) {
            if (count >= capacity) break;
            const Chart* chart = window.chart;
            if (!chart || window.iconic || chart->connectionId != source->conversation ||
                chart->secondConnectionId != 0 || chart->kind == LevelsViewKind ||
                std::strncmp(source->topic, "SQLFreeText", 11) == 0)
                continue;
            LayoutRecord& r = out[static_cast<std::size_t>(count++)];
            r = LayoutRecord{};
            r.source = source->source;
            r.topic = source->topic;
            r.item = source->item;
            r.tickSeconds = source->tickSeconds;
            r.resolutionCode = source->resolutionCode;
            r.filtered = source->filtered;
            r.hasFullColumns = chart->hasFullColumns;
            r.x = window.x, r.y = window.y, r.width = window.width, r.height = window.height;
            r.priceScaleDenominator = chart->priceScaleDenominator;
            if (const ChartView* view = chart->view) {
                r.resolution = view->resolution;
                r.gridOn = view->gridOn;
                r.showBar = view->showBar, r.showCandle = view->showCandle;
                r.showHighLow = view->showHighLow, r.showLine = view->showLine;
            }
            r.kindName = chart->kindName;
            if (!chart->analysisParams)
                r.paramForm = ParamForm::None;
            else if (std::strcmp(chart->kindName, "ESMA") == 0)
                r.paramForm = ParamForm::FirstSmoothing;
            else if (std::strcmp(chart->kindName, "MACD") == 0)
                r.paramForm = ParamForm::ThreeSmoothings;
            else
                r.paramForm = ParamForm::Periods;
            std::copy(chart->smoothing, chart->smoothing + 3, r.smoothing);
            if (chart->analysisParams)
                std::copy(chart->analysisParams->period + 1, chart->analysisParams->period + 4,
                          r.periods);
            if (const DrawingSet* d = chart->drawings) {
                r.trendLines = d->trendLines;
                r.channelLines = d->channels;
                r.verticalLines = d->verticalLines;
                r.horizontalLines = d->horizontalLines;
            }
        }
    }
    return count;
}

} // namespace velorin
