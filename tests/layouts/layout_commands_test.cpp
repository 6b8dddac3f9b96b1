// Layouts and the settings file driven through the File commands on a
// headless frame: a desk saved, closed and opened again; the settings
// written at exit and read at the next start.
#include <gtest/gtest.h>

#include <cstring>

#include "chart_model/price_chart.h"
#include "market_data/data_source.h"
#include "market_data/odbc_state.h"
#include "rendering/palette.h"
#include "shell/core/shell_state.h"
#include "tests/shell/fake_frame.h"

namespace velorin {
namespace {

class Layouts : public test_support::HeadlessDesk {
  protected:
    void SetUp() override { Start(); }
    void Start() { // a fresh program in the test's folder
        FreeWorkingBlocks();
        HeadlessDesk::SetUp();
        std::snprintf(shell.settingsPath, sizeof shell.settingsPath, "%s", At("velorin.vln"));
    }
    const char* At(const char* name) { return (path = dir.PathOf(name)).c_str(); }
    std::string path;
};

TEST_F(Layouts, SavedDeskComesBackAfterNewWithPlacesParametersAndTrendLine) {
    Open(60);
    FrameCommand(frame, cmd::Rsi);
    ASSERT_EQ(frame.children.size(), 2u) << seam.LastText();
    const std::vector<int> places = {5, 6, 400, 300, 50, 60, 410, 210};
    for (int i = 0; i < 2; ++i) {
        auto& c = frame.children[static_cast<std::size_t>(i)];
        c.x = places[4 * i], c.y = places[4 * i + 1], c.width = places[4 * i + 2];
        c.height = places[4 * i + 3];
    }
    frame.children[1].chart->analysisParams->period[1] = 9;
    TrendLineSet& t = *frame.children[1].chart->drawings->trendLines;
    t.inUse[2] = 1, t.valueA[2] = 31.5, t.valueB[2] = 72.25;
    std::strcpy(t.dateA[2], "1/3/1990"), std::strcpy(t.dateB[2], "1/20/1991");
    seam.QueueFile(At("desk.vl"));
    FrameCommand(frame, cmd::SaveAs);
    EXPECT_EQ(seam.fileRequests.back().title + seam.fileRequests.back().filter,
              "Save Velorin Layout AsVelorin Layout (*.vl)");
    FrameCommand(frame, cmd::New);
    std::memset(settings.connections, 0, sizeof settings.connections);
    seam.QueueFile(path);
    FrameCommand(frame, cmd::Open);
    ASSERT_EQ(frame.children.size(), 2u) << seam.LastText(); // the connection chart went
    std::vector<int> back;
    for (const auto& c : frame.children)
        back.insert(back.end(), {c.x, c.y, c.width, c.height});
    EXPECT_EQ(back, places);
    const Chart& rsi = *frame.children[1].chart;
    EXPECT_EQ(rsi.analysisParams->period[1], 9);
    const TrendLineSet& b = *rsi.drawings->trendLines;
    EXPECT_EQ(std::string(b.dateA[2]) + " " + b.dateB[2], "1/3/1990 1/20/1991");
    EXPECT_EQ(std::vector<double>({b.valueA[2], b.valueB[2]}), std::vector<double>({31.5, 72.25}));
}

TEST_F(Layouts, SettingsWrittenAtExitComeBackAtTheNextStart) {
    std::strcpy(sqlLists.dsnList[0], "Prices"), std::strcpy(sqlLists.dsnList[1], "Archive");
    palette.current[7] = 0x00123456;
    refreshCycle.fetchFrequencyMinutes = 7;
    settings.frameX = 10, settings.frameY = 20, settings.frameWidth = 800,
    settings.frameHeight = 600;
    FrameCommand(frame, cmd::Exit);
    Start();
    ASSERT_EQ(ReadSettingsAtStart(), 1);
    EXPECT_STREQ(sqlLists.dsnList[1], "Archive");
    EXPECT_STREQ(marketData.selection.currentDsn, "Prices");
    EXPECT_EQ(palette.current[7], 0x00123456u);
    EXPECT_EQ(refreshCycle.fetchFrequencyMinutes, 7);
    int rect[4] = {};
    ASSERT_TRUE(SettingsFrameRectangle(&rect[0], &rect[1], &rect[2], &rect[3]));
    EXPECT_EQ(std::vector<int>(rect, rect + 4), (std::vector<int>{10, 20, 800, 600}));
}

TEST_F(Layouts, AFirstRunWritesAFileThatReadsBackWhole) {
    EXPECT_EQ(ReadSettingsAtStart(), 0);
    FrameCommand(frame, cmd::Exit);
    Start();
    ASSERT_EQ(ReadSettingsAtStart(), 1);
    const Settings& s = settings;
    for (const char* entry : {s.tickvalList[0], s.itemList[0], s.topicList[0], s.sourceList[0],
                              s.dsnList[0], s.sqlTableList[0], s.sqlFieldsList[0],
                              s.sqlWhereList[0], s.sqlCodesList[0], s.batchFolder, s.batchTable1,
                              s.batchTable2, s.batchPairTable}) // an empty list takes a header
        EXPECT_TRUE(entry[0] != '\0' && entry[0] != '[') << entry;
    EXPECT_EQ(std::vector<Colour>(palette.current, palette.current + PaletteSize),
              std::vector<Colour>(FirstRunColours(), FirstRunColours() + PaletteSize));
    EXPECT_EQ(chartDefaults.defaultResolution, 4.0);
    int rect[4] = {}; // no rectangle yet: the frame takes the screen
    EXPECT_FALSE(SettingsFrameRectangle(&rect[0], &rect[1], &rect[2], &rect[3]));
}

} // namespace
} // namespace velorin
