#pragma once
// A drawing device that keeps a list of everything asked of it, with the
// pen, brush and font in force at the time. Tests look at the list.

#include <string>
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

    const std::vector<DrawOp>& Ops() const { return ops_; }
    // The operations of one kind, in order.
    std::vector<DrawOp> OpsOf(DrawOpKind kind) const;
    // Texts written, in order.
    std::vector<std::string> Texts() const;
    void Clear() { ops_.clear(); }
    // The clip in force, or nullptr.
    const PixelRect* Clip() const { return clipped_ ? &clip_ : nullptr; }

  private:
    DrawOp Base(DrawOpKind kind) const;

    std::vector<DrawOp> ops_;
    PixelRect clip_{};
    bool clipped_ = false;
    Pen pen_;
    Brush brush_;
    std::string fontFace_;
    int fontHeight_ = 0;
    int align_ = 0;
    Colour textColour_ = 0;
    Colour textBackground_ = 0;
    int curX_ = 0, curY_ = 0;
};

} // namespace velorin
