// The frame driven headless: menus, the file connection, limits, options and
// timers, with every message read from a recording seam.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QTest>

#include <cstdio>
#include <deque>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "market_data/data_source.h"
#include "market_data/date.h"
#include "shell/core/shell_state.h"
#include "shell/core/working_blocks.h"
#include "shell/qt/dialogs.h"
#include "shell/qt/frame_window.h"
#include "tests/support/recording_seam.h"

namespace velorin {
namespace {

class Frame : public ::testing::Test {
  protected:
    void SetUp() override {
        ResetProgramState();
        dateRules.todayDate = 50000; // far ahead of the sample dates
        ASSERT_TRUE(AllocateWorkingBlocks());
        frame = new FrameWindow;
        frame->resize(1200, 800);
        frame->show();
        dir = std::filesystem::temp_directory_path() / "velorin_frame_test";
        std::filesystem::create_directories(dir);
    }
    void TearDown() override {
        frame->CloseAllChildren();
        delete frame;
        FreeWorkingBlocks();
        EXPECT_EQ(blockAllocator.liveBlocks, 0);
    }

    std::string WriteFile(const char* name, int rows) {
        const auto path = (dir / name).string();
        std::ofstream out(path, std::ios::binary);
        for (int r = 0; r < rows; ++r)
            out << "1/" << (r % 28) + 1 << "/" << 1990 + r / 28 << "," << 100 + r << "," << 99 + r
                << "," << 102 + r << "," << 98 + r << "," << 1000 + r << "\r\n";
        return path;
    }

    QStringList MenuTexts(QMenu* menu) {
        QStringList texts;
        for (QAction* a : menu->actions())
            texts << (a->isSeparator() ? QStringLiteral("-") : a->text());
        return texts;
    }

    test_support::RecordingSeam seam;
    FrameWindow* frame = nullptr;
    std::filesystem::path dir;
};

TEST_F(Frame, MenuBarTextsAndStartStates) {
    const QList<QAction*> tops = frame->menuBar()->actions();
    ASSERT_EQ(tops.size(), 8);
    EXPECT_EQ(MenuTexts(tops[0]->menu()).join(QLatin1Char('|')),
              QStringLiteral("&New|&Open...|&Save|Save &As...|Res&tore|-|&Print...|"
                             "P&rinter Setup...|-|Save &Chart As...|-|E&xit"));
    EXPECT_EQ(MenuTexts(tops[4]->menu()).join(QLatin1Char('|')),
              QStringLiteral("&Trend|&Swing Charting|-|&Correlation|&Historical Correlation|"
                             "&Overlay|-|&Fibonacci|-|&Predictor"));
    EXPECT_FALSE(frame->action(10404)->isEnabled());
    EXPECT_FALSE(frame->action(10605)->isEnabled());
    EXPECT_TRUE(frame->action(10718)->isEnabled());
    EXPECT_TRUE(frame->action(10110)->isChecked());
    EXPECT_TRUE(frame->action(10508)->isChecked());
    EXPECT_FALSE(frame->action(10505)->isChecked());
}

TEST_F(Frame, DatafileOpensATitledChartAndClosingGreysTheMenu) {
    seam.QueueFile(WriteFile("ACME.PRC", 40));
    frame->FrameCommand(10718);
    ASSERT_EQ(seam.fileRequests.size(), 1u);
    EXPECT_EQ(seam.fileRequests[0].filter, "Text Files (*.PRC)");
    EXPECT_EQ(seam.fileRequests[0].title, "Open Data File");
    ASSERT_TRUE(seam.messages.empty()) << seam.messages[0].text;
    const auto subs = frame->mdiClient()->subWindowList();
    ASSERT_EQ(subs.size(), 1);
    EXPECT_EQ(subs[0]->windowTitle(), QStringLiteral("Price ACME 1/1/1990 - 1/12/91"));
    EXPECT_EQ(shell.chartCount, 1);
    EXPECT_EQ(shell.lastConnectOk, 1);
    EXPECT_EQ(marketData.nextSourceSlot, 1);
    EXPECT_TRUE(frame->action(10404)->isEnabled());
    EXPECT_TRUE(frame->action(10605)->isEnabled());
    EXPECT_EQ(seam.waitCursorDepth, 0);

    subs[0]->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(frame->mdiClient()->subWindowList().isEmpty());
    EXPECT_EQ(shell.chartCount, 0);
    EXPECT_EQ(marketData.nextSourceSlot, 0);
    EXPECT_EQ(SourceAt(0), nullptr);
    EXPECT_FALSE(frame->action(10404)->isEnabled());
    EXPECT_FALSE(frame->action(10605)->isEnabled());
}

TEST_F(Frame, FailedReadsLeaveTheDeskAsItWas) {
    seam.QueueFile(WriteFile("ONE.PRC", 1));
    frame->FrameCommand(10718);
    ASSERT_EQ(seam.messages.size(), 1u);
    EXPECT_EQ(seam.messages[0].text, "DataFile Read Error");
    EXPECT_EQ(seam.messages[0].caption, "QDX-Velorin");
    seam.QueueCancel(); // cancelled: nothing said
    frame->FrameCommand(10718);
    EXPECT_EQ(seam.messages.size(), 1u);
    EXPECT_TRUE(frame->mdiClient()->subWindowList().isEmpty());
    EXPECT_EQ(shell.chartCount, 0);
    EXPECT_EQ(marketData.nextSourceSlot, 0);
    EXPECT_FALSE(frame->action(10404)->isEnabled());
}

TEST_F(Frame, LimitsRefuseBeforeAskingForAFile) {
    marketData.nextSourceSlot = 999;
    frame->FrameCommand(10718);
    ASSERT_EQ(seam.messages.size(), 1u);
    EXPECT_EQ(seam.messages[0].text, "Too Many Data Sources - Please close some charts");
    marketData.nextSourceSlot = 998;
    shell.chartCount = 50;
    frame->FrameCommand(10718);
    ASSERT_EQ(seam.messages.size(), 2u);
    EXPECT_EQ(seam.messages[1].text, "Too Many Charts Open - Please close some charts");
    EXPECT_EQ(seam.messages[1].caption, "QDX Velorin");
    EXPECT_TRUE(seam.fileRequests.empty()); // no dialog was shown
    shell.chartCount = 0;
}

TEST_F(Frame, OptionTogglesAndThicknessGroups) {
    frame->FrameCommand(10509);
    EXPECT_EQ(shell.priceThickness, 2);
    EXPECT_TRUE(frame->action(10509)->isChecked());
    EXPECT_FALSE(frame->action(10508)->isChecked());
    frame->FrameCommand(10516);
    EXPECT_EQ(shell.attachmentThickness, 3);
    EXPECT_EQ(shell.modelThickness, 1);
    EXPECT_TRUE(frame->action(10514)->isChecked() == false && frame->action(10516)->isChecked());

    frame->FrameCommand(10505); // Data Value: checked while the option is 0
    EXPECT_EQ(shell.defaultFreePlaced, 0);
    EXPECT_TRUE(frame->action(10505)->isChecked());
    frame->FrameCommand(10506);
    EXPECT_EQ(shell.defaultExtended, 1);
    EXPECT_TRUE(frame->action(10506)->isChecked());
    frame->FrameCommand(20702);
    EXPECT_EQ(marketData.filterOn, 1);
    frame->FrameCommand(10110);
    EXPECT_EQ(shell.realTimeOn, 0);
    EXPECT_FALSE(frame->action(10110)->isChecked());
}

TEST_F(Frame, FilteredCaptionAndCloseAll) {
    frame->FrameCommand(20702);
    seam.QueueFile(WriteFile("GLOBEX.PRC", 30));
    seam.QueueFile(WriteFile("INITECH.PRC", 30));
    frame->FrameCommand(10718);
    frame->FrameCommand(10718);
    const auto subs = frame->mdiClient()->subWindowList(QMdiArea::CreationOrder);
    ASSERT_EQ(subs.size(), 2);
    EXPECT_TRUE(subs[0]->windowTitle().startsWith(QStringLiteral("Filtered Price GLOBEX ")));
    EXPECT_EQ(marketData.nextSourceSlot, 2);
    frame->FrameCommand(10605);
    EXPECT_TRUE(frame->mdiClient()->subWindowList().isEmpty());
    EXPECT_EQ(shell.chartCount, 0);
    EXPECT_EQ(marketData.nextSourceSlot, 0);
    EXPECT_EQ(SourceAt(0), nullptr);
    EXPECT_EQ(SourceAt(1), nullptr);
    EXPECT_FALSE(frame->action(10605)->isEnabled());
}

TEST_F(Frame, FindActiveChildPrefersAMinimisedWindowJustBelow) {
    seam.QueueFile(WriteFile("A.PRC", 30));
    seam.QueueFile(WriteFile("B.PRC", 30));
    frame->FrameCommand(10718);
    frame->FrameCommand(10718);
    const auto subs = frame->mdiClient()->subWindowList(QMdiArea::CreationOrder);
    frame->mdiClient()->setActiveSubWindow(subs[1]);
    EXPECT_EQ(frame->FindActiveChild(), subs[1]);
    subs[0]->showMinimized();
    frame->mdiClient()->setActiveSubWindow(subs[1]);
    EXPECT_EQ(frame->FindActiveChild(), subs[0]);
}

TEST_F(Frame, TimersActOnlyWithChartsOpen) {
    shell.realTimeOn = 0;
    shell.fetchFrequencyMinutes = 0;
    frame->TimerTick(1);
    frame->TimerTick(3);
    EXPECT_EQ(frame->pendingRefreshRuns(), 0);
    EXPECT_EQ(frame->refetchRuns(), 0);
    seam.QueueFile(WriteFile("T.PRC", 30));
    frame->FrameCommand(10718);
    frame->TimerTick(1);
    frame->TimerTick(3);
    EXPECT_EQ(frame->pendingRefreshRuns(), 1);
    EXPECT_EQ(frame->refetchRuns(), 1);
    shell.realTimeOn = 1;
    shell.fetchFrequencyMinutes = 5; // five minutes have not passed
    frame->TimerTick(1);
    frame->TimerTick(3);
    EXPECT_EQ(frame->pendingRefreshRuns(), 1);
    EXPECT_EQ(frame->refetchRuns(), 1);
}

TEST(StartupDialogTest, NeitherKeysNorCloseEndItEarly) {
    StartupDialog dialog(nullptr, 300);
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QTest::keyClick(&dialog, Qt::Key_Return);
    dialog.close();
    EXPECT_TRUE(dialog.isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(!dialog.isVisible(), 2000);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

} // namespace
} // namespace velorin

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
