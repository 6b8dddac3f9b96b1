// The Qt frame on the offscreen platform: the menus it builds, the windows it
// makes and closes for the commands, and how it lays them out.
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
#include <sstream>
#include <string>
#include <vector>

#include "market_data/data_source.h"
#include "market_data/date.h"
#include "resources/command_ids.h"
#include "shell/core/shell_state.h"
#include "shell/core/working_blocks.h"
#include "shell/qt/dialogs.h"
#include "shell/qt/frame_window.h"
#include "tests/support/recording_seam.h"
#include "tests/support/temp_dir.h"

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
    }
    void TearDown() override {
        frame->FrameCommand(cmd::CloseAll);
        delete frame;
        FreeWorkingBlocks();
        EXPECT_EQ(blockAllocator.liveBlocks, 0);
    }

    std::string WriteFile(const char* name, int rows) {
        std::ostringstream out;
        for (int r = 0; r < rows; ++r)
            out << "1/" << (r % 28) + 1 << "/" << 1990 + r / 28 << "," << 100 + r << "," << 99 + r
                << "," << 102 + r << "," << 98 + r << "," << 1000 + r << "\r\n";
        return dir.Write(name, out.str());
    }

    QStringList MenuTexts(QMenu* menu) {
        QStringList texts;
        for (QAction* a : menu->actions())
            texts << (a->isSeparator() ? QStringLiteral("-") : a->text());
        return texts;
    }

    test_support::RecordingSeam seam;
    test_support::TempDir dir;
    FrameWindow* frame = nullptr;
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
    EXPECT_FALSE(frame->action(cmd::Correlation)->isEnabled());
    EXPECT_FALSE(frame->action(cmd::CloseAll)->isEnabled());
    EXPECT_TRUE(frame->action(cmd::Datafile)->isEnabled());
    EXPECT_TRUE(frame->action(cmd::RealTime)->isChecked());
    EXPECT_TRUE(frame->action(cmd::PriceThin)->isChecked());
    EXPECT_FALSE(frame->action(cmd::DataValueDefault)->isChecked());
}

TEST_F(Frame, DatafileOpensAWindowAndClosingItGreysTheMenu) {
    seam.QueueFile(WriteFile("ACME.PRC", 40));
    frame->FrameCommand(cmd::Datafile);
    ASSERT_EQ(seam.fileRequests.size(), 1u);
    ASSERT_TRUE(seam.messages.empty()) << seam.messages[0].text;
    const auto subs = frame->mdiClient()->subWindowList();
    ASSERT_EQ(subs.size(), 1);
    EXPECT_EQ(subs[0]->windowTitle(), QStringLiteral("Price ACME 1/1/1990 - 1/12/91"));
    EXPECT_TRUE(frame->action(cmd::Correlation)->isEnabled());

    subs[0]->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(frame->mdiClient()->subWindowList().isEmpty());
    EXPECT_EQ(deskRegistry.chartCount, 0);
    EXPECT_EQ(SourceAt(0), nullptr);
    EXPECT_FALSE(frame->action(cmd::Correlation)->isEnabled());
}

TEST_F(Frame, FindActiveChildPrefersAMinimisedWindowJustBelow) {
    seam.QueueFile(WriteFile("A.PRC", 30));
    seam.QueueFile(WriteFile("B.PRC", 30));
    frame->FrameCommand(cmd::Datafile);
    frame->FrameCommand(cmd::Datafile);
    const auto subs = frame->mdiClient()->subWindowList(QMdiArea::CreationOrder);
    frame->mdiClient()->setActiveSubWindow(subs[1]);
    EXPECT_EQ(frame->FindActiveChild(), subs[1]);
    subs[0]->showMinimized();
    frame->mdiClient()->setActiveSubWindow(subs[1]);
    EXPECT_EQ(frame->FindActiveChild(), subs[0]);
}

TEST_F(Frame, CascadeTileAndArrangeLeaveEveryChartReadable) {
    for (const char* name : {"A.PRC", "B.PRC", "C.PRC"}) {
        seam.QueueFile(WriteFile(name, 30));
        frame->FrameCommand(cmd::Datafile);
    }
    const QSize area = frame->mdiClient()->viewport()->size();
    frame->FrameCommand(cmd::Cascade);
    const auto subs = frame->mdiClient()->subWindowList(QMdiArea::CreationOrder);
    ASSERT_EQ(subs.size(), 3);
    for (int i = 0; i < 3; ++i) {
        const QRect g = subs[i]->geometry();
        EXPECT_GE(g.width(), area.width() * 2 / 3) << i;
        EXPECT_GE(g.height(), area.height() * 2 / 3) << i;
        EXPECT_LE(g.right(), area.width()) << i;
        EXPECT_LE(g.bottom(), area.height()) << i;
        if (i > 0) {
            EXPECT_GT(g.top(), subs[i - 1]->geometry().top()) << i; // a title bar lower
            EXPECT_GT(g.left(), subs[i - 1]->geometry().left()) << i;
        }
    }
    frame->FrameCommand(cmd::TileHorizontal);
    int heights = 0;
    for (QMdiSubWindow* sub : subs) {
        EXPECT_EQ(sub->geometry().width(), area.width());
        heights += sub->geometry().height();
    }
    EXPECT_EQ(heights, area.height());
    subs[0]->showMinimized();
    frame->FrameCommand(cmd::ArrangeIcons);
    EXPECT_EQ(subs[0]->geometry().left(), 0);
    EXPECT_EQ(subs[0]->geometry().bottom() + 1, area.height());
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
