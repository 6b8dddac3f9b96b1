// Dates: ParseDate, TodayFromClock and ShortenDateText.
#include <ctime>
#include <initializer_list>

#include "tests/market_data/market_data_fixture.h"

namespace velorin {
namespace {

class DateTest : public MarketDataTest {
  protected:
    void SetUp() override {
        MarketDataTest::SetUp();
        dateRules.rejectFuture = false; // no test against today unless asked for
    }
};

struct Case {
    const char* text;
    int year, month, day; // year 0: no date
};

// Checks every row under the current rules; `what` names the table.
void CheckCases(const char* what, std::initializer_list<Case> cases) {
    for (const Case& c : cases) {
        const double expected = c.year == 0 ? -1.0
                                            : DayNumberOf(c.year, static_cast<unsigned>(c.month),
                                                          static_cast<unsigned>(c.day));
        EXPECT_EQ(ParseDate(c.text), expected)
            << what << ": \"" << c.text << '"' << (dateRules.dayFirst ? " (day first)" : "");
    }
}

constexpr int No = 0;

TEST_F(DateTest, DayNumbersCountFromTheEndOf1899) {
    EXPECT_EQ(ParseDate("12/30/1899"), 0.0);
    EXPECT_EQ(ParseDate("1/1/1900"), 2.0);
    EXPECT_EQ(ParseDate("2/28/1900"), 60.0); // no 29 February 1900
    EXPECT_EQ(ParseDate("3/1/1900"), 61.0);
    EXPECT_EQ(ParseDate("12/31/1999"), 36525.0);
    EXPECT_EQ(ParseDate("2/29/2000"), 36585.0);
}

TEST_F(DateTest, CommonForms) {
    // clang-format off
    CheckCases("forms", {
        {"12/31/1999", 1999, 12, 31},       {"12/31/99", 1999, 12, 31},         {"1/15/1999", 1999, 1, 15},
        {"31 Dec 1999", 1999, 12, 31},      {"Dec 31 1999", 1999, 12, 31},      {"05/Jan/2000", 2000, 1, 5},
        {"Jan  5 2000", 2000, 1, 5},        {"DECEMBER 31 1999", 1999, 12, 31}, {"15 january 1999", 1999, 1, 15},
        {"1999-12-31", 1999, 12, 31},       {"1999/12/31", 1999, 12, 31},       {"01-Jan-99", 1999, 1, 1},
        {"December 31, 1999", 1999, 12, 31}, {"Fri Dec 31 1999", 1999, 12, 31}, {"31Dec99", 1999, 12, 31},
        {"12/31/1999 10:30:15", 1999, 12, 31}, // 19 characters
        {"", No, 0, 0}, {"   ", No, 0, 0}, {"abc", No, 0, 0}, {"1999", No, 0, 0}, {"#N\\A", No, 0, 0},
        {"1.5e3", No, 0, 0}, {"12/31/1999 x", No, 0, 0}, {"Dec", No, 0, 0}, {"PM", No, 0, 0},
        {"Monday", No, 0, 0}, {"Fri Mon Dec 31 1999", No, 0, 0}, {"12/31/1999\n", No, 0, 0},
        {"12/31/1999 10:30:15 ", No, 0, 0}, // 20 characters
    });
    // clang-format on
    EXPECT_EQ(ParseDate(nullptr), -1.0);
}

TEST_F(DateTest, FieldOrderLocaleFirstThenTheOthers) {
    // clang-format off
    const std::initializer_list<Case> both = {
        {"12/31/1999", 1999, 12, 31},  {"31/12/1999", 1999, 12, 31}, {"13/01/1999", 1999, 1, 13},
        {"13/1/00", 2000, 1, 13},      {"1999-12-31", 1999, 12, 31}, {"2000-13-01", 2000, 1, 13},
        {"2000/13/1", 2000, 1, 13},    {"1999/31/12", 1999, 12, 31}, {"32 2 3", 2032, 2, 3},
        {"0 2 3", 2000, 2, 3},         {"31 1999 2", No, 0, 0},     {"31 1999 12", 1999, 12, 31},
        {"Dec 31 1999", 1999, 12, 31}, {"1999 Dec 31", 1999, 12, 31}, {"31 1999 Dec", 1999, 12, 31},
        {"13/13/1999", No, 0, 0},      {"2/30/2000", No, 0, 0},      {"0/1/2000", No, 0, 0},
        {"1/2/3/4", No, 0, 0},         {"12/31/19999", No, 0, 0},    {"Dec Jan 1999", No, 0, 0},
        {"Dec 1 2 1999", No, 0, 0},
    };
    CheckCases("month first", both);
    CheckCases("month first", {{"05/01/2000", 2000, 5, 1}, {"2 1999 3", 1999, 2, 3}, {"1 2 3", 2003, 1, 2}, {"2 1 12", 2012, 2, 1}});
    dateRules.dayFirst = true;
    CheckCases("day first", both);
    CheckCases("day first", {{"05/01/2000", 2000, 1, 5}, {"2 1999 3", 1999, 3, 2}, {"1 2 3", 2003, 2, 1}, {"2 1 12", 2012, 1, 2}});
    // clang-format on
}

TEST_F(DateTest, YearsByValueNotDigits) {
    // clang-format off
    CheckCases("years", {
        {"1/1/00", 2000, 1, 1},        {"1/1/49", 2049, 1, 1},       {"1/1/50", 1950, 1, 1},
        {"12/31/99", 1999, 12, 31},    {"12/31/029", 2029, 12, 31},  {"1/1/0049", 2049, 1, 1},
        {"1/15/0099", 1999, 1, 15},    {"1/1/100", 100, 1, 1},       {"12/31/9999", 9999, 12, 31},
        {"001/015/1999", 1999, 1, 15}, {"Jan 0005 2000", 2000, 1, 5}, {"Dec 0099", 1999, 12, 1},
        {"2/29/2100", No, 0, 0},       {"1/1/10000", No, 0, 0},      {"Jan 1 10000", No, 0, 0},
    });
    // clang-format on
}

TEST_F(DateTest, TwoParts) {
    dateRules.todayDate = DayNumberOf(2003, 6, 1);
    // clang-format off
    const std::initializer_list<Case> both = {
        {"Dec 1999", 1999, 12, 1},   {"12/1999", 1999, 12, 1},    {"1999-12", 1999, 12, 1},
        {"12/31", 2003, 12, 31},     {"31 Dec", 2003, 12, 31},    {"Dec 31", 2003, 12, 31},
        {"2/30", 2030, 2, 1},        {"30/2", 2030, 2, 1},        
        {"Dec Dec 1999", 1999, 12, 12}, {"Dec 1999 December", 1999, 12, 12},
        {"13/13", No, 0, 0},         {"1999", No, 0, 0},          {"Dec Dec", 2003, 12, 12},
    };
    CheckCases("month first", both);
    CheckCases("month first", {{"5/6", 2003, 5, 6}});
    dateRules.dayFirst = true;
    CheckCases("day first", both);
    CheckCases("day first", {{"5/6", 2003, 6, 5}});
    // clang-format on

    dateRules.todayDate = DayNumberOf(2008, 1, 1);
    EXPECT_EQ(ParseDate("29 Feb"), DayNumberOf(2008, 2, 29)); // a leap year
    // Without a today the clock gives the year.
    dateRules.todayDate = 0.0;
    const std::time_t now = std::time(nullptr);
    const int year = std::localtime(&now)->tm_year + 1900;
    EXPECT_EQ(ParseDate("1/15"), DayNumberOf(year, 1, 15));
}

TEST_F(DateTest, Separators) {
    // clang-format off
    CheckCases("separators", {
        {"12-31-1999", 1999, 12, 31},    {"12 31 1999", 1999, 12, 31},   {"12,31,1999", 1999, 12, 31},
        {"12 / 31 / 1999", 1999, 12, 31}, {"12/31-1999", 1999, 12, 31},  {"12, 31 1999", 1999, 12, 31},
        {"  12/31/1999  ", 1999, 12, 31}, {"Fri, Dec 31, 1999", 1999, 12, 31}, {"31-Dec 1999", 1999, 12, 31},
        {"31.12.1999", No, 0, 0},  {"1.2.2000", No, 0, 0},     {"12.31.1999", No, 0, 0},
        {"1/15/1999/", No, 0, 0},  {"/1/15/1999", No, 0, 0},   {"12/31/1999.", No, 0, 0},
        {"1999-12-31-", No, 0, 0}, {"1//15/1999", No, 0, 0},   {"12/-31/1999", No, 0, 0},
        {"-12/31/1999", No, 0, 0}, {"Dec. 31, 1999", No, 0, 0}, {"1/15/1999/10:30", No, 0, 0},
        {"12 31 1999 , ", No, 0, 0},
    });
    // clang-format on
    for (const char* time : {"10.15", "1.5", "01.02.03", "10:30", "10:30:15", "10:30 AM", "0:00"})
        EXPECT_EQ(ParseDate(time), 0.0) << time;
}

TEST_F(DateTest, MonthNamesOfTheLocale) {
    // clang-format off
    const std::initializer_list<Case> both = {
        {"jan 5 1999", 1999, 1, 5},         {"5 FEB 1999", 1999, 2, 5},      {"MaRcH 5 1999", 1999, 3, 5},
        {"5 september 1999", 1999, 9, 5},   {"Oct/5/1999", 1999, 10, 5},
        {"5 Sept. 1999", No, 0, 0},         {"5 Septe 1999", No, 0, 0},      {"5 Janu 1999", No, 0, 0},
        {"5 Ja 1999", No, 0, 0},            {"5 Mayo 1999", No, 0, 0},
    };
    CheckCases("month first", both);
    CheckCases("month first", {{"Sep 5 1999", 1999, 9, 5}, {"Sept 5 1999", No, 0, 0}});
    dateRules.dayFirst = true;
    CheckCases("day first", both);
    CheckCases("day first", {{"5 Sept 1999", 1999, 9, 5}, {"5 Sep 1999", No, 0, 0}});
    // clang-format on
}

TEST_F(DateTest, TimesAreCheckedAndDropped) {
    // clang-format off
    CheckCases("times", {
        {"12/31/1999 10:30", 1999, 12, 31},   {"12/31/1999 10:30 PM", 1999, 12, 31},
        {"12/31/1999 10 am", 1999, 12, 31},   {"10:30 12/31/1999", 1999, 12, 31},
        {"12/31/1999 23:59:59", 1999, 12, 31}, {"12/31/1999 10.30", 1999, 12, 31},
        {"Dec 31 10:30 1999", 1999, 12, 31},   {"1999-12-31 0:00", 1999, 12, 31},
        {"12/31/1999 24:00", No, 0, 0},  {"12/31/1999 10:60", No, 0, 0}, {"12/31/1999 13:00 PM", No, 0, 0},
        {"Dec 31 1999 10", No, 0, 0},    {"12/31/1999 10:", No, 0, 0},   {"12/31/1999 1:2:3:4", No, 0, 0},
        {"10:30 11:30 1/1/99", No, 0, 0}, {"12/31/1999 PM", No, 0, 0},   {"12/31/1999 100:00", No, 0, 0},
        {"25:00", No, 0, 0},             {"10:60", No, 0, 0},            {"13:00 PM", No, 0, 0},
    });
    // clang-format on
}

TEST_F(DateTest, FutureDatesOnlyOnceTheFrameExists) {
    dateRules.todayDate = 36525.0;
    EXPECT_EQ(ParseDate("1/1/2000"), 36526.0);
    dateRules.rejectFuture = true;
    EXPECT_EQ(ParseDate("12/31/1999"), 36525.0); // today passes
    EXPECT_EQ(ParseDate("1/1/2000"), -1.0);
}

TEST_F(DateTest, TodayFromClockIsTheLocalDate) {
    const std::time_t now = std::time(nullptr);
    const std::tm local = *std::localtime(&now);
    const double expected =
        DayNumberOf(local.tm_year + 1900, static_cast<unsigned>(local.tm_mon + 1),
                    static_cast<unsigned>(local.tm_mday));
    dateRules.rejectFuture = true;
    dateRules.todayDate = 1.0; // a stale today does not stop it
    const double today = TodayFromClock();
    EXPECT_TRUE(today == expected || today == expected + 1.0) << today; // around midnight
}

std::string Shorten(const char* text) {
    char buffer[300] = {};
    std::snprintf(buffer, sizeof buffer, "%s", text);
    ShortenDateText(buffer, sizeof buffer);
    return buffer;
}

TEST_F(DateTest, ShortenForms) {
    const std::pair<const char*, const char*> cases[] = {
        {"12/31/1999", "12/31/99"},
        {"1/15/1999", "1/15/99"},
        {"31 Dec 1999", "31Dec99"},
        {"05/Jan/2000", "05Jan00"},
        {"3 Jan 2000", "3 Jan 00"},
        {"Dec 31 1999", "Dec3199"},
        // The long form: without blanks, dashes and slashes.
        {"01-Jan-99", "01Jan99"},
        {"1999-12-31", "19991231"},
        {"15 January 1999", "15January99"},
        {"12/31/2010", "12312010"}, // a year of 2010 on keeps four digits
    };
    for (const auto& [in, out] : cases)
        EXPECT_EQ(Shorten(in), out) << in;
    SetSelection("Excel", "[TickDB]Sheet1", "R1C1:R10C5");
    EXPECT_EQ(Shorten("12/31/1999 10:31:22"), "12 31:22");
    SetSelection("Excel", "[tickdb]", "");
    EXPECT_EQ(Shorten("12/31/1999 10:31:22"), "12 31:22");
    SetSelection("Excel", "[Tickdb]", "");
    EXPECT_EQ(Shorten("12/31/1999 10:31:22"), "1231199910:31:22");
}

TEST_F(DateTest, ShortenLongFormClearsInPlaceWithinTheCapacity) {
    char buffer[400];
    std::memset(buffer, 'x', sizeof buffer);
    std::memcpy(buffer, "01-Jan-99", 10);
    ShortenDateText(buffer, sizeof buffer);
    EXPECT_STREQ(buffer, "01Jan99");
    for (int i = 7; i < 256; ++i)
        ASSERT_EQ(buffer[i], '\0') << i;
    for (int i = 256; i < 400; ++i)
        ASSERT_EQ(buffer[i], 'x') << i;

    std::memset(buffer, 'x', sizeof buffer);
    std::memcpy(buffer, "15 January 1999", 16);
    ShortenDateText(buffer, 40);
    EXPECT_STREQ(buffer, "15January99");
    for (int i = 11; i < 40; ++i)
        ASSERT_EQ(buffer[i], '\0') << i;
    EXPECT_EQ(buffer[40], 'x');

    std::memset(buffer, 'x', sizeof buffer);
    std::memcpy(buffer, "15 January 1999", 15); // no terminator inside the capacity
    ShortenDateText(buffer, 12);                // sees "15 January 1"
    EXPECT_STREQ(buffer, "15January1");
    EXPECT_EQ(std::string(buffer + 12, 4), "999x");
}

} // namespace
} // namespace velorin
