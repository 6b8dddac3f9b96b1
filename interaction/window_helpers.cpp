#include "interaction/window_helpers.h"

#include <QMdiSubWindow>
#include <QMenu>
#include <QPainter>
#include <QPixmap>

#include "rendering/price_paint.h"

namespace velorin {

const QCursor& RingCursor() {
    static const QCursor ring = [] {
        QPixmap pixmap(32, 32);
        pixmap.fill(Qt::transparent);
        QPainter p(&pixmap);
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(QPen(Qt::black, 4));
        p.drawEllipse(QPointF(15.5, 15.5), 8, 8);
        p.setPen(QPen(Qt::white, 2));
        p.drawEllipse(QPointF(15.5, 15.5), 8, 8);
        return QCursor(pixmap, 15, 15);
    }();
    return ring;
}

WindowId ChartWindow::Id() const {
    return reinterpret_cast<WindowId>(parentWidget() ? parentWidget() : this);
}

std::string ChartWindow::Caption() const {
    const QWidget* top = qobject_cast<QMdiSubWindow*>(parentWidget());
    return (top ? top : this)->windowTitle().toLocal8Bit().toStdString();
}

void ChartWindow::SetCaption(const std::string& caption) {
    QWidget* top = qobject_cast<QMdiSubWindow*>(parentWidget());
    const QString text = QString::fromLocal8Bit(caption.c_str());
    if ((top ? top : this)->windowTitle() != text) (top ? top : this)->setWindowTitle(text);
}

void ChartWindow::Capture(bool on) {
    if (on)
        grabMouse();
    else if (QWidget::mouseGrabber() == this)
        releaseMouse();
}

void ChartWindow::SetRingCursor() {
    savedCursor_ = cursor();
    setCursor(RingCursor());
}

void ChartWindow::RestoreCursor() {
    setCursor(savedCursor_);
}

void ChartWindow::InvalidateReadout() {
    readoutDirty_ = true;
    update(ReadoutRect.left, ReadoutRect.top, ReadoutRect.right - ReadoutRect.left,
           ReadoutRect.bottom - ReadoutRect.top);
}

void AddMenuItems(QMenu* menu, const std::vector<MenuItem>& items, std::size_t& at,
                  const std::function<void(int)>& run) {
    while (at < items.size()) {
        const MenuItem& item = items[at++];
        if (item.endSubmenu) return;
        if (item.submenu) {
            AddMenuItems(menu->addMenu(QString::fromLatin1(item.text)), items, at, run);
            continue;
        }
        if (!item.text) {
            menu->addSeparator();
            continue;
        }
        QAction* a = menu->addAction(QString::fromLatin1(item.text));
        if (item.checked) {
            a->setCheckable(true);
            a->setChecked(true);
        }
        a->setEnabled(!item.disabled);
        const int id = item.id;
        QObject::connect(a, &QAction::triggered, menu, [run, id] { run(id); });
    }
}

} // namespace velorin
