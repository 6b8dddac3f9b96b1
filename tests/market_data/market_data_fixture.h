#pragma once
// Common set-up of the market data tests: start-up state, staging blocks,
// a recording seam, and a check that every block is released again.

#include <gtest/gtest.h>

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
#include "market_data/feed_hooks.h"
#include "shell/core/shell_state.h"
#include "tests/support/recording_seam.h"

namespace velorin {

// Day number of a civil date, from the standard library's calendar: an
// independent check of the parser's own arithmetic.
inline double DayNumberOf(int y, unsigned m, unsigned d) {
    using namespace std::chrono;
    const sys_days day{year{y} / month{m} / std::chrono::day{d}};
    const sys_days zero{year{1899} / December / std::chrono::day{30}};
    return static_cast<double>((day - zero).count());
}

// "mm/dd/yyyy" of a day number.
inline std::string DateTextOf(double dayNumber) {
    using namespace std::chrono;
    const sys_days zero{year{1899} / December / day{30}};
    const year_month_day ymd{zero + days{static_cast<long>(dayNumber)}};
    char text[16];
    std::snprintf(text, sizeof text, "%02u/%02u/%04d", static_cast<unsigned>(ymd.month()),
                  static_cast<unsigned>(ymd.day()), static_cast<int>(ymd.year()));
    return text;
}

class MarketDataTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ResetShellState();
        ResetMarketDataState();
        feedHooks = FeedHooks{};
        blockAllocator.failCountdown = -1;
        dateRules.todayDate = DayNumberOf(2010, 12, 31);
        dateRules.dayFirst = false;
        shell.frameExists = true;
        baselineBlocks_ = blockAllocator.liveBlocks;
        ASSERT_TRUE(AllocateStagingBlocks());
    }

    void TearDown() override {
        blockAllocator.failCountdown = -1;
        for (int slot = 0; slot < MaxSourceSlots; ++slot)
            FreeDataSource(slot);
        ReleaseStagingBlocks();
        feedHooks = FeedHooks{};
        EXPECT_EQ(blockAllocator.liveBlocks, baselineBlocks_) << "blocks left behind";
    }

    // Puts `text` into fileText as LoadDataFile does (NUL-terminated).
    void SetFileText(const std::string& text) {
        ASSERT_LE(text.size(), static_cast<std::size_t>(MaxDataFileBytes));
        std::memcpy(marketData.fileText, text.data(), text.size());
        marketData.fileText[text.size()] = '\0';
    }

    int Parse(const std::string& text) {
        SetFileText(text);
        return ParseDataFileText();
    }

    void SetSelection(const char* source, const char* topic, const char* item) {
        std::snprintf(marketData.selection.currentSource, sizeof marketData.selection.currentSource,
                      "%s", source);
        std::snprintf(marketData.selection.currentTopic, sizeof marketData.selection.currentTopic,
                      "%s", topic);
        std::snprintf(marketData.selection.currentItem, sizeof marketData.selection.currentItem,
                      "%s", item);
    }

    long baselineBlocks_ = 0;
    test_support::RecordingSeam seam;
};

// A temporary folder, removed with everything in it.
class TempDir {
  public:
    TempDir() {
        namespace fs = std::filesystem;
        static int counter = 0;
        path_ = fs::temp_directory_path() /
                ("velorin_md_test_" +
                 std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()) + "_" +
                 std::to_string(++counter));
        fs::create_directories(path_);
    }
    ~TempDir() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    std::string Write(const std::string& name, const std::string& bytes) const {
        const std::string full = (path_ / name).string();
        std::FILE* f = std::fopen(full.c_str(), "wb");
        if (f) {
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
