#include "market_data/block.h"

#include <cstdlib>

namespace velorin {

BlockAllocatorState blockAllocator;

void* AllocateBlock(BlockHandle* handleOut, std::uint16_t size) {
    if (handleOut) *handleOut = nullptr;
    if (blockAllocator.failCountdown == 0) {
        blockAllocator.failCountdown = -1;
        return nullptr;
    }
    if (blockAllocator.failCountdown > 0) --blockAllocator.failCountdown;
    // A zero-byte request still yields a distinct block.
    void* p = std::calloc(1, size == 0 ? 1 : size);
    if (!p) return nullptr;
    ++blockAllocator.liveBlocks;
    ++blockAllocator.allocations;
    if (handleOut) *handleOut = static_cast<BlockHandle>(p);
    return p;
}

void ReleaseBlock(BlockHandle handle) {
    if (!handle) return;
    std::free(handle);
    --blockAllocator.liveBlocks;
}

} // namespace velorin
