#pragma once
// Charts of two instruments: the chart in front and a second one the user
// picks by clicking it (or the two windows a Make All run names). The two
// sources are paired by date once, at creation, and the result stays frozen.

#include "chart_model/creation.h"

namespace velorin {

// "Correlation", "Historical Correlation", "Price Ratio", "Spread",
// "Relative Strength" or "Relative Performance" of the two charts in a
// window of its own. Returns 1 when the window stands, else 0 (after a
// message unless a batch run is going).
int CreateTwoSeriesChart(const char* kindName, const CreationMode& mode = {});

// The two charts' closes one over the other ("Overlay"); returns as above.
int CreateOverlayChart(const char* kindName, const CreationMode& mode = {});

} // namespace velorin
