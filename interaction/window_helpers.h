#pragma once
// What every chart window shares on the screen: the ring-shaped tool cursor
// and popup menus built from item lists.

#include <QCursor>

#include <cstddef>
#include <functional>
#include <vector>

#include "interaction/handle_menu.h"

class QMenu;

namespace velorin {

// The tool cursor: a ring with its hot spot in the middle.
const QCursor& RingCursor();

// Adds `items` from `at` on to `menu`, submenus nested, until the end or an
// end-of-submenu entry; each action sends its id to `run`.
void AddMenuItems(QMenu* menu, const std::vector<MenuItem>& items, std::size_t& at,
                  const std::function<void(int)>& run);

} // namespace velorin
