#pragma once
// The window of the Overlay chart: two series on two value scales, their
// curve handles with a colour menu, and the highlight regions drawn with
// the mouse.

#include "interaction/corr_child.h"
#include "interaction/two_series_command.h"
#include "rendering/overlay_paint.h"

namespace velorin {

class OverlayChild : public TwoSeriesChild {
    Q_OBJECT
  public:
    explicit OverlayChild(Chart* chart, QWidget* parent = nullptr);

    void Command(int commandId) override;
    const OverlayPaintResult& lastPaint() const { return lastPaint_; }
    // The region tool, one for the whole class.
    static HighlightToolState& tool() { return twoSeriesMouse.highlight; }

  protected:
    bool PaintAll(DrawDevice& device) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

  private:
    OverlayPaintResult lastPaint_;
};

} // namespace velorin
