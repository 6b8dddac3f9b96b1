#pragma once
// Before writing code here, read DEVELOPERS.md at the repository root: team rules.
// The shell's program-wide state: one record, alive from start-up to exit.

#include <cstdint>

namespace velorin {

inline constexpr int MaxCharts = 50;

struct ShellState {
    bool frameExists;            // the frame window has been created
    std::int32_t chartCount;     // open MDI children of every class; limit MaxCharts
    std::int32_t restoringLayout;
    std::int32_t batchRunning;   // chart creation messages are silenced
    std::int32_t realTimeOn;     // the "Real Time" toggle; 1 at start
    std::int32_t fetchFrequencyMinutes;
    std::int64_t lastRefetchTime; // seconds
    char osMinorText[16];
    char settingsPath[512];
    std::int32_t hintCaptured;

    // Frame command options.
    std::int32_t lastConnectOk;
    char layoutPath[512];
    std::int32_t defaultFreePlaced; // "Data Value": 1 at start, item checked when 0
    std::int32_t defaultExtended;   // "Line Extend"
    std::int32_t priceThickness;    // 1, 2 or 3
    std::int32_t modelThickness;
    std::int32_t attachmentThickness;
};

extern ShellState shell;

// Start-up values.
void ResetShellState();

} // namespace velorin

namespace velorin {

// Work of the periodic timers, installed by the live data layer.
struct CycleHooks {
    void (*refreshPendingCharts)() = nullptr;
    void (*refetchAllSources)() = nullptr;
};
inline CycleHooks cycleHooks;

} // namespace velorin
