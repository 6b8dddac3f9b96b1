#include "shell/core/menu_def.h"

#include <iterator>

#include "resources/command_ids.h"

namespace velorin {
namespace {

using E = MenuEntry;
constexpr E P(const char* text) {
    return {E::Popup, text, 0, false, false};
}
constexpr E I(const char* text, int id, bool greyed = false, bool checked = false) {
    return {E::Item, text, id, greyed, checked};
}
constexpr E S{E::Separator, nullptr, 0, false, false};
constexpr E End{E::EndPopup, nullptr, 0, false, false};
constexpr bool G = true; // greyed at start

constexpr MenuEntry mainMenu[] = {
    P("&File"),
    I("&New", cmd::New),
    I("&Open...", cmd::Open),
    I("&Save", cmd::Save, G),
    I("Save &As...", cmd::SaveAs, G),
    I("Res&tore", cmd::Restore),
    S,
    I("&Print...", cmd::Print, G),
    I("P&rinter Setup...", cmd::PrinterSetup),
    S,
    I("Save &Chart As...", cmd::SaveChartAs, G),
    S,
    I("E&xit", cmd::Exit),
    End,
    P("&Connection"),
    I("&Connect...", cmd::Connect),
    I("&Database...", cmd::Database),
    I("Data&file...", cmd::Datafile),
    End,
    P("&PrcTools"),
    I("&Price", cmd::Price, G),
    I("&Make All", cmd::MakeAllPrices, G),
    S,
    I("&Regular Moving Average", cmd::Rma, G),
    I("&Weighted Moving Average", cmd::Wma, G),
    I("&Exponential Moving Average", cmd::Esma, G),
    I("MAC&D", cmd::Macd, G),
    S,
    I("Per&centage Range", cmd::PercRange, G),
    I("Relative Strength &Index", cmd::Rsi, G),
    S,
    I("S&tandard Deviation", cmd::Stdev, G),
    I("Stoc&hastics", cmd::Stochastics, G),
    S,
    I("Osci&llator", cmd::Oscillator, G),
    I("Moment&um", cmd::Momentum, G),
    S,
    I("&Spread", cmd::Spread, G),
    I("Price Rati&o", cmd::PriceRatio, G),
    I("Relative Stren&gth", cmd::RelativeStrength, G),
    I("Relative Per&formance", cmd::RelativePerformance, G),
    End,
    P("&VolTools"),
    I("&Volume", cmd::Volume, G),
    I("&Make All", cmd::MakeAllVolumes, G),
    S,
    I("&On Balance Volume", cmd::Obv, G),
    I("&Relative Volume Index", cmd::Rvi, G),
    I("&Tic Volume", cmd::TicVolume, G),
    End,
    P("P&roTools"),
    I("&Trend", cmd::Trend, G),
    I("&Swing Charting", cmd::SwingCharting, G),
    S,
    I("&Correlation", cmd::Correlation, G),
    I("&Historical Correlation", cmd::HistoricalCorrelation, G),
    I("&Overlay", cmd::Overlay, G),
    S,
    I("&Fibonacci", cmd::Fibonacci, G),
    S,
    I("&Predictor", cmd::Predictor, G),
    End,
    P("&Options"),
    P("&Data"),
    I("&Filter data", cmd::FilterData),
    I("&Real Time", cmd::RealTime, false, true),
    I("F&etch Frequency...", cmd::FetchFrequency),
    End,
    P("D&rawing"),
    I("&Data Value", cmd::DataValueDefault),
    I("&Line Extend", cmd::LineExtendDefault),
    P("Line &Thickness"),
    P("&Price"),
    I("&Thin", cmd::PriceThin, false, true),
    I("&Medium", cmd::PriceMedium),
    I("T&hick", cmd::PriceThick),
    End,
    P("&Model"),
    I("&Thin", cmd::ModelThin, false, true),
    I("&Medium", cmd::ModelMedium),
    I("T&hick", cmd::ModelThick),
    End,
    P("&Attachments"),
    I("&Thin", cmd::AttachmentThin, false, true),
    I("&Medium", cmd::AttachmentMedium),
    I("T&hick", cmd::AttachmentThick),
    End,
    End,
    End,
    P("&Colours"),
    I("&Default", cmd::DefaultColours),
    End,
    End,
    P("&Window"),
    I("&Cascade", cmd::Cascade, G),
    I("Tile &Horizontal", cmd::TileHorizontal, G),
    I("Tile &Vertical", cmd::TileVertical, G),
    I("Arrange &Icons", cmd::ArrangeIcons, G),
    I("Close &All", cmd::CloseAll, G),
    End,
    P("&Help"),
    I("&Contents", cmd::HelpContents),
    S,
    I("&About ...", cmd::About),
    End,
};

constexpr int gated[] = {
    cmd::Save,
    cmd::SaveAs,
    cmd::Print,
    cmd::SaveChartAs, // File
    cmd::Price,
    cmd::MakeAllPrices,
    cmd::Rma,
    cmd::Esma,
    cmd::Wma,
    cmd::Macd,
    cmd::OverboughtSold,
    cmd::Rsi,
    cmd::PercRange,
    cmd::Stdev,
    cmd::Stochastics,
    cmd::Momentum,
    cmd::Oscillator,
    cmd::Volume,
    cmd::MakeAllVolumes,
    cmd::Obv,
    cmd::TicVolume,
    cmd::Rvi, // volume
    cmd::PriceRatio,
    cmd::Spread,
    cmd::RelativeStrength,
    cmd::RelativePerformance,
    cmd::Trend,
    cmd::SwingCharting,
    cmd::Overlay,
    cmd::Correlation,
    cmd::HistoricalCorrelation,
    cmd::Fibonacci,
    cmd::Predictor, // pro
    cmd::Cascade,
    cmd::TileVertical,
    cmd::TileHorizontal,
    cmd::ArrangeIcons,
    cmd::CloseAll, // window
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
    for (int id : gated)
        menu.SetGreyed(id, !open);
}

} // namespace velorin
