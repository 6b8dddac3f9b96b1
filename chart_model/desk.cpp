#include "chart_model/desk.h"

#include "market_data/data_source.h"

namespace velorin {

DeskRegistry deskRegistry;

namespace {

class EmptyDesk final : public Desk {
  public:
    WindowId CreateChild(const ChildWindowRequest&) override { return 0; }
    Chart* ActiveChart(WindowId* windowOut) override {
        if (windowOut) *windowOut = 0;
        return nullptr;
    }
    void Invalidate(WindowId) override {}
    void RepaintAllCharts() override {}
    void Tile(bool) override {}
    void CloseAllChildren() override {}
};

EmptyDesk emptyDesk;
Desk* installed = &emptyDesk;

} // namespace

Desk& TheDesk() {
    return *installed;
}

Desk* InstallDesk(Desk* desk) {
    Desk* previous = installed == &emptyDesk ? nullptr : installed;
    installed = desk ? desk : &emptyDesk;
    return previous;
}

void ResetDeskRegistry() {
    deskRegistry = {};
}

int ClaimSourceSlot() {
    return marketData.nextSourceSlot++;
}

void RegisterChart() {
    ++deskRegistry.chartCount;
}

void CloseChart(Chart* chart) {
    if (chart) {
        ReleaseDrawnObjects(chart);
        ReleaseChart(chart);
    }
    if (deskRegistry.chartCount > 0) --deskRegistry.chartCount;
    if (deskRegistry.chartCount == 0) marketData.nextSourceSlot = 0;
    TheDesk().MenuStateChanged();
}

void ClearDesk() {
    deskRegistry.chartCount = 0;
    marketData.nextSourceSlot = 0;
}

} // namespace velorin
