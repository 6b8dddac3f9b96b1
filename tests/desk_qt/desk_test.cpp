// The chart windows on the offscreen platform: commands reaching them, the
// mouse states of the crosshair, handles and tools, and their repaints.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QTest>
#include <QTimer>

#include <fstream>
#include <string>

#include "interaction/mouse_state.h"
#include "interaction/price_child.h"
#include "market_data/data_source.h"
#include "market_data/date.h"
#include "rendering/scale.h"
#include "resources/command_ids.h"
#include "shell/core/shell_state.h"
#include "shell/core/working_blocks.h"
#include "shell/qt/frame_window.h"
#include "tests/support/recording_seam.h"
#include "tests/support/temp_dir.h"

namespace velorin {
namespace {

class Desk : public ::testing::Test {
  protected:
    void SetUp() override {
        ResetProgramState();
        ResetChartMouseState();
        dateRules.todayDate = 50000;
        ASSERT_TRUE(AllocateWorkingBlocks());
        frame = new FrameWindow;
        frame->resize(1400, 1000);
        frame->show();
    }
    void TearDown() override {
        frame->FrameCommand(cmd::CloseAll);
        delete frame;
        FreeWorkingBlocks();
        ResetChartMouseState();
        EXPECT_EQ(blockAllocator.liveBlocks, 0);
    }

    // Opens a data file of `rows` rows (six columns, or date and close).
    void Open(int rows, bool sixColumns = true) {
        const std::string path = dir.PathOf(sixColumns ? "ACME.PRC" : "BOND.PRC");
        std::ofstream out(path, std::ios::binary);
        for (int r = 0; r < rows; ++r) {
            const double c = 100 + 10 * ((r * 7) % 13) / 13.0 + r * 0.1;
            out << 1 + (r / 28) % 12 << "/" << 1 + r % 28 << "/" << 1990 + r / 336 << "," << c;
            if (sixColumns) out << "," << c - 1 << "," << c + 2 << "," << c - 2 << "," << 1000 + r;
            out << "\r\n";
        }
        out.close();
        seam.QueueFile(path);
        frame->FrameCommand(cmd::Datafile);
        ASSERT_EQ(seam.MessageCount(), 0u) << seam.LastText();
    }

    QMdiSubWindow* Top() const { return frame->mdiClient()->activeSubWindow(); }
    PriceChild* TopChart() const { return qobject_cast<PriceChild*>(Top()->widget()); }
    int Windows() const { return static_cast<int>(frame->mdiClient()->subWindowList().size()); }

    // Shows the window's last paint now.
    static void Paint(PriceChild* w) {
        w->repaint();
        QApplication::processEvents();
    }

    test_support::RecordingSeam seam;
    FrameWindow* frame = nullptr;
    test_support::TempDir dir;
};

TEST_F(Desk, ButtonCommandsReachTheChartWindow) {
    Open(120);
    Chart* price = TopChart()->chart();
    frame->FrameCommand(cmd::ToggleGridButton);
    EXPECT_EQ(price->view->gridOn, 0);
    frame->FrameCommand(cmd::Rsi);
    frame->FrameCommand(cmd::DrawVertLineButton); // allowed on an RSI: the tool is armed
    EXPECT_EQ(chartMouse.verticalTool, 1);
    EXPECT_EQ(Top()->windowTitle(), QStringLiteral("Vertical Line: Select Point"));
}

TEST_F(Desk, HandleMenuThenCrosshairAlternate) {
    Open(120);
    PriceChild* w = TopChart();
    w->chart()->showCurveHandles = 1;
    w->Invalidate();
    Paint(w);
    const Region* handle = w->chart()->view->curveRegions[0];
    ASSERT_NE(handle, nullptr);
    const QPoint at((handle->box.left + handle->box.right) / 2,
                    (handle->box.top + handle->box.bottom) / 2);

    QStringList seen;
    auto closeMenu = [&seen] {
        if (QMenu* m = PriceChild::openMenu()) {
            for (QAction* a : m->actions())
                seen << a->text();
            m->close();
        }
    };
    QTimer::singleShot(0, closeMenu);
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

    QTimer::singleShot(0, closeMenu);
    QTest::mousePress(w, Qt::LeftButton, {}, at); // and the menu again
    EXPECT_FALSE(seen.isEmpty());
    QTest::mouseRelease(w, Qt::LeftButton, {}, at);
}

TEST_F(Desk, CrosshairEndsAtTheRightLimitAndTheReadoutShortOfIt) {
    Open(120);
    PriceChild* w = TopChart();
    Paint(w);
    const int right = w->width(), y = w->height() / 2;
    QTest::mousePress(w, Qt::LeftButton, {}, QPoint(ScaleWidth + 20, y));
    ASSERT_EQ(chartMouse.crosshairOn, 1);

    auto readoutInk = [w] {
        int lit = 0;
        const QImage& img = w->backing();
        for (int yy = 0; yy < 13; ++yy)
            for (int xx = 0; xx < 115; ++xx)
                lit += (img.pixel(xx, yy) & 0xffffff) != 0;
        return lit;
    };
    QTest::mouseMove(w, QPoint(right - 6, y));
    QApplication::processEvents();
    EXPECT_GT(readoutInk(), 0);
    QTest::mouseMove(w, QPoint(right - 5, y));
    QApplication::processEvents();
    EXPECT_EQ(chartMouse.crosshairOn, 1);
    EXPECT_EQ(readoutInk(), 0);
    QTest::mouseMove(w, QPoint(right - 3, y));
    EXPECT_EQ(chartMouse.crosshairOn, 1);
    QTest::mouseMove(w, QPoint(right - 2, y));
    EXPECT_EQ(chartMouse.crosshairOn, 0);
    QTest::mouseRelease(w, Qt::LeftButton, {}, QPoint(right - 2, y));
}

TEST_F(Desk, ArmedToolPromptsAndARightClickCancelsIt) {
    Open(120);
    PriceChild* w = TopChart();
    Paint(w);
    const QString caption = Top()->windowTitle();
    w->Command(cmd::DrawTrend);
    EXPECT_EQ(Top()->windowTitle(), QStringLiteral("Trend Line: Select First Point"));
    EXPECT_NE(w->cursor().shape(), Qt::ArrowCursor);
    const int y = w->height() / 2;
    QTest::mousePress(w, Qt::LeftButton, {}, QPoint(ScaleWidth + 40, y));
    EXPECT_EQ(Top()->windowTitle(), QStringLiteral("Trend Line: Select Second Point"));
    EXPECT_EQ(chartMouse.crosshairOn, 0);

    QStringList top;
    QTimer::singleShot(0, [&top] {
        if (QMenu* m = PriceChild::openMenu()) {
            for (QAction* a : m->actions())
                top << a->text();
            m->close();
        }
    });
    QTest::mousePress(w, Qt::RightButton, {}, QPoint(ScaleWidth + 80, y));
    EXPECT_EQ(top, (QStringList{QStringLiteral("Resolution"), QStringLiteral("Colour"),
                                QStringLiteral("Draw"), QStringLiteral("Price Scale ..."),
                                QStringLiteral("Data Source ...")}));
    EXPECT_EQ(Top()->windowTitle(), caption);
    EXPECT_EQ(chartMouse.trendTool, 0);
    EXPECT_EQ(chartMouse.toolArmed, 0);
    EXPECT_EQ(w->chart()->drawings->trendLines->inUse[0], 0);
}

TEST_F(Desk, AColourChangeRepaintsEveryChart) {
    Open(120);
    frame->FrameCommand(cmd::Rsi);
    PriceChild* rsi = TopChart();
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

TEST_F(Desk, AWindowUnderFiftyOnePixelsMinimisesItself) {
    Open(120);
    QMdiSubWindow* sub = Top();
    PriceChild* w = TopChart();
    sub->resize(400, sub->height() - w->height() + 50);
    ASSERT_EQ(w->height(), 50);
    Paint(w);
    QTRY_VERIFY_WITH_TIMEOUT(sub->isMinimized(), 2000);
}

} // namespace
} // namespace velorin

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
