#include "tests/support/recording_device.h"

namespace velorin {

DrawOp RecordingDevice::Base(DrawOpKind kind) const {
    DrawOp op;
    op.kind = kind;
    op.pen = pen_;
    op.brush = brush_;
    op.fontFace = fontFace_;
    op.fontHeight = fontHeight_;
    op.align = align_;
    op.textColour = textColour_;
    op.textBackground = textBackground_;
    return op;
}

void RecordingDevice::SetFont(const Font& font) {
    fontFace_ = font.face ? font.face : "";
    fontHeight_ = font.height;
}

void RecordingDevice::SetTextColours(Colour text, Colour background) {
    textColour_ = text;
    textBackground_ = background;
}

void RecordingDevice::MoveTo(int x, int y) {
    DrawOp op = Base(DrawOpKind::MoveTo);
    op.x1 = x;
    op.y1 = y;
    ops_.push_back(std::move(op));
    curX_ = x;
    curY_ = y;
}

void RecordingDevice::LineTo(int x, int y) {
    DrawOp op = Base(DrawOpKind::LineTo);
    op.x1 = curX_;
    op.y1 = curY_;
    op.x2 = x;
    op.y2 = y;
    ops_.push_back(std::move(op));
    curX_ = x;
    curY_ = y;
}

void RecordingDevice::Rectangle(int left, int top, int right, int bottom) {
    DrawOp op = Base(DrawOpKind::Rectangle);
    op.x1 = left;
    op.y1 = top;
    op.x2 = right;
    op.y2 = bottom;
    ops_.push_back(std::move(op));
}

void RecordingDevice::FillRect(int left, int top, int right, int bottom, const Brush& brush) {
    DrawOp op = Base(DrawOpKind::FillRect);
    op.x1 = left;
    op.y1 = top;
    op.x2 = right;
    op.y2 = bottom;
    op.brush = brush;
    ops_.push_back(std::move(op));
}

void RecordingDevice::Text(int x, int y, std::string_view text) {
    DrawOp op = Base(DrawOpKind::Text);
    op.x1 = x;
    op.y1 = y;
    op.text = std::string(text);
    ops_.push_back(std::move(op));
}

void RecordingDevice::FillRegion(const Region& region, const Brush& brush) {
    DrawOp op = Base(DrawOpKind::FillRegion);
    op.x1 = region.box.left;
    op.y1 = region.box.top;
    op.x2 = region.box.right;
    op.y2 = region.box.bottom;
    op.brush = brush;
    ops_.push_back(std::move(op));
}

void RecordingDevice::InvertRegion(const Region& region) {
    DrawOp op = Base(DrawOpKind::InvertRegion);
    op.x1 = region.box.left;
    op.y1 = region.box.top;
    op.x2 = region.box.right;
    op.y2 = region.box.bottom;
    ops_.push_back(std::move(op));
}

void RecordingDevice::InvertRect(int left, int top, int right, int bottom) {
    DrawOp op = Base(DrawOpKind::InvertRect);
    op.x1 = left;
    op.y1 = top;
    op.x2 = right;
    op.y2 = bottom;
    ops_.push_back(std::move(op));
}

void RecordingDevice::SetClipRect(const PixelRect* rect) {
    clipped_ = rect != nullptr;
    if (rect) clip_ = *rect;
}

std::vector<DrawOp> RecordingDevice::OpsOf(DrawOpKind kind) const {
    std::vector<DrawOp> out;
    for (const DrawOp& op : ops_)
        if (op.kind == kind) out.push_back(op);
    return out;
}

std::vector<std::string> RecordingDevice::Texts() const {
    std::vector<std::string> out;
    for (const DrawOp& op : ops_)
        if (op.kind == DrawOpKind::Text) out.push_back(op.text);
    return out;
}

} // namespace velorin
