#include "views/levels_view.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "base/user_seam.h"
#include "chart_model/desk.h"
#include "chart_model/period_dialogs.h"
#include "market_data/data_source.h"

namespace velorin {
namespace {

void Say(const char* text) {
    Seam().ShowMessage(text, "QDX-Velorin", MessageIcon::Information);
}

constexpr const char* Labels[LevelsRowCount] = {
    " Resistance 2", " Resistance 1", " Level 1", " Level 2",   " Level 3",   " Level 4",
    " Level 5",      " Level 6",      " Level 7", " Support 1", " Support 2", " Price"};

bool IsFibonacci(const Chart& chart) {
    const ChartKindInfo* info = KindById(chart.kind);
    return info && info->layout == LayoutFibonacci;
}

} // namespace

int CreateLevelsView(const CreationMode& mode) {
    WindowId front = 0;
    const Chart* from = TheDesk().ActiveChart(&front);
    if (!from) {
        Say("No window handle");
        return 0;
    }
    if (!IsFibonacci(*from)) {
        Say("Please select Fibonacci Chart first");
        return 0;
    }
    const ChartKindInfo* info = KindByName("Levels View");
    Chart* chart = info ? NewChart(info->layout) : nullptr;
    if (!chart) {
        Say("Memory Allocation For New Window failed - Please close some windows");
        return 0;
    }
    chart->kind = info->kind;
    std::snprintf(chart->kindName, sizeof chart->kindName, "%s", info->kindName);
    chart->levelsViewWindow = front;
    chart->hasFullColumns = from->hasFullColumns;
    chart->connectionId = from->connectionId;
    chart->sourceSlot = from->sourceSlot;
    chart->secondSourceSlot = -1;
    std::memcpy(chart->chartTitle, from->chartTitle, sizeof chart->chartTitle);
    chart->chartTitle[sizeof chart->chartTitle - 1] = '\0';
    DataSource* source = SourceAt(chart->sourceSlot);
    chart->rowCount = source ? source->rowCount : 0;
    std::snprintf(chart->windowCaption, sizeof chart->windowCaption, "Levels %.92s",
                  chart->chartTitle);

    ChildWindowRequest request{chart,
                               WindowClass::ResView,
                               chart->windowCaption,
                               WindowPlacement::SystemDefault,
                               0,
                               0,
                               LevelsViewWidth,
                               LevelsViewHeight,
                               false};
    if (mode.restoring()) {
        request.placement = WindowPlacement::Given;
        mode.layout->Rectangle(mode.layoutRow, &request.x, &request.y, &request.width,
                               &request.height);
    }
    const bool room = mode.restoring() || deskRegistry.chartCount < MaxCharts;
    const WindowId window = room ? TheDesk().CreateChild(request) : 0;
    if (!window) {
        Say("Unable to create Levels View - Please close some Windows");
        FreeChartBlocks(chart);
        return 0;
    }
    if (source) ++source->refCount;
    RegisterChart();
    return 1;
}

void LevelsRows(const Chart& fibonacci, LevelsRow rows[LevelsRowCount]) {
    const std::array<double, 12> levels = ChartFibonacciLevels(fibonacci);
    for (int i = 0; i < LevelsRowCount; ++i) {
        LevelsRow& row = rows[i];
        row.label = Labels[i];
        row.value = levels[static_cast<std::size_t>(i)];
        // "%4f": six decimals (never narrower than four), in the "C" form.
        const auto r = std::to_chars(row.text, row.text + sizeof row.text - 1, row.value,
                                     std::chars_format::fixed, 6);
        row.text[r.ec == std::errc() ? r.ptr - row.text : 0] = '\0';
    }
    // A value that is no number sorts last.
    const auto key = [](double v) { return std::isnan(v) ? -HUGE_VAL : v; };
    std::stable_sort(rows, rows + LevelsRowCount, [&key](const LevelsRow& a, const LevelsRow& b) {
        return key(a.value) > key(b.value);
    });
}

Chart* LevelsViewChart(const Chart& view) {
    if (view.levelsViewWindow == 0) {
        Say("No Associated Results Window");
        return nullptr;
    }
    return TheDesk().ChartOf(view.levelsViewWindow);
}

} // namespace velorin
