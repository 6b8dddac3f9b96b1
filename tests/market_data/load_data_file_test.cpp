// LoadDataFile through the seam, with real files in a temporary folder.
#include "tests/market_data/market_data_fixture.h"

namespace velorin {
namespace {

class LoadTest : public MarketDataTest {
  protected:
    TempDir dir;
};

const std::string TwoRows = "12/30/1999,1,1,1,1,1\r\n12/31/1999,2,2,2,2,2\r\n";

// A valid six-column file of exactly `size` bytes: rows of 41 bytes, the
// remainder taken up by leading zeros of the last row's volume.
std::string ValidFileOfSize(std::size_t size) {
    std::string text;
    const double start = DayNumberOf(1995, 1, 2);
    int row = 0;
    while (text.size() + 82 <= size)
        text += DateTextOf(start + row++) + ",10.50,10.25,11.00,09.75,1500\r\n";
    const std::string pad(size - text.size() - 41, '0');
    return text + DateTextOf(start + row) + ",10.50,10.25,11.00,09.75," + pad + "1500\r\n";
}

TEST_F(LoadTest, TheDialogSetsTheSelection) {
    std::filesystem::create_directories(dir.path() / "a.b");
    const std::string path = dir.Write("a.b/my.data.PRC", TwoRows);
    seam.QueueFile(path);
    ASSERT_EQ(LoadDataFile(0), 1);
    ASSERT_EQ(seam.fileRequests.size(), 1u);
    EXPECT_EQ(seam.fileRequests[0].filter, "Text Files (*.PRC)");
    EXPECT_EQ(seam.fileRequests[0].title, "Open Data File");
    EXPECT_FALSE(seam.fileRequests[0].save);
    EXPECT_STREQ(marketData.selection.currentSource, "DATAFILE");
    EXPECT_EQ(std::string(marketData.selection.currentTopic), path);
    EXPECT_STREQ(marketData.selection.currentItem, "my"); // the title up to its first "."
    EXPECT_EQ(marketData.fetchRowCount, 2);
    EXPECT_EQ(seam.MessageCount(), 0u);
    EXPECT_EQ(seam.waitCursorOnCalls, 1);
    EXPECT_EQ(seam.waitCursorDepth, 0);

    SetSelection("DATAFILE", path.c_str(), "kept"); // silent: the selection's path, unchanged
    ASSERT_EQ(LoadDataFile(1), 1);
    EXPECT_EQ(seam.fileRequests.size(), 1u);
    EXPECT_STREQ(marketData.selection.currentItem, "kept");
}

TEST_F(LoadTest, SizeLimit) {
    const std::string fits = ValidFileOfSize(56320);
    ASSERT_EQ(fits.size(), 56320u);
    SetSelection("DATAFILE", dir.Write("FITS.PRC", fits).c_str(), "FITS");
    ASSERT_EQ(LoadDataFile(1), 1);
    EXPECT_EQ(marketData.fetchRowCount, 1373);
    EXPECT_EQ(marketData.fetchColumns.volume[1372], 1500.0);

    SetSelection("DATAFILE", dir.Write("BIG.PRC", ValidFileOfSize(56321)).c_str(), "BIG");
    EXPECT_EQ(LoadDataFile(1), 0);
    ExpectOnlyMessage("DataFile Too large - PLease reduce file size", MessageIcon::Warning);

    std::FILE* f = std::fopen(dir.PathOf("FITS.PRC").c_str(), "rb");
    ASSERT_NE(f, nullptr);
    std::fseek(f, 3, SEEK_SET);
    EXPECT_EQ(FileSizeOf(f), 56320);
    EXPECT_EQ(std::ftell(f), 3); // the position is kept
    std::fclose(f);
}

TEST_F(LoadTest, FailureMessages) {
    SetSelection("Reuter", "TS1", "IBM.N");
    seam.QueueCancel();
    EXPECT_EQ(LoadDataFile(0), 0);
    EXPECT_EQ(seam.MessageCount(), 0u);
    EXPECT_STREQ(marketData.selection.currentSource, "Reuter");
    seam.QueueDialogFailure();
    EXPECT_EQ(LoadDataFile(0), 0);
    ExpectOnlyMessage("File Open Error");

    seam.QueueFile(dir.PathOf("NONE.PRC"));
    EXPECT_EQ(LoadDataFile(0), 0);
    ExpectOnlyMessage("Non-existent DataFile");
    EXPECT_STREQ(marketData.selection.currentItem, "NONE"); // kept from the dialog

    SetSelection("DATAFILE", dir.Write("A.PRC", TwoRows).c_str(), "A");
    FailAllocationAfter(0);
    EXPECT_EQ(LoadDataFile(1), 0);
    ExpectOnlyMessage("Memory alloc failed - Please close some windows");

    // An empty file and one the reader refuses (its shapes: the reader's tests).
    for (const char* text : {"", "12/30/1999,1\r\n12/31/1999\r\n"}) {
        SetSelection("DATAFILE", dir.Write("E.PRC", text).c_str(), "E");
        EXPECT_EQ(LoadDataFile(1), 0) << text;
        EXPECT_EQ(seam.waitCursorDepth, 0);
        ExpectOnlyMessage("DataFile Read Error");
    }
}

} // namespace
} // namespace velorin
