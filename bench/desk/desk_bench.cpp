// Make All from the command to the ten windows painted, against the paint of
// the one price window it starts from, in the same run. Run with
// QT_QPA_PLATFORM=offscreen.

#include <benchmark/benchmark.h>

#include "bench/desk/desk_fixture.h"

namespace {

using velorin::bench::DeskFixture;

DeskFixture* desk = nullptr;

void BM_MakeAllPrices(benchmark::State& state) {
    for (auto _ : state) {
        desk->frame->FrameCommand(10202);
        desk->PaintAll();
        state.PauseTiming();
        if (desk->Windows() != 11 || desk->Painted() != 11)
            state.SkipWithError("Make All did not open and paint ten windows");
        desk->CloseAnalyses();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_MakeAllPrices)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly();

// Reference: one full paint of the 2000-row price window in the same desk.
void BM_PaintPriceWindow(benchmark::State& state) {
    velorin::ChildView* view = qobject_cast<velorin::ChildView*>(
        desk->frame->mdiClient()->subWindowList().first()->widget());
    for (auto _ : state) {
        view->Invalidate();
        view->repaint();
    }
}
BENCHMARK(BM_PaintPriceWindow)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly();

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    desk = new DeskFixture;
    if (desk->Windows() != 1) return 1;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    delete desk;
    return 0;
}
