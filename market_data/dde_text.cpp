#include "market_data/dde_text.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <initializer_list>
#include <string_view>

#include "base/series.h"
#include "market_data/data_file.h"
#include "market_data/date.h"

namespace velorin {

DdeFeedState ddeFeed;

namespace {

constexpr double NoVolumeStaged = NO_VOLUME_MARKER * 1000.0; // -998.0 after the division
constexpr int TickDbPrefixLength = 12;                       // "[tickdb.xls]"

bool IsSeparator(char c) {
    return c == '\t' || c == ',' || c == ';';
}
bool IsLineEnd(char c) {
    return c == '\r' || c == '\n' || c == '\0';
}

bool IsOneOf(const char* text, std::initializer_list<const char*> spellings) {
    for (const char* s : spellings)
        if (std::strcmp(text, s) == 0) return true;
    return false;
}

bool IsTickDbService(const char* service) {
    return IsOneOf(service, {"TickDB", "TICKDB", "tickdb"});
}

// Writes the parts one after another into `out` of `size` bytes, cut to fit.
void Join(char* out, std::size_t size, std::initializer_list<std::string_view> parts) {
    std::size_t n = 0;
    for (std::string_view part : parts) {
        const std::size_t take = std::min(part.size(), size - 1 - n);
        if (take > 0) std::memmove(out + n, part.data(), take);
        n += take;
    }
    out[n] = '\0';
}

template <std::size_t N> void SetText(char (&buffer)[N], std::string_view text) {
    Join(buffer, N, {text});
}

// OffsetTime: the digits just before the first ":" are the hour; the text
// becomes that hour plus one (25 wrapping to 1, so 24 reads 1) followed by
// the rest from ":" on. A text without ":" is copied as it stands.
void ShiftHour(const char* text, char* out) {
    const char* colon = std::strchr(text, ':');
    if (!colon) {
        Join(out, DateTextSize, {text});
        return;
    }
    const char* digits = colon;
    while (digits > text && digits[-1] >= '0' && digits[-1] <= '9')
        --digits;
    long hour = 0;
    for (const char* p = digits; p < colon && hour < 100000000; ++p)
        hour = hour * 10 + (*p - '0');
    ++hour;
    if (hour == 25) hour = 1;
    char hourText[16];
    const char* hourEnd = std::to_chars(hourText, hourText + sizeof hourText, hour).ptr;
    Join(out, DateTextSize,
         {std::string_view(hourText, static_cast<std::size_t>(hourEnd - hourText)), colon});
}

// Ends the field that starts at `p` at its separator (for the last field of
// a row also at CR or LF) with a NUL. Returns the character that ended it
// and sets `next` past it; NUL means the text ran out inside the field.
char TakeField(char* p, bool last, char*& next) {
    while (*p != '\0' && !IsSeparator(*p) && !(last && (*p == '\r' || *p == '\n')))
        ++p;
    const char end = *p;
    *p = '\0';
    next = p + 1;
    return end;
}

} // namespace

void ResetDdeFeedState() {
    ddeFeed = DdeFeedState{};
    ddeFeed.requestTimeoutMs = DdeTimeoutMilliseconds;
    ddeFeed.fixedNow = -1;
}

bool IsReuterService(const char* service) {
    return IsOneOf(service, {"Reuter", "REUTER", "reuter"});
}

void BuildDdeItem() {
    const ConnectionSelection& s = marketData.selection;
    const std::string_view item = s.currentItem;
    if (!IsReuterService(s.currentSource)) {
        SetText(ddeFeed.ddeItemText, item);
        return;
    }
    // An exchange rate ("=" and no ".") asks for the bid.
    const bool fx = item.find('=') != item.npos && item.find('.') == item.npos;
    // "name,field[,ignored]"
    const std::size_t comma = item.find(',');
    const bool hasComma = comma != item.npos;
    const std::string_view name = item.substr(0, comma);
    std::string_view field;
    if (hasComma) {
        field = item.substr(comma + 1);
        field = field.substr(0, field.find(','));
    }
    char* const out = ddeFeed.ddeItemText;

    if (IsOneOf(s.currentTopic, {"IDN", "idn"})) {
        std::string_view asked;
        if (fx)
            asked = hasComma ? field : "BID";
        else if (ddeFeed.liveField[0] != '\0')
            asked = ddeFeed.liveField;
        else
            asked = hasComma ? field : "LAST";
        Join(out, DdeItemTextSize,
             {name, ",[", fx ? "TIME OF UPDATE" : "TRADE TIME", ",", asked, "]"});
    } else if (IsOneOf(s.currentTopic, {"TS1", "ts1"})) {
        if (hasComma)
            SetText(ddeFeed.liveField, field);
        else if (fx)
            SetText(ddeFeed.liveField, "BID");
        else if (marketData.hasFullColumns == 1)
            SetText(ddeFeed.liveField,
                    "LAST,OPENING PRICE,TODAY'S HIGH,TODAY'S LOW,VOL ACCUMULATED");
        else
            SetText(ddeFeed.liveField, "LAST");
        Join(out, DdeItemTextSize,
             {"'/RI=", name, " /ST=EARLIEST /EN=LATEST /FI=TIMESTAMP,", ddeFeed.liveField,
              " /PE=", std::string_view(&marketData.resolutionCode, 1), "'"});
    } else {
        SetText(ddeFeed.ddeItemText, item);
    }
}

void ToTickDbRange(ConnectionSelection& selection) {
    if (!IsTickDbService(selection.currentSource)) return;
    Join(selection.currentTopic, sizeof selection.currentTopic,
         {"[tickdb.xls]", selection.currentItem, ",", selection.currentTickval});
    SetText(selection.currentSource, "Excel");
    SetText(selection.currentItem, "R3C1:R2000C5");
}

void FromTickDbRange(ConnectionSelection& selection) {
    const std::string_view topic = selection.currentTopic;
    if (!topic.starts_with("[TickDB") && !topic.starts_with("[TICKDB") &&
        !topic.starts_with("[tickdb"))
        return;
    const std::string_view rest =
        topic.size() > TickDbPrefixLength ? topic.substr(TickDbPrefixLength) : std::string_view{};
    const std::size_t comma = rest.find(',');
    SetText(selection.currentItem, rest.substr(0, comma));
    SetText(selection.currentTickval,
            comma == rest.npos ? std::string_view{} : rest.substr(comma + 1));
    SetText(selection.currentTopic, "IDN");
    SetText(selection.currentSource, "TickDB");
}

int ParseDdeReply(const char* reply, std::size_t size) {
    char* const text = marketData.fileText;
    DataColumns& c = marketData.fetchColumns;
    if (!text || !c.dateText || !c.dateNumber || !c.low || !c.high || !c.open || !c.close ||
        !c.volume)
        return 0;

    // An over-long reply keeps its last bytes; the first line, cut, is
    // dropped up to its line end (past it only for an LF: a CR stays and
    // leaves an empty first line).
    std::memset(text, 0, 4);
    std::size_t start = 0;
    if (size > DdeReplyLimit) {
        std::memcpy(text, reply + (size - DdeReplyLimit), DdeReplyLimit);
        text[DdeReplyLimit] = '\0';
        while (!IsLineEnd(text[start]))
            ++start;
        if (text[start] == '\n') ++start;
    } else {
        if (size > 0) std::memcpy(text, reply, size);
        text[size] = '\0';
    }

    // Spreadsheet error cells refuse the whole reply.
    if (std::strchr(text + start, '#')) return 0;

    // The first line's separators give the shape: 1 for date and value,
    // 4 or 5 for date, last, open, high, low and perhaps volume.
    int separators = 0;
    for (const char* p = text + start; !IsLineEnd(*p); ++p)
        separators += IsSeparator(*p) ? 1 : 0;
    if (separators != 1 && separators != 4 && separators != 5) return 0;
    const bool full = separators != 1;
    marketData.hasFullColumns = full ? 1 : 0;
    const int fieldCount = separators + 1;

    char* p = text + start;
    int rows = 0;
    while (rows < MaxRows && *p != '\0') {
        char* field = p;
        if (TakeField(field, false, p) == '\0') return 0;
        const double day = ParseDate(field);
        c.dateNumber[rows] = day;
        if (day < 0.0) break;
        if (rows > 0 && day != 0.0 && !(day > c.dateNumber[rows - 1])) break;

        // ParseDate refuses texts of 20 characters or more.
        char shown[DateTextSize];
        Join(shown, sizeof shown, {field});
        if (std::strlen(shown) > 8) ShortenDateText(shown, sizeof shown);
        if (ddeFeed.offsetTime)
            ShiftHour(shown, c.dateText[rows]);
        else
            std::memcpy(c.dateText[rows], shown, sizeof shown);

        double* const order[5] = {c.close, c.open, c.high, c.low, c.volume};
        char end = '\0';
        for (int f = 1; f < fieldCount; ++f) {
            field = p;
            end = TakeField(field, f == fieldCount - 1, p);
            if (end == '\0') return 0;
            order[f - 1][rows] = ReadNumber(field);
        }
        if (!full) {
            c.open[rows] = c.high[rows] = c.low[rows] = c.volume[rows] = MISSING_VALUE;
        } else if (separators == 4) {
            c.volume[rows] = NoVolumeStaged;
        } else if (c.volume[rows] == 0.0) {
            c.volume[rows] = ZERO_VOLUME;
        }
        ++rows;

        // The rest of the line, then every line end: blank lines vanish.
        if (IsSeparator(end))
            while (!IsLineEnd(*p))
                ++p;
        while (*p == '\r' || *p == '\n')
            ++p;
    }

    marketData.fetchRowCount = rows;
    if (rows == 0) return 0;
    marketData.fetchIsTick = rows == 1 ? 1 : 0;
    return 1;
}

} // namespace velorin
