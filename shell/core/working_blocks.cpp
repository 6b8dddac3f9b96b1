#include "shell/core/working_blocks.h"

#include "chart_model/price_chart.h"
#include "market_data/data_source.h"
#include "shell/core/shell_state.h"
#include "shell/core/user_seam.h"

namespace velorin {

bool AllocateWorkingBlocks() {
    if (AllocateStagingBlocks()) return true;
    ReleaseStagingBlocks();
    Seam().ShowMessage("QDX-Velorin Memory Allocation Failed\n\nPlease close some applications",
                       "QDX-Velorin", MessageIcon::Stop);
    return false;
}

void FreeWorkingBlocks() { ReleaseStagingBlocks(); }

void ResetProgramState() {
    ResetShellState();
    ResetMarketDataState();
    ResetChartDefaults();
}

} // namespace velorin
