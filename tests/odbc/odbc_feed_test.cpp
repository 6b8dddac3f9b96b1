// The database feed against a scripted driver: call order and release, the
// identity of a source and the query it splits back into, the checks of a
// result's columns, the rules of fetched rows, .sql files, and the database
// command through a frame without windows.

#include <algorithm>
#include <deque>

#include "market_data/odbc_dialog.h"
#include "market_data/odbc_feed.h"
#include "market_data/odbc_sql_file.h"
#include "market_data/odbc_state.h"
#include "shell/core/shell_state.h"
#include "tests/market_data/market_data_fixture.h"
#include "tests/odbc/scripted_driver.h"
#include "tests/shell/fake_frame.h"

namespace velorin {
namespace {

using Strings = std::vector<std::string>;
using Row = test_support::ScriptedDriver::Row;
ConnectionSelection& sel = marketData.selection;

// A row of one date: close, then open, high and low around it, and volume.
Row On(int y, int m, int d, double close = 10.0, double volume = 500.0) {
    const OdbcDate date{std::int16_t(y), std::uint16_t(m), std::uint16_t(d)};
    return {date, {close, close - 1, close + 1, close - 2, volume}};
}

class OdbcTest : public MarketDataTest {
  protected:
    void SetUp() override {
        MarketDataTest::SetUp();
        ResetOdbcFeedState();
        SplitDatabaseSource("DSN,Prices", "prices;code,d,c,o,h,l,v", "ACME");
    }
    static int Run() { return StageDatabaseQuery(0) ? 0 : -1; }

    test_support::ScriptedDriver driver;
};

// Everything obtained is released, newest first and second before first,
// whether a step of the connect fails or the disconnect comes.
TEST_F(OdbcTest, ConnectAndReleaseOrder) {
    const Strings calls = {"AllocEnv env",     "AllocConnect dbc1", "AllocConnect dbc2",
                           "Connect dbc1",     "AllocStmt stmt1",   "Connect dbc2",
                           "AllocStmt stmt2",  "Drop stmt2",        "Drop stmt1",
                           "Disconnect dbc2",  "Disconnect dbc1",   "FreeConnect dbc2",
                           "FreeConnect dbc1", "FreeEnv env"};
    // The calls made, as letters: A to G the steps, a to g the releases.
    const std::pair<const char*, const char*> cases[] = {
        {"AllocEnv#1", "A"},          {"AllocConnect#2", "ABCfg"},      {"Connect#1", "ABCDefg"},
        {"Connect#2", "ABCDEFbdefg"}, {"AllocStmt#2", "ABCDEFGbcdefg"}, {"", "ABCDEFGabcdefg"}};
    for (const auto& [failing, made] : cases) {
        test_support::ScriptedDriver driver;
        driver.failAt = {failing};
        EXPECT_EQ(OdbcConnect() == 0 ? OdbcDisconnect() : -1, *failing ? -1 : 0);
        Strings expected;
        for (const char* m = made; *m; ++m)
            expected.push_back(calls[static_cast<std::size_t>(*m < 'a' ? *m - 'A' : *m - 'a' + 7)]);
        EXPECT_EQ(driver.log, expected) << failing;
        EXPECT_EQ(odbcFeed.env, nullptr);
    }
    EXPECT_EQ(seam.MessageCount(), 0u);
}

// A source's identity splits back into the query that gives it again: the
// code is bound as the statement's one parameter, never written into it.
TEST_F(OdbcTest, IdentityAndStatement) {
    struct Case {
        const char *source, *topic, *statement, *parameter, *user;
    };
    const char* code = "x' OR '1'='1";
    const Case cases[] = {
        {"DSN,Prices,ann,pw", "prices;code,d,c,o",
         "SELECT d,c,o FROM prices WHERE code=(?)  ORDER BY d", code, "ann"},
        {"DSN,Prices,,pw", "prices;,d", "SELECT d FROM prices ORDER BY d", "", ""},
    };
    for (const Case& c : cases) {
        ASSERT_EQ(SplitDatabaseSource(c.source, c.topic, code), 1);
        EXPECT_EQ(Strings({odbcFeed.connectName, odbcFeed.userName, odbcFeed.password}),
                  Strings({"Prices", c.user, "pw"}));
        sel.currentSource[0] = sel.currentTopic[0] = sel.currentItem[0] = '\0';
        driver.rows = {On(2009, 1, 2)};
        ASSERT_TRUE(StageDatabaseQuery(0));
        EXPECT_EQ(driver.prepared + "|" + driver.parameter,
                  c.statement + std::string("|") + c.parameter);
        EXPECT_EQ(Strings({sel.currentSource, sel.currentTopic, sel.currentItem}),
                  Strings({c.source, c.topic, code}));
    }
    // Free text goes as it stands and is "SQLFreeText" until saved; a
    // procedure is called by name.
    std::strcpy(sel.currentSqlText, "SELECT 1");
    odbcFeed.unsavedText = 1;
    driver.rows = {On(2009, 1, 2)};
    ASSERT_TRUE(StageDatabaseQuery(0));
    EXPECT_EQ(driver.prepared + "|" + driver.parameter, "SELECT 1|");
    EXPECT_EQ(std::string(sel.currentTopic) + "/" + sel.currentItem, "SQLFreeText/Unsaved");
    ASSERT_EQ(SplitDatabaseSource("DSN,Only", "SQLProcedure", "acme_prices"), 1);
    EXPECT_STREQ(sel.currentSqlText, "{call acme_prices}");
}

// What a result's columns must be; two columns leave the others missing.
TEST_F(OdbcTest, ResultColumns) {
    const short D = SqlTypeDate, F = SqlTypeDouble, Char = 1, Integer = 4;
    const std::pair<std::vector<short>, const char*> cases[] = {
        {{D, F, F}, "Incorrect number of columns"},
        {{Char, F}, "first field should be in date format"},
        {{D, F, F, Integer, F, F}, "price and volume fields should be in double format"},
        {{SqlTypeTimestamp, SqlTypeFloat}, ""},
    };
    for (const auto& [types, message] : cases) {
        seam.Clear();
        driver.types = types;
        driver.rows = {On(2009, 1, 2)};
        EXPECT_EQ(Run(), *message ? -1 : 0) << message;
        EXPECT_EQ(seam.Texts(), *message ? Strings{message} : Strings{});
    }
    EXPECT_EQ(marketData.hasFullColumns, 0);
    EXPECT_EQ(marketData.fetchColumns.open[0], MISSING_VALUE);
}

// The staged rows, and where the read stops: the rows before the stop are
// kept, and no row at all is -1 without a message.
TEST_F(OdbcTest, StagedRowsAndWhereTheReadStops) {
    driver.rows = {On(2009, 3, 5, 42.5, 1200.0), On(2009, 3, 6, 43.0, 0.0), On(2010, 11, 30)};
    ASSERT_EQ(Run(), 0);
    const DataColumns& f = marketData.fetchColumns;
    EXPECT_EQ(marketData.fetchRowCount, 3);
    EXPECT_EQ(Strings({f.dateText[0], f.dateText[2]}), Strings({"05Mar09", "30Nov2010"}));
    EXPECT_EQ(f.low[0], 40.5);
    EXPECT_EQ(f.volume[1], 1e-05) << "a zero volume is not a gap";
    const std::pair<std::deque<Row>, int> cases[] = {
        {{On(2009, 1, 2), On(2008, 12, 31)}, 1},               // an earlier date
        {{On(2009, 1, 2), On(2009, 1, 0), On(2009, 1, 6)}, 1}, // a null date
        {{On(2009, 13, 2)}, 0},                                // month 13
        {{}, 0},
    };
    for (const auto& [rows, kept] : cases) {
        driver.rows = rows;
        EXPECT_EQ(Run(), kept ? 0 : -1);
        EXPECT_EQ(marketData.fetchRowCount, kept);
    }
    EXPECT_EQ(seam.MessageCount(), 0u);
}

// OK of the dialog: a table query needs name, table, fields and code; a
// procedure is called by name; typed text is offered a file before it runs.
TEST_F(OdbcTest, DialogOk) {
    SqlDialogInput in;
    in.dsn = "Prices", in.table = "prices", in.fields = "d,c";
    EXPECT_EQ(AcceptSqlDialog(in, SqlDialogOk), SqlDialogStayOpen);
    EXPECT_EQ(seam.Texts(), Strings{"Incorrect Parameter values"});
    in.code = "ACME";
    EXPECT_EQ(AcceptSqlDialog(in, SqlDialogOk), SqlDialogOk);
    EXPECT_EQ(Strings({sel.currentSqlCode, sel.currentSqlText}), Strings({"ACME", ""}));
    in.procedure = true, in.sqlText = "acme_prices";
    EXPECT_EQ(AcceptSqlDialog(in, SqlDialogOk), SqlDialogOk);
    EXPECT_EQ(Strings({sel.currentSqlText, sel.currentTopic}),
              Strings({"{call acme_prices}", "SQLProcedure"}));
    in.procedure = false, in.sqlText = "SELECT d, c FROM prices";
    SqlTextEdited(false);
    seam.Clear();
    EXPECT_EQ(AcceptSqlDialog(in, SqlDialogOk), SqlDialogOk); // the offer is cancelled
    ASSERT_EQ(seam.fileRequests.size(), 1u);
    EXPECT_EQ(seam.fileRequests[0].title, "Save SQL As");
    EXPECT_EQ(seam.Texts(), Strings{"Unable to save SQL"});
}

TEST_F(OdbcTest, SqlFiles) {
    TempDir dir;
    const std::string path = dir.Write("week.v2.sql", "SELECT \"a\"\nFROM b\r\n");
    seam.QueueDialogFailure();
    seam.QueueFile(dir.PathOf("missing.sql"));
    seam.QueueFile(path);
    EXPECT_EQ(LoadSqlFile(0) + LoadSqlFile(0), 0);
    EXPECT_EQ(seam.Texts(), (Strings{"File Open Error", "Non-existent SQLFile"}));
    EXPECT_EQ(LoadSqlFile(0), 1);
    EXPECT_STREQ(sel.currentSqlText, "SELECT 'a' FROM b  ");
    EXPECT_EQ(std::string(sel.currentTopic) + "|" + sel.currentItem, "SQLText," + path + "|week");
    // Long files are cut at what the text holds.
    seam.QueueFile(dir.Write("long.sql", std::string(SqlTextLimit() + 1, 'x')));
    ASSERT_EQ(LoadSqlFile(0), 1);
    EXPECT_EQ(std::strlen(sel.currentSqlText), SqlTextLimit());
    // Saving: a cancelled dialog and an unwritable path fail alike.
    seam.Clear();
    seam.QueueCancel();
    seam.QueueFile(dir.PathOf("no/such/folder/x.sql"));
    seam.QueueFile(dir.PathOf("mine.sql"));
    EXPECT_EQ(SaveSqlFile() + SaveSqlFile(), 0);
    EXPECT_EQ(seam.Texts(), (Strings{"Unable to save SQL", "Unable to save SQL"}));
    EXPECT_EQ(SaveSqlFile(), 1);
    EXPECT_STREQ(sel.currentItem, "mine");
}

// Connection > Database... (command 10717) through a frame without windows,
// run as a layout being restored runs it (without the dialog): the limits
// stop it first, and once connected it always disconnects.
TEST(DatabaseCommand, WaysItEnds) {
    struct Case {
        int sourceSlot, charts;
        const char *failAt, *message;
        bool connected, chart;
    };
    const Case cases[] = {
        {0, 0, "", "", true, true},
        {999, 0, "", "Too Many Data Sources - Please close some windows", false, false},
        {0, 50, "", "Too Many Charts Open - Please close some charts", false, false},
        {0, 0, "Execute#1", "SQL execute failed\n", true, false},
    };
    for (const Case& c : cases) {
        ResetProgramState();
        ASSERT_TRUE(AllocateWorkingBlocks());
        marketData.nextSourceSlot = c.sourceSlot;
        deskRegistry.chartCount = c.charts;
        shell.restoringLayout = c.charts == 0; // the chart limit holds only from the menu
        SplitDatabaseSource("DSN,Prices", "prices;code,d,c,o,h,l,v", "ACME");
        test_support::RecordingSeam seam;
        test_support::FakeFrame frame;
        test_support::ScriptedDriver driver;
        driver.failAt = {c.failAt};
        driver.rows = {On(2009, 3, 5), On(2009, 3, 6)};
        FrameCommand(frame, cmd::Database);
        EXPECT_EQ(seam.LastText(), c.message);
        EXPECT_EQ(std::count(driver.log.begin(), driver.log.end(), "Drop stmt2"),
                  c.connected ? 1 : 0)
            << "disconnected once connected";
        EXPECT_EQ(shell.lastConnectOk, c.chart ? 1 : 0);
        EXPECT_EQ(frame.children.empty() ? "" : frame.children[0].caption,
                  c.chart ? "Price Prices,ACME" : "");
        frame.CloseAllChildren();
        FreeWorkingBlocks();
    }
}

} // namespace
} // namespace velorin
