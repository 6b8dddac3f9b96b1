#pragma once
// A frame on the offscreen platform with one 2000-row source open.

#include <QApplication>

#include <QMdiArea>
#include <QMdiSubWindow>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>

#include "interaction/child_view.h"
#include "interaction/price_child.h"
#include "market_data/date.h"
#include "resources/command_ids.h"
#include "shell/core/shell_state.h"
#include "shell/core/working_blocks.h"
#include "shell/qt/frame_window.h"
#include "tests/support/recording_seam.h"

namespace velorin::bench {

// Six columns, 2000 rows of a seeded walk, dated 1990 to 1995. A data file
// holds at most 56,320 bytes, so 2000 rows must stay under 28 bytes each:
// whole prices of two digits and a one-digit volume.
inline std::string WriteSource() {
    const auto path = std::filesystem::temp_directory_path() / "velorin_bench_2000.PRC";
    std::ofstream out(path, std::ios::binary);
    int c = 50;
    unsigned state = 12345;
    for (int r = 0; r < 2000; ++r) {
        state = state * 1103515245u + 12345u;
        c += static_cast<int>((state >> 16) % 5) - 2;
        c = c < 20 ? 20 : c > 90 ? 90 : c;
        out << 1 + (r / 28) % 12 << "/" << 1 + r % 28 << "/" << 1990 + r / 336 << "," << c << ","
            << c - 1 << "," << c + 2 << "," << c - 2 << "," << 1 + r % 9 << "\r\n";
    }
    return path.string();
}

struct DeskFixture {
    test_support::RecordingSeam seam;
    FrameWindow* frame = nullptr;

    DeskFixture() {
        ResetProgramState();
        dateRules.todayDate = 50000;
        AllocateWorkingBlocks();
        frame = new FrameWindow;
        frame->resize(1600, 1000);
        frame->show();
        QApplication::processEvents(); // the frame exposed, so that paints happen
        seam.QueueFile(WriteSource());
        frame->FrameCommand(10718);
    }
    ~DeskFixture() {
        frame->FrameCommand(velorin::cmd::CloseAll);
        delete frame;
        FreeWorkingBlocks();
    }
    // Every chart window painted now.
    void PaintAll() {
        for (QMdiSubWindow* sub : frame->mdiClient()->subWindowList())
            sub->widget()->repaint();
    }
    // Windows whose last paint drew a chart.
    int Painted() const {
        int n = 0;
        for (QMdiSubWindow* sub : frame->mdiClient()->subWindowList())
            if (auto* w = qobject_cast<PriceChild*>(sub->widget()))
                n += w->lastPaint().scale.pixelsPerValue != 0.0;
        return n;
    }
    int Windows() const { return static_cast<int>(frame->mdiClient()->subWindowList().size()); }
    // Closes every window but the first.
    void CloseAnalyses() {
        const QList<QMdiSubWindow*> subs =
            frame->mdiClient()->subWindowList(QMdiArea::CreationOrder);
        for (int i = 1; i < subs.size(); ++i) {
            frame->mdiClient()->removeSubWindow(subs[i]);
            delete subs[i];
        }
        frame->mdiClient()->setActiveSubWindow(subs.first());
    }
};

} // namespace velorin::bench
