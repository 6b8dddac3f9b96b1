#pragma once
// Making the first chart window of a freshly connected data source.

#include <cstdint>

#include "chart_model/chart.h"
#include "chart_model/creation.h"

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
    char lastChartTitle[100];
};
extern ChartDefaults chartDefaults;
void ResetChartDefaults();

// Title pieces; exposed for the data views and for tests.
// Instrument name from a topic and an item: the piece behind "]" or ";" in
// the topic, else the first word of the item (less a leading "/RIC=").
void InstrumentName(const char* topic, const char* item, char* out, int outSize);

// The price chart of the source just connected in marketData.nextSourceSlot.
// Returns 1 when the window exists, else 0 with the fresh source released.
// `role` 0 or 1: the first or second chart a batch keeps.
int CreatePriceChart(const char* kindName, int role, const CreationMode& mode = {});

} // namespace velorin
