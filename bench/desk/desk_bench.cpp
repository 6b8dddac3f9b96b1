// Make All from the command to the ten windows painted, against the paint of
// the one price window it starts from, in the same run; a fifty-window
// layout restored. Run with
// QT_QPA_PLATFORM=offscreen.

#include <benchmark/benchmark.h>

#include "bench/desk/desk_bench_main.h"

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

// A saved desk of fifty windows over one data file (the price chart and 49
// analyses) opened again: from File > Open... to the fiftieth window
// painted. File > New clears the desk between runs, outside the timing.
void BM_RestoreFiftyWindowLayout(benchmark::State& state) {
    const int kinds[] = {10203, 10204, 10205, 10416, 10207, 10206, 10403, 10208,
                         10210, 10209, 10301, 10303, 10305, 10304, 10401, 10402};
    for (int i = 0; desk->Windows() < 50; ++i) {
        const int before = desk->Windows();
        desk->frame->FrameCommand(kinds[i % (sizeof kinds / sizeof kinds[0])]);
        if (desk->Windows() == before) return state.SkipWithError("an analysis was refused");
    }
    const std::string layout =
        (std::filesystem::temp_directory_path() / "velorin_bench_fifty.vl").string();
    desk->seam.QueueFile(layout);
    desk->frame->FrameCommand(velorin::cmd::SaveAs);
    for (auto _ : state) {
        state.PauseTiming();
        desk->frame->FrameCommand(velorin::cmd::New);
        desk->seam.QueueFile(layout);
        state.ResumeTiming();
        desk->frame->FrameCommand(velorin::cmd::Open);
        desk->PaintAll();
        state.PauseTiming();
        if (desk->Windows() != 50) state.SkipWithError("the layout did not bring 50 windows back");
        state.ResumeTiming();
    }
    std::filesystem::remove(layout);
}
BENCHMARK(BM_RestoreFiftyWindowLayout)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly();

} // namespace

int main(int argc, char** argv) {
    return velorin::bench::RunDeskBenchmarks(argc, argv, desk);
}
