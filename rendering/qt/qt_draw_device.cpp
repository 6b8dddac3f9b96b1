#include "rendering/qt/qt_draw_device.h"

#include <QPolygon>
#include <QString>
#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <utility>

namespace velorin {

namespace {

Qt::PenStyle ToQtPenStyle(PenStyle style) {
    switch (style) {
    case PenStyle::Dash:
        return Qt::DashLine;
    case PenStyle::Dot:
        return Qt::DotLine;
    case PenStyle::Null:
        return Qt::NoPen;
    case PenStyle::Solid:
        break;
    }
    return Qt::SolidLine;
}

Qt::BrushStyle ToQtHatch(HatchStyle hatch) {
    switch (hatch) {
    case HatchStyle::Horizontal:
        return Qt::HorPattern;
    case HatchStyle::Vertical:
        return Qt::VerPattern;
    case HatchStyle::ForwardDiagonal:
        return Qt::FDiagPattern;
    case HatchStyle::BackwardDiagonal:
        return Qt::BDiagPattern;
    case HatchStyle::Cross:
        return Qt::CrossPattern;
    case HatchStyle::DiagonalCross:
        return Qt::DiagCrossPattern;
    }
    return Qt::SolidPattern;
}

// Rectangles come as corners, right and bottom excluded, possibly swapped.
QRect Normalised(int left, int top, int right, int bottom) {
    if (left > right) std::swap(left, right);
    if (top > bottom) std::swap(top, bottom);
    return QRect(QPoint(left, top), QPoint(right - 1, bottom - 1));
}

// A face the system lacks is mapped the way a font mapper would: the
// Times-like faces to a serif of the same metrics (Liberation Serif, which
// fonts-liberation2 installs), then to any Times-metric serif.
QFont FontOfFace(const std::string& face) {
    const QString family = QString::fromLatin1(face.data(), static_cast<qsizetype>(face.size()));
    QFont font(family);
    if (family.contains(QLatin1String("Times"), Qt::CaseInsensitive)) {
        font.setFamilies({family, QStringLiteral("Liberation Serif"),
                          QStringLiteral("Times New Roman"), QStringLiteral("Nimbus Roman"),
                          QStringLiteral("DejaVu Serif")});
        font.setStyleHint(QFont::Serif);
    }
    return font;
}

int CellHeight(QFont font, int pixelSize) {
    font.setPixelSize(pixelSize);
    const QFontMetrics metrics(font);
    return metrics.ascent() + metrics.descent();
}

// A font's height is its whole character cell, ascent plus descent, not
// its em size: the largest pixel size whose cell does not pass `cell`
// (hinting moves the cell in steps, so it may fall short by a pixel).
int PixelSizeForCell(const QFont& font, int cell) {
    int size = cell; // the cell is at least the em size for ordinary faces
    while (size > 1 && CellHeight(font, size) > cell)
        --size;
    while (size < 2 * cell && CellHeight(font, size + 1) <= cell)
        ++size;
    return size;
}

// Fonts and their metrics are looked up once per face, height and weight for
// the whole run: the font mapper is slow, and a crosshair move makes a device
// for every mouse message.
struct CachedFont {
    QFont font;
    std::unique_ptr<QFontMetrics> metrics;
};

const CachedFont& FontFor(const std::string& face, int height, int weight) {
    static std::map<std::tuple<std::string, int, int>, CachedFont> cache;
    auto key = std::make_tuple(face, height, weight);
    auto it = cache.find(key);
    if (it == cache.end()) {
        CachedFont entry;
        entry.font = FontOfFace(face);
        entry.font.setWeight(weight >= 700 ? QFont::Bold : QFont::Normal);
        entry.font.setPixelSize(PixelSizeForCell(entry.font, height > 0 ? height : 12));
        entry.metrics = std::make_unique<QFontMetrics>(entry.font);
        it = cache.emplace(std::move(key), std::move(entry)).first;
    }
    return it->second;
}

inline quint32 ToPixel(Colour c) {
    return 0xFF000000u | (static_cast<quint32>(RedOf(c)) << 16) |
           (static_cast<quint32>(GreenOf(c)) << 8) | static_cast<quint32>(BlueOf(c));
}

} // namespace

QColor ToQColor(Colour c) {
    return QColor(RedOf(c), GreenOf(c), BlueOf(c));
}

QtDrawDevice::QtDrawDevice(QImage& image) : image_(image), painter_(&image) {
    painter_.setRenderHint(QPainter::Antialiasing, false);
    painter_.setRenderHint(QPainter::TextAntialiasing, true);
    const QImage::Format format = image.format();
    fast_ = painter_.isActive() &&
            (format == QImage::Format_RGB32 || format == QImage::Format_ARGB32_Premultiplied ||
             format == QImage::Format_ARGB32);
    if (fast_) {
        bits_ = image_.bits();
        stride_ = image_.bytesPerLine();
    }
}

void QtDrawDevice::FillSpan(int left, int top, int right, int bottom, Colour colour) {
    left = std::max(left, 0);
    top = std::max(top, 0);
    right = std::min(right, image_.width());
    bottom = std::min(bottom, image_.height());
    if (clipped_) {
        left = std::max(left, clip_.left);
        top = std::max(top, clip_.top);
        right = std::min(right, clip_.right);
        bottom = std::min(bottom, clip_.bottom);
    }
    if (left >= right || top >= bottom) return;
    if (static_cast<long>(right - left) * (bottom - top) >= 4096) {
        // Large areas: the painter's own fill is vectorised.
        painter_.fillRect(QRect(left, top, right - left, bottom - top), ToQColor(colour));
        return;
    }
    const quint32 pixel = ToPixel(colour);
    for (int y = top; y < bottom; ++y) {
        auto* line = reinterpret_cast<quint32*>(bits_ + y * stride_);
        std::fill(line + left, line + right, pixel);
    }
}

QtDrawDevice::~QtDrawDevice() {
    painter_.end();
}

void QtDrawDevice::SetPen(const Pen& pen) {
    if (pen == pen_ && penApplied_) return;
    pen_ = pen;
    penApplied_ = false;
}

void QtDrawDevice::ApplyPen() {
    if (penApplied_) return;
    // Made only when the painter draws: the fast paths need no QPen.
    painter_.setPen(QPen(ToQColor(pen_.colour), pen_.width <= 1 ? 0 : pen_.width,
                         ToQtPenStyle(pen_.style), pen_.width <= 1 ? Qt::SquareCap : Qt::RoundCap,
                         Qt::RoundJoin));
    penApplied_ = true;
}

void QtDrawDevice::SetBrush(const Brush& brush) {
    if (brush == brush_) return;
    brush_ = brush;
    brushApplied_ = false;
}

QBrush QtDrawDevice::ToQBrush(const Brush& brush) const {
    switch (brush.style) {
    case BrushStyle::Null:
        return QBrush(Qt::NoBrush);
    case BrushStyle::Hatch:
        return QBrush(ToQColor(brush.colour), ToQtHatch(brush.hatch));
    case BrushStyle::Solid:
        break;
    }
    return QBrush(ToQColor(brush.colour));
}

void QtDrawDevice::ApplyBrush(const Brush& brush) {
    if (brushApplied_ && brush == painterBrush_) return;
    painter_.setBrush(ToQBrush(brush));
    painterBrush_ = brush;
    brushApplied_ = true;
}

void QtDrawDevice::SetFont(const Font& font) {
    const char* face = font.face ? font.face : "";
    if (fontApplied_ && fontFace_ == face && fontHeight_ == font.height &&
        fontWeight_ == font.weight)
        return;
    fontFace_ = face;
    fontHeight_ = font.height;
    fontWeight_ = font.weight;
    const CachedFont& cached = FontFor(fontFace_, font.height, font.weight);
    painter_.setFont(cached.font);
    metrics_ = cached.metrics.get();
    fontApplied_ = true;
}

void QtDrawDevice::SetTextColours(Colour text, Colour background) {
    textColour_ = text;
    textBackground_ = background;
}

void QtDrawDevice::MoveTo(int x, int y) {
    curX_ = x;
    curY_ = y;
}

void QtDrawDevice::LineTo(int x, int y) {
    if (fast_ && pen_.style == PenStyle::Solid && pen_.width <= 1 && (x == curX_ || y == curY_)) {
        FillSpan(std::min(x, curX_), std::min(y, curY_), std::max(x, curX_) + 1,
                 std::max(y, curY_) + 1, pen_.colour);
    } else if (pen_.style != PenStyle::Null) {
        ApplyPen();
        painter_.drawLine(curX_, curY_, x, y);
    }
    curX_ = x;
    curY_ = y;
}

void QtDrawDevice::Rectangle(int left, int top, int right, int bottom) {
    if (left > right) std::swap(left, right);
    if (top > bottom) std::swap(top, bottom);
    if (right - left < 2 || bottom - top < 2) {
        // Too small for an outline and an inside: the pen covers it.
        if (pen_.style == PenStyle::Null) return;
        if (fast_)
            FillSpan(left, top, right, bottom, pen_.colour);
        else
            painter_.fillRect(Normalised(left, top, right, bottom), ToQColor(pen_.colour));
        return;
    }
    if (fast_ && pen_.style == PenStyle::Solid && pen_.width <= 1 &&
        brush_.style == BrushStyle::Solid) {
        // Outline on the outer pixels, the brush inside.
        if (right - left > 2 && bottom - top > 2)
            FillSpan(left + 1, top + 1, right - 1, bottom - 1, brush_.colour);
        FillSpan(left, top, right, top + 1, pen_.colour);
        FillSpan(left, bottom - 1, right, bottom, pen_.colour);
        FillSpan(left, top + 1, left + 1, bottom - 1, pen_.colour);
        FillSpan(right - 1, top + 1, right, bottom - 1, pen_.colour);
        return;
    }
    ApplyPen();
    ApplyBrush(brush_);
    painter_.drawRect(QRect(left, top, right - left - 1, bottom - top - 1));
}

void QtDrawDevice::FillRect(int left, int top, int right, int bottom, const Brush& brush) {
    if (fast_ && brush.style == BrushStyle::Solid) {
        if (left > right) std::swap(left, right);
        if (top > bottom) std::swap(top, bottom);
        FillSpan(left, top, right, bottom, brush.colour);
        return;
    }
    const QRect r = Normalised(left, top, right, bottom);
    if (brush.style == BrushStyle::Solid)
        painter_.fillRect(r, ToQColor(brush.colour));
    else
        painter_.fillRect(r, ToQBrush(brush));
}

void QtDrawDevice::Text(int x, int y, std::string_view text) {
    if (!metrics_) SetFont(Font{"", 12, 400});
    if (text.empty()) return;
    const QString s = QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
    const int width = metrics_->horizontalAdvance(s);
    if (align_ == AlignCentre) x -= width / 2;
    if (align_ == AlignRight) x -= width;
    if (fast_)
        FillSpan(x, y, x + width, y + metrics_->height(), textBackground_);
    else
        painter_.fillRect(QRect(x, y, width, metrics_->height()), ToQColor(textBackground_));
    painter_.setPen(ToQColor(textColour_));
    penApplied_ = false;
    painter_.drawText(QPoint(x, y + metrics_->ascent()), s);
}

void QtDrawDevice::FillRegion(const Region& region, const Brush& brush) {
    painter_.setPen(Qt::NoPen);
    penApplied_ = false;
    ApplyBrush(brush);
    const PixelRect& b = region.box;
    if (region.shape == Region::Shape::Ellipse) {
        painter_.drawEllipse(QRect(b.left, b.top, b.right - b.left, b.bottom - b.top));
    } else {
        QPolygon polygon;
        for (int i = 0; i < region.pointCount; ++i)
            polygon << QPoint(region.points[i].x, region.points[i].y);
        painter_.drawPolygon(polygon, Qt::WindingFill);
    }
}

void QtDrawDevice::InvertRect(int left, int top, int right, int bottom) {
    if (left > right) std::swap(left, right);
    if (top > bottom) std::swap(top, bottom);
    left = std::max(left, 0);
    top = std::max(top, 0);
    right = std::min(right, image_.width());
    bottom = std::min(bottom, image_.height());
    for (int y = top; y < bottom; ++y) {
        auto* line = reinterpret_cast<quint32*>(image_.scanLine(y));
        for (int x = left; x < right; ++x)
            line[x] ^= 0x00FFFFFFu;
    }
}

void QtDrawDevice::InvertRegion(const Region& region) {
    const PixelRect& b = region.box;
    const int top = std::max(b.top, 0), bottom = std::min(b.bottom, image_.height());
    const int left = std::max(b.left, 0), right = std::min(b.right, image_.width());
    for (int y = top; y < bottom; ++y) {
        auto* line = reinterpret_cast<quint32*>(image_.scanLine(y));
        for (int x = left; x < right; ++x)
            if (PointInRegion(&region, x, y)) line[x] ^= 0x00FFFFFFu;
    }
}

void QtDrawDevice::SetClipRect(const PixelRect* rect) {
    clipped_ = rect != nullptr;
    if (rect) {
        clip_ = *rect;
        painter_.setClipRect(Normalised(rect->left, rect->top, rect->right, rect->bottom));
    } else {
        painter_.setClipping(false);
    }
}

} // namespace velorin
