#include "interaction/corr_child.h"

#include <QGuiApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>
#include <QTimer>

#include "chart_model/desk.h"
#include "interaction/chart_menu.h"
#include "interaction/two_series_command.h"
#include "interaction/window_helpers.h"
#include "market_data/data_source.h"
#include "rendering/palette.h"
#include "rendering/qt/qt_draw_device.h"
#include "rendering/style.h"

namespace velorin {

QMenu* TwoSeriesChild::openMenu_ = nullptr;

TwoSeriesChild::TwoSeriesChild(Chart* chart, WindowClass windowClass, QWidget* parent)
    : ChartWindow(chart, windowClass, parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
}

TwoSeriesChild::~TwoSeriesChild() {
    if (QWidget::mouseGrabber() == this) releaseMouse();
    CloseChart(chart_);
}

void TwoSeriesChild::Invalidate() {
    dirty_ = true;
    update();
}

void TwoSeriesChild::Deactivated() {
    if (QWidget::mouseGrabber() == this || backing_.isNull()) return;
    backing_ = QImage();
    dirty_ = true;
}

void TwoSeriesChild::RenderAll() {
    if (backing_.size() != size()) backing_ = QImage(size(), QImage::Format_RGB32);
    backing_.fill(Qt::black);
    bool painted = true;
    {
        QtDrawDevice device(backing_);
        painted = PaintAll(device);
    }
    dirty_ = false;
    readoutDirty_ = false;
    if (!painted) QTimer::singleShot(0, this, &TwoSeriesChild::MinimiseTooSmall);
}

void TwoSeriesChild::MinimiseTooSmall() {
    auto* sub = qobject_cast<QMdiSubWindow*>(parentWidget());
    if (!sub || sub->isMinimized()) return;
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        const QSize desk = screen->size();
        sub->setGeometry(0, 0, desk.width() / 4, desk.height() / 4);
    }
    sub->showMinimized();
}

bool TwoSeriesChild::IsFrontChild() const {
    auto* sub = qobject_cast<QMdiSubWindow*>(parentWidget());
    if (!sub || !sub->mdiArea()) return true;
    return sub->mdiArea()->activeSubWindow() == sub;
}

void TwoSeriesChild::EnsureBacking() {
    if (dirty_ || backing_.size() != size()) RenderAll();
}

void TwoSeriesChild::paintEvent(QPaintEvent* event) {
    if (!chart_) return;
    if (dirty_ || backing_.size() != size()) {
        RenderAll();
    } else if (readoutDirty_) {
        QtDrawDevice device(backing_);
        PaintReadout(device);
        readoutDirty_ = false;
    }
    QPainter painter(this);
    const QRect r = event->rect();
    painter.drawImage(r, backing_, r);
    painter.end();
    // Only the window in front, or the one holding the mouse, keeps its image.
    if (!IsFrontChild() && QWidget::mouseGrabber() != this) {
        backing_ = QImage();
        dirty_ = true;
    }
}

void TwoSeriesChild::RunMenu(const std::vector<MenuItem>& items, int x, int y,
                             const std::function<void(int)>& run) {
    if (items.empty()) return;
    QMenu menu(this);
    std::size_t at = 0;
    AddMenuItems(&menu, items, at, run);
    openMenu_ = &menu;
    menu.exec(mapToGlobal(QPoint(x, y)));
    openMenu_ = nullptr;
}

void TwoSeriesChild::RunChartMenu(int x, int y, const std::function<void(int)>& run) {
    const DataSource* source = SourceAt(chart_->sourceSlot);
    RunMenu(ChartMenuItems(*chart_, source ? source->rowCount : chart_->rowCount), x, y, run);
}

CorrChild::CorrChild(Chart* chart, QWidget* parent)
    : TwoSeriesChild(chart, WindowClass::CorrChild, parent) {}

void CorrChild::Command(int commandId) {
    if (chart_) TwoSeriesCommand(*this, *chart_, commandId);
}

bool CorrChild::PaintAll(DrawDevice& device) {
    PaintContext ctx(velorin::palette, drawingStyle, paintMemory_);
    const ScatterPaintResult result =
        PaintScatterChart(device, *chart_, width(), height(), ctx, twoSeriesMouse.crossActive,
                          twoSeriesMouse.crossX, twoSeriesMouse.crossY);
    lastLayout_ = result.layout;
    // A full paint leaves no hairs on the image.
    twoSeriesMouse.crossDrawn = 0;
    return result.outcome != PaintOutcome::Minimise;
}

void CorrChild::PaintReadout(DrawDevice& device) {
    if (twoSeriesMouse.crossActive)
        DrawScatterReadout(device, lastLayout_, twoSeriesMouse.crossX, twoSeriesMouse.crossY,
                           PaletteColour(PaletteText));
}

void CorrChild::mousePressEvent(QMouseEvent* event) {
    if (!chart_) return;
    const QPoint p = event->position().toPoint();
    if (event->button() == Qt::RightButton) {
        EndCrosshair();
        RunChartMenu(p.x(), p.y(), [this](int id) { Command(id); });
        return;
    }
    if (event->button() != Qt::LeftButton || twoSeriesMouse.crossActive) return;
    if (!InTwoSeriesPlot(p.x(), p.y(), width(), height())) return;
    EnsureBacking();
    Capture(true);
    setCursor(Qt::BlankCursor);
    twoSeriesMouse.crossActive = 1;
    twoSeriesMouse.crossDrawn = 0;
}

void CorrChild::mouseMoveEvent(QMouseEvent* event) {
    if (!chart_ || !twoSeriesMouse.crossActive) return;
    const QPoint p = event->position().toPoint();
    if (!InTwoSeriesPlot(p.x(), p.y(), width(), height())) {
        EndCrosshair();
        return;
    }
    EnsureBacking();
    const bool hadHairs = twoSeriesMouse.crossDrawn != 0;
    const int oldX = twoSeriesMouse.crossX, oldY = twoSeriesMouse.crossY;
    {
        QtDrawDevice device(backing_);
        MoveHairs(device, hadHairs, oldX, oldY, p.x(), p.y(), width(), height());
    }
    twoSeriesMouse.crossX = p.x();
    twoSeriesMouse.crossY = p.y();
    twoSeriesMouse.crossDrawn = 99;
    InvalidateReadout();
    const int top = BandHeight, bottom = height() - BandHeight;
    QRegion changed(QRect(p.x() - 1, top, 2, bottom - top));
    changed += QRect(ScaleWidth, p.y() - 1, width() - ScaleWidth, 2);
    if (hadHairs) {
        changed += QRect(oldX - 1, top, 2, bottom - top);
        changed += QRect(ScaleWidth, oldY - 1, width() - ScaleWidth, 2);
    }
    update(changed);
}

void CorrChild::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) EndCrosshair();
}

void CorrChild::EndCrosshair() {
    if (!twoSeriesMouse.crossActive) return;
    twoSeriesMouse.crossActive = 0;
    twoSeriesMouse.crossDrawn = 0;
    unsetCursor();
    Capture(false);
    Invalidate();
}

} // namespace velorin
