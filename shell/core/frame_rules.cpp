#include "shell/core/frame_rules.h"

#include <iterator>

#include "chart_model/desk.h"
#include "resources/command_ids.h"

namespace velorin {
namespace {

bool KindIn(int kind, std::initializer_list<int> kinds) {
    for (int k : kinds)
        if (k == kind) return true;
    return false;
}

// Kinds without drawn lines of any sort: the two-series charts and Fibonacci.
bool NoLinesKind(int kind) {
    return (kind >= 16 && kind <= 20) || KindIn(kind, {22, 23, 24, 50});
}

constexpr const char* priceKinds[] = {"RMA", "ESMA",       "WMA",      "MACD",  "Perc. Range",
                                      "RSI", "Oscillator", "Momentum", "Stdev", "Stochastics"};
constexpr const char* volumeKinds[] = {"OBV", "Tic Volume", "RVI"};

} // namespace

const char* SourceLimitMessage(int nextSourceSlot, bool datafile) {
    if (nextSourceSlot < 999) return nullptr;
    return datafile ? "Too Many Data Sources - Please close some charts"
                    : "Too Many Data Sources - Please close some windows";
}

const char* ChartLimitMessage(int chartCount, bool restoringLayout) {
    if (chartCount >= MaxCharts && !restoringLayout)
        return "Too Many Charts Open - Please close some charts";
    return nullptr;
}

double ZoomInResolution(double resolution) {
    const int whole = static_cast<int>(resolution);
    if (whole >= 25) return 50;
    if (whole >= 16) return 25;
    if (whole >= 8) return 16;
    if (whole >= 4) return 8;
    if (whole >= 2) return 4;
    if (whole == 1) return 2;
    return 0.25;
}

double ZoomOutResolution(double resolution) {
    const int whole = static_cast<int>(resolution);
    if (whole >= 50) return 25;
    if (whole >= 25) return 16;
    if (whole >= 16) return 8;
    if (whole >= 8) return 4;
    if (whole >= 4) return 2;
    if (whole >= 2) return 1;
    if (whole == 1) return 0.5;
    return 0.25;
}

const char* ChartCommandRefusal(int commandId, int kind) {
    switch (commandId) {
    case cmd::SelectEndPointButton:
    case cmd::SelectAllDataButton:
        return KindIn(kind, {16, 17, 18, 19, 22, 23, 24, 50})
                   ? "Selection not available for this chart"
                   : nullptr;
    case cmd::DrawHoriLineButton:
        return NoLinesKind(kind) ? "Drawing Hori Line not available for this chart" : nullptr;
    case cmd::DrawVertLineButton:
        return NoLinesKind(kind) ? "Drawing Vert Line not available for this chart" : nullptr;
    case cmd::DrawTrendButton:
    case cmd::DrawChannelButton: {
        const bool refused =
            NoLinesKind(kind) || KindIn(kind, {2, 6, 7, 8, 9, 10, 11, 12, 14, 21, 26});
        if (!refused) return nullptr;
        return commandId == cmd::DrawTrendButton ? "Drawing Trend not available for this chart"
                                                 : "Drawing Channel not available for this chart";
    }
    default:
        return nullptr;
    }
}

const char* StyleRefusal(int commandId, int kind, int rowCount, int hasFullColumns) {
    if (!KindIn(kind, {1, 3, 4, 5, 13, 15, 19})) return "Please Select Chart With Price Line";
    if (commandId == cmd::CandleStickButton && rowCount < 26) return "Insufficient data";
    if (commandId != cmd::PriceLineButton && !hasFullColumns) return "Insufficient data";
    return nullptr;
}

const char* const* MakeAllPriceKinds(int* count) {
    if (count) *count = static_cast<int>(std::size(priceKinds));
    return priceKinds;
}

const char* const* MakeAllVolumeKinds(int* count) {
    if (count) *count = static_cast<int>(std::size(volumeKinds));
    return volumeKinds;
}

} // namespace velorin
