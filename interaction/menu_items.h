#pragma once
// Builders of popup menu items and the menu features of a chart's kind,
// shared by the handle menus and the chart context menu.

#include "chart_model/chart_kinds.h"
#include "interaction/handle_menu.h"
#include "resources/command_ids.h"

namespace velorin::menu_items {

// What the menus of the chart's kind offer. A name no kind has gets no
// chart menu and the handle menus of a plain kind.
inline const ChartMenuFeatures& ChartMenuOf(const Chart& chart) {
    static constexpr ChartMenuFeatures none{};
    const ChartKindInfo* info = KindByName(chart.kindName);
    return info ? info->chartMenu : none;
}
inline const HandleMenuFeatures& HandleMenuOf(const Chart& chart) {
    static constexpr HandleMenuFeatures plain{};
    const ChartKindInfo* info = KindByName(chart.kindName);
    return info ? info->handleMenu : plain;
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
