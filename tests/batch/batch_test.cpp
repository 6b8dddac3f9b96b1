// The Make All run of a whole database through "Save All" of the database
// command, against the SQLite sample database on the headless frame.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <tuple>

#include "market_data/data_source.h"
#include "market_data/date.h"
#include "market_data/odbc_dialog.h"
#include "market_data/odbc_driver_manager.h"
#include "persistence/settings_file.h"
#include "resources/command_ids.h"
#include "shell/core/batch.h"
#include "shell/core/shell_state.h"
#include "shell/core/working_blocks.h"
#include "tests/odbc_driver/driver_backend.h"
#include "tests/shell/fake_frame.h"
#include "tests/support/recording_seam.h"

namespace velorin {
namespace {

namespace fs = std::filesystem;

// The tool as the run sees it: on each start it notes the bitmaps the folder
// holds, less the prefix its command names and ".bmp", under that prefix.
// It writes its log at once, unless the user is to give the wait up at
// pause `cancelAt`. It is the "Save All" of the dialog, too.
struct FakeConverter : BitmapConverter, SqlDialogHost {
    void Start(const std::string& command) override {
        const std::size_t at = command.find(folder + "/") + folder.size() + 1;
        const std::string prefix = command.substr(at, command.find('*', at) - at);
        for (const fs::directory_entry& e : fs::directory_iterator(folder))
            converted[prefix].insert(e.path().stem().string().substr(prefix.size()));
        if (cancelAt == 0) std::ofstream(LogPath()) << "done\n";
    }
    bool Pause() override { return ++pauses != cancelAt; }
    std::string LogPath() const override { return folder + ".log"; }
    int RunSqlDialog() override {
        SqlDialogInput in;
        in.dsn = dsn, in.table = "prices", in.fields = "tradedate,close,open,high,low,volume";
        in.where = "code", in.code = "X";
        return AcceptSqlDialog(in, SqlDialogSaveAll);
    }
    std::string folder, dsn;
    std::map<std::string, std::set<std::string>> converted;
    int cancelAt = 0, pauses = 0;
};

template <std::size_t N> void Set(char (&field)[N], const std::string& text) {
    std::snprintf(field, N, "%s", text.c_str());
}

// "Save All" runs the whole database: each listed code gets its price, style
// and analysis images (the volume ones only with volume, the analyses only
// from 25 rows on); a code without rows is left out and the run goes on; a
// pair gets its six images, converted under its first code, and a row
// without "/" nothing. Nothing is shown, and afterwards the folder holds
// no bitmap, the desk is empty and the selection is back. A wait the user
// cancels ends the run there: the bitmaps of that code stay, nothing further
// is made, and the desk and selection are left as after a whole run.
TEST(Batch, SaveAllMakesEveryImageOfTheDatabase) {
    const test_support::Backend& backend = test_support::SqliteBackend();
    if (backend.dsn.empty()) GTEST_SKIP() << backend.skipReason;
    const std::set<std::string> full = {"prc", "bar", "hlc", "rma", "ema", "wma",
                                        "mac", "pcr", "rsi", "osc", "mom", "std",
                                        "stc", "trd", "swg", "vol", "obv", "rvi"};
    std::set<std::string> acme = full;
    acme.insert(
        {"_GLOBEXcor", "_GLOBEXrto", "_GLOBEXspd", "_GLOBEXrst", "_GLOBEXrpf", "_GLOBEXovl"});
    using Converted = std::map<std::string, std::set<std::string>>;
    const Converted whole = {
        {"ACME", acme}, {"INITECH", full}, {"SHORT", {"prc", "bar", "hlc", "vol"}}};
    const std::tuple<int, Converted, long> cases[] = {
        // cancelled at pause, conversions, bitmaps left
        {0, whole, 0},
        {3, {{"ACME", full}}, 18}};
    for (const auto& [cancelAt, expected, left] : cases) {
        test_support::TempDir dir;
        test_support::RecordingSeam seam;
        FakeConverter converter;
        ResetProgramState();
        ASSERT_TRUE(AllocateWorkingBlocks());
        dateRules.todayDate = 50000; // far ahead of the sample dates
        InstallOdbcDriverManager();
        InstallSqlDialog(&converter);
        InstallBitmapConverter(&converter);
        converter.dsn = backend.dsn, converter.cancelAt = cancelAt;
        converter.folder = dir.PathOf("out");
        fs::create_directory(converter.folder);
        Set(settings.batchFolder, converter.folder);
        Set(settings.batchTable1, "batch_one");
        Set(settings.batchTable2, "batch_two");
        Set(settings.batchPairTable, "batch_pairs");
        Set(settings.sourceList[0], "Reuter");
        test_support::FakeFrame frame;
        frame.capturing = true;
        FrameCommand(frame, cmd::Database);
        EXPECT_EQ(converter.converted, expected) << cancelAt;
        EXPECT_EQ(std::distance(fs::directory_iterator(converter.folder), {}), left);
        EXPECT_EQ(converter.pauses, cancelAt);
        EXPECT_EQ(seam.MessageCount(), 0u) << seam.LastText();
        EXPECT_TRUE(frame.children.empty());
        EXPECT_STREQ(marketData.selection.currentSource, "Reuter");
        EXPECT_EQ(shell.batchRunning, 0);
        InstallBitmapConverter(nullptr);
        InstallSqlDialog(nullptr);
        FreeWorkingBlocks();
    }
}

} // namespace
} // namespace velorin
