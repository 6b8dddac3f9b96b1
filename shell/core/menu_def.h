#pragma once
// The main menu as data, and the rule that keeps it in line with whether any
// child window is open.

#include "resources/command_ids.h"

namespace velorin {

struct MenuEntry {
    enum Type { Item, Separator, Popup, EndPopup } type;
    const char* text; // "&File"; null for separators and ends
    int id;           // command id; 0 for popups
    bool greyed;      // initial state
    bool checked;
};

// The entries of "MAINMENU" in order; popups are closed by EndPopup.
const MenuEntry* MainMenuEntries(int* count);

// The commands greyed while no child window is open, in the order they are
// enabled. Correlation serves as the sentinel of the whole list.
const int* GatedCommands(int* count);
inline constexpr int GatedSentinelId = cmd::Correlation;

// What UpdateMenuState needs of a menu.
class MenuModel {
  public:
    virtual ~MenuModel() = default;
    virtual bool IsGreyed(int id) const = 0;         // false for ids without an item
    virtual void SetGreyed(int id, bool greyed) = 0; // ignored for ids without an item
};

// A button of the button bar as the menu state sees it.
struct ButtonState {
    int gated;
    int enabled;
};

// Enables the gated commands when `chartCount` is not 0 and greys them when
// it is; the menu is only touched when the sentinel shows the other state.
// The buttons are written, never repainted here.
void UpdateMenuState(MenuModel& menu, int chartCount, ButtonState* buttons, int buttonCount);

} // namespace velorin
