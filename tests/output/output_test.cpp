// The .bmp file of a DIB against bytes laid out by hand from the published
// format and the results of writing it; saving a chart image with its
// dialog and messages; the capture and print arithmetic.
#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>

#include "output/chart_image.h"
#include "output/dib.h"
#include "output/print_layout.h"
#include "tests/support/recording_seam.h"
#include "tests/support/temp_dir.h"

namespace velorin {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Hex(const std::string& hex) {
    Bytes out;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        out.push_back(std::stoi(hex.substr(i, 2), nullptr, 16));
    return out;
}

// clang-format off
TEST(Dib, FilesLaidOutByHand) {
    Dib rgb; // 3 x 2 true colour: rows of 9 bytes padded to 12, bottom row first
    rgb.width = 3, rgb.height = 2, rgb.sizeImage = 999;
    rgb.bits = Hex("010203040506070809000000" "0a0b0c0d0e0f101112000000");
    EXPECT_EQ(DibFileBytes(rgb), Hex("424d" "4e000000" "00000000" "36000000"       // "BM", 78, 0, 54
                                     "28000000" "03000000" "02000000" "0100" "1800" // 40, 3 x 2, 1 plane, 24 bits
                                     "00000000" "18000000" "00000000" "00000000" "00000000" "00000000"
                                     "010203040506070809000000" "0a0b0c0d0e0f101112000000"));
    Dib indexed; // 2 x 2, 8 bits, two colours
    indexed.width = 2, indexed.height = 2, indexed.bitCount = 8, indexed.clrUsed = 2;
    indexed.colours = Hex("00000000" "ff804000");
    indexed.bits = Hex("00010000" "01000000");
    EXPECT_EQ(DibFileBytes(indexed), Hex("424d" "46000000" "00000000" "3e000000"
                                         "28000000" "02000000" "02000000" "0100" "0800"
                                         "00000000" "08000000" "00000000" "00000000" "02000000" "00000000"
                                         "00000000" "ff804000" "00010000" "01000000"));
}
// clang-format on

TEST(Dib, WriteResults) {
    test_support::TempDir dir;
    Dib four; // 5 x 3 at 4 bits: 16 colours, rows of 4 bytes
    four.width = 5, four.height = 3, four.bitCount = 4;
    four.colours.assign(64, 7), four.bits.assign(12, 0x21);
    Dib rle = four, core = four;
    rle.compression = BI_RLE4, rle.sizeImage = 5, rle.bits.assign(5, 0);
    core.headerSize = 12;
    const std::tuple<const Dib*, std::string, int, long> cases[] = {
        // file size, -1 for none
        {&four, "four", DibWritten, 14 + 40 + 64 + 12},
        {&rle, "rle", DibWritten, 14 + 40 + 64 + 5},
        {&core, "core", DibWritten, 0},
        {nullptr, "null", DibNullHandle, -1},
        {&four, "none/four", DibNotWritten, -1}};
    for (const auto& [dib, name, result, size] : cases) {
        EXPECT_EQ(WriteDib(dib, dir.PathOf(name)), result) << name;
        const std::filesystem::path file = dir.PathOf(name);
        EXPECT_EQ(exists(file) ? static_cast<long>(file_size(file)) : -1L, size) << name;
    }
}

struct Desk final : CaptureSource {
    bool shown = true;
    bool CaptureDesk(Dib& out) override {
        out.width = 2, out.height = 1, out.bits = {1, 2, 3, 4, 5, 6, 0, 0};
        return shown;
    }
};

TEST(ChartImage, SaveResultsDialogAndMessages) {
    test_support::TempDir dir;
    enum Answer { Hidden, Given, Cancel, Failure, Chosen, Missing };
    const std::tuple<Answer, bool, int, std::string> cases[] = {
        // caption of the one message, "" for none
        {Hidden, false, ChartImageNoCapture, ""},
        {Failure, false, ChartImageNotSaved, "QDX-Velorin"},
        {Chosen, false, ChartImageSaved, ""},
        {Missing, false, ChartImageNotSaved, "Could not save bitmap"},
        {Missing, true, ChartImageNotSaved, ""}};
    for (const auto& [answer, batch, result, caption] : cases) {
        test_support::RecordingSeam seam;
        UserSeam* previous = InstallSeam(&seam);
        Desk desk;
        desk.shown = answer != Hidden;
        const std::string path =
            dir.PathOf((answer == Missing ? "none/" : "") + std::to_string(answer) +
                       std::to_string(batch) + ".bmp");
        if (answer == Cancel) seam.QueueCancel();
        if (answer == Failure) seam.QueueDialogFailure();
        if (answer == Chosen || answer == Missing) seam.QueueFile(path);
        EXPECT_EQ(SaveChartImage(&desk, answer <= Given ? path : "", batch), result) << path;
        const std::string text = answer == Missing ? path : "Unable to save chart";
        EXPECT_EQ(seam.Texts(), caption.empty() ? std::vector<std::string>() : std::vector{text});
        EXPECT_TRUE(caption.empty() || seam.messages[0].caption == caption);
        for (const FileDialogRequest& r : seam.fileRequests)
            EXPECT_EQ(r.title + "|" + r.filter, "Save Velorin Chart As|Velorin Bitmap (*.bmp)");
        InstallSeam(previous);
    }
}

// Where the picture goes on the page, by the three modes: best fit keeps
// the proportions on the printer's pixel shape and truncates; its product
// is taken in double precision (900 x 9921 x 1200 is past 32 bits).
TEST(PrintLayout, RectangleOfEachMode) {
    const PrintPage oblong{4800, 3000, 600, 300}, a4{9921, 14031, 1200, 1200};
    const PrintPage letter{2550, 3300, 300, 300};
    const std::tuple<int, PrintPage, int, int, ScreenRect> cases[] = {
        {PrintBestFit, oblong, 800, 600, {0, 0, 4800, 1800}},
        {PrintBestFit, letter, 1000, 707, {0, 0, 2550, 1802}}, // 1802.85
        {PrintBestFit, letter, 300, 900, {0, 0, 2550, 7650}},  // runs past the page
        {PrintBestFit, a4, 1590, 900, {0, 0, 9921, 5615}},     // 5615.66
        {PrintScaled, letter, 800, 600, {0, 0, 1600, 1800}},   // scales 2 and 3
        {0, letter, 800, 600, {0, 0, 2550, 3300}}};            // stretch: the page
    for (const auto& [mode, page, w, h, expected] : cases)
        EXPECT_EQ(PrintRectangle(mode, page, w, h, 2, 3), expected) << mode << " " << w << "x" << h;
}

// The part of the picture one band draws: the band cut to the print
// rectangle, and its source rows and columns truncated after adding 0.5,
// the far edge from the near one.
TEST(PrintLayout, BandSources) {
    const ScreenRect twice{0, 0, 1600, 1200}, inset{100, 50, 1100, 800};
    const std::tuple<ScreenRect, ScreenRect, int, int, ScreenRect, ScreenRect> cases[] = {
        // print rectangle, band, picture size, target, source
        {twice, {401, 600, 801, 701}, 800, 600, {401, 600, 801, 701}, {201, 300, 401, 351}},
        {inset, {0, 0, 2000, 300}, 300, 200, {100, 50, 1100, 300}, {0, 0, 300, 67}},
        {inset, {0, 300, 2000, 500}, 300, 200, {100, 300, 1100, 500}, {0, 67, 300, 120}},
        {{0, 0, 400, 300}, {0, 150, 400, 300}, 1000, 700, {0, 150, 400, 300}, {0, 350, 1000, 700}},
        {{0, 0, 1000, 1000}, {160, 0, 210, 1000}, 10, 10, {160, 0, 210, 1000}, {2, 0, 3, 10}}};
    for (const auto& [print, band, w, h, target, source] : cases) {
        ScreenRect t, s;
        ASSERT_TRUE(BandSource(print, band, w, h, t, s)) << band.top;
        EXPECT_TRUE(t == target && s == source) << "band at " << band.top;
    }
    ScreenRect t, s; // a band below the picture draws nothing
    EXPECT_FALSE(BandSource(twice, {0, 1200, 1600, 1400}, 800, 600, t, s));
    EXPECT_EQ(PrintTitle(std::string(40, 'x')), std::string(31, 'x'));
}

} // namespace
} // namespace velorin
