// The Data View over a 2000-row source in the frame on the offscreen
// platform: opening it, "Reset" after a refetch, and "Update" of one
// edited cell with ten analysis charts on the source recomputed and
// repainted; and a crosshair move over the price chart without and with a
// Data View following it, in the same run. Run with QT_QPA_PLATFORM=offscreen.

#include <benchmark/benchmark.h>

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMouseEvent>

#include "bench/desk/desk_bench_main.h"
#include "interaction/mouse_state.h"
#include "views/qt/data_view_window.h"

namespace {

using velorin::bench::DeskFixture;
using namespace velorin;

DeskFixture* desk = nullptr;

QMdiSubWindow* PriceWindow() {
    return desk->frame->mdiClient()->subWindowList(QMdiArea::CreationOrder).first();
}

// Opens a Data View of the price chart; returns its window.
DataViewWindow* OpenView() {
    desk->frame->mdiClient()->setActiveSubWindow(PriceWindow());
    desk->frame->FrameCommand(cmd::DataViewButton);
    return qobject_cast<DataViewWindow*>(desk->frame->mdiClient()->activeSubWindow()->widget());
}

void CloseView(DataViewWindow* view) {
    QWidget* sub = view->parentWidget();
    desk->frame->mdiClient()->removeSubWindow(sub);
    delete sub;
}

void BM_OpenDataView(benchmark::State& state) {
    for (auto _ : state) {
        DataViewWindow* view = OpenView();
        view->table()->viewport()->repaint();
        state.PauseTiming();
        if (!view || view->model()->rowCount() != 2000) state.SkipWithError("no grid of 2000 rows");
        CloseView(view);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_OpenDataView)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly();

// A refetch that brought one row more or less: the grid follows the
// record's row count and is filled again.
void BM_ResetAfterRefetch(benchmark::State& state) {
    DataViewWindow* view = OpenView();
    DataSource& source = *SourceAt(0);
    int n = 0;
    for (auto _ : state) {
        state.PauseTiming();
        source.rowCount = (n++ % 2) ? 2000 : 1999;
        view->chart()->rowCount = source.rowCount;
        state.ResumeTiming();
        view->Command(cmd::SheetReset);
        view->table()->viewport()->repaint();
    }
    CloseView(view);
    source.rowCount = 2000;
}
BENCHMARK(BM_ResetAfterRefetch)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly();

// One cell typed, then "Update": the source rebuilt from the sheet, the
// price chart, the ten analyses of Make All and the grid recomputed and
// every window painted.
void BM_UpdateOneCell(benchmark::State& state) {
    desk->frame->mdiClient()->setActiveSubWindow(PriceWindow());
    desk->frame->FrameCommand(cmd::MakeAllPrices);
    DataViewWindow* view = OpenView();
    if (desk->Windows() != 12) state.SkipWithError("Make All and the Data View did not open");
    SheetModel& model = *view->model();
    int n = 0;
    for (auto _ : state) {
        state.PauseTiming();
        model.setData(model.index(1000, 0), QString::number(50 + n++ % 7), Qt::EditRole);
        state.ResumeTiming();
        view->Command(cmd::SheetUpdate);
        desk->PaintAll();
    }
    CloseView(view);
    desk->CloseAnalyses();
}
BENCHMARK(BM_UpdateOneCell)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly();

// The crosshair over the price window: one mouse move and the paints it
// asks for (the hairs and the readout, which tells the Data Views of the
// source, and the grid's when one follows).
void CrosshairMoves(benchmark::State& state) {
    QWidget* chart = PriceWindow()->widget();
    PriceWindow()->setGeometry(0, 0, 1190, 710); // as the desk opened it
    desk->frame->mdiClient()->setActiveSubWindow(PriceWindow());
    chart->repaint();
    chartMouse.crosshairOn = 1;
    int step = 0;
    for (auto _ : state) {
        // Mostly a pixel at a time, now and then a jump across the plot.
        const int x = 300 + (step % 50 == 49 ? 400 : step % 50);
        ++step;
        QMouseEvent move(QEvent::MouseMove, QPointF(x, 300), chart->mapToGlobal(QPointF(x, 300)),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(chart, &move);
        QApplication::processEvents(); // the paints asked for, the grid's among them
    }
    chartMouse.crosshairOn = 0;
}

void BM_CrosshairMove(benchmark::State& state) {
    CrosshairMoves(state);
}
BENCHMARK(BM_CrosshairMove)->Unit(benchmark::kMicrosecond)->Repetitions(5)->ReportAggregatesOnly();

void BM_CrosshairMoveDataViewFollowing(benchmark::State& state) {
    DataViewWindow* view = OpenView();
    view->parentWidget()->setGeometry(1190, 0, 400, 710); // beside the chart, all in sight
    CrosshairMoves(state);
    if (view->table()->currentIndex().row() < 0) state.SkipWithError("the grid did not follow");
    CloseView(view);
}
BENCHMARK(BM_CrosshairMoveDataViewFollowing)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly();

} // namespace

int main(int argc, char** argv) {
    return velorin::bench::RunDeskBenchmarks(argc, argv, desk);
}
