#pragma once
// How a chart is being made: by the user, from a layout being restored, or
// in a Make All batch. Restoring skips dialogs and takes what the layout
// row stored; a batch silences messages and fills the desk.

#include "chart_model/chart.h"

namespace velorin {

// What chart creation reads from the layout row being restored; the layout
// restorer implements it.
class LayoutRowReader {
  public:
    virtual ~LayoutRowReader() = default;
    virtual double Resolution(int row) const = 0;
    virtual void Rectangle(int row, int* x, int* y, int* width, int* height) const = 0;
    // Copies the stored drawn objects of the row into a new chart.
    virtual void CopyDrawnObjects(int row, Chart* chart) const = 0;
    // An analysis row's three stored parameters, as written.
    virtual void Parameters(int row, double* param1, double* param2, double* param3) const = 0;
    virtual int PriceScale(int row) const = 0;
    // Style flags, grid and resolution of a stored chart.
    virtual void View(int row, ChartView* view) const = 0;
};

struct CreationMode {
    enum Kind { Normal, Restoring, Batch };
    Kind kind = Normal;
    const LayoutRowReader* layout = nullptr; // Restoring: the layout and its row
    int layoutRow = 0;

    bool restoring() const { return kind == Restoring; }
    bool batch() const { return kind == Batch; }
    static CreationMode Restore(const LayoutRowReader& reader, int row) {
        return {Restoring, &reader, row};
    }
    static CreationMode InBatch() { return {Batch, nullptr, 0}; }
};

} // namespace velorin
