#pragma once
// Analyses as charts of their own: making one from the chart in front, and
// running a chart's engines again when its data or its parameters change.

#include "chart_model/chart.h"
#include "chart_model/creation.h"

namespace velorin {

// "RMA" and "Stdev" periods for a chart of `rowCount` rows.
void DefaultRmaPeriods(int rowCount, std::int32_t periods[4]);

// Opens an analysis of the chart in front in a window of its own, with the
// first computation done. Returns 1 when the window stands, else 0 (after
// a message unless a batch run is going).
int CreateAnalysisChart(const char* kindName, const CreationMode& mode = {});

// Runs every engine of the chart's kind into its model series, with its
// current parameters, over the source's row count. Kinds without engines
// are left alone.
void RunChartEngines(Chart& chart);

// After a data change: title and caption brought up to date, the engines
// run again when the chart has enough rows, and the window repainted. A
// Data View is refreshed from its source instead; after a "Fibonacci" chart
// every Levels View shows its levels anew.
void RecomputeChart(WindowId window, Chart& chart);

// After an OK of the period dialogs: only the engine that uses the changed
// value runs again (`selectedCurve` as the curve menu set it).
void RecomputeAfterPeriodChange(Chart& chart, int selectedCurve);

} // namespace velorin
