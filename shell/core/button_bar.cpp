#include "shell/core/button_bar.h"

#include <cstdio>
#include <cstring>

#include "resources/command_ids.h"

namespace velorin {
namespace {

// Positions reach the bar as the two unsigned 16-bit halves of one word.
int AsWord(int v) {
    return static_cast<int>(static_cast<std::uint16_t>(v));
}

void ReleaseCapture(HintStep& step, std::int32_t& hintCaptured) {
    if (hintCaptured == 1) {
        step.release = true;
        hintCaptured = 0;
    }
}

struct Picture {
    int bitmapId;
    const char* name;
};

constexpr Picture Pictures[] = {
    {138, "new_layout"}, {125, "open_layout"}, {134, "save_layout"}, {133, "print"},
    {139, "connect"},    {147, "data_view"},   {146, "toggle_grid"}, {102, "price_line"},
    {150, "high_low"},   {151, "bar_chart"},   {152, "candlestick"}, {144, "zoom_in"},
    {145, "zoom_out"},   {149, "select_end"},  {148, "select_all"},  {153, "hori_line"},
    {154, "vert_line"},  {155, "trend"},       {156, "channel"},     {143, "default_colors"},
    {140, "tile_horiz"}, {141, "tile_vert"},   {128, "exit"},        {126, "help"},
};

} // namespace

void DefineButton(ButtonBar& bar, int index, const char* label, int commandId, int bitmapId,
                  int gated, int enabled) {
    if (index < 0 || index >= ButtonCount) return;
    ToolButton& e = bar.entries[index];
    std::snprintf(e.label, sizeof e.label, "%s", label ? label : "");
    e.commandId = commandId;
    e.bitmapId = bitmapId;
    e.left = 0;
    bar.state[index].gated = gated;
    bar.state[index].enabled = enabled;
}

void DefineAllButtons(ButtonBar& bar) {
    struct Row {
        const char* label;
        int commandId, bitmapId, gated, enabled;
    };
    // A gap: no label, no command, no picture, never gated, enabled.
    constexpr Row gap{"", GapCommandId, GapBitmapId, 0, 1};
    const Row rows[ButtonCount] = {
        {"New Layout", cmd::New, 138, 0, 1},
        {"Open Layout", cmd::Open, 125, 0, 1},
        {"Save Layout", cmd::Save, 134, 1, 0},
        gap,
        {"Print", cmd::Print, 133, 1, 0},
        gap,
        {"Connect", cmd::Connect, 139, 0, 1},
        {"Data View", cmd::DataViewButton, 147, 1, 0},
        {"Toggle Grid", cmd::ToggleGridButton, 146, 1, 0},
        gap,
        {"Price Line", cmd::PriceLineButton, 102, 1, 0},
        {"High-Low", cmd::HighLowButton, 150, 1, 0},
        {"BarChart", cmd::BarChartButton, 151, 1, 0},
        {"CandleStick", cmd::CandleStickButton, 152, 1, 0},
        gap,
        {"Zoom In", cmd::ZoomIn, 144, 1, 0},
        {"Zoom Out", cmd::ZoomOut, 145, 1, 0},
        {"Select End Point", cmd::SelectEndPointButton, 149, 1, 0},
        {"Select All Data", cmd::SelectAllDataButton, 148, 1, 0},
        gap,
        {"Draw Hori Line", cmd::DrawHoriLineButton, 153, 1, 0},
        {"Draw Vert Line", cmd::DrawVertLineButton, 154, 1, 0},
        {"Draw Trend", cmd::DrawTrendButton, 155, 1, 0},
        {"Draw Channel", cmd::DrawChannelButton, 156, 1, 0},
        gap,
        {"Default Colors", cmd::DefaultColours, 143, 0, 1},
        gap,
        {"Tile Horizontally", cmd::TileHorizontal, 140, 1, 0},
        {"Tile Vertically", cmd::TileVertical, 141, 1, 0},
        gap,
        {"Exit Velorin", cmd::Exit, 128, 0, 1},
        {"Velorin Help", cmd::HelpContents, 126, 0, 1},
    };
    for (int i = 0; i < ButtonCount; ++i) {
        const Row& r = rows[i];
        DefineButton(bar, i, r.label, r.commandId, r.bitmapId, r.gated, r.enabled);
    }
    bar.barHeight = 0;
}

void LayOutButtonBar(ButtonBar& bar, int characterHeight) {
    bar.barHeight = characterHeight + BarHeightOverText;
    int x = FirstButtonLeft;
    for (ToolButton& e : bar.entries) {
        e.left = x;
        x += IsGap(e) ? GapAdvance : ButtonAdvance;
    }
}

bool IsGap(const ToolButton& entry) {
    return entry.commandId == GapCommandId;
}

int FindButton(const ButtonBar& bar, int commandId) {
    if (commandId == GapCommandId) return -1;
    for (int i = 0; i < ButtonCount; ++i)
        if (bar.entries[i].commandId == commandId) return i;
    return -1;
}

int HitButton(const ButtonBar& bar, int x) {
    for (int i = 0; i < ButtonCount; ++i) {
        const ToolButton& e = bar.entries[i];
        if (IsGap(e) || bar.state[i].enabled != 1) continue;
        if (x >= e.left && x <= e.left + ButtonWidth) return i;
    }
    return -1;
}

std::string HintText(const ToolButton& entry) {
    return std::string(" ") + entry.label + " ";
}

const char* ButtonPictureName(int bitmapId) {
    for (const Picture& p : Pictures)
        if (p.bitmapId == bitmapId) return p.name;
    return nullptr;
}

HintStep BarMouseMove(const ButtonBar& bar, int x, int y, std::int32_t& hintCaptured) {
    HintStep step;
    x = AsWord(x);
    y = AsWord(y);
    if (y == 0 || y >= bar.barHeight) {
        step.hide = true;
        ReleaseCapture(step, hintCaptured);
        return step;
    }
    // Left of the first entry, or over no enabled button: the hint goes but
    // the capture stays, so the bar keeps seeing the mouse.
    const int hit = x < bar.entries[0].left ? -1 : HitButton(bar, x);
    if (hit < 0) {
        step.hide = true;
        return step;
    }
    step.focus = true;
    step.show = hit;
    if (hintCaptured == 0) {
        step.capture = true;
        hintCaptured = 1;
    }
    return step;
}

HintStep BarMouseDown(const ButtonBar& bar, int x, int /*y*/, std::int32_t& hintCaptured) {
    HintStep step;
    step.hide = true;
    ReleaseCapture(step, hintCaptured);
    step.press = HitButton(bar, AsWord(x));
    return step;
}

HintStep HideHintMessage(std::int32_t& hintCaptured) {
    HintStep step;
    step.hide = true;
    ReleaseCapture(step, hintCaptured);
    return step;
}

} // namespace velorin
