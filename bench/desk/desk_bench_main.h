#pragma once
// The main of the desk benchmark programs.

#include <benchmark/benchmark.h>

#include "bench/desk/desk_fixture.h"

namespace velorin::bench {

// The main of a desk benchmark program: the offscreen platform, the desk
// with its price window in `desk` while every benchmark runs.
inline int RunDeskBenchmarks(int argc, char** argv, DeskFixture*& desk) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    desk = new DeskFixture;
    if (desk->Windows() != 1) return 1;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    delete desk;
    desk = nullptr;
    return 0;
}

} // namespace velorin::bench
