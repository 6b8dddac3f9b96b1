#pragma once
// The window of price and analysis charts: paints through the drawing
// device into a backing image, keeps the crosshair by inversion, and opens
// the handle menus.

#include <QCursor>
#include <QImage>

#include "interaction/handle_menu.h"
#include "interaction/window_helpers.h"
#include "rendering/price_paint.h"

class QMenu;

namespace velorin {

class PriceChild : public ChartWindow {
    Q_OBJECT
  public:
    explicit PriceChild(Chart* chart, QWidget* parent = nullptr);
    ~PriceChild() override;

    // Repaints everything at the next paint.
    void Invalidate() override;
    void Command(int commandId) override;
    void Deactivated() override;

    int LastBarX() const override { return lastBarX_; }
    const PaintResult& lastPaint() const { return lastPaint_; }
    // The menu opened by the last handle click or right click (tests close it).
    static QMenu* openMenu() { return openMenu_; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

  private:
    bool InPlot(int x, int y) const;
    void RenderAll();
    void StartCrosshair();
    void EndCrosshair();
    void OpenHandleMenu(int x, int y);
    void OpenChartMenu(int x, int y);
    // Shows a popup menu at (x, y); its commands go to ChartCommand.
    void RunMenu(const std::vector<MenuItem>& items, int x, int y);
    void MinimiseTooSmall();
    bool IsFrontChild() const;
    // The image of the last paint, rendered now if it was let go.
    void EnsureBacking();
    // The paint of the window's chart from the program's colours, line
    // style and tool state, whole or clipped; the tools whose objects it
    // converted are ended.
    PaintResult Paint(DrawDevice& device, const PixelRect* clip);

    PaintResult lastPaint_;
    PaintMemory paintMemory_; // what the last paint left for the next one
    int lastBarX_ = 0;        // of the last full paint: the mouse code reads it
    static QMenu* openMenu_;
};

} // namespace velorin
