// The Data View and Levels View windows in the frame on the offscreen
// platform: opened from a chart's menu, typed into, updated, following the
// crosshair, taking the palette, and a Levels View closing with its chart.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollBar>
#include <QTableWidget>
#include <QThread>

#include <sstream>

#include "interaction/price_child.h"
#include "market_data/data_source.h"
#include "market_data/date.h"
#include "rendering/palette.h"
#include "resources/command_ids.h"
#include "shell/core/working_blocks.h"
#include "shell/qt/frame_window.h"
#include "tests/support/recording_seam.h"
#include "tests/support/temp_dir.h"
#include "views/qt/data_view_window.h"
#include "views/qt/levels_view_window.h"
#include "views/qt/views_desk.h"

namespace velorin {
namespace {

class ViewWindows : public ::testing::Test {
  protected:
    void SetUp() override {
        ResetProgramState();
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
        EXPECT_EQ(blockAllocator.liveBlocks, 0);
    }
    void Open(int rows) {
        std::ostringstream out;
        for (int r = 0; r < rows; ++r)
            out << "1/" << r % 28 + 1 << "/" << 1990 + r / 28 << "," << 100 + r % 7 << ",99,108,"
                << 97 << "," << 1000 + r << "\r\n";
        seam.QueueFile(dir.Write("ACME.PRC", out.str()));
        frame->FrameCommand(cmd::Datafile);
        ASSERT_EQ(seam.MessageCount(), 0u) << seam.LastText();
    }
    template <typename T> T* Top() {
        return qobject_cast<T*>(frame->mdiClient()->activeSubWindow()->widget());
    }
    test_support::RecordingSeam seam;
    test_support::TempDir dir;
    FrameWindow* frame = nullptr;
};

TEST_F(ViewWindows, TheGridRefusesBadCellsAndUpdateReachesThePriceChart) {
    Open(60);
    Top<PriceChild>()->Command(cmd::DataView);
    DataViewWindow* view = Top<DataViewWindow>();
    ASSERT_NE(view, nullptr) << seam.LastText();
    SheetModel& m = *view->model();
    EXPECT_EQ(m.columnCount(), 5);
    EXPECT_FALSE(view->table()->isColumnHidden(SheetVolumeColumn));
    EXPECT_EQ(m.headerData(4, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("E"));
    EXPECT_EQ(m.headerData(2, Qt::Vertical, Qt::DisplayRole).toString(),
              QStringLiteral("1/3/1990"));
    const QModelIndex close5 = m.index(5, 0);
    for (const char* bad : {"0", "abc"})
        EXPECT_FALSE(m.setData(close5, QString::fromLatin1(bad), Qt::EditRole)) << bad;
    EXPECT_EQ(m.data(close5, Qt::DisplayRole).toString(), QStringLiteral("105.0000"));
    EXPECT_TRUE(m.setData(close5, QStringLiteral("101.25"), Qt::EditRole));
    EXPECT_EQ(m.data(close5, Qt::DisplayRole).toString(), QStringLiteral("101.2500"));

    // Three rows selected and deleted, then Update: the source follows.
    view->table()->selectionModel()->select(QItemSelection(m.index(10, 0), m.index(12, 2)),
                                            QItemSelectionModel::Select);
    view->Command(cmd::SheetDelete);
    EXPECT_EQ(m.rowCount(), 57);
    view->Command(cmd::SheetUpdate);
    const DataSource& source = *SourceAt(0);
    EXPECT_EQ(source.rowCount, 57);
    EXPECT_EQ(source.columns->close[5], 101.25);
    for (QMdiSubWindow* sub : frame->mdiClient()->subWindowList())
        EXPECT_EQ(qobject_cast<ChildView*>(sub->widget())->chart()->rowCount, 57);

    // The crosshair: a jump moves the current cell, the next row scrolls.
    FollowCrosshairOnDesk(frame->mdiClient(), 0, 30);
    EXPECT_EQ(view->table()->currentIndex().row(), 29);
    const int scroll = view->table()->verticalScrollBar()->value();
    FollowCrosshairOnDesk(frame->mdiClient(), 0, 31); // merged into the pause
    FollowCrosshairOnDesk(frame->mdiClient(), 0, 31);
    EXPECT_EQ(view->table()->verticalScrollBar()->value(), scroll);
    QThread::msleep(60);
    QApplication::processEvents();
    EXPECT_EQ(view->table()->currentIndex().row(), 29);
    EXPECT_EQ(view->table()->verticalScrollBar()->value(), scroll + 1);

    // A colour chosen in the grid, then the default colours, reach it
    // through the palette command.
    seam.QueueColour(0x00010203);
    view->Command(cmd::SheetBackground);
    EXPECT_EQ(m.data(close5, Qt::BackgroundRole).value<QColor>(), QColor(1, 2, 3));
    frame->FrameCommand(cmd::DefaultColours);
    const Colour d = palette.defaults[PaletteViewFirst];
    EXPECT_EQ(m.data(close5, Qt::BackgroundRole).value<QColor>(),
              QColor(RedOf(d), GreenOf(d), BlueOf(d)));
}

TEST_F(ViewWindows, ALevelsViewIsSortedFollowsItsChartAndClosesWithIt) {
    Open(300);
    frame->FrameCommand(cmd::Fibonacci);
    QMdiSubWindow* chart = frame->mdiClient()->activeSubWindow();
    Top<PriceChild>()->Command(cmd::LevelsView);
    LevelsViewWindow* view = Top<LevelsViewWindow>();
    ASSERT_NE(view, nullptr) << seam.LastText();
    QMdiSubWindow* own = frame->mdiClient()->activeSubWindow();
    EXPECT_TRUE(own->windowTitle().startsWith(QStringLiteral("Levels ACME")));
    for (int r = 1; r < 12; ++r)
        EXPECT_GE(view->table()->item(r - 1, 1)->text().toDouble(),
                  view->table()->item(r, 1)->text().toDouble());

    UpdateLevelsViewsOnDesk(frame->mdiClient());
    EXPECT_EQ(own->windowTitle(), chart->windowTitle());
    EXPECT_EQ(deskRegistry.chartCount, 3);
    chart->close(); // the view's close is posted after the chart's window goes
    for (int i = 0; i < 3; ++i) {
        QApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    EXPECT_EQ(frame->mdiClient()->subWindowList().size(), 1);
    EXPECT_EQ(deskRegistry.chartCount, 1);
}

} // namespace
} // namespace velorin
