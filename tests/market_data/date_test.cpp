// Dates: ParseDate and ShortenDateText.
#include <ctime>
#include <initializer_list>
#include <tuple>

#include "tests/market_data/market_data_fixture.h"

namespace velorin {
namespace {

using DateTest = MarketDataTest;

struct Case {
    const char* text;
    int year; // 0: no date
    unsigned month, day;
};
constexpr int No = 0;

// Checks every row under the current rules, without the test against today;
// `what` names the table.
void CheckCases(const char* what, std::initializer_list<Case> cases) {
    dateRules.rejectFuture = false;
    for (const Case& c : cases) {
        const double expected = c.year == No ? -1.0 : DayNumberOf(c.year, c.month, c.day);
        EXPECT_EQ(ParseDate(c.text), expected)
            << what << ": \"" << c.text << '"' << (dateRules.dayFirst ? " (day first)" : "");
    }
}

// The rows of `both` read alike in either field order, the others as it says.
void CheckOrders(const char* what, std::initializer_list<Case> both,
                 std::initializer_list<Case> monthFirst, std::initializer_list<Case> dayFirst) {
    CheckCases(what, both);
    CheckCases(what, monthFirst);
    dateRules.dayFirst = true;
    CheckCases(what, both);
    CheckCases(what, dayFirst);
}

// clang-format off
TEST_F(DateTest, CommonForms) {
    EXPECT_EQ(ParseDate(nullptr), -1.0);
    CheckCases("forms", {
        {"31 Dec 1999", 1999, 12, 31}, {"05/Jan/2000", 2000, 1, 5}, {"December 31, 1999", 1999, 12, 31},
        {"Fri Dec 31 1999", 1999, 12, 31}, {"31Dec99", 1999, 12, 31}, {"12/31/1999 10:30:15", 1999, 12, 31},
        {"", No, 0, 0}, {"#N\\A", No, 0, 0}, {"12/31/1999 x", No, 0, 0}, {"Fri Mon Dec 31 1999", No, 0, 0},
        {"12/30/1899", 1899, 12, 30}, {"3/1/1900", 1900, 3, 1}, // day 0, and no 29 February 1900
        {"12/31/1999 10:30:15 ", No, 0, 0}, // 20 characters
    });
}

TEST_F(DateTest, FieldOrderLocaleFirstThenTheOthers) {
    CheckOrders("order", {
        {"31/12/1999", 1999, 12, 31}, {"2000-13-01", 2000, 1, 13}, {"32 2 3", 2032, 2, 3},
        {"31 1999 12", 1999, 12, 31}, {"31 1999 2", No, 0, 0},     {"2/30/2000", No, 0, 0},
        {"1/2/3/4", No, 0, 0},        {"Dec Jan 1999", No, 0, 0},
    }, {{"05/01/2000", 2000, 5, 1}, {"1 2 3", 2003, 1, 2}}, {{"05/01/2000", 2000, 1, 5}, {"1 2 3", 2003, 2, 1}});
}

TEST_F(DateTest, YearsByValueNotDigits) {
    CheckCases("years", {
        {"1/1/49", 2049, 1, 1},     {"1/1/50", 1950, 1, 1}, {"12/31/029", 2029, 12, 31},
        {"1/15/0099", 1999, 1, 15}, {"1/1/100", 100, 1, 1}, {"2/29/2100", No, 0, 0}, {"1/1/10000", No, 0, 0},
    });
}

TEST_F(DateTest, TwoParts) {
    dateRules.todayDate = DayNumberOf(2003, 6, 1);
    CheckOrders("two parts", {
        {"Dec 1999", 1999, 12, 1}, {"12/1999", 1999, 12, 1}, {"12/31", 2003, 12, 31},
        {"2/30", 2030, 2, 1},      {"Dec Dec 1999", 1999, 12, 12}, {"13/13", No, 0, 0},
    }, {{"5/6", 2003, 5, 6}}, {{"5/6", 2003, 6, 5}});
    dateRules.todayDate = DayNumberOf(2008, 1, 1);
    EXPECT_EQ(ParseDate("29 Feb"), DayNumberOf(2008, 2, 29)); // a leap year
    const std::time_t now = std::time(nullptr); // without a today, the clock's year
    dateRules.todayDate = 0.0;
    CheckCases("clock", {{"1/15", std::localtime(&now)->tm_year + 1900, 1, 15}});
}

TEST_F(DateTest, Separators) {
    CheckCases("separators", {
        {"12,31,1999", 1999, 12, 31}, {"12 / 31 / 1999", 1999, 12, 31}, {"12/31-1999", 1999, 12, 31},
        {"Fri, Dec 31, 1999", 1999, 12, 31}, {"31.12.1999", No, 0, 0}, {"1/15/1999/", No, 0, 0},
        {"1//15/1999", No, 0, 0}, {"12/-31/1999", No, 0, 0}, {"Dec. 31, 1999", No, 0, 0},
        {"10.15", 1899, 12, 30}, {"01.02.03", 1899, 12, 30}, {"10:30 AM", 1899, 12, 30}, // a time alone: day 0
    });
}

TEST_F(DateTest, MonthNamesOfTheLocale) {
    CheckOrders("names", {
        {"MaRcH 5 1999", 1999, 3, 5}, {"5 september 1999", 1999, 9, 5}, {"5 Sept. 1999", No, 0, 0},
        {"5 Janu 1999", No, 0, 0},
    }, {{"Sep 5 1999", 1999, 9, 5}, {"Sept 5 1999", No, 0, 0}},
       {{"5 Sept 1999", 1999, 9, 5}, {"5 Sep 1999", No, 0, 0}});
}

TEST_F(DateTest, TimesAreCheckedAndDropped) {
    CheckCases("times", {
        {"12/31/1999 10:30 PM", 1999, 12, 31}, {"12/31/1999 10 am", 1999, 12, 31},
        {"10:30 12/31/1999", 1999, 12, 31},    {"Dec 31 10:30 1999", 1999, 12, 31},
        {"12/31/1999 24:00", No, 0, 0}, {"12/31/1999 13:00 PM", No, 0, 0}, {"Dec 31 1999 10", No, 0, 0},
        {"10:30 11:30 1/1/99", No, 0, 0}, {"12/31/1999 PM", No, 0, 0},
    });
}
// clang-format on

TEST_F(DateTest, ShortenForms) {
    // clang-format off
    const std::tuple<const char*, const char*, const char*> cases[] = { // tick sheet, text, short
        {"", "12/31/1999", "12/31/99"},   {"", "31 Dec 1999", "31Dec99"},         {"", "3 Jan 2000", "3 Jan 00"},
        {"", "Dec 31 1999", "Dec3199"},   {"", "15 January 1999", "15January99"}, {"", "12/31/2010", "12312010"},
        {"[TickDB]Sheet1", "12/31/1999 10:31:22", "12 31:22"}, {"[tickdb]", "12/31/1999 10:31:22", "12 31:22"},
        {"[Tickdb]", "12/31/1999 10:31:22", "1231199910:31:22"},
    };
    // clang-format on
    for (const auto& [topic, in, out] : cases) {
        SetSelection("Excel", topic, "");
        char buffer[300] = {};
        std::snprintf(buffer, sizeof buffer, "%s", in);
        ShortenDateText(buffer, sizeof buffer);
        EXPECT_STREQ(buffer, out) << topic << " " << in;
    }
}

// The long form clears the rest of the text up to the capacity, and reads no
// further: here it sees "15 January 1".
TEST_F(DateTest, ShortenLongFormStaysWithinTheCapacity) {
    char buffer[16];
    std::memcpy(buffer, "15 January 1999x", 16);
    ShortenDateText(buffer, 12);
    EXPECT_EQ(std::string(buffer, 16), std::string("15January1\0\0999x", 16));
}

} // namespace
} // namespace velorin
