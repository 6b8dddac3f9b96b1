#include "interaction/price_child.h"

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
#include "interaction/chart_command.h"
#include "interaction/chart_menu.h"
#include "interaction/drawing_tools.h"
#include "interaction/handle_menu.h"
#include "interaction/mouse_state.h"
#include "interaction/window_helpers.h"
#include "market_data/data_source.h"
#include "rendering/palette.h"
#include "rendering/qt/qt_draw_device.h"
#include "rendering/scale.h"
#include "rendering/style.h"

namespace velorin {

QMenu* PriceChild::openMenu_ = nullptr;

namespace {

// Every tool flag but the highlight region one.
bool AnyToolButRegion(const ChartMouseState& m) {
    return m.trendTool || m.channelTool || m.gannTool || m.verticalTool || m.horizontalTool ||
           m.endPointTool || m.moveTrendTool || m.moveChannelTool || m.moveVerticalTool ||
           m.moveHorizontalTool;
}

bool AnyTrackingTool(const ChartMouseState& m) {
    return m.trendTool || m.channelTool || m.gannTool || m.verticalTool || m.horizontalTool ||
           m.regionTool || m.moveTrendTool || m.moveChannelTool || m.moveVerticalTool ||
           m.moveHorizontalTool;
}

} // namespace

PriceChild::PriceChild(Chart* chart, QWidget* parent)
    : ChartWindow(chart, WindowClass::PriceChild, parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
}

PriceChild::~PriceChild() {
    if (chartMouse.crosshairOn) ResetChartMouseState();
    CloseChart(chart_);
}

void PriceChild::Invalidate() {
    dirty_ = true;
    update();
}

void PriceChild::Command(int commandId) {
    if (chart_) ChartCommand(*this, *chart_, commandId);
}

bool PriceChild::InPlot(int x, int y) const {
    return x >= ScaleWidth && x < width() - 2 && y >= BandHeight && y <= height() - BandHeight;
}

PaintResult PriceChild::Paint(DrawDevice& device, const PixelRect* clip) {
    PaintContext ctx(velorin::palette, drawingStyle, paintMemory_);
    ctx.readout = ReadoutOf(chartMouse);
    ctx.placed = PlacedObjectsOf(chartMouse);
    const PaintResult result =
        clip ? PaintPriceChartClipped(device, *chart_, width(), height(), *clip, ctx)
             : PaintPriceChart(device, *chart_, width(), height(), ctx);
    EndConvertedTools(chartMouse, result.converted);
    return result;
}

void PriceChild::RenderAll() {
    if (backing_.size() != size()) backing_ = QImage(size(), QImage::Format_RGB32);
    backing_.fill(Qt::black);
    {
        QtDrawDevice device(backing_);
        lastPaint_ = Paint(device, nullptr);
    }
    lastBarX_ = paintMemory_.lastBarX;
    dirty_ = false;
    readoutDirty_ = false;
    if (lastPaint_.outcome == PaintOutcome::Minimise) {
        QTimer::singleShot(0, this, &PriceChild::MinimiseTooSmall);
        return;
    }
    if (auto* sub = qobject_cast<QMdiSubWindow*>(parentWidget())) {
        const QString caption = QString::fromLocal8Bit(lastPaint_.caption);
        if (sub->windowTitle() != caption) sub->setWindowTitle(caption);
    }
}

void PriceChild::MinimiseTooSmall() {
    auto* sub = qobject_cast<QMdiSubWindow*>(parentWidget());
    if (!sub || sub->isMinimized()) return;
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        const QSize desk = screen->size();
        sub->setGeometry(0, 0, desk.width() / 4, desk.height() / 4);
    }
    sub->showMinimized();
}

void PriceChild::paintEvent(QPaintEvent* event) {
    if (!chart_) return;
    int readoutRow = -1;
    if (dirty_ || backing_.size() != size()) {
        RenderAll();
        readoutRow = lastPaint_.readoutRow;
    } else if (readoutDirty_) {
        // The readout alone: the paint runs whole, clipped to its rectangle.
        QtDrawDevice device(backing_);
        readoutRow = Paint(device, &ReadoutRect).readoutRow;
        readoutDirty_ = false;
    }
    // The Data Views of the source follow the date under the crosshair.
    if (readoutRow >= 0 && !ReadsPairRows(chart_->kindName))
        TheDesk().FollowCrosshair(chart_->sourceSlot, readoutRow + 1);
    QPainter painter(this);
    const QRect r = event->rect();
    painter.drawImage(r, backing_, r);
    painter.end();
    // Only the window in front keeps its image between paints, for the
    // crosshair; the others render anew when they are shown again, so a
    // desk of fifty windows holds one image instead of fifty.
    if (!IsFrontChild() && !chartMouse.crosshairOn) {
        backing_ = QImage();
        dirty_ = true;
    }
}

void PriceChild::Deactivated() {
    if (chartMouse.crosshairOn || backing_.isNull()) return;
    backing_ = QImage();
    dirty_ = true;
}

bool PriceChild::IsFrontChild() const {
    auto* sub = qobject_cast<QMdiSubWindow*>(parentWidget());
    if (!sub || !sub->mdiArea()) return true;
    return sub->mdiArea()->activeSubWindow() == sub;
}

void PriceChild::EnsureBacking() {
    if (dirty_ || backing_.size() != size()) RenderAll();
}

void PriceChild::StartCrosshair() {
    chartMouse.menuLatch = 0;
    chartMouse.crosshairOn = 1;
    chartMouse.toolStep = 0;
    setCursor(Qt::BlankCursor);
}

void PriceChild::EndCrosshair() {
    if (!chartMouse.crosshairOn || AnyTrackingTool(chartMouse)) return;
    chartMouse.crosshairOn = 0;
    chartMouse.toolStep = 0;
    unsetCursor();
    Invalidate();
}

void PriceChild::OpenHandleMenu(int x, int y) {
    EnsureBacking();
    const HandleHit hit = HitTestHandles(*chart_, x, y);
    if (hit.object == HitObject::None) {
        StartCrosshair();
        return;
    }
    const std::vector<MenuItem> items = HandleMenu(*chart_, hit, x, y, chartMouse);
    // Show the handle inverted while its menu is open.
    {
        QtDrawDevice device(backing_);
        auto invert = [&device](const Region* r) {
            if (r) device.InvertRegion(*r);
        };
        const DrawingSet* d = chart_->drawings;
        switch (hit.object) {
        case HitObject::Trend:
            invert(d->trendLines->regions[hit.index]);
            break;
        case HitObject::Channel:
            invert(d->channels->regions[hit.index]);
            invert(d->channels->secondRegions[hit.index]);
            break;
        case HitObject::Gann:
            invert(d->gannLines->regions[0][hit.index]);
            break;
        case HitObject::Vertical:
            invert(d->verticalLines->regions[hit.index]);
            break;
        case HitObject::Horizontal:
            invert(d->horizontalLines->regions[hit.index]);
            break;
        case HitObject::Curve:
            invert(chart_->view->curveRegions[hit.index]);
            break;
        case HitObject::None:
            break;
        }
    }
    repaint();
    chartMouse.menuLatch = 1;
    RunMenu(items, x, y);
    Invalidate();
}

void PriceChild::mousePressEvent(QMouseEvent* event) {
    if (!chart_) return;
    const QPoint p = event->position().toPoint();
    if (event->button() == Qt::RightButton) {
        OpenChartMenu(p.x(), p.y());
        return;
    }
    if (event->button() != Qt::LeftButton) return;
    chartMouse.mouseX = p.x();
    chartMouse.mouseY = p.y();
    if (!InPlot(p.x(), p.y())) return;
    if (!chartMouse.crosshairOn && !AnyToolButRegion(chartMouse)) {
        if (chartMouse.menuLatch == 0)
            OpenHandleMenu(p.x(), p.y());
        else
            StartCrosshair();
        return;
    }
    if (!chartMouse.crosshairOn) ToolClick(*this, *chart_, p.x(), p.y());
}

void PriceChild::RunMenu(const std::vector<MenuItem>& items, int x, int y) {
    QMenu menu(this);
    std::size_t at = 0;
    Chart* chart = chart_;
    AddMenuItems(&menu, items, at, [this, chart](int id) { ChartCommand(*this, *chart, id); });
    openMenu_ = &menu;
    menu.exec(mapToGlobal(QPoint(x, y)));
    openMenu_ = nullptr;
}

void PriceChild::OpenChartMenu(int x, int y) {
    // A right click first ends any crosshair or tool.
    if (chartMouse.crosshairOn) unsetCursor();
    CancelForChartMenu(*this, chartMouse);
    const DataSource* source = SourceAt(chart_->sourceSlot);
    const std::vector<MenuItem> items =
        ChartMenuItems(*chart_, source ? source->rowCount : chart_->rowCount);
    if (items.empty()) return;
    RunMenu(items, x, y);
}

void PriceChild::mouseMoveEvent(QMouseEvent* event) {
    if (!chart_) return;
    const QPoint p = event->position().toPoint();
    chartMouse.mouseX = p.x();
    chartMouse.mouseY = p.y();
    ToolMouseMove(*this, *chart_, p.x(), p.y());
    if (!chartMouse.crosshairOn) return;
    if (!InPlot(p.x(), p.y())) {
        chartMouse.crosshairOn = 0;
        chartMouse.toolStep = 0;
        unsetCursor();
        Invalidate();
        return;
    }
    EnsureBacking();
    const int oldX = chartMouse.hairX, oldY = chartMouse.hairY;
    const bool hadHairs = chartMouse.toolStep != 0;
    {
        QtDrawDevice device(backing_);
        MoveCrosshair(device, chartMouse, width(), height());
    }
    readoutDirty_ = true;
    // Only the changed pixel lines and the readout go to the screen.
    const int top = BandHeight, bottom = height() - BandHeight;
    QRegion changed(ReadoutRect.left, ReadoutRect.top, ReadoutRect.right - ReadoutRect.left,
                    ReadoutRect.bottom - ReadoutRect.top);
    changed += QRect(p.x() - 1, top, 2, bottom - top);
    changed += QRect(ScaleWidth, p.y() - 1, width() - ScaleWidth, 2);
    if (hadHairs) {
        changed += QRect(oldX - 1, top, 2, bottom - top);
        changed += QRect(ScaleWidth, oldY - 1, width() - ScaleWidth, 2);
    }
    update(changed);
}

void PriceChild::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) EndCrosshair();
}

void PriceChild::mouseDoubleClickEvent(QMouseEvent* event) {
    if (!chart_ || event->button() != Qt::LeftButton) return;
    chart_->showCurveHandles = chart_->showCurveHandles ? 0 : 1;
    Invalidate();
}

} // namespace velorin
