// The reader of the settings file and layouts, and the program-wide image
// of the file.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <limits>
#include <string>

#include "base/user_seam.h"
#include "market_data/block.h"
#include "persistence/settings_file.h"

namespace velorin {

Settings settings;

void ResetSettings() {
    std::memset(&settings, 0, sizeof settings);
}

namespace {

constexpr std::string_view RowDelimiters = "\t\n\r*";
constexpr std::string_view FieldDelimiters = "*\t";
constexpr std::string_view LineDelimiters = "\n\r";
constexpr long FormatSizeLimit = 65536; // sizes are taken in 16 bits

// The file's tokeniser: it keeps a current position, treats any run of the
// delimiters asked for as one separator, and consumes the one delimiter that
// ends a token, so that the next call, whatever delimiters it asks for,
// starts after it. No token is ever empty; an empty result means the text
// is used up.
class Tokens {
  public:
    explicit Tokens(std::string_view text) : text_(text) {}

    std::string_view Next(std::string_view delimiters) {
        const auto isDelimiter = [&](char c) { return delimiters.find(c) != delimiters.npos; };
        while (pos_ < text_.size() && isDelimiter(text_[pos_]))
            ++pos_;
        const std::size_t start = pos_;
        while (pos_ < text_.size() && !isDelimiter(text_[pos_]))
            ++pos_;
        const std::string_view token = text_.substr(start, pos_ - start);
        if (pos_ < text_.size()) ++pos_;
        return token;
    }

  private:
    std::string_view text_;
    std::size_t pos_ = 0;
};

// A text field into its fixed buffer, cut to fit.
void CopyText(char* destination, std::size_t width, std::string_view token) {
    const std::size_t length = std::min(token.size(), width - 1);
    std::memcpy(destination, token.data(), length);
    destination[length] = '\0';
}

std::string_view SkipBlanks(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())))
        text.remove_prefix(1);
    return text;
}

// A whole number in `base` (0: by its prefix, 0x hexadecimal, 0 octal,
// otherwise decimal) from the start of the text; blanks before it and a sign
// are allowed, what follows it is ignored, no digits read as 0, and values
// beyond 32 bits are held at the nearest end.
std::int32_t ToInt(std::string_view token, int base) {
    std::string_view text = SkipBlanks(token);
    bool negative = false;
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    if (base == 0) {
        base = 10;
        if (text.size() >= 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X') &&
            std::isxdigit(static_cast<unsigned char>(text.size() > 2 ? text[2] : 'g'))) {
            base = 16;
            text.remove_prefix(2);
        } else if (!text.empty() && text[0] == '0') {
            base = 8;
        }
    }
    std::int64_t value = 0;
    const auto r = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (r.ec == std::errc::result_out_of_range) value = std::numeric_limits<std::int64_t>::max();
    if (negative) value = -value;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(
        value, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
}

// A real from the start of the text, with a decimal point whatever the
// C library's locale; what is not a number reads as 0.
double ToReal(std::string_view token) {
    std::string_view text = SkipBlanks(token);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    double value = 0.0;
    const auto r = std::from_chars(text.data(), text.data() + text.size(), value);
    if (r.ec == std::errc::result_out_of_range) {
        const bool negative = !text.empty() && text.front() == '-';
        // Too small to hold reads as zero, too large as infinity.
        const std::size_t e = text.find_first_of("eE");
        const bool tiny = e != text.npos && e + 1 < text.size() && text[e + 1] == '-';
        value = tiny ? 0.0 : std::numeric_limits<double>::infinity();
        if (negative) value = -value;
    } else if (r.ec != std::errc()) {
        value = 0.0;
    }
    return value;
}

// A missing token leaves the field as it was.
class FieldReader {
  public:
    FieldReader(Tokens& tokens, std::string_view delimiters)
        : tokens_(tokens), delimiters_(delimiters) {}
    void Text(char* destination, std::size_t width) {
        const std::string_view t = tokens_.Next(delimiters_);
        if (!t.empty()) CopyText(destination, width, t);
    }
    void Int(std::int32_t& value) {
        const std::string_view t = tokens_.Next(delimiters_);
        if (!t.empty()) value = ToInt(t, 10);
    }
    void Real(double& value) {
        const std::string_view t = tokens_.Next(delimiters_);
        if (!t.empty()) value = ToReal(t);
    }
    void Char(char& value) {
        const std::string_view t = tokens_.Next(delimiters_);
        if (!t.empty()) value = t.front();
    }

  private:
    Tokens& tokens_;
    std::string_view delimiters_;
};

// The fields of one flagged drawing line, in file order.
void ReadDrawingFields(FieldReader& f, LayoutRow& row, int group, int i) {
    switch (group) {
    case 0: {
        TrendLineSet& s = row.trendLines;
        f.Int(s.extended[i]), f.Int(s.freePlaced[i]);
        f.Text(s.dateA[i], DateTextSize), f.Real(s.valueA[i]);
        f.Text(s.dateB[i], DateTextSize), f.Real(s.valueB[i]);
        f.Real(s.length[i]), f.Real(s.unitY[i]), f.Real(s.unitX[i]);
        break;
    }
    case 1: {
        ChannelSet& s = row.channelLines;
        f.Int(s.extended[i]), f.Int(s.freePlaced[i]);
        f.Text(s.dateA[i], DateTextSize), f.Real(s.valueA[i]);
        f.Text(s.dateB[i], DateTextSize), f.Real(s.valueB[i]);
        f.Text(s.dateC[i], DateTextSize), f.Real(s.valueC[i]);
        f.Real(s.length[i]), f.Real(s.unitY[i]), f.Real(s.unitX[i]), f.Real(s.pixelGap[i]);
        break;
    }
    case 2:
        f.Int(row.verticalLines.point[i].x), f.Int(row.verticalLines.point[i].y);
        break;
    default:
        f.Int(row.horizontalLines.point[i].x), f.Int(row.horizontalLines.point[i].y);
        f.Real(row.horizontalLines.value[i]);
        break;
    }
}

std::int32_t& InUse(LayoutRow& row, int group, int i) {
    switch (group) {
    case 0:
        return row.trendLines.inUse[i];
    case 1:
        return row.channelLines.inUse[i];
    case 2:
        return row.verticalLines.inUse[i];
    default:
        return row.horizontalLines.inUse[i];
    }
}

// "[Connection]": the rows, up to the token "[Tickval]". Returns false when
// the text ended first.
bool ReadConnections(Tokens& tokens, Settings& s) {
    for (LayoutRow& row : s.connections)
        row.source[0] = '\0';
    for (;;) {
        const std::string_view t = tokens.Next("[]");
        if (t.empty()) return false;
        if (t == "Connection") break;
    }
    FieldReader f(tokens, FieldDelimiters);
    int rows = 0;
    std::string_view token = tokens.Next(RowDelimiters);
    while (!token.empty() && token != "[Tickval]") {
        if (rows >= LayoutRowCount) { // records beyond the kept ones are dropped
            token = tokens.Next(RowDelimiters);
            continue;
        }
        LayoutRow& row = s.connections[rows];
        CopyText(row.source, sizeof row.source, token);
        f.Text(row.topic, sizeof row.topic), f.Text(row.item, sizeof row.item);
        f.Text(row.timerText, sizeof row.timerText), f.Char(row.resolutionCode);
        for (std::int32_t* value : {&row.hasFullColumns, &row.x, &row.y, &row.width, &row.height,
                                    &row.priceScaleDenominator})
            f.Int(*value);
        f.Real(row.resolution);
        for (std::int32_t* value : {&row.gridOn, &row.filtered, &row.showBar, &row.showCandle,
                                    &row.showHighLow, &row.showLine})
            f.Int(*value);
        f.Real(row.param1), f.Real(row.param2), f.Real(row.param3);
        // Without a kind name the field taken is the line end, and the row
        // keeps the kind it held.
        const std::string_view kind = tokens.Next(FieldDelimiters);
        if (!kind.empty() && !kind.starts_with("\r\n")) {
            CopyText(row.kindName, sizeof row.kindName, kind);
            tokens.Next(FieldDelimiters);
        }
        token = tokens.Next(RowDelimiters);
        if (!token.empty() && token != "[Tickval]" && std::strcmp(row.kindName, "Data View") != 0) {
            for (int group = 0; group < 4; ++group) {
                for (int i = 0; i < MaxDrawnObjects; ++i) {
                    if (!token.empty()) InUse(row, group, i) = ToInt(token, 10);
                    if (InUse(row, group, i) != 0 && !token.empty())
                        ReadDrawingFields(f, row, group, i);
                    token = tokens.Next(RowDelimiters);
                }
            }
        }
        ++rows;
    }
    return !token.empty();
}

// A list section: the first line after its header is entry 0, unseen;
// further lines up to `closing` fill the next entries. Returns false when
// the text ended before `closing`.
template <std::size_t Width>
bool ReadList(Tokens& tokens, char (&list)[SettingsListRows][Width], std::string_view closing) {
    std::memset(list, 0, sizeof list);
    CopyText(list[0], Width, tokens.Next(LineDelimiters));
    for (int i = 1;; ++i) {
        const std::string_view t = tokens.Next(LineDelimiters);
        if (t.empty()) return false;
        if (t == closing) return true;
        if (i < SettingsListRows) CopyText(list[i], Width, t);
    }
}

bool ReadColours(Tokens& tokens, std::int32_t (&colours)[SettingsColourCount],
                 std::string_view closing) {
    const std::string_view first = tokens.Next(LineDelimiters);
    if (!first.empty()) colours[0] = ToInt(first, 0);
    for (int i = 1;; ++i) {
        const std::string_view t = tokens.Next(LineDelimiters);
        if (t.empty()) return false;
        if (t == closing) return true;
        if (i < SettingsColourCount) colours[i] = ToInt(t, 0);
    }
}

void ReadSystem(Tokens& tokens, Settings& s) {
    FieldReader f(tokens, LineDelimiters);
    for (std::int32_t* value :
         {&s.fetchFrequencyMinutes, &s.frameX, &s.frameY, &s.frameWidth, &s.frameHeight})
        f.Int(*value);
    f.Real(s.defaultResolution);
    for (char* text : {s.batchFolder, s.batchTable1, s.batchTable2, s.batchPairTable})
        f.Text(text, SystemTextSize);
}

// Writes `size` bytes to a new file `path`, readable by its owner only,
// through a temporary file renamed over it.
bool WriteWholeFile(const std::string& path, const char* data, std::size_t size) {
    std::string temporary = path + ".XXXXXX";
    const int fd = ::mkstemp(temporary.data());
    if (fd < 0) return false;
    bool ok = true;
    while (size > 0 && ok) {
        const ssize_t n = ::write(fd, data, size);
        if (n < 0 && errno == EINTR) continue;
        ok = n > 0;
        if (ok) data += n, size -= static_cast<std::size_t>(n);
    }
    ok = ::close(fd) == 0 && ok;
    ok = ok && std::rename(temporary.c_str(), path.c_str()) == 0;
    if (!ok) ::unlink(temporary.c_str());
    return ok;
}

bool SameFile(const char* a, const char* b) {
    if (!a || !b || !*b) return false;
    std::error_code ec;
    if (std::filesystem::equivalent(a, b, ec)) return true;
    return std::strcmp(a, b) == 0;
}

} // namespace

double SnapResolution(double value) {
    for (const double step : {0.25, 0.5, 1.0, 2.0, 4.0, 8.0, 16.0, 25.0, 50.0})
        if (value <= step) return step;
    return 4.0; // above 50, and what is no number: the ordinary default
}

void ParseSettingsText(Settings& s, std::string_view text) {
    text = text.substr(0, std::min(text.size(), text.find('\0')));
    Tokens tokens(text);
    bool more = ReadConnections(tokens, s);
    more = more && ReadList(tokens, s.tickvalList, "[Item]");
    more = more && ReadList(tokens, s.itemList, "[Topic]");
    more = more && ReadList(tokens, s.topicList, "[Source]");
    more = more && ReadList(tokens, s.sourceList, "[DSN]");
    more = more && ReadList(tokens, s.dsnList, "[SQLTable]");
    more = more && ReadList(tokens, s.sqlTableList, "[SQLFields]");
    more = more && ReadList(tokens, s.sqlFieldsList, "[SQLWhere]");
    more = more && ReadList(tokens, s.sqlWhereList, "[SQLCodes]");
    more = more && ReadList(tokens, s.sqlCodesList, "[Default]");
    more = more && ReadColours(tokens, s.defaultColours, "[Colour]");
    more = more && ReadColours(tokens, s.colours, "[System]");
    if (more) ReadSystem(tokens, s);
    s.defaultResolution = SnapResolution(s.defaultResolution);
}

int LoadSettings(Settings& s, const char* path, const char* settingsPath) {
    if (!path) return 0;
    std::FILE* file = std::fopen(path, "rb");
    if (!file) return 0;
    struct stat info {};
    if (::fstat(::fileno(file), &info) != 0 || !S_ISREG(info.st_mode)) {
        std::fclose(file);
        return 0;
    }
    // The size is taken in 16 bits: only the remainder modulo 65,536 is read.
    const long size = static_cast<long>(info.st_size);
    const auto length = static_cast<std::size_t>(size % FormatSizeLimit);
    BlockHandle handle = nullptr;
    auto* block = static_cast<char*>(
        AllocateBlock(&handle, static_cast<std::uint16_t>(std::max<std::size_t>(length, 1))));
    if (!block) {
        std::fclose(file);
        Seam().ShowMessage("Memory alloc failed - Please close some windows", "QDX-Velorin",
                           MessageIcon::Information);
        return 0;
    }
    const std::size_t got = std::fread(block, 1, length, file);
    std::fclose(file);
    // The copy of the settings as they were on arrival, made before anything
    // is read from them.
    if (SameFile(path, settingsPath)) {
        const std::filesystem::path folder = std::filesystem::path(settingsPath).parent_path();
        if (!WriteWholeFile((folder / "velorig.vln").string(), block, got)) {
            ReleaseBlock(handle);
            return 0;
        }
    }
    ParseSettingsText(s, std::string_view(block, got));
    ReleaseBlock(handle);
    if (size >= FormatSizeLimit)
        Seam().ShowMessage("File larger than 64 KB - only its first part was read", "QDX-Velorin",
                           MessageIcon::Warning);
    return 1;
}

} // namespace velorin
