#pragma once
// The Levels View: a small window listing the twelve Fibonacci levels of
// one "Fibonacci" chart at its last row, sorted by value. It points back
// to its chart and closes with it.

#include "chart_model/chart.h"
#include "chart_model/creation.h"

namespace velorin {

inline constexpr int LevelsRowCount = 12;
inline constexpr int LevelsViewWidth = 188;
inline constexpr int LevelsViewHeight = 272;

struct LevelsRow {
    const char* label; // with its leading blank: " Resistance 2" ... " Price"
    double value;
    char text[400]; // "%4f"
};

// Opens a Levels View of the "Fibonacci" chart in front: a companion record
// on the chart's source whose levelsViewWindow names the chart's window,
// and a window of class ResView captioned "Levels %s" with the chart's
// title, 188 by 272 (the layout row's rectangle while restoring). Adds a
// reference to the source and a window to the count. Returns 1, or 0 after
// a message: no chart ("No window handle"), another kind in front ("Please
// select Fibonacci Chart first"), no memory, or no window ("Unable to
// create Levels View - Please close some Windows", also when the desk holds
// its 50 windows).
int CreateLevelsView(const CreationMode& mode = {});

// The rows of a Levels View of `fibonacci`: the twelve levels with their
// labels, highest value first, as a price scale reads (equal values keep
// the order of the labels).
void LevelsRows(const Chart& fibonacci, LevelsRow rows[LevelsRowCount]);

// The chart a Levels View shows, found through the desk; nullptr (after
// "No Associated Results Window" for a view that names no chart) when gone.
Chart* LevelsViewChart(const Chart& view);

} // namespace velorin
