#include "shell/core/working_blocks.h"

#include "base/user_seam.h"
#include "chart_model/desk.h"
#include "chart_model/price_chart.h"
#include "interaction/mouse_state.h"
#include "interaction/two_series_command.h"
#include "market_data/data_source.h"
#include "market_data/date.h"
#include "market_data/dde_text.h"
#include "market_data/odbc_state.h"
#include "market_data/source_dialog.h"
#include "persistence/settings_file.h"
#include "rendering/palette.h"
#include "rendering/style.h"
#include "shell/core/shell_state.h"

namespace velorin {

bool AllocateWorkingBlocks() {
    if (AllocateStagingBlocks()) return true;
    ReleaseStagingBlocks();
    Seam().ShowMessage("QDX-Velorin Memory Allocation Failed\n\nPlease close some applications",
                       "QDX-Velorin", MessageIcon::Stop);
    return false;
}

void FreeWorkingBlocks() {
    ReleaseStagingBlocks();
}

void ResetProgramState() {
    // The shell
    ResetShellState();
    ResetRefreshCycle();
    // Market data: the source table and selection (the staging blocks stay), the date
    // rules, the database feed and its lists
    ResetMarketDataState();
    ResetDateRules();
    ResetOdbcFeedState();
    ResetDdeFeedState();
    ResetSourceLists();
    // Chart model: defaults of new charts, the desk registry
    ResetChartDefaults();
    ResetDeskRegistry();
    // Rendering and interaction: colours, line style, the mouse and tools
    ResetPalette();
    ResetDrawingStyle();
    ResetChartMouseState();
    ResetTwoSeriesMouseState();
    // Persistence: the image of the settings or layout file
    ResetSettings();
}

} // namespace velorin
