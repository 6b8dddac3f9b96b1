#pragma once
// A chart on a hand-filled data source, for the rendering tests.

#include <initializer_list>

#include "chart_model/chart.h"
#include "market_data/data_source.h"
#include "rendering/scale.h"

namespace velorin::testing {

inline constexpr double GAP = MISSING_VALUE;

class ChartFixture {
  public:
    // A chart of `kindName` in `layout` on a source of n rows dated "R0",
    // "R1", ...; closes are 100 + row, resolution 1, line style.
    ChartFixture(const char* kindName, int layout, int n);
    ~ChartFixture();
    ChartFixture(const ChartFixture&) = delete;
    ChartFixture& operator=(const ChartFixture&) = delete;

    Chart& chart() { return *chart_; }
    DataSource& source() { return *SourceAt(slot_); }
    DataColumns& columns() { return *source().columns; }
    double* model(int i) { return chart_->modelSeries->slot[i]; }
    // Fills the start of a column.
    static void Fill(double* column, std::initializer_list<double> values);

  private:
    Chart* chart_ = nullptr;
    int slot_ = 7;
};

// A scale with the value range set by hand: valueMin 0 and one pixel per
// value on a 240 pixel high client, so y(v) = 220 - v.
ChartScale UnitScale(int right);

} // namespace velorin::testing
