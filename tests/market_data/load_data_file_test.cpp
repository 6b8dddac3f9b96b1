// LoadDataFile through the seam, with real files in a temporary folder.
#include "tests/market_data/market_data_fixture.h"

namespace velorin {
namespace {

class LoadTest : public MarketDataTest {
  protected:
    TempDir dir;
};

const std::string TwoRows = "12/30/1999,1,1,1,1,1\r\n12/31/1999,2,2,2,2,2\r\n";

// A valid six-column file of exactly `size` bytes: rows of 36 bytes at the
// time of day 0, the remainder taken up by leading zeros of the last volume.
std::string ValidFileOfSize(std::size_t size) {
    const std::string row = "10:30,10.50,10.25,11.00,09.75,1500\r\n";
    std::string text;
    while (text.size() + 2 * row.size() <= size)
        text += row;
    return text + "10:30,10.50,10.25,11.00,09.75," + std::string(size - text.size() - 36, '0') +
           "1500\r\n";
}

TEST_F(LoadTest, TheDialogSetsTheSelection) {
    std::filesystem::create_directories(dir.path() / "a.b");
    const std::string path = dir.Write("a.b/my.data.PRC", TwoRows);
    seam.QueueFile(path);
    ASSERT_EQ(LoadDataFile(0), 1);
    ASSERT_EQ(seam.fileRequests.size(), 1u);
    EXPECT_TRUE(seam.fileRequests[0].filter == "Text Files (*.PRC)" &&
                seam.fileRequests[0].title == "Open Data File");
    EXPECT_STREQ(marketData.selection.currentSource, "DATAFILE");
    EXPECT_EQ(std::string(marketData.selection.currentTopic), path);
    EXPECT_STREQ(marketData.selection.currentItem, "my"); // the title up to its first "."
    EXPECT_TRUE(seam.waitCursorOnCalls == 1 && seam.waitCursorDepth == 0);
    SetSelection("DATAFILE", path.c_str(), "kept"); // silent: the selection's path, unchanged
    ASSERT_EQ(LoadDataFile(1), 1);
    EXPECT_EQ(seam.fileRequests.size(), 1u);
    EXPECT_EQ(seam.MessageCount(), 0u);
}

TEST_F(LoadTest, SizeLimit) {
    SetSelection("DATAFILE", dir.Write("FITS.PRC", ValidFileOfSize(56320)).c_str(), "FITS");
    ASSERT_EQ(LoadDataFile(1), 1);
    EXPECT_TRUE(marketData.fetchRowCount == 1564 && marketData.fetchColumns.volume[1563] == 1500);
    SetSelection("DATAFILE", dir.Write("BIG.PRC", ValidFileOfSize(56321)).c_str(), "BIG");
    EXPECT_EQ(LoadDataFile(1), 0);
    ExpectOnlyMessage("DataFile Too large - PLease reduce file size", MessageIcon::Warning);
}

TEST_F(LoadTest, FailureMessages) {
    SetSelection("Reuter", "TS1", "IBM.N");
    seam.QueueCancel(); // no message, the selection as it was
    EXPECT_TRUE(LoadDataFile(0) == 0 && seam.MessageCount() == 0u);
    EXPECT_STREQ(marketData.selection.currentSource, "Reuter");
    seam.QueueDialogFailure();
    EXPECT_EQ(LoadDataFile(0), 0);
    ExpectOnlyMessage("File Open Error");
    seam.QueueFile(dir.PathOf("NONE.PRC"));
    EXPECT_EQ(LoadDataFile(0), 0);
    ExpectOnlyMessage("Non-existent DataFile");
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
