#pragma once
// What the chart commands and the drawing tools need of the window they act
// on. The Qt chart window implements it; tests implement it with a fake.

#include <string>

#include "chart_model/chart.h"

namespace velorin {

class ChartWindowPort {
  public:
    virtual ~ChartWindowPort() = default;
    virtual WindowId Id() const = 0;
    // Client rectangle: x from 0 to Right(), y from 0 to Bottom().
    virtual int Right() const = 0;
    virtual int Bottom() const = 0;
    // The x of the last bar of the last paint.
    virtual int LastBarX() const = 0;
    virtual std::string Caption() const = 0;
    virtual void SetCaption(const std::string& caption) = 0;
    // Mouse capture for a tool: every click goes to this window.
    virtual void Capture(bool on) = 0;
    // The ring-shaped tool cursor on; RestoreCursor puts back the one saved.
    virtual void SetRingCursor() = 0;
    virtual void RestoreCursor() = 0;
    // Repaint, erasing first.
    virtual void Invalidate() = 0;
    // Repaint only the readout rectangle (0, 0) to (115, 13).
    virtual void InvalidateReadout() = 0;
};

} // namespace velorin
