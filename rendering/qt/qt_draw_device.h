#pragma once
// The drawing device of the desktop program: a QPainter on the window's
// backing image. Inversion flips the colour bits of the image in place,
// so doing it twice gives back the image as it was.

#include <QColor>
#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QPen>

#include "rendering/draw_device.h"

namespace velorin {

QColor ToQColor(Colour colour);

class QtDrawDevice final : public DrawDevice {
  public:
    // Paints on `image`, which must be Format_RGB32 or
    // Format_ARGB32_Premultiplied and outlive the device.
    explicit QtDrawDevice(QImage& image);
    ~QtDrawDevice() override;
    QtDrawDevice(const QtDrawDevice&) = delete;
    QtDrawDevice& operator=(const QtDrawDevice&) = delete;

    QPainter& Painter() { return painter_; }

    void SetPen(const Pen& pen) override;
    void SetBrush(const Brush& brush) override;
    void SetFont(const Font& font) override;
    void SetTextColours(Colour text, Colour background) override;
    void SetTextAlign(int align) override { align_ = align; }

    void MoveTo(int x, int y) override;
    void LineTo(int x, int y) override;
    void Rectangle(int left, int top, int right, int bottom) override;
    void FillRect(int left, int top, int right, int bottom, const Brush& brush) override;
    void Text(int x, int y, std::string_view text) override;
    void FillRegion(const Region& region, const Brush& brush) override;
    void InvertRegion(const Region& region) override;
    void InvertRect(int left, int top, int right, int bottom) override;
    void SetClipRect(const PixelRect* rect) override;

  private:
    // Axis-aligned solid shapes are written straight into the image; the
    // rest goes through the painter. Both write at once, so order holds.
    bool fast_ = false;
    uchar* bits_ = nullptr;
    qsizetype stride_ = 0;
    void FillSpan(int left, int top, int right, int bottom, Colour colour);

    void ApplyPen();
    void ApplyBrush(const Brush& brush);
    QBrush ToQBrush(const Brush& brush) const;

    QImage& image_;
    QPainter painter_;
    Pen pen_;
    bool penApplied_ = false;
    Brush brush_;
    bool brushApplied_ = false;
    Brush painterBrush_;
    const QFontMetrics* metrics_ = nullptr;
    std::string fontFace_;
    int fontHeight_ = 0; // cell height in pixels
    int fontWeight_ = 400;
    bool fontApplied_ = false;
    Colour textColour_ = 0xFFFFFF;
    Colour textBackground_ = 0;
    int align_ = AlignLeftTop;
    int curX_ = 0, curY_ = 0;
    bool clipped_ = false;
    PixelRect clip_{};
};

} // namespace velorin
