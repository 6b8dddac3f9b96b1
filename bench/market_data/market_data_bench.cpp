// The cost of reading a data file of the largest size accepted: the two
// parsing passes over 56,320 bytes of six-column text, then the valid-row
// copy into a new DataSource. Target: well under 1 ms.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

#include "market_data/connect.h"
#include "market_data/data_file.h"
#include "market_data/data_source.h"
#include "market_data/date.h"
#include "tools/sample_data/sample_data.h"

namespace {

using namespace velorin;

// A valid six-column text of exactly MaxDataFileBytes bytes: whole lines of
// a generated instrument, the remainder taken up by leading zeros of the
// last line's volume.
const std::string& FullSizeText() {
    static const std::string text = [] {
        const sample_data::Instrument instrument{"BENCH.PRC", 2000,    true, 0xBE7C4ULL, 11840,
                                                 110,         3500000, -1,   -1};
        const std::string all = sample_data::InstrumentText(instrument);
        const std::size_t limit = static_cast<std::size_t>(MaxDataFileBytes);
        std::string out;
        std::size_t start = 0;
        while (start < all.size()) {
            const std::size_t end = all.find("\r\n", start) + 2;
            if (out.size() + (end - start) > limit) break;
            out.append(all, start, end - start);
            start = end;
        }
        const std::size_t volumeAt = out.rfind(',') + 1;
        out.insert(volumeAt, limit - out.size(), '0');
        return out;
    }();
    return text;
}

struct Setup {
    Setup() {
        ResetMarketDataState();
        AllocateStagingBlocks();
        dateRules.todayDate = TodayFromClock();
        dateRules.rejectFuture = true;
        std::strcpy(marketData.selection.currentSource, "DATAFILE");
        std::strcpy(marketData.selection.currentTopic, "/desk/BENCH.PRC");
        std::strcpy(marketData.selection.currentItem, "BENCH");
    }
};

void Load(const std::string& text) {
    std::memcpy(marketData.fileText, text.data(), text.size());
    marketData.fileText[text.size()] = '\0';
}

void ParseAndConnect(benchmark::State& state, bool filter) {
    static Setup setup;
    const std::string& text = FullSizeText();
    marketData.filterOn = filter ? 1 : 0;
    int rows = 0;
    for (auto _ : state) {
        Load(text);
        if (ParseDataFileText() != 1 || ConnectDataSource() != 1) {
            state.SkipWithError("the text was not read");
            break;
        }
        rows = SourceAt(0)->rowCount;
        benchmark::DoNotOptimize(rows);
        FreeDataSource(0);
    }
    state.counters["bytes"] = static_cast<double>(text.size());
    state.counters["rows"] = rows;
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(text.size()));
}

void BM_ParseAndConnect(benchmark::State& state) {
    ParseAndConnect(state, false);
}
void BM_ParseAndConnectFiltered(benchmark::State& state) {
    ParseAndConnect(state, true);
}

void BM_ParseOnly(benchmark::State& state) {
    static Setup setup;
    const std::string& text = FullSizeText();
    for (auto _ : state) {
        Load(text);
        if (ParseDataFileText() != 1) {
            state.SkipWithError("the text was not read");
            break;
        }
    }
    state.counters["rows"] = marketData.fetchRowCount;
}

void BM_ConnectOnly(benchmark::State& state) {
    static Setup setup;
    Load(FullSizeText());
    if (ParseDataFileText() != 1) {
        state.SkipWithError("the text was not read");
        return;
    }
    marketData.filterOn = 0;
    for (auto _ : state) {
        if (ConnectDataSource() != 1) {
            state.SkipWithError("not connected");
            break;
        }
        FreeDataSource(0);
    }
}

void BM_ParseDate(benchmark::State& state) {
    static Setup setup;
    const char* const forms[] = {"12/31/1999", "31 Dec 1999", "05/Jan/2000", "1999-12-31 10:30"};
    double sum = 0;
    for (auto _ : state) {
        for (const char* text : forms)
            sum += ParseDate(text);
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * 4);
}

BENCHMARK(BM_ParseAndConnect)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ParseAndConnectFiltered)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ParseOnly)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ConnectOnly)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ParseDate)->Unit(benchmark::kNanosecond);

} // namespace
