#include "shell/core/frame_commands.h"

#include <cstring>
#include <ctime>

#include "base/user_seam.h"
#include "chart_model/analysis_chart.h"
#include "chart_model/live_update.h"
#include "chart_model/price_chart.h"
#include "chart_model/two_series_chart.h"
#include "market_data/connect.h"
#include "market_data/data_file.h"
#include "market_data/data_source.h"
#include "market_data/odbc_dialog.h"
#include "market_data/odbc_feed.h"
#include "rendering/palette.h"
#include "rendering/style.h"
#include "resources/command_ids.h"
#include "shell/core/batch.h"
#include "shell/core/button_bar.h"
#include "shell/core/frame_rules.h"
#include "shell/core/layout_commands.h"
#include "shell/core/live_commands.h"
#include "shell/core/shell_state.h"

namespace velorin {
namespace {

void Inform(const char* text) {
    Seam().ShowMessage(text, "QDX-Velorin", MessageIcon::Information);
}

bool IsCompanionView(const Chart& chart) {
    return std::strcmp(chart.kindName, "Data View") == 0 ||
           std::strcmp(chart.kindName, "Levels View") == 0;
}

// A 0/1 option and its check mark: checked while set, or while clear.
void Toggle(Frame& frame, int commandId, std::int32_t& flag, bool checkedWhenSet) {
    flag = flag ? 0 : 1;
    frame.SetChecked(commandId, checkedWhenSet ? flag != 0 : flag == 0);
}

} // namespace

bool ChartLimitOk() {
    if (const char* m = ChartLimitMessage(deskRegistry.chartCount, shell.restoringLayout)) {
        Seam().ShowMessage(m, ChartLimitCaption, MessageIcon::Information);
        return false;
    }
    return true;
}

void ConnectDataFile(Frame& frame, const CreationMode& mode) {
    shell.lastConnectOk = 0;
    if (const char* m = SourceLimitMessage(marketData.nextSourceSlot, true)) return Inform(m);
    if (!ChartLimitOk()) return;
    if (!LoadDataFile(shell.restoringLayout)) return;
    WaitCursor wait;
    if (ConnectDataSource() && CreatePriceChart("Price", 0, mode) == 1) {
        shell.lastConnectOk = 1;
        UpdateFrameMenuState(frame);
    }
}

// Connection > Database...: the dialog (skipped while restoring a layout),
// one connection for the query, the source and its chart, and the
// disconnect whenever the connect succeeded. After "Save All" (1) the
// Make All run of the whole database takes the connection instead.
void ConnectDatabase(Frame& frame, const CreationMode& mode) {
    shell.lastConnectOk = 0;
    if (const char* m = SourceLimitMessage(marketData.nextSourceSlot, false)) return Inform(m);
    if (!ChartLimitOk()) return;
    const int result = shell.restoringLayout ? SqlDialogOk : RunSqlDialog();
    if (result == SqlDialogCancel) return;
    if (OdbcConnect() != 0) return;
    WaitCursor wait;
    if (result == SqlDialogSaveAll) {
        StageDatabaseQuery(result); // builds the statement from the fields, runs nothing
        RunDatabaseBatch(frame);
    } else if (StageDatabaseQuery(result) && ConnectDataSource() &&
               CreatePriceChart("Price", 0, mode) == 1) {
        shell.lastConnectOk = 1;
        UpdateFrameMenuState(frame);
    }
    OdbcDisconnect();
}

namespace {

// Thin, Medium and Thick of the price, model and attachment lines: three
// groups of three ids. Nothing happens when the value is already set.
void SetThickness(Frame& frame, int commandId) {
    static constexpr int groupFirst[] = {cmd::PriceThin, cmd::ModelThin, cmd::AttachmentThin};
    std::int32_t* const targets[] = {&drawingStyle.priceThickness, &drawingStyle.modelThickness,
                                     &drawingStyle.attachmentThickness};
    for (int group = 0; group < 3; ++group) {
        const int first = groupFirst[group];
        if (commandId < first || commandId > first + 2) continue;
        const int value = commandId - first + 1;
        if (*targets[group] == value) return;
        for (int id = first; id <= first + 2; ++id)
            frame.SetChecked(id, id == commandId);
        *targets[group] = value;
        frame.RepaintAllCharts();
        return;
    }
}

// The analyses of one Make All, stopping at the first that fails; tiled
// one above the other when all of them opened.
void MakeAll(Frame& frame, bool prices) {
    if (!frame.ActiveChart(nullptr)) return Inform("Non Existent Connection To Data source");
    int count = 0;
    const char* const* kinds = prices ? MakeAllPriceKinds(&count) : MakeAllVolumeKinds(&count);
    for (int i = 0; i < count; ++i) {
        if (!ChartLimitOk()) return;
        if (CreateAnalysisChart(kinds[i]) != 1) return;
    }
    frame.Tile(true);
}

void SetStyle(Frame& frame, int commandId) {
    // The styles look at the window in front without the companion test.
    WindowId window = 0;
    Chart* chart = frame.ActiveChart(&window);
    if (!chart) return;
    if (const char* m =
            StyleRefusal(commandId, chart->kind, chart->rowCount, chart->hasFullColumns))
        return Inform(m);
    ChartView& v = *chart->view;
    v.showLine = commandId == cmd::PriceLineButton;
    v.showHighLow = commandId == cmd::HighLowButton;
    v.showBar = commandId == cmd::BarChartButton;
    v.showCandle = commandId == cmd::CandleStickButton;
    frame.Invalidate(window);
}

// Commands only the button bar sends.
void ButtonCommand(Frame& frame, int id) {
    if (id >= cmd::PriceLineButton && id <= cmd::CandleStickButton) return SetStyle(frame, id);
    WindowId window = 0;
    Chart* chart = RequireChart(frame, &window);
    if (!chart) return;
    if (const char* m = ChartCommandRefusal(id, chart->kind)) return Inform(m);
    switch (id) {
    case cmd::ZoomIn:
    case cmd::ZoomOut:
        chart->view->resolution = id == cmd::ZoomIn ? ZoomInResolution(chart->view->resolution)
                                                    : ZoomOutResolution(chart->view->resolution);
        frame.Invalidate(window);
        break;
    case cmd::ToggleGridButton:
        frame.SendChartCommand(window, cmd::ToggleGrid);
        break;
    case cmd::DataViewButton:
        frame.OpenDataView(window, *chart);
        break;
    case cmd::SelectEndPointButton:
        frame.SendChartCommand(window, cmd::SelectEndPoint);
        break;
    case cmd::SelectAllDataButton:
        frame.SendChartCommand(window, cmd::GetAll);
        break;
    case cmd::DrawHoriLineButton:
        frame.SendChartCommand(window, cmd::DrawHorizontal);
        break;
    case cmd::DrawVertLineButton:
        frame.SendChartCommand(window, cmd::DrawVertical);
        break;
    case cmd::DrawTrendButton:
        frame.SendChartCommand(window, cmd::DrawTrend);
        break;
    case cmd::DrawChannelButton:
        frame.SendChartCommand(window, cmd::DrawChannel);
        break;
    default:
        break;
    }
}

} // namespace

Chart* RequireChart(Frame& frame, WindowId* windowOut) {
    Chart* chart = frame.ActiveChart(windowOut);
    if (!chart) return nullptr;
    if (IsCompanionView(*chart)) {
        Inform("Please Select Chart");
        return nullptr;
    }
    return chart;
}

void UpdateFrameMenuState(Frame& frame) {
    ButtonState* buttons = frame.ButtonStates();
    UpdateMenuState(frame, deskRegistry.chartCount, buttons, buttons ? ButtonCount : 0);
}

void CloseAllCharts(Frame& frame) {
    frame.CloseAllChildren();
    ClearDesk();
    UpdateFrameMenuState(frame);
}

void FrameTimerTick(int timerId) {
    const auto now = static_cast<std::int64_t>(std::time(nullptr));
    switch (DueTimerWork(timerId, deskRegistry.chartCount, now)) {
    case TimerWork::None:
        return;
    case TimerWork::RefreshPendingCharts: {
        WaitCursor wait;
        RefreshPendingCharts();
        return;
    }
    case TimerWork::RefetchAllSources: {
        WaitCursor wait;
        RefetchAllSources();
        return;
    }
    }
}

void FrameCommand(Frame& frame, int id) {
    switch (id) {
    case cmd::New:
    case cmd::Open:
    case cmd::Save:
    case cmd::SaveAs:
    case cmd::Restore:
        LayoutCommand(frame, id);
        break;
    case cmd::Exit:
        frame.DestroyFrame();
        break;
    case cmd::Datafile:
        ConnectDataFile(frame);
        break;
    case cmd::Database:
        ConnectDatabase(frame);
        break;
    case cmd::FilterData:
        Toggle(frame, id, marketData.filterOn, true);
        break;
    case cmd::RealTime:
        ToggleRealTime(frame);
        break;
    case cmd::Connect:
        ConnectLive(frame);
        break;
    case cmd::FetchFrequency:
        FetchFrequencyCommand();
        break;
    case cmd::DataValueDefault:
        Toggle(frame, id, drawingStyle.defaultFreePlaced, false);
        break;
    case cmd::LineExtendDefault:
        Toggle(frame, id, drawingStyle.defaultExtended, true);
        break;
    case cmd::DefaultColours:
        RestoreDefaultColours();
        frame.RepaintAllCharts();
        break;
    case cmd::Cascade:
        frame.Cascade();
        break;
    case cmd::TileVertical:
    case cmd::TileHorizontal:
        frame.Tile(id == cmd::TileHorizontal);
        break;
    case cmd::ArrangeIcons:
        frame.ArrangeIcons();
        break;
    case cmd::CloseAll:
        CloseAllCharts(frame);
        break;
    case cmd::About:
        frame.ShowAbout();
        break;
    case cmd::HelpContents:
        frame.ShowHelpContents();
        break;
    case cmd::SaveChartAs:
        SaveChartImage(&frame, std::string(), shell.batchRunning != 0);
        break;
    case cmd::Print:
        frame.PrintDesk("Velorin Printing");
        break;
    case cmd::PrinterSetup:
        frame.PrinterSetup();
        break;
    case cmd::MakeAllPrices:
    case cmd::MakeAllVolumes: {
        WaitCursor wait;
        MakeAll(frame, id == cmd::MakeAllPrices);
        break;
    }
    default:
        if (id >= cmd::PriceThin && id <= cmd::AttachmentThick) {
            SetThickness(frame, id);
        } else if (id >= cmd::ZoomIn && id <= cmd::DrawChannelButton) {
            ButtonCommand(frame, id);
        } else if (const ChartKindInfo* kind = KindByCommand(id);
                   kind && kind->windowClass == WindowClass::PriceChild &&
                   kind->layout != LayoutPair) {
            if (!ChartLimitOk()) return;
            WaitCursor wait;
            CreateAnalysisChart(kind->kindName);
        } else if (kind && kind->layout == LayoutPair) {
            if (!ChartLimitOk()) return;
            WaitCursor wait;
            if (kind->windowClass == WindowClass::OverlayChild)
                CreateOverlayChart(kind->kindName);
            else
                CreateTwoSeriesChart(kind->kindName);
        }
        break;
    }
}

} // namespace velorin
