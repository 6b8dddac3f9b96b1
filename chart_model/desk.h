#pragma once
// The desk: the chart windows as the rest of the program sees them. The
// Qt frame implements `Desk`; tests implement it headless. The registry
// keeps the count of open charts and gives out the data source slots, and
// does the close sequence of a chart.

#include <cstdint>

#include "chart_model/chart.h"

namespace velorin {

// Where a new child window goes.
enum class WindowPlacement {
    SystemDefault, // the windowing layer picks position and size
    FillClient,    // the whole client area of the desk (batch runs)
    Given,         // the rectangle passed along (layout restore)
};

struct ChildWindowRequest {
    Chart* chart;
    WindowClass windowClass;
    const char* caption;
    WindowPlacement placement;
    int x, y, width, height; // for Given
    bool hidden;             // layout restore: shown at the end
};

// A chart window and its chart.
struct ChartWindowRef {
    WindowId window;
    Chart* chart;
};

class Desk {
  public:
    virtual ~Desk() = default;
    // Creates the child window of a chart and hands the chart to it;
    // returns the window or 0.
    virtual WindowId CreateChild(const ChildWindowRequest& request) = 0;
    // A window made hidden while a layout is restored, shown at its end.
    virtual void KeepHidden(WindowId window) { (void)window; }
    // The chart commands work on (the active child, or a minimised one lying
    // directly under it), with its window; nullptr when the desk is empty.
    virtual Chart* ActiveChart(WindowId* windowOut) = 0;
    // The chart a window holds; nullptr for none.
    virtual Chart* ChartOf(WindowId window) {
        (void)window;
        return nullptr;
    }
    // The pick of a second chart: the caption of `first` becomes `prompt`
    // followed by its own caption until the user clicks a window or a
    // window repaints, with no input going anywhere meanwhile; then the
    // caption comes back. Returns the window then in front, found as
    // ActiveChart finds it but without the companion test (it may be
    // `first` itself or a companion view), or 0.
    virtual WindowId PickSecondChart(WindowId first, const char* prompt) {
        (void)first, (void)prompt;
        return 0;
    }
    // Repaint one chart window, erasing first.
    virtual void Invalidate(WindowId window) = 0;
    virtual void RepaintAllCharts() = 0;
    // Windows one above the other (`horizontal`) or side by side.
    virtual void Tile(bool horizontal) = 0;
    // Destroys every child window (each closes its chart).
    virtual void CloseAllChildren() = 0;
    // The number of open charts changed between none and some.
    virtual void MenuStateChanged() {}
    // The companion windows and the change of source of a chart.
    virtual void OpenDataView(WindowId window, Chart& chart) { (void)window, (void)chart; }
    virtual void OpenLevelsView(WindowId window, Chart& chart) { (void)window, (void)chart; }
    virtual void ChangeDataSource(WindowId window, Chart& chart) { (void)window, (void)chart; }
    // The "Reset" command of a Data View: its grid filled again from the source.
    virtual void ResetDataView(WindowId dataViewWindow) { (void)dataViewWindow; }
    // A Data View after the rows of its source changed (RecomputeChart).
    virtual void RefreshDataView(WindowId dataViewWindow) { (void)dataViewWindow; }
    // Every Levels View of the desk shows its chart's levels anew.
    virtual void UpdateLevelsViews() {}
    // The crosshair of a chart on `sourceSlot` stands on `row` (1-based):
    // the Data Views of that source follow it.
    virtual void FollowCrosshair(int sourceSlot, int row) { (void)sourceSlot, (void)row; }
    // The chart windows, top of the Z order first (icon titles are not
    // windows of their own here), at most `capacity` of them into `out`;
    // returns how many. Allocates nothing.
    virtual int ChartWindows(ChartWindowRef* out, int capacity) {
        (void)out, (void)capacity;
        return 0;
    }
};

// The desk in force. Never null: without an installed desk an empty one
// answers, which creates no window.
Desk& TheDesk();
// Installs `desk` (nullptr restores the empty one); returns the previous one.
Desk* InstallDesk(Desk* desk);

struct DeskRegistry {
    std::int32_t chartCount; // open child windows of every class; limit MaxCharts
};
inline constexpr int MaxCharts = 50;
extern DeskRegistry deskRegistry;
void ResetDeskRegistry();

// The slot of the source just connected, taken for its first chart.
int ClaimSourceSlot();
// A chart window now stands on the desk.
void RegisterChart();
// The close of a chart window: drawn objects and record released, the
// source given back, the count lowered; the last one frees every slot.
void CloseChart(Chart* chart);
// After every window is gone: no charts, every slot free.
void ClearDesk();

} // namespace velorin
