#pragma once
// The one drawing interface every chart paint goes through. It has the
// shape of a classic raster device: a selected pen, brush and font, a
// current point, text at a pixel, and inversion of rectangles and regions.
// Coordinates are client pixels; rectangles exclude their right and bottom
// edges, and a rectangle given with its corners swapped is the same shape.

#include <cstdint>
#include <string_view>

#include "chart_model/region.h"

namespace velorin {

// A colour as the settings file stores it: 0x00BBGGRR, red in the low byte.
using Colour = std::uint32_t;

inline constexpr Colour MakeColour(int red, int green, int blue) {
    return static_cast<Colour>((red & 0xFF) | ((green & 0xFF) << 8) | ((blue & 0xFF) << 16));
}
inline constexpr int RedOf(Colour c) {
    return static_cast<int>(c & 0xFF);
}
inline constexpr int GreenOf(Colour c) {
    return static_cast<int>((c >> 8) & 0xFF);
}
inline constexpr int BlueOf(Colour c) {
    return static_cast<int>((c >> 16) & 0xFF);
}

inline constexpr Colour Black = 0x000000;

enum class PenStyle : int { Solid = 0, Dash = 1, Dot = 2, Null = 5 };

struct Pen {
    PenStyle style = PenStyle::Solid;
    int width = 1;
    Colour colour = Black;
    friend bool operator==(const Pen&, const Pen&) = default;
};

enum class BrushStyle : int { Solid, Hatch, Null };
enum class HatchStyle : int {
    Horizontal = 0,
    Vertical = 1,
    ForwardDiagonal = 2,
    BackwardDiagonal = 3,
    Cross = 4,
    DiagonalCross = 5
};

struct Brush {
    BrushStyle style = BrushStyle::Solid;
    HatchStyle hatch = HatchStyle::Horizontal;
    Colour colour = Black;
    friend bool operator==(const Brush&, const Brush&) = default;
};

inline constexpr Brush SolidBrush(Colour c) {
    return Brush{BrushStyle::Solid, {}, c};
}

struct Font {
    const char* face = "";
    int height = 0; // cell height in pixels
    int weight = 400;
};

// Text alignment values: left/top, ending at x, and horizontally centred on x.
inline constexpr int AlignLeftTop = 0;
inline constexpr int AlignRight = 2;
inline constexpr int AlignCentre = 6;

class DrawDevice {
  public:
    virtual ~DrawDevice() = default;

    virtual void SetPen(const Pen& pen) = 0;
    // The brush that fills the inside of Rectangle.
    virtual void SetBrush(const Brush& brush) = 0;
    virtual void SetFont(const Font& font) = 0;
    // Text is drawn opaque: its cell is filled with `background`.
    virtual void SetTextColours(Colour text, Colour background) = 0;
    virtual void SetTextAlign(int align) = 0;

    virtual void MoveTo(int x, int y) = 0;
    // Line from the current point to (x, y) in the pen; (x, y) becomes current.
    virtual void LineTo(int x, int y) = 0;
    // Outline in the pen, inside in the brush.
    virtual void Rectangle(int left, int top, int right, int bottom) = 0;
    virtual void FillRect(int left, int top, int right, int bottom, const Brush& brush) = 0;
    // Single-byte text at (x, y) by the alignment, in the selected font.
    virtual void Text(int x, int y, std::string_view text) = 0;

    virtual void FillRegion(const Region& region, const Brush& brush) = 0;
    virtual void InvertRegion(const Region& region) = 0;
    virtual void InvertRect(int left, int top, int right, int bottom) = 0;

    // Limits every later operation to the rectangle; nullptr lifts the limit.
    virtual void SetClipRect(const PixelRect* rect) = 0;
};

} // namespace velorin
