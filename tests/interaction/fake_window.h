#pragma once
// A chart window for the interaction tests: records what the commands and
// tools ask of it, and resets the program-wide mouse state.

#include <string>

#include "interaction/chart_window_port.h"
#include "interaction/mouse_state.h"

namespace velorin::testing {

class FakeWindow : public ChartWindowPort {
  public:
    // 440 x 240 client: the plot runs x 40..437, y 20..220.
    FakeWindow() { ResetChartMouseState(); }
    WindowId Id() const override { return 1; }
    int Right() const override { return 440; }
    int Bottom() const override { return 240; }
    int LastBarX() const override { return 439; }
    std::string Caption() const override { return caption; }
    void SetCaption(const std::string& c) override { caption = c; }
    void Capture(bool on) override { captured = on; }
    void SetRingCursor() override { ringCursor = true; }
    void RestoreCursor() override { ringCursor = false; }
    void Invalidate() override {}
    void InvalidateReadout() override { ++readouts; }

    std::string caption = "ACME Price";
    bool captured = false;
    bool ringCursor = false;
    int readouts = 0;
};

} // namespace velorin::testing
