#include "views/qt/data_view_window.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <algorithm>

#include "chart_model/desk.h"
#include "interaction/window_helpers.h"
#include "market_data/data_source.h"
#include "rendering/palette.h"
#include "resources/command_ids.h"
#include "views/data_view.h"
#include "views/qt/views_desk.h"

namespace velorin {
namespace {

// Widths of the columns and of the row headings, in pixels.
constexpr int ColumnWidth = 75;
constexpr int RowHeadingWidth = 75;
// The corner above the row headings and the desk beyond the last cell.
const QColor TopLeftColour(0xc0, 0xc0, 0xc0);
const QColor VoidColour(0x80, 0x80, 0x80);
// The grid follows the crosshair at most once in this many milliseconds.
constexpr int FollowPauseMilliseconds = 40;
// Typing over a cell, F2 or a double click edits it; a click only selects.
constexpr QAbstractItemView::EditTriggers EditTriggers = QAbstractItemView::DoubleClicked |
                                                         QAbstractItemView::EditKeyPressed |
                                                         QAbstractItemView::AnyKeyPressed;

QColor PaletteQColor(int entry) {
    const Colour c = PaletteColour(entry);
    return QColor(RedOf(c), GreenOf(c), BlueOf(c));
}

// A table view that can hand an open cell edit over on demand.
class SheetTable final : public QTableView {
  public:
    using QTableView::QTableView;
    void CommitOpenEdit() {
        if (state() != EditingState) return;
        if (QWidget* editor = indexWidget(currentIndex())) {
            commitData(editor);
            closeEditor(editor, QAbstractItemDelegate::NoHint);
        }
    }
};

// Headings painted flat in the colours the model gives them.
class SheetHeader final : public QHeaderView {
  public:
    using QHeaderView::QHeaderView;

  protected:
    void paintSection(QPainter* p, const QRect& r, int section) const override {
        const auto role = [&](int r) { return model()->headerData(section, orientation(), r); };
        p->fillRect(r, role(Qt::BackgroundRole).value<QColor>());
        p->setPen(Qt::black);
        p->drawLine(r.bottomLeft(), r.bottomRight());
        p->drawLine(r.topRight(), r.bottomRight());
        p->setPen(role(Qt::ForegroundRole).value<QColor>());
        p->drawText(r.adjusted(4, 0, -4, 0), int(defaultAlignment()),
                    role(Qt::DisplayRole).toString());
    }
};

// A cell being typed into has the sheet's colours.
class SheetDelegate final : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override {
        QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
        QPalette p = editor->palette();
        p.setColor(QPalette::Base, index.data(Qt::BackgroundRole).value<QColor>());
        p.setColor(QPalette::Text, index.data(Qt::ForegroundRole).value<QColor>());
        editor->setPalette(p);
        return editor;
    }
};

} // namespace

int SheetModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() || !sheet_ ? 0 : sheet_->rows;
}

int SheetModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() || !sheet_ ? 0 : sheet_->columns;
}

QVariant SheetModel::data(const QModelIndex& index, int role) const {
    if (!sheet_ || !index.isValid() || index.row() >= sheet_->rows ||
        index.column() >= sheet_->columns)
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole: {
        char text[CellTextSize];
        const int n = FormatCell(sheet_->cell[index.column()][index.row()], index.column(), text,
                                 sizeof text);
        return QString::fromLatin1(text, n);
    }
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    case Qt::BackgroundRole:
        return colours_[0];
    case Qt::ForegroundRole:
        return colours_[1];
    default:
        return {};
    }
}

QVariant SheetModel::headerData(int section, Qt::Orientation orientation, int role) const {
    const int heading = orientation == Qt::Horizontal ? 2 : 4;
    if (role == Qt::BackgroundRole) return colours_[heading];
    if (role == Qt::ForegroundRole) return colours_[heading + 1];
    if (role != Qt::DisplayRole || !sheet_)
        return QAbstractTableModel::headerData(section, orientation, role);
    if (orientation == Qt::Horizontal) return QString(QChar(static_cast<char16_t>(u'A' + section)));
    if (section < 0 || section >= sheet_->rows) return {};
    return QString::fromLocal8Bit(sheet_->label[section]);
}

Qt::ItemFlags SheetModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags f = QAbstractTableModel::flags(index);
    if (sheet_ && sheet_->editable) f |= Qt::ItemIsEditable;
    return f;
}

bool SheetModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!sheet_ || !sheet_->editable || role != Qt::EditRole || !index.isValid()) return false;
    // A refused value leaves the cell with its text.
    double number = 0.0;
    if (!AcceptCellText(value.toString().toLatin1().constData(), &number)) return false;
    sheet_->cell[index.column()][index.row()] = number;
    sheet_->changed = 1;
    emit dataChanged(index, index);
    return true;
}

void SheetModel::Reset(const std::function<void()>& change) {
    beginResetModel();
    change();
    endResetModel();
}

void SheetModel::DeleteRows(int first, int last) {
    if (!sheet_) return;
    first = std::max(first, 0);
    last = std::min(last, sheet_->rows - 1);
    if (first > last) return;
    beginRemoveRows({}, first, last);
    DeleteSheetRows(*sheet_, first, last);
    endRemoveRows();
}

void SheetModel::SetColours(const QColor (&colours)[6]) {
    std::copy(colours, colours + 6, colours_);
    if (sheet_ && sheet_->rows > 0)
        emit dataChanged(index(0, 0), index(sheet_->rows - 1, sheet_->columns - 1));
    if (sheet_) {
        emit headerDataChanged(Qt::Horizontal, 0, sheet_->columns - 1);
        if (sheet_->rows > 0) emit headerDataChanged(Qt::Vertical, 0, sheet_->rows - 1);
    }
}

DataViewWindow::DataViewWindow(Chart* chart, QWidget* parent)
    : ChildView(chart, WindowClass::DataView, parent) {
    DataSheet* sheet = chart ? SheetOf(*chart) : nullptr;
    table_ = new SheetTable(this);
    model_ = new SheetModel(sheet, this);
    table_->setHorizontalHeader(new SheetHeader(Qt::Horizontal, table_));
    table_->setVerticalHeader(new SheetHeader(Qt::Vertical, table_));
    table_->setItemDelegate(new SheetDelegate(table_));
    table_->setModel(model_);
    // One line per cell, no elision: each scroll of a following grid
    // repaints it, so the cells are laid out as cheaply as they come.
    table_->setWordWrap(false);
    table_->setTextElideMode(Qt::ElideNone);
    table_->horizontalHeader()->setDefaultSectionSize(ColumnWidth);
    table_->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    table_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table_->verticalHeader()->setMinimumSectionSize(1);
    table_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
    table_->verticalHeader()->setMinimumWidth(RowHeadingWidth);
    table_->verticalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    table_->setEditTriggers(sheet && sheet->editable ? EditTriggers
                                                     : QAbstractItemView::NoEditTriggers);
    if (sheet) table_->setColumnHidden(SheetVolumeColumn, sheet->volumeHidden != 0);
    // A right press anywhere in the grid opens its menu.
    for (QWidget* w :
         {static_cast<QWidget*>(table_), static_cast<QWidget*>(table_->horizontalHeader()),
          static_cast<QWidget*>(table_->verticalHeader())}) {
        w->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(w, &QWidget::customContextMenuRequested, this,
                [this, w](const QPoint& at) { OpenMenu(w, at); });
    }
    table_->viewport()->setContextMenuPolicy(Qt::NoContextMenu);
    ApplyColours();
    table_->setGeometry(1, 1, std::max(0, width() - 2), std::max(0, height() - 2));
    followPause_.setSingleShot(true);
    followPause_.setInterval(FollowPauseMilliseconds);
    connect(&followPause_, &QTimer::timeout, this, &DataViewWindow::ApplyFollow);
}

DataViewWindow::~DataViewWindow() {
    // The grid goes first: the record and its sheet go with the close.
    model_->Detach();
    delete table_;
    table_ = nullptr;
    CloseChart(chart_);
}

void DataViewWindow::resizeEvent(QResizeEvent*) {
    if (table_) table_->setGeometry(1, 1, std::max(0, width() - 2), std::max(0, height() - 2));
}

void DataViewWindow::Invalidate() {
    table_->viewport()->update();
}

void DataViewWindow::CommitOpenEdit() {
    static_cast<SheetTable*>(table_)->CommitOpenEdit();
}

void DataViewWindow::OpenMenu(QWidget* from, const QPoint& at) {
    if (!chart_) return;
    CommitOpenEdit();
    const DataSource* source = SourceAt(chart_->sourceSlot);
    const std::vector<MenuItem> items = DataViewMenu(source && source->tick != 0);
    QMenu menu(this);
    std::size_t next = 0;
    AddMenuItems(&menu, items, next, [this](int id) { Command(id); });
    const QPoint global =
        from == table_ ? table_->viewport()->mapToGlobal(at) : from->mapToGlobal(at);
    menu.exec(global);
}

void DataViewWindow::Command(int commandId) {
    if (!chart_) return;
    CommitOpenEdit();
    switch (commandId) {
    case cmd::SheetUpdate:
        // The recomputation of the source's charts refreshes this grid too.
        UpdateSourceFromSheet(*chart_);
        break;
    case cmd::SheetReset:
        ShowCaption();
        Reload([this] { ReloadSheet(*chart_); });
        break;
    case cmd::SheetDelete:
        DeleteSelectedRows();
        break;
    case cmd::SheetPalette:
        ApplyColours();
        Invalidate();
        break;
    default:
        // The colours: chosen or not, every grid takes the palette again.
        if (ChooseSheetColour(commandId)) RepaletteDataViews(this);
        break;
    }
}

void DataViewWindow::ShowCaption() {
    if (auto* sub = qobject_cast<QMdiSubWindow*>(parentWidget()))
        sub->setWindowTitle(QString::fromLocal8Bit(chart_->windowCaption));
}

void DataViewWindow::Refresh() {
    const DataSheet* sheet = SheetOf(*chart_);
    if (sheet && !sheet->changed)
        Reload([this] { RefreshSheet(*chart_); });
    else
        Invalidate();
}

void DataViewWindow::Reload(const std::function<void()>& change) {
    // The current cell and the scroll position stay where the rows allow.
    const QModelIndex current = table_->currentIndex();
    const int scroll = table_->verticalScrollBar()->value();
    model_->Reset(change);
    if (const DataSheet* sheet = SheetOf(*chart_)) {
        table_->setColumnHidden(SheetVolumeColumn, sheet->volumeHidden != 0);
        table_->setEditTriggers(sheet->editable ? EditTriggers : QAbstractItemView::NoEditTriggers);
    }
    if (current.isValid() && current.row() < model_->rowCount())
        table_->selectionModel()->setCurrentIndex(model_->index(current.row(), current.column()),
                                                  QItemSelectionModel::ClearAndSelect);
    table_->verticalScrollBar()->setValue(scroll);
}

void DataViewWindow::DeleteSelectedRows() {
    const DataSheet* sheet = SheetOf(*chart_);
    if (!sheet || !sheet->editable) return;
    // The rows from the first to the last selected; without a selection
    // the row of the current cell.
    int first = -1, last = -1;
    for (const QItemSelectionRange& range : table_->selectionModel()->selection()) {
        first = first < 0 ? range.top() : std::min(first, range.top());
        last = std::max(last, range.bottom());
    }
    if (first < 0) first = last = table_->currentIndex().row();
    if (first < 0) return;
    model_->DeleteRows(first, last);
}

void DataViewWindow::FollowCrosshair(int row) {
    if (row < 1 || row > model_->rowCount()) return;
    // The grid takes the first row of a move at once and then at most one
    // row per pause, the latest: the crosshair never waits for the grid's
    // repaints, and a slow crosshair still moves it a row at a time.
    followRow_ = row;
    if (followPause_.isActive()) return;
    ApplyFollow();
}

void DataViewWindow::ApplyFollow() {
    // A crosshair still on the row it last brought scrolls nothing more.
    const int row = followRow_;
    followRow_ = 0;
    if (row < 1 || row > model_->rowCount() || row == followedRow_) return;
    followedRow_ = row;
    followPause_.start();
    const int cursor = table_->currentIndex().row() + 1;
    switch (CrosshairFollowStep(cursor, row)) {
    case FollowStep::None:
        break;
    case FollowStep::LineUp:
        table_->verticalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepSub);
        break;
    case FollowStep::LineDown:
        table_->verticalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        break;
    case FollowStep::MoveCursor:
        table_->setCurrentIndex(model_->index(row - 1, 0));
        break;
    }
}

void DataViewWindow::ApplyColours() {
    QColor colours[6];
    for (int i = 0; i < 6; ++i)
        colours[i] = PaletteQColor(PaletteViewFirst + i);
    model_->SetColours(colours);
    // Beyond the last cell, and the corner above the row headings.
    QPalette p = table_->palette();
    p.setColor(QPalette::Base, VoidColour);
    p.setColor(QPalette::Button, TopLeftColour);
    table_->setPalette(p);
}

} // namespace velorin
