// Arbitrary bytes into the live feed's text rules. The first byte chooses
// the rules (OffsetTime, full columns, day order, the kind of selection,
// repetition past the read limit);
// the rest is a reply for ParseDdeReply and, cut at its first NUL and to the
// field widths, the item and topic for BuildDdeItem and the tick database
// range. Invariants are checked with abort(), so libFuzzer reports them.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "market_data/data_source.h"
#include "market_data/date.h"
#include "market_data/dde_text.h"

namespace {

using namespace velorin;

void Check(bool condition) {
    if (!condition) std::abort();
}

bool Initialise() {
    ResetMarketDataState();
    if (!AllocateStagingBlocks()) std::abort();
    dateRules.todayDate = 40543.0; // 31 December 2010
    dateRules.rejectFuture = true;
    return true;
}

template <std::size_t N> void Fill(char (&field)[N], const std::uint8_t* data, std::size_t size) {
    std::size_t n = strnlen(reinterpret_cast<const char*>(data), size < N - 1 ? size : N - 1);
    std::memcpy(field, data, n);
    field[n] = '\0';
}

bool Terminated(const char* text, std::size_t size) {
    return strnlen(text, size) < size;
}

void BuildItems(std::uint8_t rules, const std::uint8_t* data, std::size_t size) {
    ConnectionSelection& s = marketData.selection;
    static const char* const services[] = {"Reuter", "reuter", "TickDB", "Other"};
    static const char* const topics[] = {"IDN", "ts1", "TS1", "[tickdb.xls]A,B"};
    std::snprintf(s.currentSource, sizeof s.currentSource, "%s", services[rules & 3]);
    std::snprintf(s.currentTopic, sizeof s.currentTopic, "%s", topics[(rules >> 2) & 3]);
    Fill(s.currentItem, data, size);
    Fill(s.currentTickval, data + size / 2, size - size / 2);
    if (rules & 0x40) Fill(ddeFeed.liveField, data + size / 3, size - size / 3);
    marketData.resolutionCode = "dwm"[rules % 3];
    BuildDdeItem();
    Check(Terminated(ddeFeed.ddeItemText, DdeItemTextSize));
    Check(Terminated(ddeFeed.liveField, LiveFieldSize));
    ToTickDbRange(s);
    FromTickDbRange(s);
    Check(Terminated(s.currentSource, sizeof s.currentSource));
    Check(Terminated(s.currentTopic, sizeof s.currentTopic));
    Check(Terminated(s.currentItem, sizeof s.currentItem));
    Check(Terminated(s.currentTickval, sizeof s.currentTickval));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool ready = Initialise();
    (void)ready;
    if (size == 0) return 0;
    const std::uint8_t rules = data[0];
    ++data;
    --size;
    ResetDdeFeedState();
    ddeFeed.offsetTime = rules & 1;
    dateRules.dayFirst = (rules & 2) != 0;
    marketData.hasFullColumns = (rules >> 2) & 1;
    marketData.selection.currentTopic[0] = '\0';
    marketData.fetchRowCount = -7;
    marketData.fetchIsTick = 5;

    // An exactly sized heap copy, so that a read past the reply is caught;
    // with the top bit of the rules the text repeated past the read limit,
    // so that the cut of a long reply is reached.
    std::vector<char> reply(data, data + size);
    if ((rules & 0x80) && size > 0)
        while (reply.size() <= DdeReplyLimit)
            reply.insert(reply.end(), data, data + size);
    reply.shrink_to_fit();
    const int parsed = ParseDdeReply(reply.data(), reply.size());
    const DataColumns& c = marketData.fetchColumns;
    Check(parsed == 0 || parsed == 1);
    if (parsed == 1) {
        const int rows = marketData.fetchRowCount;
        Check(rows >= 1 && rows <= MaxRows);
        Check(marketData.fetchIsTick == (rows == 1 ? 1 : 0));
        Check(marketData.hasFullColumns == 0 || marketData.hasFullColumns == 1);
        for (int r = 0; r < rows; ++r) {
            Check(Terminated(c.dateText[r], DateTextSize));
            Check(c.dateNumber[r] >= 0.0);
            Check(r == 0 || c.dateNumber[r] == 0.0 || c.dateNumber[r] > c.dateNumber[r - 1]);
            if (!marketData.hasFullColumns)
                Check(c.volume[r] == MISSING_VALUE);
            else
                Check(c.volume[r] != 0.0);
        }
    } else {
        Check(marketData.fetchIsTick == 5);
    }
    BuildItems(rules, data, size);
    return 0;
}
