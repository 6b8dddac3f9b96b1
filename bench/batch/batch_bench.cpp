// "Save All" of the database command on a frame on the offscreen platform:
// ten six-column instruments of the sample database, eighteen images each,
// every one made, painted, captured and written as a .bmp. Reported as
// images per second, once with a converter that only writes its log (the
// conversion left out) and once with the GIF conversion script and the
// desk's own wait for it.
//   batch_bench --benchmark_repetitions=5 --benchmark_report_aggregates_only=true

#include <benchmark/benchmark.h>

#include <QApplication>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "market_data/date.h"
#include "market_data/odbc_dialog.h"
#include "market_data/odbc_driver_manager.h"
#include "persistence/settings_file.h"
#include "resources/command_ids.h"
#include "shell/core/batch.h"
#include "shell/core/working_blocks.h"
#include "shell/qt/conversion_wait.h"
#include "shell/qt/frame_window.h"
#include "tests/odbc_driver/driver_backend.h"
#include "tests/support/recording_seam.h"

namespace {

namespace fs = std::filesystem;
using namespace velorin;

constexpr int Instruments = 10;
constexpr int ImagesEach = 18;

// "Save All" on the sample data source, listing the benchmark's codes.
struct SaveAll final : SqlDialogHost {
    std::string dsn;
    int RunSqlDialog() override {
        SqlDialogInput in;
        in.dsn = dsn, in.table = "prices", in.fields = "tradedate,close,open,high,low,volume";
        in.where = "code", in.code = "ACME";
        return AcceptSqlDialog(in, SqlDialogSaveAll);
    }
};

// A tool that converts nothing: it counts the bitmaps and writes its log at
// once, so the wait ends at its first look.
struct NoConversion final : BitmapConverter {
    std::string folder, log;
    long bitmaps = 0;
    void Start(const std::string&) override {
        for (const fs::directory_entry& e : fs::directory_iterator(folder))
            bitmaps += e.path().extension() == ".bmp";
        std::ofstream(log) << "done\n";
    }
    std::string LogPath() const override { return log; }
};

struct BatchDesk {
    test_support::RecordingSeam seam;
    test_support::TempDir dir;
    SaveAll dialog;
    FrameWindow* frame = nullptr;
    std::string folder;

    BatchDesk() {
        ResetProgramState();
        dateRules.todayDate = 50000; // after every sample date
        AllocateWorkingBlocks();
        InstallOdbcDriverManager();
        InstallSqlDialog(&dialog);
        dialog.dsn = test_support::SqliteBackend().dsn;
        folder = dir.PathOf("out");
        fs::create_directory(folder);
        std::snprintf(settings.batchFolder, sizeof settings.batchFolder, "%s", folder.c_str());
        std::snprintf(settings.batchTable1, sizeof settings.batchTable1, "bench_codes");
        std::snprintf(settings.batchTable2, sizeof settings.batchTable2, "bench_none");
        std::snprintf(settings.batchPairTable, sizeof settings.batchPairTable, "bench_none");
        frame = new FrameWindow;
        frame->resize(1600, 1000);
        frame->show();
        QApplication::processEvents();
    }
    ~BatchDesk() {
        delete frame;
        InstallSqlDialog(nullptr);
        FreeWorkingBlocks();
    }
    long Count(const char* extension) const {
        long n = 0;
        for (const fs::directory_entry& e : fs::directory_iterator(folder))
            n += e.path().extension() == extension;
        return n;
    }
};

BatchDesk* desk = nullptr;

void BM_SaveAllWithoutConversion(benchmark::State& state) {
    NoConversion tool;
    tool.folder = desk->folder, tool.log = desk->dir.PathOf("cnvtogif.log");
    BitmapConverter* previous = InstallBitmapConverter(&tool);
    for (auto _ : state) {
        tool.bitmaps = 0;
        desk->frame->FrameCommand(cmd::Database);
        if (tool.bitmaps != Instruments * ImagesEach || desk->Count(".bmp") != 0)
            state.SkipWithError("the run did not write and clean every image");
    }
    state.SetItemsProcessed(state.iterations() * Instruments * ImagesEach);
    InstallBitmapConverter(previous);
}
BENCHMARK(BM_SaveAllWithoutConversion)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_SaveAllWithConversion(benchmark::State& state) {
    ConversionWait wait(desk->frame);
    BitmapConverter* previous = InstallBitmapConverter(&wait);
    for (auto _ : state) {
        desk->frame->FrameCommand(cmd::Database);
        state.PauseTiming();
        if (desk->Count(".gif") != Instruments * ImagesEach || desk->Count(".bmp") != 0)
            state.SkipWithError("the run did not convert every image");
        for (const fs::directory_entry& e : fs::directory_iterator(desk->folder))
            fs::remove(e.path());
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * Instruments * ImagesEach);
    InstallBitmapConverter(previous);
}
BENCHMARK(BM_SaveAllWithConversion)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);

} // namespace

int main(int argc, char** argv) {
    // Offscreen unless a platform is named (QT_QPA_PLATFORM=xcb with a
    // DISPLAY measures the capture from an X screen).
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const test_support::Backend& sqlite = test_support::SqliteBackend();
    if (sqlite.dsn.empty()) {
        std::fprintf(stderr, "%s\n", sqlite.skipReason.c_str());
        return 1;
    }
    // The conversion script of the source tree, found on the path.
    const std::string path = std::string(VELORIN_CONVERT_FOLDER) + ":" + std::getenv("PATH");
    setenv("PATH", path.c_str(), 1);
    desk = new BatchDesk;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    delete desk;
    return 0;
}
