#pragma once
// The program's icons, drawn at start: "FRAME" for the frame and the
// companion views, "GREEN" for chart windows, and "GREEN", "RED" and
// "YELLOW" as the keys of the fields of the modal dialogs.

#include <QIcon>

namespace velorin {
QIcon FrameIcon();
QIcon GreenIcon();
QIcon RedIcon();
QIcon YellowIcon();
} // namespace velorin
