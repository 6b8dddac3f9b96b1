// The database feed end to end through the system's driver manager, against
// SQLite and PostgreSQL: the sample rows and the stored procedure.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "market_data/data_file.h"
#include "market_data/data_source.h"
#include "market_data/date.h"
#include "market_data/odbc_driver_manager.h"
#include "market_data/odbc_feed.h"
#include "tests/odbc_driver/driver_backend.h"
#include "tests/support/recording_seam.h"
#include "tools/sample_data/sample_database.h"

namespace velorin {
namespace {

// The staged columns dateNumber, close, open, high, low and volume.
std::vector<std::vector<double>> Staged() {
    const DataColumns& f = marketData.fetchColumns;
    std::vector<std::vector<double>> s;
    for (const double* column : {f.dateNumber, f.close, f.open, f.high, f.low, f.volume})
        s.emplace_back(column, column + marketData.fetchRowCount);
    return s;
}

class DriverTest : public ::testing::TestWithParam<const char*> {};

// A source's identity, split back, connects and queries: a table query with
// the code bound gives what the price file of the same instrument gives, row
// for row, zero volumes included; a procedure is called by name.
TEST_P(DriverTest, QueriesEndToEnd) {
    const test_support::Backend backend = GetParam() == std::string("SQLite")
                                              ? test_support::SqliteBackend()
                                              : test_support::PostgresBackend();
    if (backend.dsn.empty()) GTEST_SKIP() << backend.skipReason;
    test_support::RecordingSeam seam;
    InstallOdbcDriverManager();
    ResetMarketDataState();
    dateRules = {TodayFromClock(), false, true};
    ASSERT_TRUE(AllocateStagingBlocks());
    const std::string source = "DSN," + backend.dsn + "," + backend.user + "," + backend.password;
    const auto query = [&](const char* topic, const std::string& item) {
        SplitDatabaseSource(source.c_str(), topic, item.c_str());
        const bool connected = OdbcConnect() == 0, staged = connected && StageDatabaseQuery(0);
        EXPECT_EQ(connected ? OdbcDisconnect() : -1, 0);
        return staged;
    };
    for (const sample_data::DatabaseInstrument& instrument : sample_data::DatabaseInstruments()) {
        if (instrument.code == "LONGRUN" || instrument.code == "BONDFUT")
            continue; // no price file; closes only
        SCOPED_TRACE(instrument.code);
        ASSERT_TRUE(query("prices;code,tradedate,close,open,high,low,volume", instrument.code));
        const auto database = Staged();
        std::snprintf(marketData.fileText, FileTextSize, "%s", instrument.prices.c_str());
        ASSERT_EQ(ParseDataFileText(), 1);
        EXPECT_EQ(database, Staged());
    }
    if (backend.procedures) {
        ASSERT_TRUE(query("SQLProcedure", "acme_prices"));
        EXPECT_EQ(marketData.fetchRowCount, 750);
    }
    EXPECT_EQ(seam.MessageCount(), 0u);
    ReleaseStagingBlocks();
}

INSTANTIATE_TEST_SUITE_P(Drivers, DriverTest, ::testing::Values("SQLite", "PostgreSQL"),
                         [](const auto& info) { return std::string(info.param); });

} // namespace
} // namespace velorin
