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

class DriverTest : public ::testing::TestWithParam<const char*> {
  protected:
    void SetUp() override {
        backend = GetParam() == std::string("SQLite") ? test_support::SqliteBackend()
                                                      : test_support::PostgresBackend();
        if (backend.dsn.empty()) GTEST_SKIP() << backend.skipReason;
        InstallOdbcDriverManager();
        ResetMarketDataState();
        dateRules = {TodayFromClock(), false, true};
        ASSERT_TRUE(AllocateStagingBlocks());
    }
    void TearDown() override { ReleaseStagingBlocks(); }

    // The source split back into the selection, connected and queried.
    bool Query(const char* topic, const std::string& item) {
        const std::string source =
            "DSN," + backend.dsn + "," + backend.user + "," + backend.password;
        SplitDatabaseSource(source.c_str(), topic, item.c_str());
        const bool connected = OdbcConnect() == 0, staged = connected && StageDatabaseQuery(0);
        EXPECT_EQ(connected ? OdbcDisconnect() : -1, 0);
        return staged;
    }

    test_support::Backend backend;
    test_support::RecordingSeam seam;
};

// A source's identity, split back, connects and queries: a table query with
// the code bound gives what the price file of the same instrument gives, row
// for row, zero volumes included; a procedure is called by name.
TEST_P(DriverTest, QueriesEndToEnd) {
    for (const sample_data::DatabaseInstrument& instrument : sample_data::DatabaseInstruments()) {
        if (instrument.code == "LONGRUN" || instrument.code == "BONDFUT")
            continue; // no price file; closes only
        SCOPED_TRACE(instrument.code);
        ASSERT_TRUE(Query("prices;code,tradedate,close,open,high,low,volume", instrument.code));
        const auto database = Staged();
        std::snprintf(marketData.fileText, FileTextSize, "%s", instrument.prices.c_str());
        ASSERT_EQ(ParseDataFileText(), 1);
        EXPECT_EQ(database, Staged());
    }
    if (backend.procedures) {
        ASSERT_TRUE(Query("SQLProcedure", "acme_prices"));
        EXPECT_EQ(marketData.fetchRowCount, 750);
    }
    EXPECT_EQ(seam.MessageCount(), 0u);
}

// Bad input as each server returns it: refused results with their message,
// reads that stop at a bad row, the 1,999-row cut, and a code holding SQL
// that travels as a bound parameter and matches nothing.
TEST_P(DriverTest, BadInput) {
    // Rows kept on SQLite and on PostgreSQL (-1: refused). ORDER BY puts a
    // null date first on SQLite and last on PostgreSQL.
    const struct {
        const char* topic;
        const char* code;
        int rows[2];
        const char* message;
    } cases[] = {
        {"text_dates;,tradedate,close", "", {-1, -1}, "first field should be in date format"},
        {"integer_prices;,tradedate,close",
         "",
         {-1, -1},
         "price and volume fields should be in double format"},
        {"prices;code,tradedate,close,open", "ACME", {-1, -1}, "Incorrect number of columns"},
        {"odd_dates;code,tradedate,close", "DUP", {2, 2}, nullptr},
        {"odd_dates;code,tradedate,close", "FUTURE", {2, 2}, nullptr},
        {"odd_dates;code,tradedate,close", "NULLDATE", {-1, 2}, nullptr},
        {"prices;code,tradedate,close,open,high,low,volume", "LONGRUN", {1999, 1999}, nullptr},
        {"prices;code,tradedate,close", "x' OR '1'='1", {-1, -1}, nullptr},
    };
    const int server = backend.procedures ? 1 : 0;
    for (const auto& c : cases) {
        seam.Clear();
        const int rows = c.rows[server];
        EXPECT_EQ(Query(c.topic, c.code), rows > 0) << c.topic << " " << c.code;
        EXPECT_EQ(marketData.fetchRowCount, rows > 0 ? rows : 0) << c.code;
        EXPECT_EQ(seam.LastText(), c.message ? c.message : "") << c.topic << " " << c.code;
    }
    // A data source that does not exist, or (on the server) a refused password: silence.
    const std::string refused[] = {"DSN,NoSuchSource,,", "DSN," + backend.dsn + ",nobody,wrong"};
    for (int i = 0; i <= server; ++i) {
        SplitDatabaseSource(refused[i].c_str(), "prices;code,tradedate,close", "ACME");
        EXPECT_NE(OdbcConnect(), 0) << refused[i];
    }
    EXPECT_EQ(seam.MessageCount(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Drivers, DriverTest, ::testing::Values("SQLite", "PostgreSQL"),
                         [](const auto& info) { return std::string(info.param); });

} // namespace
} // namespace velorin
