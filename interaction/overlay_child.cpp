#include "interaction/overlay_child.h"

#include <QMouseEvent>

#include "rendering/palette.h"
#include "rendering/qt/qt_draw_device.h"
#include "rendering/style.h"

namespace velorin {

OverlayChild::OverlayChild(Chart* chart, QWidget* parent)
    : TwoSeriesChild(chart, WindowClass::OverlayChild, parent) {}

void OverlayChild::Command(int commandId) {
    if (chart_) OverlayCommand(*this, *chart_, twoSeriesMouse.highlight, commandId);
}

bool OverlayChild::PaintAll(DrawDevice& device) {
    PaintContext ctx(velorin::palette, drawingStyle, paintMemory_);
    lastPaint_ =
        PaintOverlayChart(device, *chart_, width(), height(), ctx, twoSeriesMouse.highlight.index,
                          twoSeriesMouse.highlight.convert);
    if (lastPaint_.outcome == PaintOutcome::Minimise) return false;
    SetCaption(lastPaint_.caption);
    return true;
}

void OverlayChild::mousePressEvent(QMouseEvent* event) {
    if (!chart_) return;
    const QPoint p = event->position().toPoint();
    if (event->button() == Qt::RightButton) {
        // A right click ends a region under construction.
        if (twoSeriesMouse.highlight.armed) {
            RestoreCursor();
            Capture(false);
        }
        twoSeriesMouse.highlight.armed = twoSeriesMouse.highlight.drawing = 0;
        RunChartMenu(p.x(), p.y(), [this](int id) { Command(id); });
        return;
    }
    if (event->button() != Qt::LeftButton) return;
    EnsureBacking();
    const OverlayClickResult click =
        OverlayLeftClick(*this, *chart_, twoSeriesMouse.highlight, p.x(), p.y());
    if (click.menu.empty()) return;
    if (click.inverted) {
        // Shown inverted while its menu is open.
        QtDrawDevice device(backing_);
        device.InvertRegion(*click.inverted);
    }
    repaint();
    RunMenu(click.menu, p.x(), p.y(), [this](int id) { Command(id); });
    Invalidate();
}

void OverlayChild::mouseDoubleClickEvent(QMouseEvent* event) {
    if (!chart_ || event->button() != Qt::LeftButton) return;
    chart_->showCurveHandles = chart_->showCurveHandles ? 0 : 1;
    Invalidate();
}

} // namespace velorin
