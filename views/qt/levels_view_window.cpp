#include "views/qt/levels_view_window.h"

#include <QHeaderView>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTableWidget>
#include <QTimer>

#include <algorithm>

#include "chart_model/desk.h"
#include "rendering/palette.h"
#include "views/levels_view.h"

namespace velorin {
namespace {

constexpr int ColumnWidth = 80; // at the least

QColor PaletteQColor(int entry) {
    const Colour c = PaletteColour(entry);
    return QColor(RedOf(c), GreenOf(c), BlueOf(c));
}

} // namespace

LevelsViewWindow::LevelsViewWindow(Chart* chart, QWidget* parent)
    : ChildView(chart, WindowClass::ResView, parent) {
    table_ = new QTableWidget(LevelsRowCount, 2, this);
    table_->horizontalHeader()->hide();
    table_->verticalHeader()->hide();
    table_->horizontalHeader()->setMinimumSectionSize(ColumnWidth);
    table_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table_->verticalHeader()->setMinimumSectionSize(1);
    table_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setStyleSheet(QStringLiteral("QTableWidget { background-color: #808080; }"));
    for (int r = 0; r < LevelsRowCount; ++r)
        for (int c = 0; c < 2; ++c) {
            auto* item = new QTableWidgetItem;
            // Labels in the heading colours, values in the sheet's.
            item->setBackground(PaletteQColor(PaletteViewFirst + (c == 0 ? 4 : 0)));
            item->setForeground(PaletteQColor(PaletteViewFirst + (c == 0 ? 5 : 1)));
            item->setTextAlignment(c == 0 ? Qt::AlignLeft | Qt::AlignVCenter
                                          : Qt::AlignRight | Qt::AlignVCenter);
            table_->setItem(r, c, item);
        }
    if (chart)
        if (const Chart* fibonacci = TheDesk().ChartOf(chart->levelsViewWindow)) Fill(*fibonacci);
}

LevelsViewWindow::~LevelsViewWindow() {
    delete table_;
    CloseChart(chart_);
}

void LevelsViewWindow::resizeEvent(QResizeEvent*) {
    table_->setGeometry(1, 1, std::max(0, width() - 2), std::max(0, height() - 2));
}

void LevelsViewWindow::showEvent(QShowEvent*) {
    // A Levels View does not outlive its chart: when the chart's window is
    // destroyed this one is closed after it, as a posted close.
    auto* own = qobject_cast<QMdiSubWindow*>(parentWidget());
    if (watching_ || !chart_ || !own) return;
    // Wide enough for the labels and values in the font in use.
    table_->resizeColumnsToContents();
    const int needed =
        table_->columnWidth(0) + table_->columnWidth(1) + 2 * table_->frameWidth() + 2;
    if (width() < needed) own->resize(own->width() + needed - width(), own->height());
    QMdiArea* desk = own->mdiArea();
    if (!desk) return;
    for (QMdiSubWindow* sub : desk->subWindowList())
        if (reinterpret_cast<WindowId>(sub) == chart_->levelsViewWindow) {
            connect(sub, &QObject::destroyed, own,
                    [own] { QTimer::singleShot(0, own, &QWidget::close); });
            watching_ = true;
        }
}

void LevelsViewWindow::UpdateLevels() {
    const Chart* fibonacci = chart_ ? LevelsViewChart(*chart_) : nullptr;
    if (!fibonacci) return;
    if (auto* sub = qobject_cast<QMdiSubWindow*>(parentWidget()))
        sub->setWindowTitle(QString::fromLocal8Bit(fibonacci->windowCaption));
    Fill(*fibonacci);
    repaint();
}

void LevelsViewWindow::Fill(const Chart& fibonacci) {
    LevelsRow rows[LevelsRowCount];
    LevelsRows(fibonacci, rows);
    for (int r = 0; r < LevelsRowCount; ++r) {
        table_->item(r, 0)->setText(QString::fromLatin1(rows[r].label));
        table_->item(r, 1)->setText(QString::fromLatin1(rows[r].text));
    }
}

} // namespace velorin
