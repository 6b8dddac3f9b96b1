#pragma once
// The program's icons, drawn at start: "FRAME" for the frame and the
// companion views, "GREEN" for chart windows, and "GREEN", "RED" and
// "YELLOW" as the keys of the fields of the modal dialogs, with the other
// key colours beside them.

#include <QIcon>

namespace velorin {
QIcon FrameIcon();
QIcon GreenIcon();
QIcon RedIcon();
QIcon YellowIcon();
// The keys of the Fibonacci levels by name: "YELLOW", "GREEN", "BLUE",
// "RED", "UNI", "VIOLET", "GRAY", "DYELLOW" or "WHITE"; a null icon for
// any other name.
QIcon KeyIcon(const char* name);
} // namespace velorin
