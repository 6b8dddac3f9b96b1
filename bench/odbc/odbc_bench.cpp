// A database source from the SQLite sample, from connecting to the driver to
// the finished DataSource and the disconnect, beside the same kind of rows
// read from a ".PRC" file. Target: 1,999 six-column rows under 15 ms.
//   odbc_bench --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "market_data/connect.h"
#include "market_data/data_file.h"
#include "market_data/data_source.h"
#include "market_data/date.h"
#include "market_data/odbc_driver_manager.h"
#include "market_data/odbc_feed.h"
#include "market_data/odbc_state.h"
#include "tests/odbc_driver/driver_backend.h"
#include "tools/sample_data/sample_data.h"

namespace {

using namespace velorin;

void Fresh() {
    ResetMarketDataState();
    ResetOdbcFeedState();
    AllocateStagingBlocks();
    dateRules.todayDate = TodayFromClock();
    dateRules.rejectFuture = true;
}

void Put(char* field, std::size_t size, const std::string& text) {
    std::snprintf(field, size, "%s", text.c_str());
}

// Connect, query `code`, make the source, free it, disconnect.
void DatabaseSource(benchmark::State& state, const char* code, int rows) {
    const test_support::Backend& sqlite = test_support::SqliteBackend();
    if (sqlite.dsn.empty()) {
        state.SkipWithError(sqlite.skipReason.c_str());
        return;
    }
    InstallOdbcDriverManager();
    Fresh();
    ConnectionSelection& sel = marketData.selection;
    Put(odbcFeed.connectName, sizeof odbcFeed.connectName, sqlite.dsn);
    Put(sel.currentDsn, sizeof sel.currentDsn, sqlite.dsn);
    Put(sel.currentSqlTable, sizeof sel.currentSqlTable, "prices");
    Put(sel.currentSqlFields, sizeof sel.currentSqlFields, "tradedate,close,open,high,low,volume");
    Put(sel.currentSqlWhere, sizeof sel.currentSqlWhere, "code");
    Put(sel.currentSqlCode, sizeof sel.currentSqlCode, code);
    for (auto _ : state) {
        if (OdbcConnect() != 0) {
            state.SkipWithError("connect failed");
            break;
        }
        const bool staged = StageDatabaseQuery(0);
        const int made = staged ? ConnectDataSource(true) : 0;
        OdbcDisconnect();
        if (!made || SourceAt(0)->rowCount != rows) {
            state.SkipWithError("unexpected rows");
            break;
        }
        FreeDataSource(0);
    }
    ReleaseStagingBlocks();
}

void BM_Database1999Rows(benchmark::State& state) {
    DatabaseSource(state, "LONGRUN", 1999);
}
void BM_Database1000Rows(benchmark::State& state) {
    DatabaseSource(state, "GLOBEX", 1000);
}

// The same 1,000 rows of GLOBEX from its ".PRC" file (the file reader's size
// limit keeps a price file under 1,999 rows).
void BM_PriceFile1000Rows(benchmark::State& state) {
    static test_support::TempDir dir;
    std::string path;
    for (const sample_data::Instrument& i : sample_data::DefaultDesk())
        if (i.fileName == "GLOBEX.PRC")
            path = dir.Write(i.fileName, sample_data::InstrumentText(i));
    Fresh();
    ConnectionSelection& sel = marketData.selection;
    Put(sel.currentSource, sizeof sel.currentSource, "DATAFILE");
    Put(sel.currentTopic, sizeof sel.currentTopic, path);
    Put(sel.currentItem, sizeof sel.currentItem, "GLOBEX");
    for (auto _ : state) {
        if (!LoadDataFile(1) || !ConnectDataSource(true) || SourceAt(0)->rowCount != 1000) {
            state.SkipWithError("file not read");
            break;
        }
        FreeDataSource(0);
    }
    ReleaseStagingBlocks();
}

BENCHMARK(BM_Database1999Rows)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Database1000Rows)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PriceFile1000Rows)->Unit(benchmark::kMillisecond);

} // namespace
