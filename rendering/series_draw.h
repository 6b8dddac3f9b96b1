#pragma once
// Putting a series on a chart: a polyline, high-low bars with a close mark,
// or candlesticks. Each records where its last row landed and, with handles
// on, makes the round handle by which the series is picked.

#include "chart_model/chart.h"
#include "rendering/draw_device.h"
#include "rendering/paint_context.h"
#include "rendering/scale.h"

namespace velorin {

inline constexpr int HandleRadius = 5;

// Colours come from the context's palette. Each draw returns the first row
// plotted and stores the x of the last in lastBarX.

// `series` (+ offset) as a polyline in the slot's colour, breaking at gaps.
int DrawCurve(int curveSlot, double offset, const double* series, Chart& chart, DrawDevice& device,
              const ChartScale& scale, const PaintContext& ctx, int& lastBarX, int n,
              int thickness);
// High-low bars with a close mark; pens of width 1 always.
int DrawBars(const double* high, const double* low, const double* close, Chart& chart,
             DrawDevice& device, const ChartScale& scale, const PaintContext& ctx, int& lastBarX,
             int n);
// Candlesticks: falling (and nearly flat) bodies solid, rising ones hollow.
int DrawCandles(const double* high, const double* low, const double* open, const double* close,
                Chart& chart, DrawDevice& device, const ChartScale& scale, const PaintContext& ctx,
                int& lastBarX, int n);
// The price by the chart's style flags, lines in the context's price
// thickness; the result is firstRowShown.
int DrawPriceGroup(Chart& chart, DrawDevice& device, const ChartScale& scale,
                   const PaintContext& ctx, int& lastBarX);

// The handle of a series: centre at the first shown row (5 pixels in), or
// at the first value after leading gaps. False when the series has no
// value on screen.
bool FindHandleCentre(const double* series, double offset, int firstRow, int n,
                      const ChartScale& scale, double P, int& x, int& y);

// The data check of every paint: too few rows for the kind.
bool HasTooFewRows(const Chart& chart);
inline constexpr int CaptionSize = 128;
// "%s      INSUFFICIENT DATA" with the window caption.
void FormatInsufficientDataCaption(const Chart& chart, char (&caption)[CaptionSize]);

} // namespace velorin
