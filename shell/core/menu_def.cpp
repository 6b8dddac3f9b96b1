#include "shell/core/menu_def.h"

#include <iterator>

namespace velorin {
namespace {

using E = MenuEntry;
constexpr E P(const char* text) { return {E::Popup, text, 0, false, false}; }
constexpr E I(const char* text, int id, bool greyed = false, bool checked = false) {
    return {E::Item, text, id, greyed, checked};
}
constexpr E S{E::Separator, nullptr, 0, false, false};
constexpr E End{E::EndPopup, nullptr, 0, false, false};
constexpr bool G = true; // greyed at start

constexpr MenuEntry mainMenu[] = {
    P("&File"),
    I("&New", 10105), I("&Open...", 10104), I("&Save", 10106, G), I("Save &As...", 10107, G),
    I("Res&tore", 10103), S, I("&Print...", 10108, G), I("P&rinter Setup...", 10109), S,
    I("Save &Chart As...", 10111, G), S, I("E&xit", 10101),
    End,
    P("&Connection"),
    I("&Connect...", 10102), I("&Database...", 10717), I("Data&file...", 10718),
    End,
    P("&PrcTools"),
    I("&Price", 10201, G), I("&Make All", 10202, G), S,
    I("&Regular Moving Average", 10203, G), I("&Weighted Moving Average", 10205, G),
    I("&Exponential Moving Average", 10204, G), I("MAC&D", 10416, G), S,
    I("Per&centage Range", 10207, G), I("Relative Strength &Index", 10206, G), S,
    I("S&tandard Deviation", 10403, G), I("Stoc&hastics", 10208, G), S,
    I("Osci&llator", 10210, G), I("Moment&um", 10209, G), S,
    I("&Spread", 10412, G), I("Price Rati&o", 10406, G), I("Relative Stren&gth", 10413, G),
    I("Relative Per&formance", 10414, G),
    End,
    P("&VolTools"),
    I("&Volume", 10301, G), I("&Make All", 10302, G), S, I("&On Balance Volume", 10303, G),
    I("&Relative Volume Index", 10305, G), I("&Tic Volume", 10304, G),
    End,
    P("P&roTools"),
    I("&Trend", 10401, G), I("&Swing Charting", 10402, G), S, I("&Correlation", 10404, G),
    I("&Historical Correlation", 10405, G), I("&Overlay", 10409, G), S,
    I("&Fibonacci", 10407, G), S, I("&Predictor", 10408, G),
    End,
    P("&Options"),
      P("&Data"),
        I("&Filter data", 20702), I("&Real Time", 10110, false, true),
        I("F&etch Frequency...", 10419),
      End,
      P("D&rawing"),
        I("&Data Value", 10505), I("&Line Extend", 10506),
        P("Line &Thickness"),
          P("&Price"),
            I("&Thin", 10508, false, true), I("&Medium", 10509), I("T&hick", 10510),
          End,
          P("&Model"),
            I("&Thin", 10511, false, true), I("&Medium", 10512), I("T&hick", 10513),
          End,
          P("&Attachments"),
            I("&Thin", 10514, false, true), I("&Medium", 10515), I("T&hick", 10516),
          End,
        End,
      End,
      P("&Colours"),
        I("&Default", 10507),
      End,
    End,
    P("&Window"),
    I("&Cascade", 10601, G), I("Tile &Horizontal", 10603, G), I("Tile &Vertical", 10602, G),
    I("Arrange &Icons", 10604, G), I("Close &All", 10605, G),
    End,
    P("&Help"),
    I("&Contents", 10702), S, I("&About ...", 10701),
    End,
};

constexpr int gated[] = {
    10106, 10107, 10108, 10111,                                                        // File
    10201, 10202, 10203, 10204, 10205, 10416, 10415, 10206, 10207, 10403, 10208, 10209, 10210,
    10301, 10302, 10303, 10304, 10305,                                                 // volume
    10406, 10412, 10413, 10414, 10401, 10402, 10409, 10404, 10405, 10407, 10408,       // pro
    10601, 10602, 10603, 10604, 10605,                                                 // window
};
static_assert(std::size(gated) == 38);

} // namespace

const MenuEntry* MainMenuEntries(int* count) {
    if (count) *count = static_cast<int>(std::size(mainMenu));
    return mainMenu;
}

const int* GatedCommands(int* count) {
    if (count) *count = static_cast<int>(std::size(gated));
    return gated;
}

void UpdateMenuState(MenuModel& menu, int chartCount, ButtonState* buttons, int buttonCount) {
    const bool open = chartCount != 0;
    for (int i = 0; i < buttonCount; ++i)
        if (buttons[i].gated == 1) buttons[i].enabled = open ? 1 : 0;
    // The sentinel shows the state of the whole list.
    if (menu.IsGreyed(GatedSentinelId) != open) return;
    for (int id : gated) menu.SetGreyed(id, !open);
}

} // namespace velorin
