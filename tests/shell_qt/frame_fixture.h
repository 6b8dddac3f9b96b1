#pragma once
// The Qt frame on the offscreen platform over a fresh program, dated far
// ahead of the files, with a recording seam and a folder of the test's own;
// no block outlives a test.

#include <gtest/gtest.h>

#include <QMdiArea>
#include <QMdiSubWindow>

#include "interaction/mouse_state.h"
#include "interaction/price_child.h"
#include "shell/qt/frame_window.h"
#include "tests/shell/fake_frame.h"

namespace velorin::test_support {

class QtFrameTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ResetProgramState();
        dateRules.todayDate = 50000;
        ASSERT_TRUE(AllocateWorkingBlocks());
        frame = new FrameWindow;
        frame->resize(1400, 1000);
        frame->show();
    }
    void TearDown() override {
        frame->FrameCommand(cmd::CloseAll);
        delete frame;
        FreeWorkingBlocks();
        ResetChartMouseState();
        EXPECT_EQ(blockAllocator.liveBlocks, 0);
    }
    // Data File on PriceFileText(rows); no message comes.
    void Open(int rows, const char* name = "ACME.PRC") {
        seam.QueueFile(dir.Write(name, PriceFileText(rows)));
        frame->FrameCommand(cmd::Datafile);
        ASSERT_EQ(seam.MessageCount(), 0u) << seam.LastText();
    }
    QMdiSubWindow* TopWindow() const { return frame->mdiClient()->activeSubWindow(); }
    template <typename T = PriceChild> T* Top() const {
        return qobject_cast<T*>(TopWindow()->widget());
    }

    RecordingSeam seam;
    TempDir dir;
    FrameWindow* frame = nullptr;
};

} // namespace velorin::test_support
