// The live feed on a desk without a bus: a scripted server answers the
// connect, pushes advise data and ends conversations; the desk is a fake
// frame. Also the periodic refetch and the change of a chart's source.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "chart_model/live_update.h"
#include "market_data/data_source.h"
#include "market_data/dde_text.h"
#include "market_data/source_dialog.h"
#include "shell/core/shell_state.h"
#include "tests/shell/fake_frame.h"
#include "tests/support/scripted_transport.h"

namespace velorin {
namespace {

const std::string Ts1Item = "'/RI=ACME /ST=EARLIEST /EN=LATEST /FI=TIMESTAMP,LAST,OPENING PRICE,"
                            "TODAY'S HIGH,TODAY'S LOW,VOL ACCUMULATED /PE=d'";
const std::string IdnItem =
    "ACME,[TRADE TIME,LAST,OPENING PRICE,TODAY'S HIGH,TODAY'S LOW,VOL ACCUMULATED]";

// `rows` daily rows of six fields, closes 100, 101, ...
std::string History(int rows) {
    std::string text;
    char line[96];
    for (int r = 0; r < rows; ++r) {
        std::snprintf(line, sizeof line, "1/%d/%d\t%d\t%d\t%d\t%d\t%d\r\n", r % 28 + 1,
                      1990 + r / 28, 100 + r, 99 + r, 102 + r, 98 + r, 1000 + r);
        text += line;
    }
    return text;
}
std::string Tick(const char* time, double price) {
    char line[96];
    std::snprintf(line, sizeof line, "%s\t%g\t%g\t%g\t%g\r\n", time, price, price, price, price);
    return line;
}

// The dialog as a user fills it: OK with these four texts.
struct ScriptedSourceDialog final : SourceDialogRunner {
    const char *source = "Reuter", *topic = "TS1", *item = "ACME", *timer = "5";
    int RunSourceDialog() override {
        SourceDialogState s;
        s.text[ComboSource] = source, s.text[ComboTopic] = topic;
        s.text[ComboItem] = item, s.text[ComboTimer] = timer;
        s.tickByTick = false;
        return SourceDialogOk(s);
    }
};

class LiveDesk : public test_support::HeadlessDesk {
  protected:
    void SetUp() override {
        HeadlessDesk::SetUp();
        ddeFeed.fixedNow = 1000;
        SetDdeCallback(&DdeCallback);
        previousDialog_ = InstallSourceDialogRunner(&dialog);
    }
    void TearDown() override {
        InstallSourceDialogRunner(previousDialog_);
        SetDdeCallback(nullptr);
        HeadlessDesk::TearDown();
    }
    const DataSource& Source(int slot = 0) { return *SourceAt(slot); }
    Chart& ChartAt(std::size_t i) { return *frame.children.at(i).chart; }

    test_support::ScriptedTransport server;
    ScriptedSourceDialog dialog;

  private:
    SourceDialogRunner* previousDialog_ = nullptr;
};

TEST_F(LiveDesk, HistoryWithALiveLastRowFollowsTheTimer) {
    server.replies[Ts1Item] = History(30);
    server.replies[IdnItem] = Tick("10:30", 150);
    FrameCommand(frame, cmd::RealTime); // off: the new conversation is held at once
    FrameCommand(frame, cmd::Connect);
    ASSERT_EQ(seam.MessageCount(), 0u) << seam.LastText();
    ASSERT_EQ(frame.children.size(), 1u);
    EXPECT_EQ(server.calls, (std::vector<std::string>{
                                "hold 0", "connect Reuter/TS1", "request 4242 " + Ts1Item,
                                "disconnect 4242", "connect Reuter/IDN", "request 4243 " + IdnItem,
                                "advise 4243 " + IdnItem, "hold 4243"}));
    const DataSource& s = Source();
    ASSERT_EQ(s.rowCount, 31);
    const double lastDate = s.columns->dateNumber[30];
    EXPECT_STREQ(s.columns->dateText[30], "10:30");
    // Within the 5-second Timer the last row changes and the chart waits.
    frame.invalidated.clear();
    EXPECT_EQ(server.Advise(4243, Tick("10:31", 152)), DdeAcknowledged);
    EXPECT_TRUE(s.rowCount == 31 && s.columns->close[30] == 152 && s.chartsCurrent == 0);
    EXPECT_EQ(s.columns->dateNumber[30], lastDate);
    EXPECT_TRUE(frame.invalidated.empty());
    // Real Time off: timer 1 shows the pending row once the period is over.
    ddeFeed.fixedNow += 5;
    RefreshPendingCharts();
    EXPECT_EQ(frame.invalidated.size(), 1u);
    EXPECT_EQ(s.chartsCurrent, 1);
    RefreshPendingCharts();
    EXPECT_EQ(frame.invalidated.size(), 1u);
    // Refused data are not acknowledged and change nothing; a server that
    // goes away leaves the rows and the chart.
    EXPECT_EQ(server.Advise(4243, "#N/A\t1\r\n"), 0u);
    EXPECT_EQ(server.Advise(4243, "10:32\t1\t2\r\n"), 0u);
    EXPECT_EQ(s.columns->close[30], 152);
    server.Terminate(4243);
    EXPECT_EQ(seam.Texts(), std::vector<std::string>{"Server forced disconncect"});
    EXPECT_TRUE(SourceAt(0) && Source().rowCount == 31 && frame.children.size() == 1);
}

TEST_F(LiveDesk, ALayoutConnectsItsLiveRowsAgain) {
    server.replies[Ts1Item] = History(30);
    server.replies[IdnItem] = Tick("10:30", 150);
    FrameCommand(frame, cmd::Connect);
    FrameCommand(frame, cmd::Rsi);
    seam.QueueFile(dir.PathOf("live.vl"));
    FrameCommand(frame, cmd::SaveAs);
    FrameCommand(frame, cmd::New);
    ASSERT_TRUE(frame.children.empty());
    server.calls.clear();
    seam.QueueFile(dir.PathOf("live.vl"));
    FrameCommand(frame, cmd::Open);
    ASSERT_EQ(seam.MessageCount(), 0u) << seam.LastText();
    // The stored source is the live history: history, then live value, then
    // the advise loop, once for both windows.
    EXPECT_EQ(server.calls,
              (std::vector<std::string>{"connect REUTER/TS1", "request 4244 " + Ts1Item,
                                        "disconnect 4244", "connect REUTER/IDN",
                                        "request 4245 " + IdnItem, "advise 4245 " + IdnItem}));
    ASSERT_EQ(frame.children.size(), 2u);
    EXPECT_TRUE(ChartAt(0).connectionId == 4245 && ChartAt(1).connectionId == 4245);
    EXPECT_EQ(server.Advise(4245, Tick("10:31", 152)), DdeAcknowledged);
    EXPECT_EQ(Source(0).columns->close[30], 152);
}

TEST_F(LiveDesk, ConnectFailuresLeaveNoSourceBehind) {
    dialog.source = "FEED", dialog.topic = "PRICES";
    // clang-format off
    const struct { bool refuse; const char* reply; const char* message; int calls; } cases[] = {
        {true, nullptr, "Data source not available", 1},
        {false, nullptr, "Data not available", 3},
        {false, "12:00\t1\t2\r\n", nullptr, 3},  // two separators: dropped in silence
    };
    // clang-format on
    for (const auto& c : cases) {
        test_support::ScriptedTransport server; // in place of the fixture's
        seam.Clear();
        if (c.refuse) server.refusedTopics.insert("PRICES");
        if (c.reply) server.replies["ACME"] = c.reply;
        FrameCommand(frame, cmd::Connect);
        EXPECT_EQ(seam.Texts(),
                  c.message ? std::vector<std::string>{c.message} : std::vector<std::string>{});
        EXPECT_EQ(server.calls.size(), static_cast<std::size_t>(c.calls));
        if (c.calls > 1) {
            EXPECT_EQ(server.calls.back().rfind("disconnect", 0), 0u);
        }
        EXPECT_TRUE(frame.children.empty() && SourceAt(0) == nullptr && shell.lastConnectOk == 0);
    }
}

TEST_F(LiveDesk, TickSourceGrowsRowByRowAndDropsItsOldestHundredWhenFull) {
    dialog.source = "FEED", dialog.topic = "TICKS", dialog.timer = "0";
    server.replies["ACME"] = Tick("09:00", 50); // one row: a tick source
    FrameCommand(frame, cmd::Connect);
    ASSERT_EQ(frame.children.size(), 1u);
    DataSource& s = *SourceAt(0);
    ASSERT_EQ(s.tick, 1);
    EXPECT_EQ(ChartAt(0).showCurveHandles, 1);
    server.Advise(4242, Tick("09:01", 51));
    s.filtered = 1;
    server.Advise(4242, Tick("09:02", -52)); // written, then not counted
    EXPECT_EQ(s.rowCount, 2);
    s.filtered = 0;
    server.Advise(4242, Tick("09:03", 53));
    EXPECT_TRUE(s.rowCount == 3 && s.columns->close[2] == 53);
    EXPECT_TRUE(ChartAt(0).rowCount == 3 && ChartAt(0).showCurveHandles == 0);
    for (int r = 0; r < MaxRows; ++r)
        s.columns->close[r] = r, s.columns->dateNumber[r] = r;
    s.rowCount = MaxRows;
    server.Advise(4242, Tick("09:04", 54));
    EXPECT_EQ(s.rowCount, MaxRows - 99);
    EXPECT_TRUE(s.columns->close[0] == 100 && s.columns->close[1899] == 1999);
    EXPECT_TRUE(s.columns->dateNumber[0] == 0 && s.columns->close[1900] == 54);
    EXPECT_TRUE(s.columns->close[1901] == 0 && s.columns->dateText[1901][0] == '\0');
    // With a Timer, ticks within one period overwrite the pending row.
    s.tickSeconds = 10;
    s.lastUpdateTime = ddeFeed.fixedNow;
    server.Advise(4242, Tick("09:05", 55));
    server.Advise(4242, Tick("09:06", 56));
    EXPECT_TRUE(s.rowCount == 1902 && s.columns->close[1901] == 56 && s.chartsCurrent == 0);
    ddeFeed.fixedNow += 10;
    server.Advise(4242, Tick("09:07", 57));
    EXPECT_TRUE(s.rowCount == 1902 && s.chartsCurrent == 1 && ChartAt(0).rowCount == 1902);
}

TEST_F(LiveDesk, RefetchReplacesFileSeriesAndChangeOfSourceMovesTheFamily) {
    Open(40);
    FrameCommand(frame, cmd::Rsi);
    ASSERT_EQ(frame.children.size(), 2u);
    dir.Write("ACME.PRC", test_support::PriceFileText(25));
    RefetchAllSources();
    EXPECT_TRUE(Source().rowCount == 25 && ChartAt(0).rowCount == 25 && ChartAt(1).rowCount == 25);
    dir.Write("ACME.PRC", "1/1/1990,0,0,0,0,0\r\n1/2/1990,0,0,0,0,0\r\n");
    RefetchAllSources();
    EXPECT_EQ(Source().rowCount, 0);
    ASSERT_EQ(seam.MessageCount(), 0u) << seam.LastText();
    // Both charts move to the live source; their lines go with the old data.
    dialog.source = "FEED", dialog.topic = "PRICES", dialog.item = "INITECH";
    server.replies["INITECH"] = History(30);
    frame.ChangeDataSource(frame.children[1].id, ChartAt(1));
    ASSERT_EQ(seam.MessageCount(), 0u) << seam.LastText();
    EXPECT_EQ(SourceAt(0), nullptr); // the file source lost its last chart
    const DataSource& fresh = Source(1);
    EXPECT_EQ(fresh.refCount, 2);
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_TRUE(ChartAt(i).sourceSlot == 1 && ChartAt(i).connectionId == 4242 &&
                    ChartAt(i).rowCount == 30);
        EXPECT_NE(std::string(ChartAt(i).windowCaption).find("INITECH 1/1/1990 - 1/2/1991"),
                  std::string::npos)
            << ChartAt(i).windowCaption;
    }
    EXPECT_EQ(frame.sent,
              (std::vector<std::pair<WindowId, int>>{{frame.children[0].id, cmd::ClearAllLines},
                                                     {frame.children[1].id, cmd::ClearAllLines}}));
    EXPECT_EQ(server.calls.back(), "advise 4242 INITECH");
    EXPECT_EQ(marketData.nextSourceSlot, 2);
}

TEST(SourceDialogRules, AddDeleteAndOk) {
    ResetProgramState();
    SourceDialogState s;
    s.text[ComboTimer] = "5x", s.text[ComboItem] = "ACME";
    EXPECT_STREQ(SourceDialogAdd(s), "Invalid Timer value");
    EXPECT_EQ(SourceListLength(ComboItem), 0); // the Timer comes first
    s.text[ComboTimer] = "5", s.text[ComboTopic] = "TS1";
    EXPECT_EQ(SourceDialogAdd(s), nullptr);
    EXPECT_EQ(SourceDialogAdd(s), nullptr); // present ones are not added twice
    s.text[ComboItem] = "IBM";
    SourceDialogAdd(s);
    EXPECT_EQ(SourceListLength(ComboItem), 2);
    EXPECT_EQ(SourceListLength(ComboTimer), 1);
    // Delete takes only combos with a selection; a text not in the list stops it.
    s.selection[ComboItem] = 0, s.text[ComboItem] = "ACME";
    EXPECT_EQ(SourceDialogDelete(s), nullptr);
    EXPECT_STREQ(SourceListRow(ComboItem, 0), "IBM");
    s.text[ComboItem].clear();
    s.selection[ComboTopic] = 0, s.text[ComboTopic] = "IDN";
    EXPECT_STREQ(SourceDialogDelete(s), "Invalid Topic value");
    // OK: an empty edit does nothing; a tick database becomes its range, and
    // opening the dialog shows the remembered entries.
    SourceDialogState ok;
    ok.text[ComboSource] = "TickDB", ok.text[ComboTopic] = "IDN";
    ok.text[ComboItem] = "IBM", ok.selection[ComboItem] = 0;
    EXPECT_EQ(SourceDialogOk(ok), 1);
    ok.text[ComboTimer] = "Sheet1";
    EXPECT_EQ(SourceDialogOk(ok), 0);
    EXPECT_STREQ(marketData.selection.currentTopic, "[tickdb.xls]IBM,Sheet1");
    EXPECT_EQ(OpenSourceDialog().text[ComboItem], "IBM");
    EXPECT_TRUE(ResolutionButtonsShown("reuter", "ts1") &&
                !ResolutionButtonsShown("Reuter", "IDN"));
}

TEST(FetchFrequency, ClampsTheTypedMinutes) {
    const std::pair<const char*, int> cases[] = {{"abc", 1},   {"0", 1},     {"2", 2},
                                                 {"499", 499}, {"500", 500}, {"9999", 500}};
    for (const auto& [text, minutes] : cases)
        EXPECT_EQ(FetchFrequencyFromText(text), minutes) << text;
}

} // namespace
} // namespace velorin
