#pragma once
// Before writing code here, read DEVELOPERS.md at the repository root: team rules.
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

  protected:
    Chart* chart_;

  private:
    WindowClass windowClass_;
};

// What a closing chart window asks of the desk.
struct DeskHooks {
    void (*menuStateChanged)() = nullptr;
};
extern DeskHooks deskHooks;

// Chart commands and the chart context menu; installed by the drawing
// tools and chart commands.
struct ChartCommandHooks {
    void (*run)(QWidget* window, Chart* chart, int commandId) = nullptr;
    void (*contextMenu)(QWidget* window, Chart* chart, int x, int y) = nullptr;
    void (*toolClick)(QWidget* window, Chart* chart, int x, int y) = nullptr;
};
extern ChartCommandHooks chartCommandHooks;

// The close of a chart window: drawn objects and record released, the
// source given back, the count lowered; the last one resets the slots.
void CloseChartRecord(Chart* chart);

} // namespace velorin
