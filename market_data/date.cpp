#include "market_data/date.h"

#include <cstring>
#include <ctime>
#include <utility>

#include "market_data/data_source.h"
#include "base/series.h"

namespace velorin {

DateRules dateRules{0.0, false, false};

void ResetDateRules() { dateRules = {0.0, false, false}; }

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
bool IsDateSeparator(char c) {
    return c == ' ' || c == '\t' || c == '/' || c == '-' || c == '.' || c == ',';
}

constexpr const char* MonthNames[12] = {"january",   "february", "march",    "april",
                                        "may",       "june",     "july",     "august",
                                        "september", "october",  "november", "december"};
constexpr const char* WeekdayNames[7] = {"monday", "tuesday",  "wednesday", "thursday",
                                         "friday", "saturday", "sunday"};

// A word matches a name written in full or by its first three letters.
bool WordIs(const char* word, std::size_t length, const char* name) {
    const std::size_t full = std::strlen(name);
    if (length != full && length != 3) return false;
    return std::strncmp(word, name, length) == 0;
}

struct Number {
    int value;
    int digits;
};

bool YearLike(const Number& n) {
    return n.digits >= 3 || n.value > 31;
}

int ToYear(const Number& n) {
    if (n.digits <= 2) return n.value < 50 ? 2000 + n.value : 1900 + n.value;
    return n.value;
}

int CurrentYear() {
    if (dateRules.todayDate > 0.0 && dateRules.todayDate < 3000000.0)
        return static_cast<int>(YearOfDayNumber(static_cast<long long>(dateRules.todayDate)));
    const std::time_t now = std::time(nullptr);
    const std::tm* local = std::localtime(&now);
    return local ? local->tm_year + 1900 : 2000;
}

// Month and day from two numbers in the user's order; a first number above
// 12 with a second one of 12 or less is read the other way round.
void OrderMonthDay(int first, int second, int& month, int& day) {
    if (!dateRules.dayFirst) {
        month = first;
        day = second;
        if (first > 12 && second <= 12) std::swap(month, day);
    } else {
        day = first;
        month = second;
        if (second > 12 && first <= 12) std::swap(month, day);
    }
}

constexpr double NoDate = -1.0;

// The parser itself, without the test against today.
double ParseDateValue(const char* text) {
    if (!text) return NoDate;
    const std::size_t length = strnlen(text, DateTextSize);
    if (length >= static_cast<std::size_t>(DateTextSize)) return NoDate;

    Number numbers[4]; // a fourth may still turn out to be the hour of "10 PM"
    int numberCount = 0;
    int month = 0;
    bool weekdaySeen = false;
    bool haveTime = false;
    bool meridianSeen = false;
    int timeHour = 0;
    enum { None, Num, Time, Other } last = None;

    std::size_t i = 0;
    while (i < length) {
        const char c = text[i];
        if (IsDateSeparator(c)) {
            ++i;
            continue;
        }
        if (IsDigit(c)) {
            std::size_t j = i;
            int value = 0;
            while (j < length && IsDigit(text[j])) {
                if (j - i >= 4) return NoDate; // no field of a date has 5 digits
                value = value * 10 + (text[j] - '0');
                ++j;
            }
            const int digits = static_cast<int>(j - i);
            if (j < length && text[j] == ':') {
                // A time: h:mm or h:mm:ss; it is checked and dropped.
                if (haveTime) return NoDate;
                for (int p = 0; p < 2 && j < length && text[j] == ':'; ++p) {
                    std::size_t k = j + 1;
                    int v = 0;
                    while (k < length && IsDigit(text[k])) {
                        if (k - (j + 1) >= 2) return NoDate;
                        v = v * 10 + (text[k] - '0');
                        ++k;
                    }
                    if (k == j + 1 || v > 59) return NoDate;
                    j = k;
                }
                if (digits > 2 || value > 23) return NoDate;
                haveTime = true;
                timeHour = value;
                last = Time;
                i = j;
                continue;
            }
            if (numberCount == 4) return NoDate;
            numbers[numberCount++] = Number{value, digits};
            last = Num;
            i = j;
            continue;
        }
        if (IsLetter(c)) {
            char word[10];
            std::size_t j = i;
            while (j < length && IsLetter(text[j])) {
                if (j - i >= sizeof word) return NoDate;
                word[j - i] = Lower(text[j]);
                ++j;
            }
            const std::size_t wordLength = j - i;
            i = j;
            bool known = false;
            for (int m = 0; m < 12 && !known; ++m) {
                if (WordIs(word, wordLength, MonthNames[m])) {
                    if (month != 0) return NoDate;
                    month = m + 1;
                    known = true;
                }
            }
            for (int d = 0; d < 7 && !known; ++d) {
                if (WordIs(word, wordLength, WeekdayNames[d])) {
                    if (weekdaySeen) return NoDate;
                    weekdaySeen = true;
                    known = true;
                }
            }
            if (known) {
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
                const Number hour = numbers[--numberCount];
                if (hour.digits > 2) return NoDate;
                haveTime = true;
                timeHour = hour.value;
            } else if (last != Time) {
                return NoDate;
            }
            if (timeHour > 12) return NoDate;
            last = Other;
            continue;
        }
        return NoDate;
    }

    if (numberCount > 3) return NoDate;
    if (numberCount == 0 && month == 0) {
        // A time alone is day 0; anything else is no date.
        return haveTime && !weekdaySeen ? 0.0 : NoDate;
    }

    int year = 0;
    int day = 0;
    if (month != 0) {
        if (numberCount == 0 || numberCount == 3) return NoDate;
        if (numberCount == 1) {
            if (YearLike(numbers[0])) {
                year = ToYear(numbers[0]);
                day = 1;
            } else {
                day = numbers[0].value;
                year = CurrentYear();
            }
        } else if (YearLike(numbers[0]) && !YearLike(numbers[1])) {
            year = ToYear(numbers[0]);
            day = numbers[1].value;
        } else {
            day = numbers[0].value;
            year = ToYear(numbers[1]);
        }
    } else if (numberCount == 2) {
        if (YearLike(numbers[0])) {
            year = ToYear(numbers[0]);
            month = numbers[1].value;
            day = 1;
        } else if (YearLike(numbers[1])) {
            month = numbers[0].value;
            day = 1;
            year = ToYear(numbers[1]);
        } else {
            OrderMonthDay(numbers[0].value, numbers[1].value, month, day);
            year = CurrentYear();
        }
    } else if (numberCount == 3) {
        if (YearLike(numbers[0])) {
            year = ToYear(numbers[0]);
            month = numbers[1].value;
            day = numbers[2].value;
        } else {
            OrderMonthDay(numbers[0].value, numbers[1].value, month, day);
            year = ToYear(numbers[2]);
        }
    } else {
        return NoDate; // one number alone
    }

    if (year < 100 || year > 9999 || month < 1 || month > 12) return NoDate;
    if (day < 1 || day > DaysInMonth(year, month)) return NoDate;
    return static_cast<double>(DaysFromCivil(year, month, day) - DayZero);
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
    // "Www Mmm dd hh:mm:ss yyyy\n": month, day and blank from index 4, the
    // year from index 20.
    const char* stamp = std::asctime(local);
    if (!stamp || strnlen(stamp, 24) < 24) return NoDate;
    char text[12];
    std::memcpy(text, stamp + 4, 7);
    std::memcpy(text + 7, stamp + 20, 4);
    text[11] = '\0';
    // The frame does not exist yet when today is computed: no test here.
    return ParseDateValue(text);
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
