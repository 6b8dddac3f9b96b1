// The button bar of the Qt frame on the offscreen platform: it stands above
// the desk, its gated buttons follow the open charts, a click sends the
// button's command and a key takes the hint away.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFontMetrics>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTest>

#include <string>

#include "market_data/date.h"
#include "resources/command_ids.h"
#include "shell/core/working_blocks.h"
#include "shell/qt/button_bar_widget.h"
#include "shell/qt/frame_window.h"
#include "tests/support/recording_seam.h"
#include "tests/support/temp_dir.h"

namespace velorin {
namespace {

constexpr int ZoomIn = 15, TileVertically = 28;

TEST(ButtonBarQt, AboveTheDeskFollowingTheChartsAndSendingItsCommand) {
    ResetProgramState();
    dateRules.todayDate = 50000; // far ahead of the chart's dates
    ASSERT_TRUE(AllocateWorkingBlocks());
    test_support::RecordingSeam seam;
    test_support::TempDir dir;
    {
        FrameWindow frame;
        frame.resize(1200, 800);
        frame.show();
        ButtonBarWidget* bar = frame.buttonBar();
        // As tall as the text and 12 more, and the desk right under it.
        EXPECT_EQ(bar->height(), QFontMetrics(frame.font()).height() + 12);
        EXPECT_EQ(frame.mdiClient()->mapTo(&frame, QPoint(0, 0)),
                  bar->mapTo(&frame, QPoint(0, bar->height())));

        EXPECT_FALSE(bar->button(ZoomIn)->isEnabled());
        std::string prices;
        for (int day = 1; day <= 28; ++day)
            prices += "1/" + std::to_string(day) + "/1990,100,99,102,98,1000\r\n";
        for (const char* name : {"A.PRC", "B.PRC"}) {
            seam.QueueFile(dir.Write(name, prices));
            frame.FrameCommand(cmd::Datafile);
        }
        ASSERT_TRUE(seam.messages.empty()) << seam.LastText();
        EXPECT_TRUE(bar->button(ZoomIn)->isEnabled());

        // Tile Vertically: its hint under the mouse, gone with the click that
        // puts the two charts side by side.
        const QPoint at = bar->button(TileVertically)->geometry().center();
        QTest::mouseMove(bar, at);
        EXPECT_TRUE(bar->hint()->isVisible());
        EXPECT_EQ(bar->hint()->text(), QStringLiteral(" Tile Vertically "));
        QTest::mouseClick(bar, Qt::LeftButton, {}, at);
        EXPECT_FALSE(bar->hint()->isVisible());
        EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
        const auto subs = frame.mdiClient()->subWindowList();
        ASSERT_EQ(subs.size(), 2);
        EXPECT_EQ(subs[0]->geometry().top(), subs[1]->geometry().top());
        EXPECT_NE(subs[0]->geometry().left(), subs[1]->geometry().left());

        // A key anywhere takes the hint away and gives the mouse back.
        QTest::mouseMove(bar, at + QPoint(1, 0));
        EXPECT_EQ(QWidget::mouseGrabber(), bar);
        QTest::keyClick(frame.mdiClient(), Qt::Key_A);
        EXPECT_FALSE(bar->hint()->isVisible());
        EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
        frame.FrameCommand(cmd::CloseAll);
    }
    FreeWorkingBlocks();
}

} // namespace
} // namespace velorin
