// The button bar of the Qt frame on the offscreen platform: it stands above
// the desk, its gated buttons follow the open charts, a click sends the
// button's command and a key takes the hint away.
#include <gtest/gtest.h>

#include <QFontMetrics>
#include <QLabel>
#include <QTest>

#include "shell/qt/button_bar_widget.h"
#include "tests/shell_qt/frame_fixture.h"

namespace velorin {
namespace {

constexpr int ZoomIn = 15, TileVertically = 28;

using ButtonBarQt = test_support::QtFrameTest;

TEST_F(ButtonBarQt, AboveTheDeskFollowingTheChartsAndSendingItsCommand) {
    ButtonBarWidget* bar = frame->buttonBar();
    // As tall as the text and 12 more, and the desk right under it.
    EXPECT_EQ(bar->height(), QFontMetrics(frame->font()).height() + 12);
    EXPECT_EQ(frame->mdiClient()->mapTo(frame, QPoint(0, 0)),
              bar->mapTo(frame, QPoint(0, bar->height())));
    EXPECT_FALSE(bar->button(ZoomIn)->isEnabled());
    Open(28, "A.PRC");
    Open(28, "B.PRC");
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
    const auto subs = frame->mdiClient()->subWindowList();
    ASSERT_EQ(subs.size(), 2);
    EXPECT_EQ(subs[0]->geometry().top(), subs[1]->geometry().top());
    EXPECT_NE(subs[0]->geometry().left(), subs[1]->geometry().left());
    // A key anywhere takes the hint away and gives the mouse back.
    QTest::mouseMove(bar, at + QPoint(1, 0));
    EXPECT_EQ(QWidget::mouseGrabber(), bar);
    QTest::keyClick(frame->mdiClient(), Qt::Key_A);
    EXPECT_FALSE(bar->hint()->isVisible());
    EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
}

} // namespace
} // namespace velorin
