#pragma once
// The windows of the charts made from two sources: what both have (a
// backing image painted through the drawing device, the window port, the
// popup menus from item lists) and the Correlation window, a scatter with
// a crosshair of its own that follows the mouse while the button is held.

#include <QCursor>
#include <QImage>
#include <functional>
#include <vector>

#include "interaction/handle_menu.h"
#include "interaction/window_helpers.h"
#include "rendering/paint_context.h"
#include "rendering/scatter_paint.h"

class QMenu;

namespace velorin {

class TwoSeriesChild : public ChartWindow {
    Q_OBJECT
  public:
    TwoSeriesChild(Chart* chart, WindowClass windowClass, QWidget* parent);
    ~TwoSeriesChild() override;

    void Invalidate() override;
    void Deactivated() override;

    int LastBarX() const override { return paintMemory_.lastBarX; }

    // The menu open now, if any (tests close it).
    static QMenu* openMenu() { return openMenu_; }

  protected:
    // The full paint into `device`; returns false when the window is too
    // low to paint and is to minimise itself.
    virtual bool PaintAll(DrawDevice& device) = 0;
    // The readout alone, onto the image of the last full paint.
    virtual void PaintReadout(DrawDevice& device) { (void)device; }

    void paintEvent(QPaintEvent* event) override;
    // The image of the last paint, rendered now if it was let go.
    void EnsureBacking();
    // Shows a popup of `items` at (x, y) and sends the chosen id to `run`.
    void RunMenu(const std::vector<MenuItem>& items, int x, int y,
                 const std::function<void(int)>& run);
    // The right-click menu of the chart's kind.
    void RunChartMenu(int x, int y, const std::function<void(int)>& run);

    PaintMemory paintMemory_;

  private:
    void RenderAll();
    void MinimiseTooSmall();
    bool IsFrontChild() const;

    static QMenu* openMenu_;
};

class CorrChild : public TwoSeriesChild {
    Q_OBJECT
  public:
    explicit CorrChild(Chart* chart, QWidget* parent = nullptr);

    void Command(int commandId) override;
    const ScatterLayout& lastLayout() const { return lastLayout_; }

  protected:
    bool PaintAll(DrawDevice& device) override;
    void PaintReadout(DrawDevice& device) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    void EndCrosshair();

    ScatterLayout lastLayout_;
    // One crosshair for the whole class: it holds the mouse.
};

} // namespace velorin
