#include "interaction/price_child.h"

#include <QPainter>

#include "market_data/data_source.h"
#include "shell/core/shell_state.h"

namespace velorin {

DeskHooks deskHooks;

void CloseChartRecord(Chart* chart) {
    if (chart) {
        ReleaseDrawnObjects(chart);
        ReleaseChart(chart);
    }
    if (shell.chartCount > 0) --shell.chartCount;
    if (shell.chartCount == 0) marketData.nextSourceSlot = 0;
    if (deskHooks.menuStateChanged) deskHooks.menuStateChanged();
}

PriceChild::PriceChild(Chart* chart, QWidget* parent)
    : ChildView(chart, WindowClass::PriceChild, parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(false);
}

PriceChild::~PriceChild() { CloseChartRecord(chart_); }

void PriceChild::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
}

} // namespace velorin
