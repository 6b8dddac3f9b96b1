#pragma once
// The frame's rules that need no window: limits, zoom steps, the refusals
// of the drawing and style commands, and the Make All lists.

namespace velorin {

// Limit messages; nullptr when the command may go on.
// `datafile`: the file connection words its source message differently.
const char* SourceLimitMessage(int nextSourceSlot, bool datafile);
const char* ChartLimitMessage(int chartCount, bool restoringLayout);
inline constexpr const char* ChartLimitCaption = "QDX Velorin";

// Resolution after Zoom In / Zoom Out.
double ZoomInResolution(double resolution);
double ZoomOutResolution(double resolution);

// Refusal text of a button-bar command on a chart of `kind`, or nullptr
// when the command applies. Covers 10707, 10708 and 10713 to 10716.
const char* ChartCommandRefusal(int commandId, int kind);

// The style guard of 10709 to 10712. Returns nullptr when the style may be
// set, else the message to show.
const char* StyleRefusal(int commandId, int kind, int rowCount, int hasFullColumns);

// The analyses of Make All, in order.
const char* const* MakeAllPriceKinds(int* count);
const char* const* MakeAllVolumeKinds(int* count);

} // namespace velorin
