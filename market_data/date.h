#pragma once
// Dates of the whole program: day numbers counted from 30 December 1899,
// and the short date texts of the chart axis.

#include <cstddef>

namespace velorin {

// Days from 1 January 1970 of a proleptic Gregorian date (month 1 to 12).
constexpr long long DaysFromCivil(long long y, long long m, long long d) {
    y -= m <= 2 ? 1 : 0;
    const long long era = (y >= 0 ? y : y - 399) / 400;
    const long long yoe = y - era * 400;
    const long long doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const long long doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

struct DateRules {
    double todayDate;  // today as a day number, no time part
    bool dayFirst;     // the user's locale writes the day before the month
    bool rejectFuture; // dates after today are no dates (on once the frame exists)
};
extern DateRules dateRules;
void ResetDateRules();

// Day number of `text`, time part dropped; -1.0 for text that is no date,
// for 20 characters or more, and (with `dateRules.rejectFuture`) for a
// date after today. Parts are separated by "/", "-", "," and blanks; the
// fields are read in the locale's order (`dateRules.dayFirst`), else in the
// first other order that gives a date; a month may be named (English, in
// full or by three letters). Years 0-49 are 2000-2049, 50-99 are 1950-1999.
// Two parts are a day and month of this year, else a month of a year. A
// time (":" or ".") beside the date is checked and dropped; a time alone
// is day 0.
double ParseDate(const char* text);

// Today's day number from the local clock.
double TodayFromClock();

// Shortens a date text for the axis, in place. `capacity` is the number of
// writable bytes from `text` on (the clear of the long form never passes it).
void ShortenDateText(char* text, std::size_t capacity);

} // namespace velorin
