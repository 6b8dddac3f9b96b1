#include "shell/core/shell_state.h"

namespace velorin {

ShellState shell;
RefreshCycle refreshCycle;

void ResetShellState() {
    shell = {};
}

void ResetRefreshCycle() {
    refreshCycle = {};
    refreshCycle.realTimeOn = 1;
}

TimerWork DueTimerWork(int timerId, int chartCount, std::int64_t now) {
    // A batch run lets the event loop run while it waits for its GIFs; its
    // charts are neither refreshed nor refetched under it.
    if (chartCount == 0 || shell.batchRunning) return TimerWork::None;
    if (timerId == RealTimeTimerId) {
        if (refreshCycle.realTimeOn) return TimerWork::None;
        ++refreshCycle.pendingRefreshRuns;
        return TimerWork::RefreshPendingCharts;
    }
    if (timerId == RefetchTimerId) {
        const std::int64_t period = std::int64_t{refreshCycle.fetchFrequencyMinutes} * 60;
        if (now - refreshCycle.lastRefetchTime < period) return TimerWork::None;
        ++refreshCycle.refetchRuns;
        refreshCycle.lastRefetchTime = now;
        return TimerWork::RefetchAllSources;
    }
    return TimerWork::None;
}

} // namespace velorin
