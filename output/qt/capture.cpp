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

#include <cstring>

#include "output/chart_image.h"

namespace velorin {

QImage CaptureWindowImage(QWidget* widget, bool settle) {
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
        if (settle) {
            // A menu that sent the command may still cover the desk: let it
            // go and the desk repaint what it uncovered before the pixels
            // are read.
            QEventLoop wait;
            QTimer::singleShot(150, &wait, &QEventLoop::quit);
            wait.exec(QEventLoop::ExcludeUserInputEvents);
        } else {
            // Painted and sent to the screen now, over whatever a box that
            // has just gone left behind.
            widget->repaint();
        }
        image = screen->grabWindow(0, rect.left, rect.top, rect.Width(), rect.Height()).toImage();
    }
    if (image.isNull() || image.width() != rect.Width() || image.height() != rect.Height()) {
        const QRect own(rect.left - origin.x(), rect.top - origin.y(), rect.Width(), rect.Height());
        image = widget->grab(own).toImage();
    }
    return image;
}

bool CaptureWindow(QWidget* widget, Dib& out, bool settle) {
    const QImage image = CaptureWindowImage(widget, settle);
    if (image.isNull() || image.width() == 0 || image.height() == 0) return false;
    out = ImageToDib(image);
    return true;
}

// A 24-bit DIB row holds blue, green, red: the byte order of
// Format_BGR888, so each row is copied whole, bottom row first.
Dib ImageToDib(const QImage& image) {
    const QImage bgr = image.convertToFormat(QImage::Format_BGR888);
    Dib dib;
    dib.width = bgr.width();
    dib.height = bgr.height();
    dib.bitCount = 24;
    const std::size_t pixels = static_cast<std::size_t>(dib.width) * 3;
    const std::size_t padding = DibRowBytes(dib.width, dib.bitCount) - pixels;
    dib.bits.reserve((pixels + padding) * dib.height);
    for (int y = dib.height - 1; y >= 0; --y) {
        const uchar* row = bgr.constScanLine(y);
        dib.bits.insert(dib.bits.end(), row, row + pixels);
        dib.bits.insert(dib.bits.end(), padding, 0);
    }
    return dib;
}

QImage DibToImage(const Dib& dib) {
    if (dib.headerSize != 40 || dib.bitCount != 24 || dib.compression != BI_RGB || dib.width <= 0 ||
        dib.height <= 0 || dib.bits.size() < DibImageSize(dib))
        return {};
    QImage image(dib.width, dib.height, QImage::Format_BGR888);
    const std::uint32_t rowBytes = DibRowBytes(dib.width, dib.bitCount);
    for (int y = 0; y < dib.height; ++y)
        std::memcpy(image.scanLine(y),
                    dib.bits.data() + static_cast<std::size_t>(dib.height - 1 - y) * rowBytes,
                    static_cast<std::size_t>(dib.width) * 3);
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
