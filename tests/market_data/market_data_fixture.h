#pragma once
// Common set-up of the market data tests: start-up state, staging blocks,
// a recording seam, a check that every block is released again, and a
// temporary folder.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>

#include "market_data/block.h"
#include "market_data/connect.h"
#include "market_data/data_file.h"
#include "market_data/data_source.h"
#include "market_data/date.h"
#include "market_data/live_feed.h"
#include "tests/support/recording_seam.h"

namespace velorin {

// Day number of a civil date, and its "mm/dd/yyyy" text, from the standard
// library's calendar: independent of the parser's own arithmetic.
inline constexpr std::chrono::sys_days DayZero{std::chrono::year{1899} / 12 / 30};
inline double DayNumberOf(int y, unsigned m, unsigned d) {
    using namespace std::chrono;
    return static_cast<double>((sys_days{year{y} / month{m} / day{d}} - DayZero).count());
}
inline std::string DateTextOf(double dayNumber) {
    const std::chrono::year_month_day ymd{DayZero +
                                          std::chrono::days{static_cast<long>(dayNumber)}};
    char text[16];
    std::snprintf(text, sizeof text, "%02u/%02u/%04d", static_cast<unsigned>(ymd.month()),
                  static_cast<unsigned>(ymd.day()), static_cast<int>(ymd.year()));
    return text;
}

class MarketDataTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ResetMarketDataState();
        InstallLiveFeed(nullptr);
        blockAllocator.failCountdown = -1;
        dateRules.todayDate = DayNumberOf(2010, 12, 31);
        dateRules.dayFirst = false;
        dateRules.rejectFuture = true;
        baselineBlocks_ = blockAllocator.liveBlocks;
        ASSERT_TRUE(AllocateStagingBlocks());
    }

    void TearDown() override {
        blockAllocator.failCountdown = -1;
        for (int slot = 0; slot < MaxSourceSlots; ++slot)
            FreeDataSource(slot);
        ReleaseStagingBlocks();
        InstallLiveFeed(nullptr);
        EXPECT_EQ(blockAllocator.liveBlocks, baselineBlocks_) << "blocks left behind";
    }

    // Puts `text` into fileText as LoadDataFile does (NUL-terminated) and parses it.
    int Parse(const std::string& text) {
        EXPECT_LE(text.size(), static_cast<std::size_t>(MaxDataFileBytes));
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

// A temporary folder, removed with everything in it.
class TempDir {
  public:
    TempDir() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "velorin_md_XXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }
    ~TempDir() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    std::string Write(const std::string& name, const std::string& bytes) const {
        const std::string full = PathOf(name);
        if (std::FILE* f = std::fopen(full.c_str(), "wb")) {
            std::fwrite(bytes.data(), 1, bytes.size(), f);
            std::fclose(f);
        }
        return full;
    }
    std::string PathOf(const std::string& name) const { return (path_ / name).string(); }
    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

} // namespace velorin
