#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string_view>

#include "chart_model/live_update.h"
#include "market_data/connect.h"
#include "market_data/data_source.h"
#include "market_data/date.h"
#include "market_data/dde_client.h"
#include "market_data/dde_text.h"

namespace {

using namespace velorin;

constexpr std::string_view Tick = "12/30/2010 14:05:12,101.25,100.5,101.75,100.25,1532400\r\n";

void Prepare() {
    ResetMarketDataState();
    ResetDdeFeedState();
    if (!AllocateStagingBlocks()) std::abort();
    dateRules.todayDate = 40543.0;
}

void BM_AdviseTickParse(benchmark::State& state) {
    Prepare();
    for (auto _ : state) {
        benchmark::DoNotOptimize(ParseDdeReply(Tick.data(), Tick.size()));
        benchmark::DoNotOptimize(marketData.fetchColumns.close[0]);
    }
    if (marketData.fetchIsTick != 1) state.SkipWithError("the tick was not parsed");
    ReleaseStagingBlocks();
}
BENCHMARK(BM_AdviseTickParse);

// Parse and append to a source of 1000 rows (the row written, no shift).
void BM_AdviseTickParseAndAppend(benchmark::State& state) {
    Prepare();
    if (!NewDataSource(0)) std::abort();
    DataSource& source = *SourceAt(0);
    for (auto _ : state) {
        if (ParseDdeReply(Tick.data(), Tick.size()) != 1) state.SkipWithError("not parsed");
        source.rowCount = AppendStagedRow(source, 1000) + 1;
        benchmark::DoNotOptimize(source.columns->close[1000]);
    }
    FreeDataSource(0);
    ReleaseStagingBlocks();
}
BENCHMARK(BM_AdviseTickParseAndAppend);

// The whole advise path of one tick: the callback parses it and the row
// update writes it into a tick source of 1000 rows. The Timer period has not
// passed, so the pending row is overwritten and no chart is told: the cost
// of every tick but the one per period that recomputes.
void BM_AdviseTickThroughCallback(benchmark::State& state) {
    Prepare();
    if (!NewDataSource(0)) std::abort();
    DataSource& source = *SourceAt(0);
    source.conversation = 7;
    source.tick = 1;
    source.rowCount = 1000;
    source.chartsCurrent = 0;
    source.tickSeconds = 1 << 30;
    source.lastUpdateTime = LiveNowSeconds();
    for (auto _ : state) {
        if (DdeCallback(DdeTransaction::AdviseData, 7, Tick.data(), Tick.size()) != DdeAcknowledged)
            state.SkipWithError("not taken in");
        benchmark::DoNotOptimize(source.columns->close[999]);
    }
    if (source.rowCount != 1000) state.SkipWithError("the pending row was not overwritten");
    FreeDataSource(0);
    ReleaseStagingBlocks();
}
BENCHMARK(BM_AdviseTickThroughCallback);

} // namespace
