#pragma once
// The shell's program-wide records, alive from start-up to exit: the
// frame's own state, and the timing of the refresh cycle.

#include <cstdint>

namespace velorin {

struct ShellState {
    std::int32_t restoringLayout; // a layout is being restored: chart creation takes its rows
    std::int32_t batchRunning;    // a Make All batch: chart creation messages are silenced
    std::int32_t batchCancelled;  // the user cancelled the batch's conversion wait: the run stops
    std::int32_t lastConnectOk;   // the last connection command made its chart
    std::int32_t hintCaptured;    // the button bar holds the mouse for its hint
    char osMinorText[16];
    char settingsPath[512];
    char layoutPath[512];
};
extern ShellState shell;
void ResetShellState();

// The two periodic timers: 1 refreshes charts that wait for data while Real
// Time is off, 3 refetches every file and database source once the fetch
// frequency has passed.
struct RefreshCycle {
    std::int32_t realTimeOn; // the "Real Time" toggle; 1 at start
    std::int32_t fetchFrequencyMinutes;
    std::int64_t lastRefetchTime;    // seconds
    std::int32_t pendingRefreshRuns; // timer work done, counted
    std::int32_t refetchRuns;
};
extern RefreshCycle refreshCycle;
void ResetRefreshCycle();

inline constexpr int RealTimeTimerId = 1;
inline constexpr int RealTimeTimerMilliseconds = 25000;
inline constexpr int RefetchTimerId = 3;
inline constexpr int RefetchTimerMilliseconds = 60000;

enum class TimerWork { None, RefreshPendingCharts, RefetchAllSources };

// What one tick of timer `timerId` does at `now` (seconds) with
// `chartCount` charts open: nothing without charts or during a batch run;
// timer 1 only while Real Time is off; timer 3 only once the fetch frequency
// has passed, and then it counts from `now` again.
TimerWork DueTimerWork(int timerId, int chartCount, std::int64_t now);

} // namespace velorin
