// Pairing two sources of 2000 rows by date: the hashed pairing against the
// direct search of every row of the second source.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <vector>

#include "chart_model/pairing.h"
#include "tests/two_series/pair_by_search.h"

namespace velorin {
namespace {

struct Source {
    // 2000 trading days from `firstDay`, every fifth day left out.
    explicit Source(int firstDay) : text(MaxRows), number(MaxRows), close(MaxRows) {
        int day = firstDay;
        for (int r = 0; r < MaxRows; ++r, ++day) {
            if (day % 5 == 4) ++day;
            std::snprintf(text[r], DateTextSize, "%d/%d/%d", 1 + day % 12, 1 + day % 28,
                          1990 + day / 336);
            number[r] = 30000.0 + day;
            close[r] = 100.0 + r % 17;
        }
        columns.dateText = text.data();
        columns.dateNumber = number.data();
        columns.close = close.data();
    }
    std::vector<DateText> text;
    std::vector<double> number, close;
    DataColumns columns{};
};

struct Pairs {
    Pairs() : text(MaxRows), first(MaxRows), second(MaxRows) {
        data.pairDateText = text.data();
        data.firstSeries = first.data();
        data.secondSeries = second.data();
    }
    std::vector<DateText> text;
    std::vector<double> first, second;
    PairData data{};
};

template <bool Fast> void BM_Pair2000(benchmark::State& state) {
    const Source a(0), b(300); // most dates in common
    Pairs p;
    for (auto _ : state) {
        const int n =
            Fast ? PairByDate(a.columns, MaxRows, b.columns, MaxRows, p.data)
                 : test_support::PairBySearch(a.columns, MaxRows, b.columns, MaxRows, p.data);
        benchmark::DoNotOptimize(n);
    }
}
BENCHMARK_TEMPLATE(BM_Pair2000, true)->Name("PairByDate/2000x2000");
BENCHMARK_TEMPLATE(BM_Pair2000, false)->Name("PairBySearch/2000x2000");

} // namespace
} // namespace velorin
