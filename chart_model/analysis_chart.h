#pragma once
// Before writing code here, read DEVELOPERS.md at the repository root: team rules.
// Analyses as charts of their own: making one from the chart in front, and
// running a chart's engines again when its data or its parameters change.

#include "chart_model/chart.h"

namespace velorin {

// Windows the analysis code needs from the desk; the windowing layer
// installs them (tests install their own).
struct DeskWindowHooks {
    // The chart the commands work on (the active child, or a minimised one
    // directly under it), with its window; nullptr when the desk is empty.
    Chart* (*activeChart)(WindowId* windowOut) = nullptr;
    // Repaint a chart window, erasing first.
    void (*invalidate)(WindowId window) = nullptr;
};
extern DeskWindowHooks deskWindowHooks;

// "RMA" and "Stdev" periods for a chart of `rowCount` rows.
void DefaultRmaPeriods(int rowCount, std::int32_t periods[4]);

// Opens an analysis of the chart in front in a window of its own, with the
// first computation done. Returns 1 when the window stands, else 0 (after
// a message unless a batch run is going).
int CreateAnalysisChart(const char* kindName);

// Runs every engine of the chart's kind into its model series, with its
// current parameters, over the source's row count. Kinds without engines
// are left alone.
void RunChartEngines(Chart& chart);

// After a data change: title and caption brought up to date, the engines
// run again when the chart has enough rows, and the window repainted.
void RecomputeChart(WindowId window, Chart& chart);

// After an OK of the period dialogs: only the engine that uses the changed
// value runs again (`selectedCurve` as the curve menu set it).
void RecomputeAfterPeriodChange(Chart& chart, int selectedCurve);

} // namespace velorin
