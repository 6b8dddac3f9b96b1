#pragma once
// The Levels View's window: the twelve levels of its "Fibonacci" chart,
// label and value, sorted by value. It closes when its chart's window goes.

#include <QPointer>

#include "interaction/child_view.h"

class QMdiSubWindow;
class QTableWidget;

namespace velorin {

class LevelsViewWindow final : public ChildView {
    Q_OBJECT
  public:
    explicit LevelsViewWindow(Chart* chart, QWidget* parent = nullptr);
    ~LevelsViewWindow() override;

    // A palette change leaves the list as it was made.
    void Invalidate() override {}
    // The levels of the chart now, and the chart's caption as this window's.
    void UpdateLevels();

    QTableWidget* table() const { return table_; }

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void Fill(const Chart& fibonacci);

    QTableWidget* table_;
    bool watching_ = false;
};

} // namespace velorin
