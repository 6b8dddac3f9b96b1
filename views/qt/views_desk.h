#pragma once
// What the frame asks of the companion views on its desk of child windows.

#include "chart_model/desk.h"

class QMdiArea;
class QWidget;

namespace velorin {

class ChildView;

// The window of a Data View or Levels View record; nullptr for another
// window class.
ChildView* CreateCompanionWindow(Chart* chart, WindowClass windowClass);

// Command 30110 to every Data View on the desk that `onDesk` stands on.
void RepaletteDataViews(QWidget* onDesk);
// Each Data View of `sourceSlot` follows the crosshair to `row` (1-based).
void FollowCrosshairOnDesk(QMdiArea* desk, int sourceSlot, int row);
// Every Levels View on the desk, top first, shows its chart anew.
void UpdateLevelsViewsOnDesk(QMdiArea* desk);
// A Data View whose source's rows changed.
void RefreshDataViewWindow(ChildView* view);

} // namespace velorin
