#include "market_data/date.h"

#include <cstring>
#include <ctime>

#include "base/series.h"
#include "market_data/data_source.h"

namespace velorin {

DateRules dateRules{0.0, false, false};

void ResetDateRules() {
    dateRules = {0.0, false, false};
}

namespace {

constexpr long long DayZero = DaysFromCivil(1899, 12, 30);
static_assert(DaysFromCivil(1900, 1, 1) - DayZero == 2);
static_assert(DaysFromCivil(1999, 12, 31) - DayZero == 36525);

// Year of a day number (inverse of the above, year only).
long long YearOfDayNumber(long long dayNumber) {
    long long z = dayNumber + DayZero + 719468;
    const long long era = (z >= 0 ? z : z - 146096) / 146097;
    const long long doe = z - era * 146097;
    const long long yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const long long doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const long long mp = (5 * doy + 2) / 153;
    const long long m = mp < 10 ? mp + 3 : mp - 9;
    return yoe + era * 400 + (m <= 2 ? 1 : 0);
}

bool IsLeap(int y) {
    return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
}

int DaysInMonth(int y, int m) {
    static constexpr int days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return m == 2 && IsLeap(y) ? 29 : days[m - 1];
}

// ASCII only: the result must not depend on the process locale.
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}
// Marks between the parts of a date. The dot is not one: it separates the
// parts of a time.
bool IsDateMark(char c) {
    return c == '/' || c == '-' || c == ',';
}
bool IsTimeMark(char c) {
    return c == ':' || c == '.';
}

constexpr const char* MonthNames[12] = {"january",   "february", "march",    "april",
                                        "may",       "june",     "july",     "august",
                                        "september", "october",  "november", "december"};
constexpr const char* WeekdayNames[7] = {"monday", "tuesday",  "wednesday", "thursday",
                                         "friday", "saturday", "sunday"};
constexpr int September = 9;

// A word (lower case) matches a name written in full or by its first three
// letters.
bool WordIs(const char* word, std::size_t length, const char* name) {
    if (word[0] != name[0] || word[1] != name[1] || word[2] != name[2]) return false;
    return length == 3 || (length == std::strlen(name) && std::strcmp(word + 3, name + 3) == 0);
}

// Month 1 to 12 of a word, 0 for none. September is shortened the locale's
// way: "Sep" where the month comes first, "Sept" where the day does.
int MonthOfWord(const char* word, std::size_t length) {
    if (length < 3) return 0;
    for (int m = 0; m < 12; ++m) {
        if (m + 1 == September) {
            if (std::strncmp(word, "sep", 3) != 0) continue;
            if (length == 3) return dateRules.dayFirst ? 0 : September;
            if (length == 4) return dateRules.dayFirst && word[3] == 't' ? September : 0;
            return std::strcmp(word, MonthNames[m]) == 0 ? September : 0;
        }
        if (WordIs(word, length, MonthNames[m])) return m + 1;
    }
    return 0;
}

bool IsWeekday(const char* word, std::size_t length) {
    if (length < 3) return false;
    for (const char* name : WeekdayNames)
        if (WordIs(word, length, name)) return true;
    return false;
}

// Year of a number as typed; the value decides, not the digits: 0 to 49 are
// 2000 to 2049, 50 to 99 are 1950 to 1999, 100 to 9999 are themselves.
// 0 for a number that cannot be a year.
int YearOf(int value) {
    if (value < 50) return 2000 + value;
    if (value < 100) return 1900 + value;
    return value < 10000 ? value : 0;
}

int CurrentYear() {
    if (dateRules.todayDate > 0.0 && dateRules.todayDate < 3000000.0)
        return static_cast<int>(YearOfDayNumber(static_cast<long long>(dateRules.todayDate)));
    const std::time_t now = std::time(nullptr);
    const std::tm* local = std::localtime(&now);
    return local ? local->tm_year + 1900 : 2000;
}

constexpr double NoDate = -1.0;

// Day number of a civil date, NoDate when there is no such day. A year of 0
// is the "no year" of YearOf.
double DayNumber(int year, int month, int day) {
    if (year == 0 || month < 1 || month > 12 || day < 1 || day > DaysInMonth(year, month))
        return NoDate;
    return static_cast<double>(DaysFromCivil(year, month, day) - DayZero);
}

// Where year, month and day stand among three numbers.
struct FieldOrder {
    unsigned char year, month, day;
};
constexpr FieldOrder Mdy{2, 0, 1}, Dmy{2, 1, 0}, Ymd{0, 1, 2}, Ydm{0, 2, 1}, Myd{1, 0, 2},
    Dym{1, 2, 0};
// The locale's order first, then the other one, then the year first and the
// year in the middle.
constexpr FieldOrder MonthFirstOrders[6] = {Mdy, Dmy, Ymd, Ydm, Myd, Dym};
constexpr FieldOrder DayFirstOrders[6] = {Dmy, Mdy, Ymd, Ydm, Dym, Myd};

// A date from numbers alone: the first reading of them that is a date.
double DateOfNumbers(const int* n, int count) {
    if (count == 3) {
        const FieldOrder* orders = dateRules.dayFirst ? DayFirstOrders : MonthFirstOrders;
        for (int k = 0; k < 6; ++k) {
            const FieldOrder o = orders[k];
            const double value = DayNumber(YearOf(n[o.year]), n[o.month], n[o.day]);
            if (value != NoDate) return value;
        }
        return NoDate;
    }
    if (count != 2) return NoDate; // one number alone is no date
    // A day and a month of this year, the locale's order first...
    const auto monthDay = [](int month, int day) {
        return month >= 1 && month <= 12 && day >= 1 && day <= 31;
    };
    if (monthDay(n[0], n[1]) || monthDay(n[1], n[0])) {
        const int year = CurrentYear();
        const int m = dateRules.dayFirst ? 1 : 0;
        double value = DayNumber(year, n[m], n[1 - m]);
        if (value == NoDate) value = DayNumber(year, n[1 - m], n[m]);
        if (value != NoDate) return value;
    }
    // ...otherwise the first of a month of a year.
    const double value = DayNumber(YearOf(n[1]), n[0], 1);
    return value != NoDate ? value : DayNumber(YearOf(n[0]), n[1], 1);
}

// A date with its month named: the numbers are a day and a year.
double DateOfNamedMonth(int month, const int* n, int count) {
    if (count == 1) {
        // A day of this year, else the first of the month of a year.
        if (n[0] >= 1 && n[0] <= 31) {
            const double value = DayNumber(CurrentYear(), month, n[0]);
            if (value != NoDate) return value;
        }
        return DayNumber(YearOf(n[0]), month, 1);
    }
    if (count != 2) return NoDate;
    const double value = DayNumber(YearOf(n[1]), month, n[0]);
    return value != NoDate ? value : DayNumber(YearOf(n[0]), month, n[1]);
}

// Digits from `i` on; the value stops growing past any part of a date.
int ReadNumber(const char* text, std::size_t length, std::size_t& i) {
    constexpr int Ceiling = 100000;
    int value = 0;
    for (; i < length && IsDigit(text[i]); ++i)
        if (value < Ceiling) value = value * 10 + (text[i] - '0');
    return value;
}

// The parser itself, without the test against today.
double ParseDateValue(const char* text) {
    if (!text) return NoDate;
    const std::size_t length = strnlen(text, DateTextSize);
    if (length >= static_cast<std::size_t>(DateTextSize)) return NoDate;

    int numbers[4]; // a fourth may still turn out to be the hour of "10 PM"
    int numberCount = 0;
    int month = 0;
    bool weekdaySeen = false;
    bool haveTime = false;
    bool meridianSeen = false;
    int timeHour = 0;
    int marks = 0;            // date separators so far: two at most
    bool markPending = false; // a date separator not yet followed by a part
    enum { None, Num, Time, Other } last = None;

    std::size_t i = 0;
    while (i < length) {
        const char c = text[i];
        if (IsBlank(c)) {
            ++i;
            continue;
        }
        if (IsDateMark(c)) {
            // Nothing before it, two in a row, or a third one: no date.
            if (last == None || markPending || ++marks > 2) return NoDate;
            markPending = true;
            ++i;
            continue;
        }
        markPending = false;
        if (IsDigit(c)) {
            const std::size_t start = i;
            const int value = ReadNumber(text, length, i);
            if (i < length && IsTimeMark(text[i])) {
                // A time: h:mm or h:mm:ss, the dot in place of the colon
                // as well; it is checked and dropped.
                if (haveTime || i - start > 2 || value > 23) return NoDate;
                for (int p = 0; p < 2 && i < length && IsTimeMark(text[i]); ++p) {
                    const std::size_t from = ++i;
                    const int part = ReadNumber(text, length, i);
                    if (i == from || i - from > 2 || part > 59) return NoDate;
                }
                haveTime = true;
                timeHour = value;
                last = Time;
                continue;
            }
            if (numberCount == 4) return NoDate;
            numbers[numberCount++] = value;
            last = Num;
            continue;
        }
        if (IsLetter(c)) {
            char word[10];
            std::size_t wordLength = 0;
            for (; i < length && IsLetter(text[i]); ++i) {
                if (wordLength == sizeof word - 1) return NoDate;
                word[wordLength++] = Lower(text[i]);
            }
            word[wordLength] = '\0';
            if (const int named = MonthOfWord(word, wordLength)) {
                if (month == 0) {
                    month = named;
                } else {
                    // The same month twice counts once; the other one is
                    // its number.
                    if (named != month || numberCount == 4) return NoDate;
                    numbers[numberCount++] = named;
                }
                last = Other;
                continue;
            }
            if (IsWeekday(word, wordLength)) {
                if (weekdaySeen) return NoDate;
                weekdaySeen = true;
                last = Other;
                continue;
            }
            const bool meridian =
                (wordLength == 2 && (word[0] == 'a' || word[0] == 'p') && word[1] == 'm') ||
                (wordLength == 1 && (word[0] == 'a' || word[0] == 'p'));
            if (!meridian || meridianSeen) return NoDate;
            meridianSeen = true;
            if (last == Num && !haveTime) {
                // "10 PM": the number before is an hour.
                haveTime = true;
                timeHour = numbers[--numberCount];
            } else if (last != Time) {
                return NoDate;
            }
            if (timeHour > 12) return NoDate;
            last = Other;
            continue;
        }
        return NoDate; // the abbreviation dot of "Dec." among others
    }
    if (markPending) return NoDate;

    if (numberCount > 3) return NoDate;
    if (numberCount == 0 && month == 0) {
        // A time alone is day 0; anything else is no date.
        return haveTime && !weekdaySeen ? 0.0 : NoDate;
    }
    return month != 0 ? DateOfNamedMonth(month, numbers, numberCount)
                      : DateOfNumbers(numbers, numberCount);
}

bool IsSquashed(char c) {
    return c == ' ' || c == '-' || c == '/';
}

} // namespace

double ParseDate(const char* text) {
    const double value = ParseDateValue(text);
    if (value == NoDate) return NoDate;
    // Today itself passes; the test is off until the frame exists.
    if (dateRules.rejectFuture && value > dateRules.todayDate) return NoDate;
    return value;
}

double TodayFromClock() {
    const std::time_t now = std::time(nullptr);
    const std::tm* local = std::localtime(&now);
    if (!local) return NoDate;
    // From the calendar fields, not through the parser: the clock's month
    // abbreviations ("Sep") are not all names of every locale.
    return DayNumber(local->tm_year + 1900, local->tm_mon + 1, local->tm_mday);
}

void ShortenDateText(char* text, std::size_t capacity) {
    if (!text || capacity == 0) return;
    const std::size_t n = strnlen(text, capacity);
    const std::size_t room = capacity - 1; // characters that fit with the terminator

    // 1. Tick database rows: the first two characters, a blank, the last five.
    const char* topic = marketData.selection.currentTopic;
    if (std::strncmp(topic, "[TickDB", 7) == 0 || std::strncmp(topic, "[TICKDB", 7) == 0 ||
        std::strncmp(topic, "[tickdb", 7) == 0) {
        char result[9];
        std::size_t r = 0;
        const std::size_t headCount = n < 2 ? n : 2;
        const std::size_t tailCount = n < 5 ? n : 5;
        for (std::size_t k = 0; k < headCount; ++k)
            result[r++] = text[k];
        result[r++] = ' ';
        for (std::size_t k = n - tailCount; k < n; ++k)
            result[r++] = text[k];
        if (r > room) r = room;
        std::memcpy(text, result, r);
        text[r] = '\0';
        return;
    }

    // 2. The tail: the last four characters, a year of the 1990s or 2000s
    // cut to its last two. The head stays the first n - 4 characters.
    const std::size_t headLength = n >= 4 ? n - 4 : 0;
    const char* tail = text + headLength;
    std::size_t tailLength = n - headLength;
    if (tailLength == 4 &&
        (std::strncmp(tail, "199", 3) == 0 || std::strncmp(tail, "200", 3) == 0)) {
        tail += 2;
        tailLength = 2;
    }

    // 3. The candidate: the head as it stands for short texts, otherwise
    // without blanks, dashes and slashes; then the tail.
    constexpr std::size_t CandidateRoom = 255;
    char candidate[CandidateRoom + 1];
    std::size_t c = 0;
    const bool squashHead = static_cast<long long>(n) - 2 >= 9;
    for (std::size_t k = 0; k < headLength && c < CandidateRoom; ++k) {
        if (squashHead && IsSquashed(text[k])) continue;
        candidate[c++] = text[k];
    }
    for (std::size_t k = 0; k < tailLength && c < CandidateRoom; ++k)
        candidate[c++] = tail[k];
    candidate[c] = '\0';

    // 4. Short enough: it replaces the text.
    if (c < 9) {
        const std::size_t w = c < room ? c : room;
        std::memcpy(text, candidate, w);
        text[w] = '\0';
        return;
    }

    // 5. Otherwise clear 256 bytes in place (never past the buffer) and
    // write the candidate without blanks, dashes and slashes.
    std::memset(text, 0, capacity < 256 ? capacity : 256);
    std::size_t w = 0;
    for (std::size_t k = 0; k < c && w < room; ++k) {
        if (IsSquashed(candidate[k])) continue;
        text[w++] = candidate[k];
    }
    text[w] = '\0';
}

} // namespace velorin
