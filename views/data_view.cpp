#include "views/data_view.h"

#include <cstdio>
#include <cstring>

#include "base/user_seam.h"
#include "chart_model/desk.h"
#include "chart_model/price_chart.h"
#include "interaction/menu_items.h"
#include "market_data/data_source.h"
#include "rendering/palette.h"
#include "resources/command_ids.h"
#include "views/data_sheet.h"
#include "views/edited_rows.h"

namespace velorin {
namespace {

void Say(const char* text) {
    Seam().ShowMessage(text, "QDX-Velorin", MessageIcon::Information);
}

} // namespace

int CreateDataView(const CreationMode& mode) {
    Chart* from = TheDesk().ActiveChart(nullptr);
    if (!from) {
        Say("No window handle");
        return 0;
    }
    const ChartKindInfo* info = KindByName("Data View");
    Chart* chart = info ? NewChart(info->layout) : nullptr;
    if (!chart) {
        Say("Memory Allocation For New Window failed - Please close some windows");
        return 0;
    }
    const bool restoring = mode.restoring();
    chart->kind = info->kind;
    std::snprintf(chart->kindName, sizeof chart->kindName, "%s", info->kindName);
    if (restoring && chartDefaults.reuseSource) {
        chart->connectionId = chartDefaults.reuseConnectionId;
        chart->sourceSlot = chartDefaults.reuseSlot;
        std::memcpy(chart->chartTitle, chartDefaults.lastChartTitle, sizeof chart->chartTitle);
    } else {
        chart->connectionId = from->connectionId;
        chart->sourceSlot = from->sourceSlot;
        std::memcpy(chart->chartTitle, from->chartTitle, sizeof chart->chartTitle);
    }
    chart->chartTitle[sizeof chart->chartTitle - 1] = '\0';
    chart->hasFullColumns = restoring ? marketData.hasFullColumns : from->hasFullColumns;
    chart->secondSourceSlot = -1;
    DataSource* source = SourceAt(chart->sourceSlot);
    chart->rowCount = source ? source->rowCount : 0;
    std::snprintf(chart->windowCaption, sizeof chart->windowCaption, "Data %.94s",
                  chart->chartTitle);

    DataSheet* sheet = NewSheet(*chart);
    if (!sheet) {
        Say("can't create data view");
        FreeChartBlocks(chart);
        return 0;
    }
    if (source)
        FillSheet(*sheet, *source, chart->rowCount, chart->hasFullColumns, SheetFill::Creation);
    sheet->editable = source && source->tick == 0;

    ChildWindowRequest request{chart,
                               WindowClass::DataView,
                               chart->windowCaption,
                               WindowPlacement::SystemDefault,
                               0,
                               0,
                               DataViewWidth,
                               0,
                               false};
    if (restoring) {
        request.placement = WindowPlacement::Given;
        mode.layout->Rectangle(mode.layoutRow, &request.x, &request.y, &request.width,
                               &request.height);
    }
    const bool room = restoring || deskRegistry.chartCount < MaxCharts;
    const WindowId window = room ? TheDesk().CreateChild(request) : 0;
    if (!window) {
        Say("Unable to create Data View - Please close some");
        FreeChartBlocks(chart);
        return 0;
    }
    if (source) ++source->refCount;
    RegisterChart();
    return 1;
}

int UpdateSourceFromSheet(Chart& view) {
    DataSheet* sheet = SheetOf(view);
    if (!sheet || !sheet->changed) return 0;
    StageSheetRows(*sheet, view.hasFullColumns != 0);
    // Cleared first: the recomputation of this view refills a sheet with
    // nothing pending, so rows the rules refused leave the grid too.
    sheet->changed = 0;
    WaitCursor wait;
    return ApplyEditedRows(view.connectionId);
}

void ReloadSheet(Chart& view) {
    DataSheet* sheet = SheetOf(view);
    const DataSource* source = SourceAt(view.sourceSlot);
    if (!sheet) return;
    if (!source) {
        sheet->rows = 0;
        sheet->changed = 0;
        return;
    }
    FillSheet(*sheet, *source, view.rowCount, view.hasFullColumns != 0, SheetFill::Reload);
    sheet->editable = source->tick == 0; // the view may have moved to another source
}

bool RefreshSheet(Chart& view) {
    const DataSheet* sheet = SheetOf(view);
    if (!sheet || sheet->changed) return false;
    ReloadSheet(view);
    return true;
}

std::vector<MenuItem> DataViewMenu(bool tickSource) {
    using namespace menu_items;
    std::vector<MenuItem> items;
    if (!tickSource)
        items = {Item("Update", cmd::SheetUpdate), Item("Reset", cmd::SheetReset),
                 Item("Delete", cmd::SheetDelete)};
    const struct {
        const char* text;
        int background;
    } parts[] = {{"Sheet", cmd::SheetBackground},
                 {"Col Heading", cmd::ColHeadingBackground},
                 {"Row Heading", cmd::RowHeadingBackground}};
    items.push_back(Submenu("Colour"));
    for (const auto& part : parts) {
        items.push_back(Submenu(part.text));
        items.push_back(Item("Background ...", part.background));
        items.push_back(Item("Foreground ...", part.background + 1));
        items.push_back(EndSubmenu());
    }
    items.push_back(EndSubmenu());
    return items;
}

int SheetColourEntry(int commandId) {
    if (commandId < cmd::SheetBackground || commandId > cmd::RowHeadingForeground) return -1;
    return PaletteViewFirst + (commandId - cmd::SheetBackground);
}

bool ChooseSheetColour(int commandId) {
    const int entry = SheetColourEntry(commandId);
    if (entry < 0) return false;
    // The palette keeps red in the low byte; the dialog takes 0x00RRGGBB.
    const Colour c = palette.current[entry];
    std::uint32_t rgb = static_cast<std::uint32_t>(RedOf(c)) << 16 |
                        static_cast<std::uint32_t>(GreenOf(c)) << 8 |
                        static_cast<std::uint32_t>(BlueOf(c));
    if (Seam().ChooseColour(rgb) == 1)
        palette.current[entry] =
            MakeColour(static_cast<int>(rgb >> 16 & 0xFF), static_cast<int>(rgb >> 8 & 0xFF),
                       static_cast<int>(rgb & 0xFF));
    return true;
}

FollowStep CrosshairFollowStep(int cursorRow, int row) {
    if (row == cursorRow) return FollowStep::None;
    if (row == cursorRow - 1) return FollowStep::LineUp;
    if (row == cursorRow + 1) return FollowStep::LineDown;
    return FollowStep::MoveCursor;
}

} // namespace velorin
