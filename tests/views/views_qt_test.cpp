// The Data View and Levels View windows in the frame on the offscreen
// platform: opened from a chart's menu, typed into, updated, following the
// crosshair, taking the palette, and a Levels View closing with its chart.
#include <gtest/gtest.h>

#include <QApplication>
#include <QScrollBar>
#include <QTableWidget>
#include <QThread>

#include "rendering/palette.h"
#include "tests/shell_qt/frame_fixture.h"
#include "views/qt/data_view_window.h"
#include "views/qt/levels_view_window.h"
#include "views/qt/views_desk.h"

namespace velorin {
namespace {

using ViewWindows = test_support::QtFrameTest;

TEST_F(ViewWindows, TheGridEditsDeletesAndUpdatesTheSourceFollowsAndTakesColours) {
    Open(60);
    Top()->Command(cmd::DataView);
    DataViewWindow* view = Top<DataViewWindow>();
    ASSERT_NE(view, nullptr) << seam.LastText();
    SheetModel& m = *view->model();
    EXPECT_EQ(m.columnCount(), 5);
    EXPECT_FALSE(view->table()->isColumnHidden(SheetVolumeColumn));
    EXPECT_EQ(m.headerData(4, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("E"));
    EXPECT_EQ(m.headerData(2, Qt::Vertical, Qt::DisplayRole).toString(),
              QStringLiteral("1/3/1990"));
    const QModelIndex close5 = m.index(5, 0);
    EXPECT_FALSE(m.setData(close5, QStringLiteral("0"), Qt::EditRole));
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

TEST_F(ViewWindows, ALevelsViewFollowsItsChartAndClosesWithIt) {
    Open(300);
    frame->FrameCommand(cmd::Fibonacci);
    QMdiSubWindow* chart = TopWindow();
    Top()->Command(cmd::LevelsView);
    LevelsViewWindow* view = Top<LevelsViewWindow>();
    ASSERT_NE(view, nullptr) << seam.LastText();
    QMdiSubWindow* own = TopWindow();
    EXPECT_TRUE(own->windowTitle().startsWith(QStringLiteral("Levels ACME")));
    EXPECT_EQ(view->table()->rowCount(), 12);
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
