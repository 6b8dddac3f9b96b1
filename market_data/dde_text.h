#pragma once
// The text rules of the live feed, free of any transport: the item string
// asked of the server, the tick database's spreadsheet range, and the parse
// of a reply into the staging area. The reply arrives as plain bytes.

#include <cstddef>
#include <cstdint>

#include "market_data/data_source.h"
#include "market_data/dde_transport.h"

namespace velorin {

// Longest stretch of a reply that is read: six columns of 64,000 held in
// 16 bits (384,000 mod 65,536), the same figure that sizes fileText.
inline constexpr std::size_t DdeReplyLimit = static_cast<std::uint16_t>(6 * 64000);
static_assert(DdeReplyLimit == 56320 && DdeReplyLimit < FileTextSize);

inline constexpr int DdeItemTextSize = 512;
inline constexpr int LiveFieldSize = 255;

// The live feed's own part of the connection request.
struct DdeFeedState {
    std::int32_t offsetTime;           // "OffsetTime": date texts one hour later
    char ddeItemText[DdeItemTextSize]; // the item string actually sent
    char liveField[LiveFieldSize];     // fields of the last history request,
                                       // asked again of the live value
    std::int32_t requestTimeoutMs;     // a request's and an advise start's wait
    std::int64_t fixedNow;             // seconds the live clock reads; -1: the system's
};

extern DdeFeedState ddeFeed;

// Start-up values: offset off, both texts empty, the 60-second wait.
void ResetDdeFeedState();

// "Reuter", "REUTER" or "reuter".
bool IsReuterService(const char* service);

// Sets ddeFeed.ddeItemText (and for the history topic ddeFeed.liveField)
// from the selection's source, topic and item, marketData.hasFullColumns
// and marketData.resolutionCode.
void BuildDdeItem();

// A tick database source ("TickDB" in any of its three spellings) becomes
// its spreadsheet range: service "Excel", topic "[tickdb.xls]item,timer",
// item "R3C1:R2000C5". Any other selection is left as it is.
void ToTickDbRange(ConnectionSelection& selection);

// The way back, for a topic beginning "[TickDB", "[TICKDB" or "[tickdb":
// what follows the 12-character file prefix up to the comma is the item,
// the rest the timer; the topic becomes "IDN", the service "TickDB".
void FromTickDbRange(ConnectionSelection& selection);

// Parses a reply of `size` bytes into the staging area (fetchColumns,
// fetchRowCount, hasFullColumns, fetchIsTick), through fileText. Returns 1
// when at least one row was read, else 0; never shows a message.
int ParseDdeReply(const char* reply, std::size_t size);

} // namespace velorin
