#pragma once
// Common set-up of the market data tests: start-up state, staging blocks,
// a recording seam and a check that every block is released again.

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>

#include "market_data/block.h"
#include "market_data/connect.h"
#include "market_data/data_file.h"
#include "market_data/data_source.h"
#include "market_data/date.h"
#include "market_data/dde_text.h"
#include "tests/support/recording_seam.h"
#include "tests/support/temp_dir.h"

namespace velorin {

// Day number of a civil date from the standard library's calendar:
// independent of the parser's own arithmetic.
inline constexpr std::chrono::sys_days DayZero{std::chrono::year{1899} / 12 / 30};
inline double DayNumberOf(int y, unsigned m, unsigned d) {
    using namespace std::chrono;
    return static_cast<double>((sys_days{year{y} / month{m} / day{d}} - DayZero).count());
}

class MarketDataTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ResetMarketDataState();
        dateRules.todayDate = DayNumberOf(2010, 12, 31);
        dateRules.dayFirst = false;
        dateRules.rejectFuture = true;
        SetSelection("DATAFILE", "/desk/ACME.PRC", "ACME");
        baselineBlocks_ = blockAllocator.liveBlocks;
        ASSERT_TRUE(AllocateStagingBlocks());
    }

    void TearDown() override {
        blockAllocator.failCountdown = -1;
        for (int slot = 0; slot < MaxSourceSlots; ++slot)
            FreeDataSource(slot);
        ReleaseStagingBlocks();
        EXPECT_EQ(blockAllocator.liveBlocks, baselineBlocks_) << "blocks left behind";
    }

    // Puts `text` into fileText as LoadDataFile does (NUL-terminated) and parses it.
    int Parse(const std::string& text) {
        std::memcpy(marketData.fileText, text.c_str(), text.size() + 1);
        return ParseDataFileText();
    }

    void SetSelection(const char* source, const char* topic, const char* item) {
        auto& s = marketData.selection;
        std::snprintf(s.currentSource, sizeof s.currentSource, "%s", source);
        std::snprintf(s.currentTopic, sizeof s.currentTopic, "%s", topic);
        std::snprintf(s.currentItem, sizeof s.currentItem, "%s", item);
    }

    // Exactly one message box, of the program's caption; the record is cleared.
    void ExpectOnlyMessage(const char* text, MessageIcon icon = MessageIcon::Information) {
        ASSERT_EQ(seam.MessageCount(), 1u) << (seam.MessageCount() ? seam.LastText() : "");
        EXPECT_EQ(seam.messages[0].text, text);
        EXPECT_EQ(seam.messages[0].caption, "QDX-Velorin");
        EXPECT_EQ(seam.messages[0].icon, icon);
        seam.Clear();
    }

    long baselineBlocks_ = 0;
    test_support::RecordingSeam seam;
};

using test_support::TempDir;

} // namespace velorin
