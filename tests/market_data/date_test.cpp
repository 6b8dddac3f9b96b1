// Dates: ParseDate, TodayFromClock and ShortenDateText.
#include <ctime>

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
    int year, month, day;
};

TEST_F(DateTest, DayNumbersCountFromTheEndOf1899) {
    EXPECT_EQ(ParseDate("12/30/1899"), 0.0);
    EXPECT_EQ(ParseDate("1/1/1900"), 2.0);
    EXPECT_EQ(ParseDate("2/28/1900"), 60.0); // no 29 February 1900
    EXPECT_EQ(ParseDate("3/1/1900"), 61.0);
    EXPECT_EQ(ParseDate("12/31/1999"), 36525.0);
    EXPECT_EQ(ParseDate("2/29/2000"), 36585.0);
}

TEST_F(DateTest, Forms) {
    // clang-format off
    const Case cases[] = {
        {"12/31/1999", 1999, 12, 31},      {"12/31/99", 1999, 12, 31},           {"1/15/1999", 1999, 1, 15},
        {"31 Dec 1999", 1999, 12, 31},     {"Dec 31 1999", 1999, 12, 31},        {"05/Jan/2000", 2000, 1, 5},
        {"Jan  5 2000", 2000, 1, 5},       {"DECEMBER 31 1999", 1999, 12, 31},   {"15 january 1999", 1999, 1, 15},
        {"1999-12-31", 1999, 12, 31},      {"1999/12/31", 1999, 12, 31},         {"01-Jan-99", 1999, 1, 1},
        {"12-31-1999", 1999, 12, 31},      {"12 31 1999", 1999, 12, 31},         {"12.31.1999", 1999, 12, 31},
        {"December 31, 1999", 1999, 12, 31}, {"Fri Dec 31 1999", 1999, 12, 31},  {"31Dec99", 1999, 12, 31},
        {"12/31/1999 10:30", 1999, 12, 31}, {"12/31/1999 10:30 PM", 1999, 12, 31}, {"12/31/1999 10 am", 1999, 12, 31},
        {"31/12/1999", 1999, 12, 31},      {"13/1/00", 2000, 1, 13},             {"Dec 1999", 1999, 12, 1},
        {"12/1999", 1999, 12, 1},          {"1/1/00", 2000, 1, 1},               {"1/1/49", 2049, 1, 1},
        {"1/1/50", 1950, 1, 1},            {"12/31/1999 10:30:15", 1999, 12, 31}, // 19 characters
    };
    const char* const noDates[] = {
        "", "   ", "abc", "1999", "13/13/1999", "2/30/2000", "0/1/2000", "12/31/1999 x", "#N\\A",
        "1.5e3", "25:00", "10:60", "13:00 PM", "Dec", "Dec Jan 1999", "1/2/3/4", "12/31/19999", "PM",
        "Monday", "12/31/1999\n",
        "1/1/0049",             // a four-digit year is taken as written
        "12/31/1999 10:30:15 ", // 20 characters
    };
    // clang-format on
    for (const Case& c : cases) {
        const double expected =
            DayNumberOf(c.year, static_cast<unsigned>(c.month), static_cast<unsigned>(c.day));
        EXPECT_EQ(ParseDate(c.text), expected) << '"' << c.text << '"';
    }
    for (const char* text : noDates)
        EXPECT_EQ(ParseDate(text), -1.0) << '"' << text << '"';
    EXPECT_EQ(ParseDate(nullptr), -1.0);
    for (const char* time : {"10:30", "10:30:15", "10:30 AM", "0:00"})
        EXPECT_EQ(ParseDate(time), 0.0);
}

TEST_F(DateTest, DayOrderAndCurrentYear) {
    EXPECT_EQ(ParseDate("05/01/2000"), DayNumberOf(2000, 5, 1));
    dateRules.dayFirst = true;
    EXPECT_EQ(ParseDate("05/01/2000"), DayNumberOf(2000, 1, 5));
    EXPECT_EQ(ParseDate("12/31/1999"), 36525.0); // 31 cannot be a month
    EXPECT_EQ(ParseDate("Dec 31 1999"), 36525.0);
    dateRules.dayFirst = false;
    dateRules.todayDate = DayNumberOf(2003, 6, 1);
    EXPECT_EQ(ParseDate("12/31"), DayNumberOf(2003, 12, 31));
    EXPECT_EQ(ParseDate("31 Dec"), DayNumberOf(2003, 12, 31));
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
