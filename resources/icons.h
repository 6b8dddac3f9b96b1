#pragma once
// Before writing code here, read DEVELOPERS.md at the repository root: team rules.
// The program's icons, drawn at start: "FRAME" for the frame and the
// companion views, "GREEN" for chart windows.

#include <QIcon>

namespace velorin {
QIcon FrameIcon();
QIcon GreenIcon();
} // namespace velorin
