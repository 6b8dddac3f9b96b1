#pragma once
// Every child window of the desk holds one chart record; the rest of the
// program finds the record from the window this way, whatever the class.

#include <QWidget>

#include "chart_model/chart.h"

namespace velorin {

class ChildView : public QWidget {
    Q_OBJECT
  public:
    ChildView(Chart* chart, WindowClass windowClass, QWidget* parent = nullptr)
        : QWidget(parent), chart_(chart), windowClass_(windowClass) {}
    Chart* chart() const { return chart_; }
    WindowClass windowClass() const { return windowClass_; }
    // Repaint everything, erasing first.
    virtual void Invalidate() { update(); }
    // The window is no longer the one in front.
    virtual void Deactivated() {}
    // A chart command sent to this window (menus, the frame, the button bar).
    virtual void Command(int commandId) { (void)commandId; }

  protected:
    Chart* chart_;

  private:
    WindowClass windowClass_;
};

} // namespace velorin
