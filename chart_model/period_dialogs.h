#pragma once
// The period and scale dialogs of analysis charts: "Period", "Periods" and
// "Price Scale", and the read-only "Fibonacci" levels. They only write into
// the chart record; the caller recomputes after OK.

#include <array>

#include "chart_model/chart.h"

namespace velorin {

// Each returns 0 after OK, whether or not the typed value was taken, and 1
// after Cancel. A value that fails its test changes nothing, silently.
int RunPeriodDialog(Chart& chart, int selectedCurve);
int RunPeriodThreeDialog(Chart& chart);
int RunFracDialog(Chart& chart);

// The twelve Fibonacci levels of a "Fibonacci" chart at the source's last
// row, in the order of FibonacciLevel; all MISSING_VALUE for a chart
// without its results.
std::array<double, 12> ChartFibonacciLevels(const Chart& chart);

// The twelve levels, each keyed by a coloured icon, until OK.
void ShowFibonacciDialog(const Chart& chart);

} // namespace velorin
