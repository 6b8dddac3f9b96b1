#pragma once
// The Data View's window: the sheet of its chart record as a table model
// in a table view that fills the window. Editing, scrolling and painting
// are the table view's; what a typed value must be, "Update", "Reset",
// "Delete" and the colours come from views/data_view.h.

#include <QAbstractTableModel>
#include <QColor>
#include <QTableView>
#include <QTimer>

#include <functional>

#include "interaction/child_view.h"
#include "views/data_sheet.h"

namespace velorin {

// The rows of a sheet: headings "A" to "E" and the date texts, cells in
// their column's format, a typed value kept only when the edit rule takes it.
class SheetModel final : public QAbstractTableModel {
    Q_OBJECT
  public:
    SheetModel(DataSheet* sheet, QObject* parent) : QAbstractTableModel(parent), sheet_(sheet) {}
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    // `change` alters the sheet's rows; the views start over.
    void Reset(const std::function<void()>& change);
    // Rows `first` to `last` leave the sheet.
    void DeleteRows(int first, int last);
    // The six colours of the grid, from the palette: background and
    // foreground of the cells, the column headings and the row headings.
    void SetColours(const QColor (&colours)[6]);
    void Detach() { sheet_ = nullptr; }

  private:
    DataSheet* sheet_;
    QColor colours_[6];
};

class DataViewWindow final : public ChildView {
    Q_OBJECT
  public:
    explicit DataViewWindow(Chart* chart, QWidget* parent = nullptr);
    ~DataViewWindow() override;

    // Repaints the grid as it stands.
    void Invalidate() override;
    // The grid's commands: Update, Reset, Delete, the colours and 30110.
    void Command(int commandId) override;
    // The source's rows changed: a grid with nothing pending takes them.
    void Refresh();
    // The crosshair of a chart on the source is on `row` (1-based); rows
    // coming faster than the grid repaints are merged, the latest kept.
    void FollowCrosshair(int row);

    QTableView* table() const { return table_; }
    SheetModel* model() const { return model_; }

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void OpenMenu(QWidget* from, const QPoint& at);
    // Ends a cell edit still open, handing its text to the model.
    void CommitOpenEdit();
    void Reload(const std::function<void()>& change);
    void ShowCaption();
    void DeleteSelectedRows();
    void ApplyColours();
    // One step of following the crosshair to followRow_ (0: none waiting).
    void ApplyFollow();

    QTableView* table_;
    SheetModel* model_;
    int followRow_ = 0;   // waiting for the pause to end
    int followedRow_ = 0; // the row last followed
    QTimer followPause_;
};

} // namespace velorin
