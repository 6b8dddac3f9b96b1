#pragma once
// Long-lived memory of the program: zero-filled blocks at stable addresses,
// owned by handle. Sizes are 16 bits wide, so no block exceeds 65535 bytes.

#include <cstddef>
#include <cstdint>

namespace velorin {

struct Block; // opaque: a handle names one allocated block
using BlockHandle = Block*;

// Allocates a zeroed block of `size` bytes, stores its handle in
// `handleOut` and returns its address; on failure returns nullptr with
// `handleOut` cleared.
void* AllocateBlock(BlockHandle* handleOut, std::uint16_t size);

// Releases a block by handle; a null handle is ignored.
void ReleaseBlock(BlockHandle handle);

// Counters and a failure switch, so that tests can make the n-th
// allocation from now fail and can check that nothing is left behind.
struct BlockAllocatorState {
    long liveBlocks = 0;     // blocks allocated and not yet released
    long allocations = 0;    // successful allocations so far
    long failCountdown = -1; // -1: never fail; 0: the next call fails; n: n calls succeed first
};
extern BlockAllocatorState blockAllocator;

// Convenience for tests: allocation number `n` from now (0 = the next) fails.
inline void FailAllocationAfter(long n) { blockAllocator.failCountdown = n; }

} // namespace velorin
