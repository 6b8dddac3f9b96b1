#pragma once
// The button bar along the top of the frame, free of any window system: the
// table of its 32 entries, where each button sits, which button a point
// hits, and what the bar's mouse and key events do to the hint. The Qt bar
// carries out the steps these functions return.

#include <cstdint>
#include <string>

#include "shell/core/menu_def.h"

namespace velorin {

inline constexpr int ButtonCount = 32;
inline constexpr int GapCommandId = -999; // `commandId` of a gap
inline constexpr int GapBitmapId = -1;    // `bitmapId` of a gap
inline constexpr int ButtonWidth = 24;
inline constexpr int ButtonHeight = 22;
inline constexpr int ButtonTop = 2;          // y of every button in the bar
inline constexpr int FirstButtonLeft = 6;    // x of the first entry
inline constexpr int ButtonAdvance = 25;     // x taken by a button
inline constexpr int GapAdvance = 9;         // x taken by a gap
inline constexpr int BarHeightOverText = 12; // bar height = character height + 12

struct ToolButton {
    char label[32]; // hint text; empty for a gap
    int commandId;  // id sent to the frame, GapCommandId for a gap
    int bitmapId;   // picture number, GapBitmapId for a gap
    int left;       // x in the bar
};

// The bar: its entries in order of appearance, and beside them the gated
// and enabled flags of each entry as UpdateMenuState writes them.
struct ButtonBar {
    ToolButton entries[ButtonCount];
    ButtonState state[ButtonCount];
    int barHeight;
};

// Fills entry `index` (0 to 31, others are ignored); `left` is cleared
// until the bar is laid out.
void DefineButton(ButtonBar& bar, int index, const char* label, int commandId, int bitmapId,
                  int gated, int enabled);
// All 32 entries with their initial states, as the frame enters them when
// it is created. `barHeight` is 0 until the bar is laid out.
void DefineAllButtons(ButtonBar& bar);
// The bar's height from the frame font's character height, and the x of
// every entry: from 6, 25 for a button and 9 for a gap.
void LayOutButtonBar(ButtonBar& bar, int characterHeight);

bool IsGap(const ToolButton& entry);
// The entry whose command is `commandId` (never a gap), or -1.
int FindButton(const ButtonBar& bar, int commandId);
// The button under x: its left edge to 24 pixels right of it, both
// included, not a gap, and enabled. -1 when there is none.
int HitButton(const ButtonBar& bar, int x);

// The hint's text: the label with a blank on either side.
std::string HintText(const ToolButton& entry);
// The name of a button's picture file, without folder or extension
// ("zoom_in"); null for a gap or an unknown number.
const char* ButtonPictureName(int bitmapId);

// What the bar does to the hint and the mouse after one event. At most one
// of `release` and `capture` is set; `hintCaptured` has been updated when
// the step is returned.
struct HintStep {
    bool hide = false;    // hide the hint
    int show = -1;        // show the hint of this entry, below it at barHeight
    bool focus = false;   // give the bar the keyboard focus
    bool capture = false; // take the mouse capture for the bar
    bool release = false; // give the mouse capture back
    int press = -1;       // a click: the button that receives it, or -1
};

// The mouse moved to (x, y) in the bar's coordinates; while the bar holds
// the capture the point may lie anywhere. Coordinates arrive as unsigned
// 16-bit words, so a point above or left of the bar reads as a large value:
// above the bar counts as below it, and left of it as past the last button.
HintStep BarMouseMove(const ButtonBar& bar, int x, int y, std::int32_t& hintCaptured);
// The left mouse button went down at (x, y): the hint goes, the capture is
// given back, and the click goes to the enabled button under it, if any.
HintStep BarMouseDown(const ButtonBar& bar, int x, int y, std::int32_t& hintCaptured);
// The frame's hide-hint message, sent on every key press anywhere in the
// program.
HintStep HideHintMessage(std::int32_t& hintCaptured);

} // namespace velorin
