#include "shell/core/live_commands.h"

#include <cstdlib>
#include <string>

#include "base/user_seam.h"
#include "chart_model/analysis_chart.h"
#include "chart_model/chart_kinds.h"
#include "chart_model/live_update.h"
#include "chart_model/price_chart.h"
#include "market_data/connect.h"
#include "market_data/data_source.h"
#include "market_data/dde_client.h"
#include "market_data/source_dialog.h"
#include "resources/command_ids.h"
#include "shell/core/frame_commands.h"
#include "shell/core/frame_rules.h"
#include "shell/core/shell_state.h"

namespace velorin {
namespace {

void Inform(const char* text) {
    Seam().ShowMessage(text, "QDX-Velorin", MessageIcon::Information);
}

// The snapshot of a new conversation, with the two failure texts; true when
// its rows are staged.
bool StageLiveSnapshot() {
    switch (RequestLiveSnapshot()) {
    case LiveRequestResult::Ok:
        return true;
    case LiveRequestResult::NoConversation:
        Inform("Data source not available");
        return false;
    case LiveRequestResult::NoData:
        Inform("Data not available");
        return false;
    case LiveRequestResult::ReplyRejected:
        return false; // an unreadable reply is dropped in silence
    }
    return false;
}

bool HasTwoSources(const Chart& chart) {
    const ChartKindInfo* kind = KindById(chart.kind);
    return kind && kind->layout == LayoutPair;
}

// A slot no chart uses any more: its conversation ended, the slot freed.
void ReleaseIfUnused(int slot) {
    const DataSource* s = SourceAt(slot);
    if (!s || s->refCount > 0) return;
    DisconnectConversation(s->conversation);
    FreeDataSource(slot);
}

} // namespace

void ConnectLive(Frame& frame, const CreationMode& mode) {
    shell.lastConnectOk = 0;
    if (const char* m = SourceLimitMessage(marketData.nextSourceSlot, false)) return Inform(m);
    if (!ChartLimitOk()) return;
    if (!shell.restoringLayout && RunSourceDialog() != 0) return;
    WaitCursor wait;
    if (!StageLiveSnapshot()) return;
    if (!ConnectDataSource(mode.batch())) return;
    const Conversation conversation = marketData.liveConversation;
    if (CreatePriceChart("Price", 0, mode) != 1) {
        // The chart could not be made and took its source with it.
        DisconnectConversation(conversation);
        marketData.liveConversation = 0;
        return;
    }
    StartAdviseLoop(refreshCycle.realTimeOn != 0);
    shell.lastConnectOk = 1;
    UpdateFrameMenuState(frame);
}

void ChangeDataSource(Frame& frame, WindowId, Chart& target) {
    if (RunSourceDialog() != 0) return;
    WaitCursor wait;
    if (!StageLiveSnapshot()) return;
    if (!ConnectDataSource()) return;
    const int fresh = marketData.nextSourceSlot;
    SourceAt(fresh)->refCount = 0;
    const int old = target.sourceSlot;

    // Bottom window first; charts of two sources keep their old source.
    ChartWindowRef windows[MaxCharts];
    const int n = frame.ChartWindows(windows, MaxCharts);
    for (int i = n - 1; i >= 0; --i) {
        Chart& chart = *windows[i].chart;
        if (chart.sourceSlot != old || HasTwoSources(chart)) continue;
        MoveChartToSource(chart, fresh);
        const ChartKindInfo* kind = KindById(chart.kind);
        const WindowClass windowClass = kind ? kind->windowClass : WindowClass::PriceChild;
        if (windowClass == WindowClass::DataView) {
            frame.ResetDataView(windows[i].window);
        } else if (windowClass != WindowClass::ResView) {
            // Drawn lines belong to the old data.
            RecomputeChart(windows[i].window, chart);
            frame.SendChartCommand(windows[i].window, cmd::ClearAllLines);
        }
    }
    StartAdviseLoop(refreshCycle.realTimeOn != 0);
    ReleaseIfUnused(old);
    ReleaseIfUnused(fresh);
    ClaimSourceSlot();
    frame.UpdateLevelsViews();
    UpdateFrameMenuState(frame);
}

void ToggleRealTime(Frame& frame) {
    refreshCycle.realTimeOn = refreshCycle.realTimeOn ? 0 : 1;
    frame.SetChecked(cmd::RealTime, refreshCycle.realTimeOn != 0);
    TheDdeTransport().EnableCallback(0, refreshCycle.realTimeOn != 0);
}

int FetchFrequencyFromText(const char* text) {
    const long minutes = std::strtol(text, nullptr, 10);
    if (minutes < 2) return 1;
    if (minutes > 499) return 500;
    return static_cast<int>(minutes);
}

void FetchFrequencyCommand() {
    ComboField field;
    field.controlId = 1015;
    field.text = std::to_string(refreshCycle.fetchFrequencyMinutes);
    for (int minutes = 1; minutes <= 500; ++minutes)
        field.choices.push_back(std::to_string(minutes));
    ComboDialog dialog{"DATAFETCHFREQ", "Data Fetch Frequency", {field}};
    if (Seam().RunComboDialog(dialog) != 0) return;
    refreshCycle.fetchFrequencyMinutes = FetchFrequencyFromText(dialog.fields[0].text.c_str());
}

} // namespace velorin
