#pragma once
// The desk's pixels as a DIB, and the "SAVING" box shown while a chart
// image is written.

#include <QDialog>
#include <QImage>

#include "output/dib.h"

class QWidget;

namespace velorin {

// What `widget` shows, cut to its screen: read from the screen where the
// platform lets a program read it (anything lying on top is in the picture
// too), else the widget drawn into an image. Null when the widget is hidden
// or minimised, or nothing of it is on the screen. With `settle`, a menu
// that sent the command is given time to go first; without, the widget is
// repainted at once and read (a batch, where no menu is open).
QImage CaptureWindowImage(QWidget* widget, bool settle = true);
// The same as a 24-bit DIB with no colour table; false for no picture.
bool CaptureWindow(QWidget* widget, Dib& out, bool settle = true);

// A picture as a 24-bit DIB: blue, green, red per pixel, rows bottom-up.
Dib ImageToDib(const QImage& image);
// A 24-bit DIB back as a picture; null for any other depth or compression.
QImage DibToImage(const Dib& dib);

// The modeless "SAVING" box: "Saving Chart...", and a beep when it is
// clicked; nothing else.
class SavingBox final : public QDialog {
    Q_OBJECT
  public:
    explicit SavingBox(QWidget* owner);

  protected:
    void focusInEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
};

} // namespace velorin
