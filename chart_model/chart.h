#pragma once
// The chart record every MDI child owns and its blocks; the kinds are in
// chart_kinds.h.

#include <cstdint>

#include "base/series.h"
#include "chart_model/chart_kinds.h"
#include "chart_model/region.h"
#include "market_data/block.h"

namespace velorin {

inline constexpr int MaxDrawnObjects = 9; // of each kind, per chart
inline constexpr int CurveSlotCount = 15; // entries of ChartView::curveRegions
inline constexpr int ModelSlotCount = 7;
inline constexpr int ChartBlockCount = 29;

using WindowId = std::intptr_t; // a window of the desk, 0 for none

struct IntPoint {
    std::int32_t x;
    std::int32_t y;
};

struct ChartView {
    std::int32_t showHighLow;
    std::int32_t showCandle;
    std::int32_t showBar;
    std::int32_t showLine;
    std::int32_t gridOn;
    double resolution; // pixels per row
    RegionHandle curveRegions[CurveSlotCount];
};

struct AnalysisParams {
    std::int32_t period[9]; // [0] unused; [1] main period; further periods up to [7]
};

struct ModelSeries {
    double* slot[ModelSlotCount]; // each MaxRows long or null
};

struct PairData {
    char (*pairDateText)[DateTextSize]; // MaxRows common dates
    double* firstSeries;
    double* secondSeries;
    std::int32_t pairCount;
    double rSquared;
    double adjustedBeta;
    double beta;
    double alpha;
};

struct FibonacciExtra {
    std::int32_t fibonacciLines;
    std::int32_t extendEnvelopes;
    double* upperEnvelope;
    double* lowerEnvelope;
    double priceStdev;
};

using DateField = char[DateTextSize];

struct TrendLineSet {
    RegionHandle regions[MaxDrawnObjects];
    std::int32_t extended[MaxDrawnObjects];
    std::int32_t inUse[MaxDrawnObjects];
    std::int32_t freePlaced[MaxDrawnObjects];
    IntPoint pointA[MaxDrawnObjects];
    IntPoint pointB[MaxDrawnObjects];
    double baseValue[MaxDrawnObjects];
    double slopeAngle[MaxDrawnObjects];
    DateField dateA[MaxDrawnObjects];
    double valueA[MaxDrawnObjects];
    DateField dateB[MaxDrawnObjects];
    double valueB[MaxDrawnObjects];
    double length[MaxDrawnObjects];
    double unitY[MaxDrawnObjects];
    double unitX[MaxDrawnObjects];
};

struct ChannelSet {
    RegionHandle regions[MaxDrawnObjects];
    RegionHandle secondRegions[MaxDrawnObjects];
    std::int32_t extended[MaxDrawnObjects];
    std::int32_t inUse[MaxDrawnObjects];
    std::int32_t freePlaced[MaxDrawnObjects];
    IntPoint pointA[MaxDrawnObjects];
    IntPoint pointB[MaxDrawnObjects];
    IntPoint pointC[MaxDrawnObjects];
    double baseValue[MaxDrawnObjects];
    double secondBaseValue[MaxDrawnObjects];
    double slopeAngle[MaxDrawnObjects];
    DateField dateA[MaxDrawnObjects];
    double valueA[MaxDrawnObjects];
    DateField dateB[MaxDrawnObjects];
    double valueB[MaxDrawnObjects];
    DateField dateC[MaxDrawnObjects];
    double valueC[MaxDrawnObjects];
    double length[MaxDrawnObjects];
    double unitY[MaxDrawnObjects];
    double unitX[MaxDrawnObjects];
    double pixelGap[MaxDrawnObjects];
};

struct GannSet {
    RegionHandle regions[3][MaxDrawnObjects];
    std::int32_t extended[MaxDrawnObjects];
    std::int32_t inUse[MaxDrawnObjects];
    std::int32_t drawUp[MaxDrawnObjects];
    std::int32_t freePlaced[MaxDrawnObjects];
    IntPoint point[MaxDrawnObjects];
    double baseValue[3][MaxDrawnObjects];
    double slopeAngle[3][MaxDrawnObjects];
};

struct VerticalLineSet {
    RegionHandle regions[MaxDrawnObjects];
    std::int32_t inUse[MaxDrawnObjects];
    IntPoint point[MaxDrawnObjects];
};

struct HorizontalLineSet {
    RegionHandle regions[MaxDrawnObjects];
    std::int32_t inUse[MaxDrawnObjects];
    IntPoint point[MaxDrawnObjects];
    double value[MaxDrawnObjects];
};

struct HighlightPoint {
    double row;   // row position (clicked pixel x until derived)
    double value; // value (clicked pixel y until derived)
};

struct HighlightSet {
    RegionHandle regions[MaxDrawnObjects];
    std::int32_t inUse[MaxDrawnObjects];
    std::int32_t pointCount[MaxDrawnObjects];
    HighlightPoint points[MaxDrawnObjects][10];
    double resolution[MaxDrawnObjects];
};

struct DrawingSet {
    TrendLineSet* trendLines;
    ChannelSet* channels;
    GannSet* gannLines;
    VerticalLineSet* verticalLines;
    HorizontalLineSet* horizontalLines;
    HighlightSet* highlights;
};

struct Chart {
    std::int32_t firstRow; // Fibonacci: first row with every curve present
    std::int32_t sourceSlot;
    std::int32_t secondSourceSlot; // -1: one source
    std::int32_t rowCount;
    std::int32_t kind;
    std::intptr_t connectionId;
    std::intptr_t secondConnectionId;
    char chartTitle[100];
    char windowCaption[100];
    char kindName[50];
    double smoothing[3];
    AnalysisParams* analysisParams;
    ModelSeries* modelSeries;
    PairData* pairData;
    FibonacciExtra* fibonacciExtra;
    ChartView* view;
    DrawingSet* drawings;
    std::int32_t predictorShort;
    std::int32_t predictorMedium;
    std::int32_t predictorLong;
    std::int32_t showCurveHandles;
    std::int32_t hasFullColumns;
    std::int32_t anchorsPending;
    std::int32_t priceScaleDenominator;
    BlockHandle blockHandles[ChartBlockCount];
    WindowId dataViewWindow;
    WindowId levelsViewWindow;
};

// A zeroed chart with its view and the blocks of `layout`; nullptr on any
// failure, with everything released.
Chart* NewChart(int layout);
void FreeChartBlocks(Chart* chart);
// Deletes the curve regions, gives back the chart's hold on its sources and
// frees the blocks.
void ReleaseChart(Chart* chart);
// Deletes the regions of every drawn object in use and clears `inUse`.
void ReleaseDrawnObjects(Chart* chart);

} // namespace velorin
