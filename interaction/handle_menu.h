#pragma once
// What a click on a handle opens: which object was hit and the items of
// its popup menu. Qt-free, so the table can be tested alone.

#include <vector>

#include "chart_model/chart.h"
#include "interaction/mouse_state.h"

namespace velorin {

struct MenuItem {
    const char* text; // nullptr: separator
    int id;           // command; 0 for a submenu title
    bool checked;
    bool disabled;
    int submenu; // 0: plain item; 1: opens the items that follow up to the matching EndSubmenu
    bool endSubmenu;
};

enum class HitObject { None, Trend, Channel, Gann, Vertical, Horizontal, Curve };

struct HandleHit {
    HitObject object = HitObject::None;
    int index = -1; // object slot, or curve slot 0..13
};

// The handle under (x, y), searched in the order trend lines, channels, Gann
// lines, vertical lines, horizontal lines, then curve slots 0 to 13.
HandleHit HitTestHandles(const Chart& chart, int x, int y);

// Records the hit in the mouse state (colour target, selected indices,
// lower line of a channel) and returns the popup menu's items.
std::vector<MenuItem> HandleMenu(const Chart& chart, const HandleHit& hit, int x, int y,
                                 ChartMouseState& mouse);

} // namespace velorin
