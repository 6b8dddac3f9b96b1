#pragma once
// A frame without windows: each child is a number holding its chart, the
// menu is a map of greyed states built from the main menu, and every
// window operation is recorded. HeadlessDesk runs a fresh program on it.

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "market_data/block.h"
#include "market_data/date.h"
#include "resources/command_ids.h"
#include "shell/core/frame_commands.h"
#include "shell/core/layout_commands.h"
#include "shell/core/live_commands.h"
#include "shell/core/working_blocks.h"
#include "tests/support/recording_seam.h"
#include "tests/support/temp_dir.h"

namespace velorin::test_support {

class FakeFrame final : public Frame {
  public:
    struct Child {
        WindowId id;
        Chart* chart;
        std::string caption;
        int x = 0, y = 0, width = 0, height = 0; // as asked; tests may move a window
    };

    FakeFrame() {
        previous_ = InstallDesk(this);
        int n = 0;
        const MenuEntry* e = MainMenuEntries(&n);
        for (int i = 0; i < n; ++i)
            if (e[i].type == MenuEntry::Item) {
                greyed[e[i].id] = e[i].greyed;
                checked[e[i].id] = e[i].checked;
            }
    }
    ~FakeFrame() override {
        CloseAllChildren();
        InstallDesk(previous_);
    }

    // Desk
    WindowId CreateChild(const ChildWindowRequest& r) override {
        children.push_back({nextId, r.chart, r.caption, r.x, r.y, r.width, r.height});
        active = nextId;
        return nextId++;
    }
    Chart* ActiveChart(WindowId* windowOut) override {
        if (windowOut) *windowOut = active;
        for (const Child& c : children)
            if (c.id == active) return c.chart;
        return nullptr;
    }
    Chart* ChartOf(WindowId window) override {
        for (const Child& c : children)
            if (c.id == window) return c.chart;
        return nullptr;
    }
    // The pick ends on the click in `clicks` (that window comes in front),
    // or with none scripted on a repaint.
    WindowId PickSecondChart(WindowId first, const char* prompt) override {
        for (const Child& c : children)
            if (c.id == first) prompts.push_back(prompt + c.caption);
        if (!clicks.empty() && clicks.front() != 0) active = clicks.front();
        clicks.clear();
        return active;
    }
    void Invalidate(WindowId window) override { invalidated.push_back(window); }
    void RepaintAllCharts() override { ++repaintAll; }
    void Tile(bool horizontal) override { tiles.push_back(horizontal); }
    void CloseAllChildren() override {
        while (!children.empty())
            Close(children.back().id);
    }
    void MenuStateChanged() override { UpdateFrameMenuState(*this); }
    void OpenDataView(WindowId window, Chart&) override { dataViews.push_back(window); }
    void ResetDataView(WindowId window) override { resetViews.push_back(window); }
    void RefreshDataView(WindowId window) override { refreshedViews.push_back(window); }
    void UpdateLevelsViews() override { ++levelsUpdates; }
    void ChangeDataSource(WindowId window, Chart& chart) override {
        velorin::ChangeDataSource(*this, window, chart);
    }

    // Frame
    void SetChecked(int id, bool on) override { checked[id] = on; }
    void Cascade() override {}
    void ArrangeIcons() override {}
    void DestroyFrame() override {
        destroyed = true;
        WriteSettingsAtExit(*this);
        CloseAllCharts(*this);
    }
    // Children in creation order, the last made on top.
    std::vector<DeskWindow> DeskWindows() override {
        std::vector<DeskWindow> windows;
        for (const Child& c : children)
            windows.push_back({c.chart, false, c.x, c.y, c.width, c.height});
        return windows;
    }
    void DestroyChild(WindowId window) override { Close(window); }
    // The last made on top.
    int ChartWindows(ChartWindowRef* out, int capacity) override {
        int n = 0;
        for (auto it = children.rbegin(); it != children.rend() && n < capacity; ++it)
            if (it->chart) out[n++] = {it->id, it->chart};
        return n;
    }
    void ShowAbout() override {}
    void SendChartCommand(WindowId window, int id) override { sent.push_back({window, id}); }
    void ShowHelpContents() override {}
    // With `capturing` on, a 2 x 2 picture of the desk.
    bool CaptureDesk(Dib& out) override {
        out.width = out.height = 2, out.bits.assign(16, 0x80);
        return capturing;
    }

    // MenuModel
    bool IsGreyed(int id) const override {
        auto it = greyed.find(id);
        return it != greyed.end() && it->second;
    }
    void SetGreyed(int id, bool g) override {
        if (greyed.count(id)) greyed[id] = g;
    }

    // A window closing, as its close box does it.
    void Close(WindowId id) {
        for (auto it = children.begin(); it != children.end(); ++it)
            if (it->id == id) {
                Chart* chart = it->chart;
                children.erase(it);
                if (active == id) active = children.empty() ? 0 : children.back().id;
                CloseChart(chart);
                return;
            }
    }

    std::vector<Child> children;
    WindowId active = 0;
    WindowId nextId = 1;
    std::map<int, bool> greyed, checked;
    std::vector<WindowId> invalidated, dataViews, resetViews, refreshedViews;
    std::vector<WindowId> clicks;
    std::vector<std::string> prompts; // the first chart's caption while the user picks
    std::vector<bool> tiles;
    std::vector<std::pair<WindowId, int>> sent;
    int repaintAll = 0;
    int levelsUpdates = 0;
    bool capturing = false;
    bool destroyed = false;

  private:
    Desk* previous_ = nullptr;
};

// A ".PRC" file of `rows` days from 1/1/1990, 28 a month: close 100 + r % 7,
// open 1 below it, high 2 above, low 2 below, volume 1000 + r.
inline std::string PriceFileText(int rows) {
    std::string text;
    for (int r = 0; r < rows; ++r) {
        const int c = 100 + r % 7;
        text += "1/" + std::to_string(r % 28 + 1) + "/" + std::to_string(1990 + r / 28);
        for (int v : {c, c - 1, c + 2, c - 2, 1000 + r})
            text += "," + std::to_string(v);
        text += "\r\n";
    }
    return text;
}

// A fresh program on a FakeFrame, dated far ahead of the files, with a
// recording seam and a folder of the test's own; no block outlives a test.
class HeadlessDesk : public ::testing::Test {
  protected:
    void SetUp() override {
        ResetProgramState();
        dateRules.todayDate = 50000;
        ASSERT_TRUE(AllocateWorkingBlocks());
    }
    void TearDown() override {
        frame.CloseAllChildren();
        FreeWorkingBlocks();
        EXPECT_EQ(blockAllocator.liveBlocks, 0);
    }
    // Data File on PriceFileText(rows), from a cleared seam; no message comes.
    void Open(int rows, const char* name = "ACME.PRC") {
        seam.Clear();
        seam.QueueFile(dir.Write(name, PriceFileText(rows)));
        FrameCommand(frame, cmd::Datafile);
        ASSERT_EQ(seam.MessageCount(), 0u) << seam.LastText();
    }

    RecordingSeam seam;
    TempDir dir;
    FakeFrame frame;
};

} // namespace velorin::test_support
