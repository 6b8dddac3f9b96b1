#pragma once
// Before writing code here, read DEVELOPERS.md at the repository root: team rules.
// What chart creation reads from a layout being restored; installed by the
// layout restorer.

namespace velorin {

struct Chart;
struct ChartView;

struct LayoutRestoreHooks {
    double (*rowResolution)(int layoutRow) = nullptr;
    void (*rowRectangle)(int layoutRow, int* x, int* y, int* width, int* height) = nullptr;
    // Copies the stored drawn objects of a layout row into a new chart.
    void (*copyDrawnObjects)(int layoutRow, Chart* chart) = nullptr;
    // An analysis row's three stored parameters, as written.
    void (*rowParameters)(int layoutRow, double* param1, double* param2, double* param3) = nullptr;
    int (*rowPriceScale)(int layoutRow) = nullptr;
    // Style flags, grid and resolution of a stored chart.
    void (*rowView)(int layoutRow, ChartView* view) = nullptr;
};
extern LayoutRestoreHooks layoutRestoreHooks;

} // namespace velorin
