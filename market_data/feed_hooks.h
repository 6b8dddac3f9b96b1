#pragma once
// Before writing code here, read DEVELOPERS.md at the repository root: team rules.
// Where the live feeds plug into the market data layer. File and database
// sources carry a negative pseudo-conversation and need no feed.

#include <cstdint>

namespace velorin {

struct FeedHooks {
    // Ends a live conversation; installed by the live feed layer.
    void (*disconnect)(std::intptr_t conversation) = nullptr;
};
inline FeedHooks feedHooks;

// Ends `conversation` when it is a live one; negative and zero values are
// file, database or absent conversations and need nothing.
inline void DisconnectConversation(std::intptr_t conversation) {
    if (conversation > 0 && feedHooks.disconnect) feedHooks.disconnect(conversation);
}

} // namespace velorin
