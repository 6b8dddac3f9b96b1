// ParseDataFileText: the shape pass, the row pass and the number reader.
#include <clocale>
#include <cmath>
#include <random>

#include "tests/market_data/market_data_fixture.h"

namespace velorin {
namespace {

using ParseTest = MarketDataTest;

// Fields are split at ",", ";" and tabs, runs of them counting as one, and
// read as strtod reads them; "#N\A" after the first row is just no number,
// and a zero volume (-0 too) is stored as ZERO_VOLUME.
TEST_F(ParseTest, SixAndTwoColumnFiles) {
    ASSERT_EQ(Parse("12/31/1999,10.5,10.25,11,9.75,1500\r\n"
                    "01/03/2000;10.75\t10.5;;11.25,,10\t\t0\r\n"
                    "01/04/2000,abc,1e2, 7,+3.5,0x10\r\n01/05/2000,#N\\A,.5,5.,1e400,-0\r\n"),
              1);
    EXPECT_EQ(marketData.fetchRowCount, 4);
    EXPECT_EQ(marketData.hasFullColumns, 1);
    const DataColumns& c = marketData.fetchColumns;
    EXPECT_STREQ(c.dateText[0], "12/31/99");
    EXPECT_EQ(c.dateNumber[1], 36528.0);
    const double want[4][5] = {{10.5, 10.25, 11.0, 9.75, 1500.0},
                               {10.75, 10.5, 11.25, 10.0, ZERO_VOLUME},
                               {0.0, 100.0, 7.0, 3.5, 16.0},
                               {0.0, 0.5, 5.0, HUGE_VAL, ZERO_VOLUME}};
    for (int row = 0; row < 4; ++row) {
        const double got[5] = {c.close[row], c.open[row], c.high[row], c.low[row], c.volume[row]};
        for (int k = 0; k < 5; ++k)
            EXPECT_EQ(got[k], want[row][k]) << row << " " << k;
    }

    marketData.fetchIsTick = 1;
    ASSERT_EQ(Parse("1/5/2000,10.5\r\nJan 6 00,10.75\r\n"), 1);
    EXPECT_EQ(marketData.hasFullColumns, 0);
    EXPECT_EQ(marketData.fetchIsTick, 0);
    EXPECT_STREQ(c.dateText[0], "1/5/2000"); // eight characters or fewer: as written
    EXPECT_STREQ(c.dateText[1], "Jan 6 00");
    for (const double* column : {c.open, c.high, c.low, c.volume})
        EXPECT_EQ(column[1], MISSING_VALUE);
}

TEST_F(ParseTest, RefusedFiles) {
    const char* const texts[] = {
        "12/31/1999,10.5\n01/03/2000,10.75\n",                  // LF alone: no line end
        "12/31/1999,1,2\r\n01/03/2000,1,2\r\n",                 // three fields
        "12/31/1999,1,2,3,4,5,6\r\n01/03/2000,1,2,3,4,5,6\r\n", // seven
        "12/31/1999\r\n01/03/2000\r\n",                         // one
        "12/31/1999,1,2,3,4,5",                                 // one row, no line end
        "",
        "#N\\A,10.5\r\n01/03/2000,10.75\r\n",
        "12/31/1999,1,2,3,4,#N\\A\r\n01/03/2000,1,2,3,4,5\r\n",
        "12/31/1999,10.5\r\n",                        // one row only
        "12/31/1999,1\r\n12/31/1999,2\r\n",           // the second row repeats
        "Date,Close\r\n12/31/1999,5\r\n",             // bad first date
        "12/31/1850,5\r\n01/03/2000,6\r\n",           // before day 0
        "12/30/1999,1,1,1,1,1\r\n01/03/2000,3,3\r\n", // a row cut short
        // Long-form dates clear the rest of the line when shortened.
        "01-Jan-99,1\r\n02-Jan-99,2\r\n",
        "1999-12-30,1\r\n1999-12-31,2\r\n",
        "12/30/2010,1\r\n12/31/2010,2\r\n",
        "12/30/1999,1\r\n31-Dec-99,2\r\n",
    };
    for (const char* text : texts)
        EXPECT_EQ(Parse(text), 0) << text;
    dateRules.todayDate = 36525.0;
    EXPECT_EQ(Parse("01/03/2000,5\r\n01/04/2000,6\r\n"), 0); // the first date in the future
}

TEST_F(ParseTest, TheFirstBadDateEndsTheData) {
    std::string long2100; // rows are taken up to MaxRows
    for (int row = 0; row < 2100; ++row)
        long2100 += DateTextOf(DayNumberOf(1995, 1, 2) + row) + ",1\r\n";
    const std::pair<std::string, int> cases[] = {
        {"12/30/1999,1\r\n12/31/1999,2\r\n12/31/1999,3\r\n01/03/2000,4\r\n", 2}, // repeated
        {"12/29/1999,1\r\n12/31/1999,2\r\n12/30/1999,3\r\n01/03/2000,4\r\n", 2}, // falling
        {"12/30/1999,1\r\n12/31/1999,2\r\nTotal,3\r\n", 2},                      // no date
        {"12/31/1999,5\r\n01/03/2000,1,2,3,4,5\r\n", 2},     // a 2-column shape read across lines
        {"10:30,1\r\n10:31,2\r\n10:32,3\r\n", 3},            // day 0 dates always pass
        {"12/30/1999,1\r\n12/31/1999,2\r\n01/03/2000,3", 3}, // last line without its end
        {long2100, MaxRows},
    };
    for (const auto& [text, rows] : cases) {
        EXPECT_EQ(Parse(text), 1) << text.substr(0, 60);
        EXPECT_EQ(marketData.fetchRowCount, rows) << text.substr(0, 60);
    }
    EXPECT_EQ(marketData.fetchColumns.dateNumber[MaxRows - 1],
              DayNumberOf(1995, 1, 2) + MaxRows - 1);
    dateRules.todayDate = 36528.0; // 3 January 2000: tomorrow's row and all behind it go
    ASSERT_EQ(Parse("12/31/1999,2,2,2,2,2\r\n01/03/2000,3,3,3,3,3\r\n"
                    "01/04/2000,4,4,4,4,4\r\n01/05/2000,5,5,5,5,5\r\n"),
              1);
    EXPECT_EQ(marketData.fetchRowCount, 2);
    EXPECT_EQ(seam.MessageCount(), 0u);
}

TEST_F(ParseTest, NothingBeyondTheTextIsRead) {
    std::memset(marketData.fileText, '1', FileTextSize); // no terminator at all
    EXPECT_EQ(ParseDataFileText(), 0);
    std::memset(marketData.fileText, ';', FileTextSize);
    std::memcpy(marketData.fileText, "12/30/1999,1\r\n12/31/1999,2\r\n", 28);
    EXPECT_EQ(ParseDataFileText(), 1);
    // The text ends at its first zero byte.
    EXPECT_EQ(Parse(std::string("12/30/1999,1\r\n12/31/1999,2\r\n\0"
                                "01/03/2000,3\r\n",
                                43)),
              1);
    EXPECT_EQ(marketData.fetchRowCount, 2);
}

TEST(ReadNumberTest, SameBitsAsStrtod) {
    std::mt19937_64 random(12345);
    char text[64];
    for (int i = 0; i < 200000; ++i) {
        const int digits = static_cast<int>(random() % 17) + 1;
        const int point = static_cast<int>(random() % static_cast<unsigned>(digits + 1));
        int n = 0;
        if (random() % 4 == 0) text[n++] = '-';
        for (int d = 0; d < digits; ++d) {
            if (d == point && d > 0) text[n++] = '.';
            text[n++] = static_cast<char>('0' + random() % 10);
        }
        text[n] = '\0';
        const double expected = std::strtod(text, nullptr);
        const double got = ReadNumber(text);
        ASSERT_EQ(std::memcmp(&expected, &got, sizeof got), 0) << text;
    }
    for (const char* text : {"-0", "+1", ".5", "5.", "-.5", " 12", "12 ", "", "-", ".", "0x1A",
                             "inf", "123456789012345678901234567890", "0.30000000000000004"}) {
        const double expected = std::strtod(text, nullptr);
        const double got = ReadNumber(text);
        EXPECT_EQ(std::memcmp(&expected, &got, sizeof got), 0) << text;
    }
}

TEST(ReadNumberTest, IndependentOfTheProcessLocale) {
    const char* current = std::setlocale(LC_NUMERIC, nullptr);
    const std::string saved = current ? current : "C";
    bool commaLocale = false;
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8", "fr_FR"})
        if (!commaLocale && std::setlocale(LC_NUMERIC, name)) commaLocale = true;
    if (!commaLocale) GTEST_SKIP() << "no locale with a decimal comma on this machine";
    EXPECT_EQ(ReadNumber("102.35"), 102.35);
    EXPECT_EQ(ReadNumber(" 102.35"), 102.35); // through strtod
    std::setlocale(LC_NUMERIC, saved.c_str());
}

} // namespace
} // namespace velorin
