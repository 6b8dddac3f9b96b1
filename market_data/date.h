#pragma once
// Before writing code here, read DEVELOPERS.md at the repository root: team rules.
// Dates of the whole program: day numbers counted from 30 December 1899,
// and the short date texts of the chart axis.

#include <cstddef>

namespace velorin {

struct DateRules {
    double todayDate;   // today as a day number, no time part
    bool dayFirst;      // the user's locale writes the day before the month
};
extern DateRules dateRules;

// Day number of `text`, time part dropped; -1.0 for text that is no date,
// for 20 characters or more, and (once the frame exists) for a date after
// today.
double ParseDate(const char* text);

// Today's day number from the local clock, in the form "Mon dd yyyy".
double TodayFromClock();

// Shortens a date text for the axis, in place. `capacity` is the number of
// writable bytes from `text` on (the clear of the long form never passes it).
void ShortenDateText(char* text, std::size_t capacity);

} // namespace velorin
