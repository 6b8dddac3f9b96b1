// The Qt frame and its chart windows on the offscreen platform: the menus it
// builds, the windows it makes and lays out, commands reaching them, the
// mouse states of the crosshair, handles and tools, and their repaints.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QTimer>

#include "rendering/scale.h"
#include "shell/qt/dialogs.h"
#include "tests/shell_qt/frame_fixture.h"

namespace velorin {
namespace {

class Frame : public test_support::QtFrameTest {
  protected:
    QStringList MenuTexts(QMenu* menu) {
        QStringList texts;
        for (QAction* a : menu->actions())
            texts << (a->isSeparator() ? QStringLiteral("-") : a->text());
        return texts;
    }
    // The texts of the next chart menu to open, which is closed at once.
    static void TakeNextMenu(QStringList& texts) {
        QTimer::singleShot(0, [&texts] {
            if (QMenu* m = PriceChild::openMenu()) {
                for (QAction* a : m->actions())
                    texts << a->text();
                m->close();
            }
        });
    }
    // Shows the window's last paint now.
    static void Paint(PriceChild* w) {
        w->repaint();
        QApplication::processEvents();
    }
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
    Open(40);
    EXPECT_TRUE(frame->action(cmd::Correlation)->isEnabled());
    frame->FrameCommand(cmd::CloseAll);
    EXPECT_FALSE(frame->action(cmd::Correlation)->isEnabled());
}

TEST_F(Frame, FindActiveChildPrefersAMinimisedWindowJustBelow) {
    Open(30, "A.PRC");
    Open(30, "B.PRC");
    const auto subs = frame->mdiClient()->subWindowList(QMdiArea::CreationOrder);
    frame->mdiClient()->setActiveSubWindow(subs[1]);
    EXPECT_EQ(frame->FindActiveChild(), subs[1]);
    subs[0]->showMinimized();
    frame->mdiClient()->setActiveSubWindow(subs[1]);
    EXPECT_EQ(frame->FindActiveChild(), subs[0]);
}

TEST_F(Frame, CascadeTileAndArrangeLeaveEveryChartReadable) {
    for (const char* name : {"A.PRC", "B.PRC", "C.PRC"})
        Open(30, name);
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

TEST_F(Frame, HandleMenuThenCrosshairAlternate) {
    Open(120);
    PriceChild* w = Top();
    w->chart()->showCurveHandles = 1;
    w->Invalidate();
    Paint(w);
    const Region* handle = w->chart()->view->curveRegions[0];
    ASSERT_NE(handle, nullptr);
    const QPoint at((handle->box.left + handle->box.right) / 2,
                    (handle->box.top + handle->box.bottom) / 2);
    QStringList seen;
    TakeNextMenu(seen);
    QTest::mousePress(w, Qt::LeftButton, {}, at);
    EXPECT_EQ(seen.value(0), QStringLiteral("Data View ..."));
    EXPECT_EQ(chartMouse.menuLatch, 1);
    EXPECT_EQ(chartMouse.crosshairOn, 0);
    QTest::mouseRelease(w, Qt::LeftButton, {}, at);
    seen.clear();
    QTest::mousePress(w, Qt::LeftButton, {}, at); // same handle: a crosshair now
    EXPECT_TRUE(seen.isEmpty());
    EXPECT_EQ(chartMouse.crosshairOn, 1);
    QTest::mouseRelease(w, Qt::LeftButton, {}, at);
    EXPECT_EQ(chartMouse.crosshairOn, 0);
    TakeNextMenu(seen);
    QTest::mousePress(w, Qt::LeftButton, {}, at); // and the menu again
    EXPECT_FALSE(seen.isEmpty());
    QTest::mouseRelease(w, Qt::LeftButton, {}, at);
}

TEST_F(Frame, CrosshairEndsAtTheRightLimitAndTheReadoutShortOfIt) {
    Open(120);
    PriceChild* w = Top();
    Paint(w);
    const int right = w->width(), y = w->height() / 2;
    QTest::mousePress(w, Qt::LeftButton, {}, QPoint(ScaleWidth + 20, y));
    ASSERT_EQ(chartMouse.crosshairOn, 1);
    auto readoutInk = [w] {
        int lit = 0;
        for (int yy = 0; yy < 13; ++yy)
            for (int xx = 0; xx < 115; ++xx)
                lit += (w->backing().pixel(xx, yy) & 0xffffff) != 0;
        return lit;
    };
    for (const int x : {right - 6, right - 5}) {
        QTest::mouseMove(w, QPoint(x, y));
        QApplication::processEvents();
        EXPECT_EQ(readoutInk() > 0, x == right - 6) << x;
    }
    QTest::mouseMove(w, QPoint(right - 3, y));
    EXPECT_EQ(chartMouse.crosshairOn, 1);
    QTest::mouseMove(w, QPoint(right - 2, y));
    EXPECT_EQ(chartMouse.crosshairOn, 0);
    QTest::mouseRelease(w, Qt::LeftButton, {}, QPoint(right - 2, y));
}

TEST_F(Frame, ButtonsReachTheChartAnArmedToolPromptsAndARightClickCancelsIt) {
    Open(120);
    PriceChild* w = Top();
    Paint(w);
    const QString caption = TopWindow()->windowTitle();
    frame->FrameCommand(cmd::ToggleGridButton); // the buttons reach the chart in front
    EXPECT_EQ(w->chart()->view->gridOn, 0);
    frame->FrameCommand(cmd::DrawTrendButton);
    EXPECT_EQ(TopWindow()->windowTitle(), QStringLiteral("Trend Line: Select First Point"));
    EXPECT_NE(w->cursor().shape(), Qt::ArrowCursor);
    const int y = w->height() / 2;
    QTest::mousePress(w, Qt::LeftButton, {}, QPoint(ScaleWidth + 40, y));
    EXPECT_EQ(TopWindow()->windowTitle(), QStringLiteral("Trend Line: Select Second Point"));
    EXPECT_EQ(chartMouse.crosshairOn, 0);
    QStringList top;
    TakeNextMenu(top);
    QTest::mousePress(w, Qt::RightButton, {}, QPoint(ScaleWidth + 80, y));
    EXPECT_EQ(top.value(0) + top.value(4), QStringLiteral("ResolutionData Source ..."));
    EXPECT_EQ(TopWindow()->windowTitle(), caption);
    EXPECT_EQ(chartMouse.trendTool, 0);
    EXPECT_EQ(chartMouse.toolArmed, 0);
    EXPECT_EQ(w->chart()->drawings->trendLines->inUse[0], 0);
}

TEST_F(Frame, AColourChangeRepaintsEveryChart) {
    Open(120);
    frame->FrameCommand(cmd::Rsi);
    PriceChild* rsi = Top();
    Paint(rsi);
    PriceChild* price =
        qobject_cast<PriceChild*>(frame->mdiClient()->subWindowList().first()->widget());
    frame->mdiClient()->setActiveSubWindow(frame->mdiClient()->subWindowList().first());
    Paint(price);
    seam.QueueColour(0xff0000);
    price->Command(cmd::GridColour);
    ASSERT_EQ(seam.colourRequests.size(), 1u);
    auto hasRed = [](const QImage& img) {
        for (int y = 0; y < img.height(); y += 2)
            for (int x = 0; x < img.width(); x += 2)
                if ((img.pixel(x, y) & 0xffffff) == 0xff0000) return true;
        return false;
    };
    Paint(price);
    EXPECT_TRUE(hasRed(price->backing()));
    frame->mdiClient()->setActiveSubWindow(frame->mdiClient()->subWindowList().last());
    Paint(rsi);
    EXPECT_TRUE(hasRed(rsi->backing()));
}

TEST_F(Frame, AWindowUnderFiftyOnePixelsMinimisesItself) {
    Open(120);
    QMdiSubWindow* sub = TopWindow();
    PriceChild* w = Top();
    sub->resize(400, sub->height() - w->height() + 50);
    ASSERT_EQ(w->height(), 50);
    Paint(w);
    QTRY_VERIFY_WITH_TIMEOUT(sub->isMinimized(), 2000);
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
