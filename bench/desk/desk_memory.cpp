// Resident memory of fifty chart windows over one 2000-row source: the
// price chart and 49 analyses, each painted. Prints the figures; run it
// under /usr/bin/time -v for the peak as the system sees it.

#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

#include "bench/desk/desk_fixture.h"
#include "interaction/price_child.h"
#include "shell/core/shell_state.h"

namespace {

long ResidentKiB() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind("VmRSS:", 0) == 0) return std::stol(line.substr(6));
    return -1;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    velorin::bench::DeskFixture desk;
    desk.PaintAll();
    const long before = ResidentKiB();
    const int kinds[] = {10203, 10204, 10205, 10416, 10207, 10206, 10403, 10208,
                         10210, 10209, 10301, 10303, 10305, 10304, 10401, 10402};
    int i = 0;
    while (desk.Windows() < 50) {
        const int before = desk.Windows();
        desk.frame->FrameCommand(kinds[i++ % (sizeof kinds / sizeof kinds[0])]);
        if (desk.Windows() == before) {
            std::fprintf(stderr, "command refused: %s\n", desk.seam.LastText().c_str());
            return 1;
        }
    }
    // Each window brought to the top once, as a user paging through the desk.
    for (QMdiSubWindow* sub : desk.frame->mdiClient()->subWindowList()) {
        desk.frame->mdiClient()->setActiveSubWindow(sub);
        sub->widget()->repaint();
    }
    QApplication::processEvents();
    const long after = ResidentKiB();
    long painted = 0, held = 0, pixels = 0;
    for (QMdiSubWindow* sub : desk.frame->mdiClient()->subWindowList()) {
        auto* w = qobject_cast<velorin::PriceChild*>(sub->widget());
        if (!w) continue;
        painted += w->lastPaint().scale.pixelsPerValue != 0.0;
        if (!w->backing().isNull()) {
            ++held;
            pixels += static_cast<long>(w->backing().width()) * w->backing().height();
        }
    }
    std::printf("windows %d, charts %d, painted %ld; chart images held %ld, %.1f MiB\n",
                desk.Windows(), velorin::deskRegistry.chartCount, painted, held,
                pixels * 4 / 1048576.0);
    std::printf("resident with the price window: %ld KiB\n", before);
    std::printf("resident with fifty windows:    %ld KiB (%.1f MiB)\n", after, after / 1024.0);
    return 0;
}
