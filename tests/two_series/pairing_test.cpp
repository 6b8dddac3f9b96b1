// The fast pairing by date against the direct search, on thousands of random
// pairs of sources: repeated dates, gaps, no common date, dates as texts.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>

#include "chart_model/pairing.h"
#include "tests/two_series/pair_by_search.h"

namespace velorin {
namespace {

DateText text[2][MaxRows], pairText[2][MaxRows];
double number[2][MaxRows], close[2][MaxRows], pairFirst[2][MaxRows], pairSecond[2][MaxRows];

TEST(Pairing, FastPairingMatchesTheDirectSearch) {
    std::mt19937 rng(20240611);
    auto pick = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
    DataColumns in[2], none{};
    PairData out[2];
    for (int s = 0; s < 2; ++s) {
        in[s] = none, in[s].dateText = text[s], in[s].dateNumber = number[s],
        in[s].close = close[s];
        out[s] = {pairText[s], pairFirst[s], pairSecond[s], 0, 0, 0, 0, 0};
    }
    for (int c = 0; c < 4000; ++c) {
        const bool big = c % 100 == 0;
        const int rows[2] = {big ? MaxRows : pick(0, 60), big ? 1800 : pick(0, 60)};
        const int pool = big ? 2500 : pick(1, 80);    // small pools repeat dates
        const int shift = c % 17 == 0 ? pool + 1 : 0; // no common date
        for (int s = 0; s < 2; ++s)
            for (int r = 0; r < rows[s]; ++r) {
                const int day = pick(0, pool) + s * shift;
                std::snprintf(text[s][r], DateTextSize, "%d/%d/90", 1 + day % 12, 1 + day / 12);
                number[s][r] = c % 3 == 0 ? pick(0, pool) : 30000.0 + day; // texts decide on 0.0
                close[s][r] = pick(1, 1000) / 8.0;
            }
        if (c % 3 == 0) number[c % 2][0] = c % 4 ? 0.0 : -0.0;
        if (c % 3 == 1 && rows[0] > 1 && rows[1] > 1) // -0.0 meets 0.0, NaN meets nothing
            number[0][1] = -0.0, number[1][1] = 0.0,
            number[0][rows[0] - 1] = number[1][rows[1] - 1] = NAN;
        const int got = PairByDate(in[0], rows[0], in[1], rows[1], out[0]);
        ASSERT_EQ(got, test_support::PairBySearch(in[0], rows[0], in[1], rows[1], out[1])) << c;
        EXPECT_TRUE(!shift || c % 3 == 1 || got == 0) << c;
        ASSERT_EQ(std::memcmp(pairText[0], pairText[1], sizeof(DateText) * got), 0) << c;
        ASSERT_EQ(std::memcmp(pairFirst[0], pairFirst[1], sizeof(double) * got), 0) << c;
        ASSERT_EQ(std::memcmp(pairSecond[0], pairSecond[1], sizeof(double) * got), 0) << c;
    }
}

} // namespace
} // namespace velorin
