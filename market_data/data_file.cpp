#include "market_data/data_file.h"

#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#if defined(_WIN32)
#include <locale.h>
#elif defined(__APPLE__)
#include <xlocale.h>
#else
#include <locale.h>
#endif

#include "market_data/block.h"
#include "market_data/data_source.h"
#include "market_data/date.h"
#include "base/series.h"
#include "base/user_seam.h"

namespace velorin {

namespace {

constexpr const char* Caption = "QDX-Velorin";
constexpr const char* NotAvailable = "#N\\A";

void Inform(const char* text, MessageIcon icon = MessageIcon::Information) {
    Seam().ShowMessage(text, Caption, icon);
}

// Bounded copy into a fixed text buffer of `size` bytes, always terminated.
void CopyText(char* destination, std::size_t size, const char* source, std::size_t length) {
    if (size == 0) return;
    if (length > size - 1) length = size - 1;
    std::memcpy(destination, source, length);
    destination[length] = '\0';
}

// strtok over a buffer of known extent: the text ends at its first NUL or at
// `end`, whichever comes first, and nothing at or after `end` is read or
// written. As strtok does, the separator behind a token becomes NUL, and
// once the text is used up every later call finds nothing.
class Tokenizer {
  public:
    Tokenizer(char* text, std::size_t end, const char* separators)
        : text_(text), end_(end), position_(0) {
        std::memset(isSeparator_, 0, sizeof isSeparator_);
        for (const char* s = separators; *s; ++s)
            isSeparator_[static_cast<unsigned char>(*s)] = true;
    }

    // The next token, with its length, or nullptr.
    char* Next(std::size_t* lengthOut) {
        std::size_t p = position_;
        while (p < end_ && text_[p] != '\0' && isSeparator_[static_cast<unsigned char>(text_[p])])
            ++p;
        if (p >= end_ || text_[p] == '\0') {
            position_ = end_;
            return nullptr;
        }
        const std::size_t start = p;
        while (p < end_ && text_[p] != '\0' && !isSeparator_[static_cast<unsigned char>(text_[p])])
            ++p;
        *lengthOut = p - start;
        if (p < end_ && text_[p] != '\0') {
            text_[p] = '\0';
            position_ = p + 1;
        } else {
            position_ = end_;
        }
        return text_ + start;
    }

  private:
    char* text_;
    std::size_t end_;
    std::size_t position_;
    bool isSeparator_[256];
};

bool HasLineFeed(const char* token, std::size_t length) {
    return std::memchr(token, '\n', length) != nullptr;
}

bool IsNotAvailable(const char* token, std::size_t length) {
    return length == 4 && std::memcmp(token, NotAvailable, 4) == 0;
}

// The shape pass over fileText: 2 or 6 columns in the first row, or 0.
int ShapeOfFirstRow(char* text, std::size_t end) {
    Tokenizer tokens(text, end, "\t,;\r");
    const char* token[7];
    std::size_t length[7];
    auto take = [&](int k) {
        token[k] = tokens.Next(&length[k]);
        return token[k] != nullptr && !IsNotAvailable(token[k], length[k]);
    };
    if (!take(0) || HasLineFeed(token[0], length[0])) return 0;
    if (!take(1) || HasLineFeed(token[1], length[1])) return 0;
    if (!take(2)) return 0;
    if (HasLineFeed(token[2], length[2])) return 2;
    for (int k = 3; k < 6; ++k)
        if (!take(k) || HasLineFeed(token[k], length[k])) return 0;
    if (!take(6) || !HasLineFeed(token[6], length[6])) return 0;
    return 6;
}

// The rest of row `row` after its date token `date`: the short date text,
// then close and, for six columns, open, high, low and volume.
bool ReadRowFields(Tokenizer& tokens, int row, char* date, std::size_t dateLength, bool full) {
    DataColumns& columns = marketData.fetchColumns;
    if (dateLength > 8) {
        const std::size_t capacity = static_cast<std::size_t>(FileTextSize) -
                                     static_cast<std::size_t>(date - marketData.tokenText);
        ShortenDateText(date, capacity);
    }
    CopyText(columns.dateText[row], DateTextSize, date, strnlen(date, DateTextSize - 1));

    std::size_t length = 0;
    const char* token = tokens.Next(&length);
    if (!token) return false;
    columns.close[row] = ReadNumber(token);
    if (!full) {
        columns.open[row] = MISSING_VALUE;
        columns.high[row] = MISSING_VALUE;
        columns.low[row] = MISSING_VALUE;
        columns.volume[row] = MISSING_VALUE;
        return true;
    }
    double* const order[4] = {columns.open, columns.high, columns.low, columns.volume};
    for (double* column : order) {
        token = tokens.Next(&length);
        if (!token) return false;
        column[row] = ReadNumber(token);
    }
    if (columns.volume[row] == 0.0) columns.volume[row] = ZERO_VOLUME;
    return true;
}

#if !defined(_WIN32)
locale_t ClassicLocale() {
    static locale_t classic = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return classic;
}
#endif

double StrtodClassic(const char* text) {
#if defined(_WIN32)
    static _locale_t classic = _create_locale(LC_ALL, "C");
    return classic ? _strtod_l(text, nullptr, classic) : std::strtod(text, nullptr);
#else
    const locale_t classic = ClassicLocale();
    return classic ? strtod_l(text, nullptr, classic) : std::strtod(text, nullptr);
#endif
}

} // namespace

double ReadNumber(const char* text) {
    // Fast path for the plain form [sign]digits[.digits] with at most 15
    // digits: the mantissa and the power of ten are exact doubles, so one
    // IEEE division gives the correctly rounded value, the same bits as
    // strtod. Every other form goes to strtod itself.
    static constexpr double PowersOfTen[16] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                               1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    const char* p = text;
    bool negative = false;
    if (*p == '-' || *p == '+') negative = *p++ == '-';
    std::uint64_t mantissa = 0;
    int digits = 0;
    int fraction = 0;
    while (*p >= '0' && *p <= '9' && digits < 16) {
        mantissa = mantissa * 10 + static_cast<std::uint64_t>(*p++ - '0');
        ++digits;
    }
    if (*p == '.') {
        ++p;
        while (*p >= '0' && *p <= '9' && digits < 16) {
            mantissa = mantissa * 10 + static_cast<std::uint64_t>(*p++ - '0');
            ++digits;
            ++fraction;
        }
    }
    if (*p == '\0' && digits > 0 && digits <= 15) {
        const double value = static_cast<double>(mantissa) / PowersOfTen[fraction];
        return negative ? -value : value;
    }
    return StrtodClassic(text);
}

long FileSizeOf(std::FILE* file) {
    if (!file) return -1;
    const long here = std::ftell(file);
    if (here < 0) return -1;
    if (std::fseek(file, 0, SEEK_END) != 0) return -1;
    const long size = std::ftell(file);
    std::fseek(file, here, SEEK_SET);
    return size;
}

int ParseDataFileText() {
    char* const fileText = marketData.fileText;
    char* const tokenText = marketData.tokenText;
    DataColumns& columns = marketData.fetchColumns;
    if (!fileText || !tokenText || !columns.dateText || !columns.dateNumber || !columns.low ||
        !columns.high || !columns.open || !columns.close || !columns.volume)
        return 0;

    // The text ends at its first NUL; the last byte of the buffer is the
    // terminator's place at the latest.
    const std::size_t textLength = strnlen(fileText, FileTextSize - 1);
    std::memcpy(tokenText, fileText, textLength);
    tokenText[textLength] = '\0';

    // Shape pass: LF is no separator, so a token holding LF starts a line.
    const int shape = ShapeOfFirstRow(fileText, textLength);
    if (shape == 0) return 0;
    const bool full = shape == 6;
    marketData.hasFullColumns = full ? 1 : 0;

    // Row pass.
    Tokenizer tokens(tokenText, textLength, "\n\t,;\r");
    std::size_t length = 0;
    char* date = tokens.Next(&length);
    if (!date) return 0;
    const double first = ParseDate(date);
    if (first < 0.0) return 0;
    columns.dateNumber[0] = first;
    int rows = 0;
    if (!ReadRowFields(tokens, 0, date, length, full)) {
        marketData.fetchRowCount = rows;
        return 0;
    }
    rows = 1;

    while (rows < MaxRows) {
        date = tokens.Next(&length);
        if (!date) break;
        const double value = ParseDate(date);
        // A future date, or one that repeats or goes back, ends the data.
        if (value < 0.0) break;
        if (value != 0.0 && !(value > columns.dateNumber[rows - 1])) break;
        columns.dateNumber[rows] = value;
        if (!ReadRowFields(tokens, rows, date, length, full)) {
            marketData.fetchRowCount = rows;
            return 0;
        }
        ++rows;
    }

    marketData.fetchRowCount = rows;
    if (rows == 1) return 0;
    marketData.fetchIsTick = 0;
    return 1;
}

int LoadDataFile(int silent) {
    ConnectionSelection& selection = marketData.selection;

    // 1. The file dialog.
    if (silent == 0) {
        FileDialogRequest request;
        request.filter = "Text Files (*.PRC)";
        request.title = "Open Data File";
        std::string path;
        const int answer = Seam().AskFile(request, path);
        if (answer != 1) {
            if (answer < 0) Inform("File Open Error");
            return 0;
        }
        CopyText(selection.currentSource, sizeof selection.currentSource, "DATAFILE", 8);
        CopyText(selection.currentTopic, sizeof selection.currentTopic, path.data(), path.size());
        // The item is the file's title up to its first ".".
        const std::size_t slash = path.find_last_of("/\\");
        const std::string title = slash == std::string::npos ? path : path.substr(slash + 1);
        const std::size_t dot = title.find('.');
        const std::size_t stem = dot == std::string::npos ? title.size() : dot;
        CopyText(selection.currentItem, sizeof selection.currentItem, title.data(), stem);
    }

    // 2. Open.
    char path[sizeof selection.currentTopic + 1];
    CopyText(path, sizeof path, selection.currentTopic,
             strnlen(selection.currentTopic, sizeof selection.currentTopic));
    std::FILE* file = std::fopen(path, "rb");
    if (!file) {
        Inform("Non-existent DataFile");
        return 0;
    }

    // 3. The size limit.
    long size = FileSizeOf(file);
    if (size > MaxDataFileBytes) {
        Inform("DataFile Too large - PLease reduce file size", MessageIcon::Warning);
        std::fclose(file);
        return 0;
    }
    if (size < 0) size = 0;

    // 4. The read block.
    BlockHandle blockHandle = nullptr;
    auto* block =
        static_cast<char*>(AllocateBlock(&blockHandle, static_cast<std::uint16_t>(size + 1)));
    if (!block || !marketData.fileText) {
        ReleaseBlock(blockHandle);
        Inform("Memory alloc failed - Please close some windows");
        std::fclose(file);
        return 0;
    }

    // 5. Read the whole file; the copy ends at its first zero byte.
    Seam().SetWaitCursor(true);
    std::memset(marketData.fileText, 0, 4);
    const std::size_t got = std::fread(block, 1, static_cast<std::size_t>(size), file);
    std::fclose(file);
    block[got] = '\0';
    const std::size_t textLength = strnlen(block, got);
    std::memcpy(marketData.fileText, block, textLength);
    marketData.fileText[textLength] = '\0';
    ReleaseBlock(blockHandle);

    // 6. Parse.
    const int parsed = ParseDataFileText();
    Seam().SetWaitCursor(false);
    if (!parsed) {
        Inform("DataFile Read Error");
        return 0;
    }
    return 1;
}

} // namespace velorin
