#pragma once
// A drawing device that keeps a list of everything asked of it, with the
// pen, brush and font in force at the time. Tests look at the list.

#include <string>
#include <utility>
#include <vector>

#include "rendering/draw_device.h"

namespace velorin {

enum class DrawOpKind {
    MoveTo,
    LineTo,
    Rectangle,
    FillRect,
    Text,
    FillRegion,
    InvertRegion,
    InvertRect
};

struct DrawOp {
    DrawOpKind kind;
    // MoveTo, Text: (x1, y1). LineTo: from (x1, y1) to (x2, y2).
    // Rectangles and regions: left, top, right, bottom as given.
    int x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    Pen pen;
    Brush brush;
    std::string text;
    std::string fontFace;
    int fontHeight = 0;
    int align = 0;
    Colour textColour = 0;
    Colour textBackground = 0;
    friend bool operator==(const DrawOp&, const DrawOp&) = default;
};

class RecordingDevice final : public DrawDevice {
  public:
    void SetPen(const Pen& pen) override { pen_ = pen; }
    void SetBrush(const Brush& brush) override { brush_ = brush; }
    void SetFont(const Font& font) override { font_ = {font.face ? font.face : "", font.height}; }
    void SetTextColours(Colour text, Colour background) override { colours_ = {text, background}; }
    void SetTextAlign(int align) override { align_ = align; }

    void MoveTo(int x, int y) override { Record(DrawOpKind::MoveTo, at_ = {x, y}, {}); }
    void LineTo(int x, int y) override {
        Record(DrawOpKind::LineTo, std::exchange(at_, {x, y}), {x, y});
    }
    void Rectangle(int left, int top, int right, int bottom) override {
        Record(DrawOpKind::Rectangle, {left, top}, {right, bottom});
    }
    void FillRect(int left, int top, int right, int bottom, const Brush& brush) override {
        Record(DrawOpKind::FillRect, {left, top}, {right, bottom}).brush = brush;
    }
    void Text(int x, int y, std::string_view text) override {
        Record(DrawOpKind::Text, {x, y}, {}).text = text;
    }
    void FillRegion(const Region& region, const Brush& brush) override {
        Record(DrawOpKind::FillRegion, region.box).brush = brush;
    }
    void InvertRegion(const Region& region) override {
        Record(DrawOpKind::InvertRegion, region.box);
    }
    void InvertRect(int left, int top, int right, int bottom) override {
        Record(DrawOpKind::InvertRect, {left, top}, {right, bottom});
    }
    void SetClipRect(const PixelRect*) override {}

    const std::vector<DrawOp>& Ops() const { return ops_; }
    // The operations of one kind, in order.
    std::vector<DrawOp> OpsOf(DrawOpKind kind) const;
    // Texts written, in order.
    std::vector<std::string> Texts() const;
    void Clear() { ops_.clear(); }

  private:
    DrawOp& Record(DrawOpKind kind, PixelPoint from, PixelPoint to);
    DrawOp& Record(DrawOpKind kind, const PixelRect& box) {
        return Record(kind, {box.left, box.top}, {box.right, box.bottom});
    }

    std::vector<DrawOp> ops_;
    Pen pen_;
    Brush brush_;
    std::pair<std::string, int> font_; // face, height
    std::pair<Colour, Colour> colours_{0, 0};
    int align_ = 0;
    PixelPoint at_{0, 0}; // the current position
};

} // namespace velorin
