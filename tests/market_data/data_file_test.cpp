// ParseDataFileText: the shape pass, the row pass and the number reader.
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
    EXPECT_TRUE(marketData.fetchRowCount == 4 && marketData.hasFullColumns == 1);
    const DataColumns& c = marketData.fetchColumns;
    EXPECT_STREQ(c.dateText[0], "12/31/99");
    // clang-format off
    const double want[4][5] = {{10.5, 10.25, 11.0, 9.75, 1500.0}, {10.75, 10.5, 11.25, 10.0, ZERO_VOLUME},
                               {0.0, 100.0, 7.0, 3.5, 16.0},      {0.0, 0.5, 5.0, HUGE_VAL, ZERO_VOLUME}};
    // clang-format on
    for (int row = 0; row < 4; ++row) {
        const double got[5] = {c.close[row], c.open[row], c.high[row], c.low[row], c.volume[row]};
        EXPECT_EQ(std::vector<double>(got, got + 5), std::vector<double>(want[row], want[row] + 5));
    }
    marketData.fetchIsTick = 1;
    ASSERT_EQ(Parse("1/5/2000,10.5\r\nJan 6 00,10.75\r\n"), 1);
    EXPECT_TRUE(marketData.hasFullColumns == 0 && marketData.fetchIsTick == 0);
    EXPECT_STREQ(c.dateText[1], "Jan 6 00"); // eight characters or fewer: as written
    EXPECT_EQ(c.volume[1], MISSING_VALUE);
}

TEST_F(ParseTest, RefusedFiles) {
    // A bare line feed ends no line; three or seven fields; one row; the
    // second row repeats; no first date; a row cut short; a long-form date
    // clears the rest of its line.
    // clang-format off
    const char* const texts[] = {
        "12/31/1999,10.5\n01/03/2000,10.75\n", "12/31/1999,1,2\r\n01/03/2000,1,2\r\n",
        "12/31/1999,1,2,3,4,5,6\r\n01/03/2000,1,2,3,4,5,6\r\n", "", "12/31/1999,10.5\r\n",
        "12/31/1999,1\r\n12/31/1999,2\r\n", "#N\\A,10.5\r\n01/03/2000,10.75\r\n",
        "12/30/1999,1,1,1,1,1\r\n01/03/2000,3,3\r\n", "01-Jan-99,1\r\n02-Jan-99,2\r\n",
    };
    // clang-format on
    for (const char* text : texts)
        EXPECT_EQ(Parse(text), 0) << text;
    dateRules.todayDate = 36525.0;
    EXPECT_EQ(Parse("01/03/2000,5\r\n01/04/2000,6\r\n"), 0); // the first date in the future
}

// The data also ends at the first zero byte, or with the buffer.
TEST_F(ParseTest, TheFirstBadDateEndsTheData) {
    std::string long2100; // rows are taken up to MaxRows
    for (int row = 0; row < 2100; ++row)
        long2100 += "10:30,1\r\n";
    const std::pair<std::string, int> cases[] = {
        {"12/30/1999,1\r\n12/31/1999,2\r\n12/31/1999,3\r\n01/03/2000,4\r\n", 2}, // repeated
        {"12/30/1999,1\r\n12/31/1999,2\r\nTotal,3\r\n", 2},                      // no date
        {"12/31/1999,5\r\n01/03/2000,1,2,3,4,5\r\n", 2},     // a 2-column shape read across lines
        {"10:30,1\r\n10:31,2\r\n10:32,3\r\n", 3},            // day 0 dates always pass
        {"12/30/1999,1\r\n12/31/1999,2\r\n01/03/2000,3", 3}, // last line without its end
        {long2100, MaxRows},
        {"12/30/1999,1\r\n12/31/1999,2\r\n" + std::string(1, '\0') + "01/03/2000,3\r\n", 2},
    };
    for (const auto& [text, rows] : cases) {
        EXPECT_EQ(Parse(text), 1) << text.substr(0, 60);
        EXPECT_EQ(marketData.fetchRowCount, rows) << text.substr(0, 60);
    }
    dateRules.todayDate = 36528.0; // 3 January 2000: tomorrow's row and all behind it go
    ASSERT_EQ(Parse("12/31/1999,2\r\n01/03/2000,3\r\n01/04/2000,4\r\n01/05/2000,5\r\n"), 1);
    EXPECT_EQ(marketData.fetchRowCount, 2);
    std::memset(marketData.fileText, ';', FileTextSize); // no terminator at all
    std::memcpy(marketData.fileText, "12/30/1999,1\r\n12/31/1999,2\r\n", 28);
    EXPECT_EQ(ParseDataFileText(), 1);
    EXPECT_EQ(seam.MessageCount(), 0u);
}

// Random decimals of up to 17 digits with a point anywhere, then odd forms.
TEST(ReadNumberTest, SameBitsAsStrtod) {
    const auto same = [](const std::string& text) {
        const double expected = std::strtod(text.c_str(), nullptr), got = ReadNumber(text.c_str());
        return std::memcmp(&expected, &got, sizeof got) == 0;
    };
    std::mt19937_64 random(12345);
    for (int i = 0; i < 200000; ++i) {
        std::string text = random() % 4 ? "" : "-";
        const unsigned digits = random() % 17 + 1, point = random() % (digits + 1);
        for (unsigned d = 0; d < digits; ++d)
            text +=
                std::string(d == point && d ? "." : "") + static_cast<char>('0' + random() % 10);
        ASSERT_TRUE(same(text)) << text;
    }
    for (const char* text : {"-0", "+1", ".5", "-.5", " 12", "", "-", "0x1A", "inf",
                             "123456789012345678901234567890", "0.30000000000000004"})
        EXPECT_TRUE(same(text)) << text;
}

} // namespace
} // namespace velorin
