#pragma once
// Before writing code here, read DEVELOPERS.md at the repository root: team rules.
// Making the first chart window of a freshly connected data source.

#include <cstdint>

#include "chart_model/chart.h"

namespace velorin {

// Defaults for new charts and what chart creation keeps for the run.
struct ChartDefaults {
    std::int32_t reuseSource; // attach to an existing source (layout restore)
    std::intptr_t reuseConnectionId;
    std::int32_t reuseSlot;
    WindowId batchFirstChart;
    WindowId batchSecondChart;
    std::int32_t defaultGrid;
    std::int32_t defaultShowLine;
    std::int32_t defaultShowBar;
    std::int32_t defaultShowCandle;
    std::int32_t defaultShowHighLow;
    std::int32_t defaultPredictorShort;
    std::int32_t defaultPredictorMedium;
    std::int32_t defaultPredictorLong;
    double defaultResolution;
    std::int32_t layoutRowIndex;
    char lastChartTitle[100];
};
extern ChartDefaults chartDefaults;
void ResetChartDefaults();

// Where a new child window goes.
enum class WindowPlacement {
    SystemDefault, // the windowing layer picks position and size
    FillClient,    // the whole client area of the desk (batch runs)
    Given,         // the rectangle passed along (layout restore)
};

struct ChildWindowRequest {
    Chart* chart;
    WindowClass windowClass;
    const char* caption;
    WindowPlacement placement;
    int x, y, width, height; // for Given
    bool hidden;             // layout restore: shown at the end
};

// The windowing layer installs these; chart creation calls them.
struct WindowHooks {
    // Creates the MDI child for a chart and attaches the chart to it;
    // returns the window or 0.
    WindowId (*createChild)(const ChildWindowRequest& request) = nullptr;
    // Appends a hidden window to the list shown when a layout is complete.
    void (*keepHidden)(WindowId window) = nullptr;
};
extern WindowHooks windowHooks;

// Title pieces; exposed for the data views and for tests.
// Instrument name from a topic and an item: the piece behind "]" or ";" in
// the topic, else the first word of the item (less a leading "/RIC=").
void InstrumentName(const char* topic, const char* item, char* out, int outSize);

// The price chart of the source just connected in marketData.nextSourceSlot.
// Returns 1 when the window exists, else 0 with the fresh source released.
int CreatePriceChart(const char* kindName, int role);

} // namespace velorin
