#include "tests/support/chart_fixture.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "rendering/style.h"

namespace velorin::testing {

ChartFixture::ChartFixture(const char* kindName, int layout, int n) {
    ResetDrawingStyle();
    // Each fixture takes a slot of its own, so two can live side by side.
    while (SourceAt(slot_))
        ++slot_;
    NewDataSource(slot_);
    DataSource& s = source();
    s.rowCount = n;
    s.refCount = 1;
    for (int i = 0; i < MaxRows; ++i) {
        std::snprintf(s.columns->dateText[i], DateTextSize, "R%d", i);
        s.columns->close[i] = 100.0 + i;
        s.columns->open[i] = 100.0 + i;
        s.columns->high[i] = 101.0 + i;
        s.columns->low[i] = 99.0 + i;
        s.columns->volume[i] = 1.0;
    }
    chart_ = NewChart(layout);
    chart_->sourceSlot = slot_;
    chart_->secondSourceSlot = -1;
    chart_->rowCount = n;
    chart_->priceScaleDenominator = 1;
    std::snprintf(chart_->kindName, sizeof chart_->kindName, "%s", kindName);
    std::snprintf(chart_->windowCaption, sizeof chart_->windowCaption, "TEST %s", kindName);
    chart_->view->resolution = 1.0;
    chart_->view->showLine = 1;
    if (chart_->modelSeries)
        for (double* m : chart_->modelSeries->slot)
            if (m)
                for (int i = 0; i < MaxRows; ++i)
                    m[i] = GAP;
}

ChartFixture::~ChartFixture() {
    for (RegionHandle& r : chart_->view->curveRegions)
        DeleteAndClear(r);
    // Every drawn object's regions, in use or not: ReleaseDrawnObjects leaves
    // those of objects not in use.
    if (DrawingSet* d = chart_->drawings)
        for (int i = 0; i < MaxDrawnObjects; ++i)
            for (RegionHandle* r : {&d->trendLines->regions[i], &d->channels->regions[i],
                                    &d->channels->secondRegions[i], &d->verticalLines->regions[i],
                                    &d->horizontalLines->regions[i], &d->highlights->regions[i],
                                    &d->gannLines->regions[0][i], &d->gannLines->regions[1][i],
                                    &d->gannLines->regions[2][i]})
                DeleteAndClear(*r);
    FreeChartBlocks(chart_);
    FreeDataSource(slot_);
}

void ChartFixture::Fill(double* column, std::initializer_list<double> values) {
    std::copy(values.begin(), values.end(), column);
}

ChartScale UnitScale(int right) {
    ChartScale s = MakeChartScale(right, 240);
    s.valueMin = 0.0;
    s.valueMax = 200.0;
    s.valueRange = 200.0;
    s.pixelsPerValue = 1.0;
    return s;
}

} // namespace velorin::testing
