// Arbitrary bytes into the market data layer. The first byte chooses the
// rules (frame, day order, filter, batch, kind of selection, live feed
// answer); the rest is the text.
//
//  - ParseDate on the first up to 31 bytes;
//  - ShortenDateText on an exactly sized heap copy of them;
//  - ParseDataFileText on up to 56,320 bytes in fileText, NUL-terminated as
//    LoadDataFile leaves it, and after a successful parse ConnectDataSource,
//    through a fake live feed for the Reuter time series.
// Invariants are checked with abort(), so libFuzzer reports them.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "market_data/block.h"
#include "market_data/connect.h"
#include "market_data/data_file.h"
#include "market_data/data_source.h"
#include "market_data/date.h"
#include "market_data/dde_text.h"
#include "market_data/dde_transport.h"

namespace {

using namespace velorin;

// What the scripted server does with the live value: 0 answers, 1 takes no
// conversation, 2 gives no data, 3 answers what the parser refuses.
int feedAnswer = 0;

struct FakeTransport final : DdeTransport {
    Conversation Connect(const char*, const char*) override { return feedAnswer == 1 ? 0 : 4242; }
    bool Request(Conversation, const char*, int, std::string& reply) override {
        reply = feedAnswer == 3 ? "#N/A\t1\r\n" : "12:00\t1\t1\t1\t1\t1000\r\n";
        return feedAnswer != 2;
    }
    bool AdviseStart(Conversation, const char*, int) override { return true; }
    void Disconnect(Conversation) override {}
    void EnableCallback(Conversation, bool) override {}
} fakeTransport;

bool Initialise() {
    ResetMarketDataState();
    if (!AllocateStagingBlocks()) std::abort();
    dateRules.todayDate = 40543.0; // 31 December 2010
    return true;
}

void Check(bool condition) {
    if (!condition) std::abort();
}

void CheckStaging() {
    const DataColumns& c = marketData.fetchColumns;
    const int rows = marketData.fetchRowCount;
    Check(rows >= 2 && rows <= MaxRows);
    Check(marketData.hasFullColumns == 0 || marketData.hasFullColumns == 1);
    for (int row = 0; row < rows; ++row) {
        Check(std::memchr(c.dateText[row], '\0', DateTextSize) != nullptr);
        Check(c.dateNumber[row] >= 0.0);
        if (dateRules.rejectFuture) Check(c.dateNumber[row] <= dateRules.todayDate);
        if (row > 0) Check(c.dateNumber[row] == 0.0 || c.dateNumber[row] > c.dateNumber[row - 1]);
        if (!marketData.hasFullColumns)
            Check(c.open[row] == MISSING_VALUE && c.volume[row] == MISSING_VALUE);
        else
            Check(c.volume[row] != 0.0);
    }
}

void SetSelection(const char* source, const char* topic, const char* item) {
    ConnectionSelection& s = marketData.selection;
    std::strcpy(s.currentSource, source);
    std::strcpy(s.currentTopic, topic);
    std::strcpy(s.currentItem, item);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool ready = Initialise();
    (void)ready;
    if (size == 0) return 0;
    const std::uint8_t flags = data[0];
    ++data;
    --size;

    dateRules.rejectFuture = (flags & 1) != 0;
    dateRules.dayFirst = (flags & 2) != 0;
    marketData.filterOn = (flags >> 2) & 1;
    const bool batch = (flags >> 3) & 1;
    InstallDdeTransport(nullptr);
    ResetDdeFeedState();
    switch ((flags >> 4) & 3) {
    case 0:
        SetSelection("DATAFILE", "/desk/FUZZ.PRC", "FUZZ");
        break;
    case 1:
        SetSelection("Reuter", "TS1", "FUZZ.N");
        break; // no feed installed
    case 2:
        SetSelection("REUTER", "ts1", "FUZZ.N");
        InstallDdeTransport(&fakeTransport);
        break;
    default:
        SetSelection("Excel", "[TickDB]Sheet1", "R1C1:R2000C6");
        break;
    }
    feedAnswer = (flags >> 6) & 3;
    marketData.liveConversation = 0;
    marketData.liveItem = 0;

    // The date parser and the shortening, on a short prefix.
    const std::size_t dateLength = size < 31 ? size : 31;
    char dateText[32];
    std::memcpy(dateText, data, dateLength);
    dateText[dateLength] = '\0';
    const double day = ParseDate(dateText);
    Check(day == -1.0 || day >= -700000.0);
    if (dateRules.rejectFuture) Check(day <= dateRules.todayDate);
    std::unique_ptr<char[]> shortened(new char[dateLength + 1]);
    std::memcpy(shortened.get(), dateText, dateLength + 1);
    ShortenDateText(shortened.get(), dateLength + 1);
    Check(std::memchr(shortened.get(), '\0', dateLength + 1) != nullptr);

    // The reader, as LoadDataFile leaves fileText.
    const std::size_t textLength = size < static_cast<std::size_t>(MaxDataFileBytes)
                                       ? size
                                       : static_cast<std::size_t>(MaxDataFileBytes);
    std::memcpy(marketData.fileText, data, textLength);
    marketData.fileText[textLength] = '\0';
    const long blocksBefore = blockAllocator.liveBlocks;
    if (ParseDataFileText() == 1) {
        CheckStaging();
        const int slot = (flags & 0x80) ? 998 : 0;
        marketData.nextSourceSlot = slot;
        if (ConnectDataSource(batch) == 1) {
            const DataSource* source = SourceAt(slot);
            Check(source != nullptr);
            Check(source->rowCount >= 0 && source->rowCount <= MaxRows);
            Check(source->rowCount <= marketData.fetchRowCount + 1);
            FreeDataSource(slot);
        } else {
            Check(SourceAt(slot) == nullptr);
        }
    }
    Check(blockAllocator.liveBlocks == blocksBefore);
    return 0;
}
