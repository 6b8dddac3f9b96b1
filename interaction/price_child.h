#pragma once
// Before writing code here, read DEVELOPERS.md at the repository root: team rules.
// The window of price and analysis charts: paints through the drawing
// device into a backing image, keeps the crosshair by inversion, and opens
// the handle menus.

#include <QImage>

#include "interaction/child_view.h"
#include "rendering/price_paint.h"

class QMenu;

namespace velorin {

class PriceChild : public ChildView {
    Q_OBJECT
  public:
    explicit PriceChild(Chart* chart, QWidget* parent = nullptr);
    ~PriceChild() override;

    // Repaints everything at the next paint.
    void Invalidate();
    const QImage& backing() const { return backing_; }
    const PaintResult& lastPaint() const { return lastPaint_; }
    // The menu opened by the last handle click (tests close it).
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
    void MinimiseTooSmall();

    QImage backing_;
    bool dirty_ = true;
    bool readoutDirty_ = false;
    PaintResult lastPaint_;
    static QMenu* openMenu_;
};

} // namespace velorin
