#pragma once
// Before writing code here, read DEVELOPERS.md at the repository root: team rules.
// Builders of popup menu items and kind-name tests, shared by the handle
// menus and the chart context menu.

#include <cstring>
#include <initializer_list>

#include "interaction/handle_menu.h"

namespace velorin::menu_items {

inline bool Is(const Chart& chart, const char* name) {
    return std::strcmp(chart.kindName, name) == 0;
}

inline bool IsAnyOf(const Chart& chart, std::initializer_list<const char*> names) {
    for (const char* n : names)
        if (Is(chart, n)) return true;
    return false;
}

inline MenuItem Item(const char* text, int id, bool checked = false) {
    return {text, id, checked, false, 0, false};
}
inline MenuItem Separator() {
    return {nullptr, 0, false, false, 0, false};
}
inline MenuItem Submenu(const char* text) {
    return {text, 0, false, false, 1, false};
}
inline MenuItem EndSubmenu() {
    return {nullptr, 0, false, false, 0, true};
}

} // namespace velorin::menu_items
