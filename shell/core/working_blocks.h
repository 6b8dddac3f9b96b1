#pragma once
// Before writing code here, read DEVELOPERS.md at the repository root: team rules.
// The blocks that live from start-up to exit.

namespace velorin {

// Allocates every working block; on the first failure tells the user and
// returns false (the caller ends the process with -1).
bool AllocateWorkingBlocks();
void FreeWorkingBlocks();

// Start-up values of every program-wide record.
void ResetProgramState();

} // namespace velorin
