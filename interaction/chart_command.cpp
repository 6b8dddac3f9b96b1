#include "interaction/chart_command.h"

#include <cstring>

#include "base/user_seam.h"
#include "chart_model/analysis_chart.h"
#include "chart_model/desk.h"
#include "chart_model/period_dialogs.h"
#include "interaction/chart_menu.h"
#include "interaction/drawing_tools.h"
#include "interaction/mouse_state.h"
#include "market_data/data_source.h"
#include "rendering/palette.h"
#include "rendering/style.h"
#include "resources/command_ids.h"

namespace velorin {

namespace {

bool ValidSlot(int i) {
    return i >= 0 && i < MaxDrawnObjects;
}

// The first slot not in use, or MaxDrawnObjects when all nine are taken.
int FreeSlot(const std::int32_t (&inUse)[MaxDrawnObjects]) {
    int i = 0;
    while (i < MaxDrawnObjects && inUse[i] != 0)
        ++i;
    return i;
}

// A tool armed in an earlier command that never got its clicks.
void EndOpenTool(ChartWindowPort& window) {
    ChartMouseState& m = chartMouse;
    std::int32_t* flags[] = {&m.trendTool,         &m.channelTool,     &m.gannTool,
                             &m.verticalTool,      &m.horizontalTool,  &m.endPointTool,
                             &m.moveTrendTool,     &m.moveChannelTool, &m.moveVerticalTool,
                             &m.moveHorizontalTool};
    bool open = false;
    for (std::int32_t* f : flags)
        open = open || *f != 0;
    if (!open) return;
    window.SetCaption(SavedCaption(m));
    for (std::int32_t* f : flags)
        *f = 0;
    m.toolArmed = 0;
}

// The mouse and cursor go to the tool; the caption is kept for its end and,
// with a prompt, replaced by it.
void TakeMouseForTool(ChartWindowPort& window, const char* prompt) {
    window.Capture(true);
    window.SetRingCursor();
    SaveCaption(chartMouse, window.Caption());
    if (prompt) window.SetCaption(prompt);
}

struct ToolWords {
    const char* prompt;
    const char* fullText; // all nine slots taken
    const char* fullCaption;
};

constexpr ToolWords trendWords{TrendPrompts[0], "You already have maximum number of Trend Lines",
                               "Trend Line"};
constexpr ToolWords channelWords{
    ChannelPrompts[0], "You already have maximum number of Channels Lines", "Channel Lines"};
constexpr ToolWords gannWords{GannPrompt, "You already have maximum number of Gann Lines",
                              "Gann Lines"};
constexpr ToolWords verticalWords{
    VerticalPrompt, "You already have maximum number of Vertical Lines", "Verical Line"};
constexpr ToolWords horizontalWords{
    HorizontalPrompt, "You already have maximum number of Horizontal Lines", "Horizontal Line"};

void ShowFull(const ToolWords& words) {
    Seam().ShowMessage(words.fullText, words.fullCaption, MessageIcon::Warning);
}

// Arms a line tool on the first free slot of its set. Returns the slot, or
// -1 when the set is full (after the message).
int ArmLineTool(ChartWindowPort& window, std::int32_t& flag,
                const std::int32_t (&inUse)[MaxDrawnObjects], const ToolWords& words) {
    ChartMouseState& m = chartMouse;
    m.toolArmed = 1;
    flag = 1;
    const int i = FreeSlot(inUse);
    if (i == MaxDrawnObjects) {
        m.toolArmed = 0;
        flag = 0;
        ShowFull(words);
        return -1;
    }
    TakeMouseForTool(window, words.prompt);
    return i;
}

void ArmTrend(ChartWindowPort& window, DrawingSet& d) {
    TrendLineSet& t = *d.trendLines;
    const int i = ArmLineTool(window, chartMouse.trendTool, t.inUse, trendWords);
    if (i < 0) return;
    chartMouse.selectedTrend = i;
    t.freePlaced[i] = drawingStyle.defaultFreePlaced;
    t.extended[i] = drawingStyle.defaultExtended;
    t.inUse[i] = 0;
    chartMouse.toolStep = 0;
}

void ArmChannel(ChartWindowPort& window, DrawingSet& d) {
    ChannelSet& c = *d.channels;
    const int i = ArmLineTool(window, chartMouse.channelTool, c.inUse, channelWords);
    if (i < 0) return;
    chartMouse.selectedChannel = i;
    c.freePlaced[i] = drawingStyle.defaultFreePlaced;
    c.extended[i] = drawingStyle.defaultExtended;
    chartMouse.toolStep = 0;
}

void ArmGann(ChartWindowPort& window, DrawingSet& d, bool up) {
    GannSet& g = *d.gannLines;
    const int i = ArmLineTool(window, chartMouse.gannTool, g.inUse, gannWords);
    if (i < 0) return;
    chartMouse.selectedGann = i;
    g.freePlaced[i] = 1;
    g.drawUp[i] = up ? 1 : 0;
    g.inUse[i] = 0;
    g.extended[i] = drawingStyle.defaultExtended;
}

void ArmVertical(ChartWindowPort& window, DrawingSet& d) {
    VerticalLineSet& v = *d.verticalLines;
    const int i = ArmLineTool(window, chartMouse.verticalTool, v.inUse, verticalWords);
    if (i < 0) return;
    chartMouse.selectedVertical = i;
    v.inUse[i] = 0;
}

void ArmHorizontal(ChartWindowPort& window, DrawingSet& d) {
    HorizontalLineSet& h = *d.horizontalLines;
    const int i = ArmLineTool(window, chartMouse.horizontalTool, h.inUse, horizontalWords);
    if (i < 0) return;
    chartMouse.selectedHorizontal = i;
    h.inUse[i] = 0;
}

// The moves keep the caption; the next click sets the object down.
void ArmMove(ChartWindowPort& window, std::int32_t& flag) {
    chartMouse.toolArmed = 1;
    flag = 1;
    TakeMouseForTool(window, nullptr);
}

void ClearTrend(TrendLineSet& t, int i) {
    t.inUse[i] = 0;
    DeleteAndClear(t.regions[i]);
}
void ClearChannel(ChannelSet& c, int i) {
    c.inUse[i] = 0;
    DeleteAndClear(c.regions[i]);
    DeleteAndClear(c.secondRegions[i]);
}
void ClearGann(GannSet& g, int i) {
    g.inUse[i] = 0;
    // The second fan line's handle is the live region; all three are forgotten.
    DeleteRegion(g.regions[1][i]);
    for (auto& fan : g.regions)
        fan[i] = nullptr;
}
void ClearVertical(VerticalLineSet& v, int i) {
    v.inUse[i] = 0;
    DeleteAndClear(v.regions[i]);
}
void ClearHorizontal(HorizontalLineSet& h, int i) {
    h.inUse[i] = 0;
    DeleteAndClear(h.regions[i]);
}

template <typename Set, typename Clear> void ClearAll(Set& set, Clear clear) {
    for (int i = 0; i < MaxDrawnObjects; ++i)
        if (set.inUse[i]) clear(set, i);
}

template <typename Set, typename Clear> void ClearOne(Set& set, int i, Clear clear) {
    if (ValidSlot(i)) clear(set, i);
}

void Toggle(std::int32_t& value) {
    value = value == 0 ? 1 : 0;
}

// A copy of the selected trend line on top of it, picked up at once.
void CloneTrend(ChartWindowPort& window, DrawingSet& d) {
    TrendLineSet& t = *d.trendLines;
    const int from = chartMouse.selectedTrend;
    if (!ValidSlot(from)) return;
    const int to = FreeSlot(t.inUse);
    if (to == MaxDrawnObjects) {
        ShowFull(trendWords);
        return;
    }
    t.baseValue[to] = t.baseValue[from];
    t.slopeAngle[to] = t.slopeAngle[from];
    t.freePlaced[to] = t.freePlaced[from];
    t.extended[to] = t.extended[from];
    t.inUse[to] = t.inUse[from];
    t.pointA[to] = t.pointA[from];
    t.valueA[to] = t.valueA[from];
    std::memcpy(t.dateA[to], t.dateA[from], DateTextSize);
    t.pointB[to] = t.pointB[from];
    t.valueB[to] = t.valueB[from];
    std::memcpy(t.dateB[to], t.dateB[from], DateTextSize);
    t.length[to] = t.length[from];
    t.unitY[to] = t.unitY[from];
    t.unitX[to] = t.unitX[from];
    chartMouse.selectedTrend = to;
    window.Invalidate();
    ArmMove(window, chartMouse.moveTrendTool);
}

void SetPredictorTerm(ChartWindowPort& window, Chart& chart, int commandId) {
    if (commandId == cmd::PredictorLong && chart.rowCount < 200) {
        Seam().ShowMessage("Insufficient data for long term analysis",
                           "QDX-Velorin Trading Discipline", MessageIcon::Information);
        return;
    }
    chart.predictorShort = commandId == cmd::PredictorShort ? 1 : 0;
    chart.predictorMedium = commandId == cmd::PredictorMedium ? 1 : 0;
    chart.predictorLong = commandId == cmd::PredictorLong ? 1 : 0;
    if (chart.analysisParams)
        chart.analysisParams->period[1] = commandId == cmd::PredictorShort    ? 5
                                          : commandId == cmd::PredictorMedium ? 20
                                                                              : 60;
    RunChartEngines(chart);
    window.Invalidate();
}

void RunPeriods(ChartWindowPort& window, Chart& chart) {
    const int selected = chartMouse.selectedCurve;
    // A kind with "Periods ..." in its chart menu sets its smoothings in one dialog.
    const ChartKindInfo* info = KindByName(chart.kindName);
    const int result = info && info->chartMenu.periodsItem ? RunPeriodThreeDialog(chart)
                                                           : RunPeriodDialog(chart, selected);
    if (result != 0) return;
    RecomputeAfterPeriodChange(chart, selected);
    window.Invalidate();
}

void SetStyle(ChartView& v, int bar, int candle, int line) {
    v.showBar = bar;
    v.showCandle = candle;
    v.showLine = line;
}

// Commands on drawn objects; false when the id isn't one of them.
bool DrawingCommand(ChartWindowPort& window, DrawingSet& d, int commandId) {
    ChartMouseState& m = chartMouse;
    switch (commandId) {
    case cmd::DrawTrend:
        ArmTrend(window, d);
        return true;
    case cmd::DrawChannel:
        ArmChannel(window, d);
        return true;
    case cmd::GannUp:
    case cmd::GannDown:
        ArmGann(window, d, commandId == cmd::GannUp);
        return true;
    case cmd::DrawVertical:
        ArmVertical(window, d);
        return true;
    case cmd::DrawHorizontal:
        ArmHorizontal(window, d);
        return true;
    case cmd::MoveTrend:
        ArmMove(window, m.moveTrendTool);
        return true;
    case cmd::MoveChannel:
        ArmMove(window, m.moveChannelTool);
        return true;
    case cmd::MoveVertical:
        ArmMove(window, m.moveVerticalTool);
        return true;
    case cmd::MoveHorizontal:
        ArmMove(window, m.moveHorizontalTool);
        return true;
    case cmd::CloneTrend:
        CloneTrend(window, d);
        return true;
    case cmd::ClearTrend:
        ClearOne(*d.trendLines, m.selectedTrend, ClearTrend);
        break;
    case cmd::ClearChannel:
        ClearOne(*d.channels, m.selectedChannel, ClearChannel);
        break;
    case cmd::ClearGann:
        ClearOne(*d.gannLines, m.selectedGann, ClearGann);
        break;
    case cmd::ClearVertical:
        ClearOne(*d.verticalLines, m.selectedVertical, ClearVertical);
        break;
    case cmd::ClearHorizontal:
        ClearOne(*d.horizontalLines, m.selectedHorizontal, ClearHorizontal);
        break;
    case cmd::ClearAllTrends:
        ClearAll(*d.trendLines, ClearTrend);
        break;
    case cmd::ClearAllChannels:
        ClearAll(*d.channels, ClearChannel);
        break;
    case cmd::ClearAllGanns:
        ClearAll(*d.gannLines, ClearGann);
        break;
    case cmd::ClearAllVerticals:
        ClearAll(*d.verticalLines, ClearVertical);
        break;
    case cmd::ClearAllHorizontals:
        ClearAll(*d.horizontalLines, ClearHorizontal);
        break;
    case cmd::ExtendTrend:
        if (ValidSlot(m.selectedTrend)) Toggle(d.trendLines->extended[m.selectedTrend]);
        break;
    case cmd::ExtendChannel:
        if (ValidSlot(m.selectedChannel)) Toggle(d.channels->extended[m.selectedChannel]);
        break;
    case cmd::ExtendGann:
        if (ValidSlot(m.selectedGann)) Toggle(d.gannLines->extended[m.selectedGann]);
        break;
    default:
        return false;
    }
    window.Invalidate();
    return true;
}

} // namespace

bool ColourCommand(int commandId) {
    int target = 0;
    switch (commandId) {
    case cmd::CurveColour:
        target = chartMouse.colourTarget;
        break;
    case cmd::GridColour:
        target = 52;
        break;
    case cmd::TextColour:
        target = 51;
        break;
    case cmd::BackgroundColour:
        target = 53;
        break;
    default:
        return false;
    }
    if (ChooseColour(target) == 1) TheDesk().RepaintAllCharts();
    return true;
}

int PaletteEntryOfTarget(int target) {
    switch (target) {
    case 0:
        return PaletteTrendLines;
    case 1:
        return PaletteChannelLines;
    case 2:
        return PaletteGannLines;
    case 3:
        return PaletteVerticalLines;
    case 4:
        return PaletteHorizontalLines;
    case 5:
        return PaletteClose;
    case 6:
        return PaletteHighLow;
    case 7:
        return PaletteSlot3;
    case 8:
        return PaletteSlot4;
    case 51:
        return PaletteText;
    case 52:
        return PaletteGrid;
    case 53:
        return PaletteBackground;
    default:
        return target >= 9 && target <= 14 ? target : -1;
    }
}

int ChooseColour(int target) {
    const int entry = PaletteEntryOfTarget(target);
    if (entry < 0) return 0;
    // The palette keeps red in the low byte; the dialog takes 0x00RRGGBB.
    const Colour c = palette.current[entry];
    std::uint32_t rgb = (static_cast<std::uint32_t>(RedOf(c)) << 16) |
                        (static_cast<std::uint32_t>(GreenOf(c)) << 8) |
                        static_cast<std::uint32_t>(BlueOf(c));
    if (Seam().ChooseColour(rgb) == 1)
        palette.current[entry] =
            MakeColour(static_cast<int>((rgb >> 16) & 0xFF), static_cast<int>((rgb >> 8) & 0xFF),
                       static_cast<int>(rgb & 0xFF));
    return 1;
}

void ChartCommand(ChartWindowPort& window, Chart& chart, int commandId) {
    EndOpenTool(window);
    ChartMouseState& m = chartMouse;

    if (chart.drawings && DrawingCommand(window, *chart.drawings, commandId)) return;

    if (const double resolution = ResolutionOfCommand(commandId); resolution > 0.0) {
        if (chart.view) chart.view->resolution = resolution;
        window.Invalidate();
        return;
    }

    switch (commandId) {
    case cmd::FibonacciValues:
        ShowFibonacciDialog(chart);
        break;
    case cmd::PeriodDialog:
        RunPeriods(window, chart);
        break;
    case cmd::DataSourceChange:
        TheDesk().ChangeDataSource(window.Id(), chart);
        break;
    case cmd::PriceScale:
        if (RunFracDialog(chart) == 0) window.Invalidate();
        break;
    case cmd::PredictorShort:
    case cmd::PredictorMedium:
    case cmd::PredictorLong:
        SetPredictorTerm(window, chart, commandId);
        break;
    case cmd::SelectEndPoint:
        m.toolArmed = 1;
        m.endPointTool = 1;
        TakeMouseForTool(window, EndPointPrompt);
        break;
    case cmd::GetAll:
        if (const DataSource* source = SourceAt(chart.sourceSlot))
            chart.rowCount = source->rowCount;
        if (chart.view) chart.view->resolution = 0.25;
        window.Invalidate();
        break;
    case cmd::StyleHighLow:
        if (chart.view) Toggle(chart.view->showHighLow);
        window.Invalidate();
        break;
    case cmd::StyleCandleStick:
        if (chart.view) SetStyle(*chart.view, 0, 1, 0);
        window.Invalidate();
        break;
    case cmd::StyleLine:
        if (chart.view) SetStyle(*chart.view, 0, 0, 1);
        window.Invalidate();
        break;
    case cmd::StyleBarchart:
        if (chart.view) SetStyle(*chart.view, 1, 0, 0);
        window.Invalidate();
        break;
    case cmd::ClearAllLines:
        // Every set, those the kind doesn't show and the highlights included.
        ReleaseDrawnObjects(&chart);
        window.Invalidate();
        break;
    case cmd::CurveColour:
    case cmd::GridColour:
    case cmd::TextColour:
    case cmd::BackgroundColour:
        ColourCommand(commandId);
        break;
    case cmd::ExtendEnvelopes:
        if (chart.fibonacciExtra) Toggle(chart.fibonacciExtra->extendEnvelopes);
        window.Invalidate();
        break;
    case cmd::FibonacciLines:
        if (chart.fibonacciExtra) Toggle(chart.fibonacciExtra->fibonacciLines);
        window.Invalidate();
        break;
    case cmd::DataView:
        TheDesk().OpenDataView(window.Id(), chart);
        break;
    case cmd::LevelsView:
        TheDesk().OpenLevelsView(window.Id(), chart);
        break;
    case cmd::TrendDataValue:
        if (chart.drawings && ValidSlot(m.selectedTrend)) {
            Toggle(chart.drawings->trendLines->freePlaced[m.selectedTrend]);
            chart.anchorsPending = 1;
            window.Invalidate();
        }
        break;
    case cmd::ChannelDataValue:
        if (chart.drawings && ValidSlot(m.selectedChannel)) {
            Toggle(chart.drawings->channels->freePlaced[m.selectedChannel]);
            chart.anchorsPending = 1;
            window.Invalidate();
        }
        break;
    case cmd::ToggleGrid:
        if (chart.view) Toggle(chart.view->gridOn);
        window.Invalidate();
        break;
    default:
        break;
    }
}

} // namespace velorin
