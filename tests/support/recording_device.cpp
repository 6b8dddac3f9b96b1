#include "tests/support/recording_device.h"

namespace velorin {

DrawOp& RecordingDevice::Record(DrawOpKind kind, PixelPoint from, PixelPoint to) {
    ops_.push_back(DrawOp{kind,
                          from.x,
                          from.y,
                          to.x,
                          to.y,
                          pen_,
                          brush_,
                          {},
                          font_.first,
                          font_.second,
                          align_,
                          colours_.first,
                          colours_.second});
    return ops_.back();
}

std::vector<DrawOp> RecordingDevice::OpsOf(DrawOpKind kind) const {
    std::vector<DrawOp> out;
    for (const DrawOp& op : ops_)
        if (op.kind == kind) out.push_back(op);
    return out;
}

std::vector<std::string> RecordingDevice::Texts() const {
    std::vector<std::string> out;
    for (const DrawOp& op : OpsOf(DrawOpKind::Text))
        out.push_back(op.text);
    return out;
}

} // namespace velorin
