#include "output/qt/capture.h"

#include <QApplication>
#include <QEventLoop>
#include <QGuiApplication>
#include <QLabel>
#include <QPixmap>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>

#include "output/chart_image.h"

namespace velorin {

QImage CaptureWindowImage(QWidget* widget) {
    if (widget == nullptr || !widget->isVisible() || widget->window()->isMinimized()) return {};
    QScreen* screen = widget->screen();
    if (screen == nullptr) return {};
    const QRect screenArea = screen->geometry();
    const QPoint origin = widget->mapToGlobal(QPoint(0, 0)) - screenArea.topLeft();
    ScreenRect rect{origin.x(), origin.y(), origin.x() + widget->width(),
                    origin.y() + widget->height()};
    if (!CaptureRect(rect, screenArea.width(), screenArea.height())) return {};

    QImage image;
    const QString platform = QGuiApplication::platformName();
    if (platform != QLatin1String("offscreen") && platform != QLatin1String("minimal")) {
        // A menu that sent the command may still cover the desk: let it go
        // and the desk repaint what it uncovered before the pixels are read.
        QEventLoop settle;
        QTimer::singleShot(150, &settle, &QEventLoop::quit);
        settle.exec(QEventLoop::ExcludeUserInputEvents);
        image = screen->grabWindow(0, rect.left, rect.top, rect.Width(), rect.Height()).toImage();
    }
    if (image.isNull() || image.width() != rect.Width() || image.height() != rect.Height()) {
        const QRect own(rect.left - origin.x(), rect.top - origin.y(), rect.Width(), rect.Height());
        image = widget->grab(own).toImage();
    }
    return image;
}

bool CaptureWindow(QWidget* widget, Dib& out) {
    const QImage image = CaptureWindowImage(widget);
    if (image.isNull() || image.width() == 0 || image.height() == 0) return false;
    out = ImageToDib(image);
    return true;
}

Dib ImageToDib(const QImage& image) {
    const QImage rgb = image.convertToFormat(QImage::Format_RGB888);
    Dib dib;
    dib.width = rgb.width();
    dib.height = rgb.height();
    dib.bitCount = 24;
    const std::uint32_t rowBytes = DibRowBytes(dib.width, dib.bitCount);
    dib.bits.assign(static_cast<std::size_t>(rowBytes) * dib.height, 0);
    for (int y = 0; y < dib.height; ++y) {
        const uchar* in = rgb.constScanLine(y);
        std::uint8_t* row =
            dib.bits.data() + static_cast<std::size_t>(dib.height - 1 - y) * rowBytes;
        for (int x = 0; x < dib.width; ++x) {
            row[3 * x] = in[3 * x + 2];
            row[3 * x + 1] = in[3 * x + 1];
            row[3 * x + 2] = in[3 * x];
        }
    }
    return dib;
}

QImage DibToImage(const Dib& dib) {
    if (dib.headerSize != 40 || dib.bitCount != 24 || dib.compression != BI_RGB || dib.width <= 0 ||
        dib.height <= 0 || dib.bits.size() < DibImageSize(dib))
        return {};
    QImage image(dib.width, dib.height, QImage::Format_RGB888);
    const std::uint32_t rowBytes = DibRowBytes(dib.width, dib.bitCount);
    for (int y = 0; y < dib.height; ++y) {
        const std::uint8_t* row =
            dib.bits.data() + static_cast<std::size_t>(dib.height - 1 - y) * rowBytes;
        uchar* out = image.scanLine(y);
        for (int x = 0; x < dib.width; ++x) {
            out[3 * x] = row[3 * x + 2];
            out[3 * x + 1] = row[3 * x + 1];
            out[3 * x + 2] = row[3 * x];
        }
    }
    return image;
}

SavingBox::SavingBox(QWidget* owner) : QDialog(owner) {
    setObjectName(QStringLiteral("SAVING"));
    setModal(false);
    setWindowTitle(QStringLiteral("QDX-Velorin"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Saving Chart..."), this));
}

void SavingBox::focusInEvent(QFocusEvent* event) {
    QApplication::beep();
    QDialog::focusInEvent(event);
}

void SavingBox::mousePressEvent(QMouseEvent* event) {
    QApplication::beep();
    QDialog::mousePressEvent(event);
}

} // namespace velorin
