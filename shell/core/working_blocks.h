#pragma once
// The blocks that live from start-up to exit, and the start-up values of
// every program-wide record.

namespace velorin {

// Allocates every working block; on the first failure tells the user and
// returns false (the caller ends the process with -1).
bool AllocateWorkingBlocks();
void FreeWorkingBlocks();

// Start-up values of every program-wide record, each through its owner's
// reset. The staging blocks, the installed seams and the desk stay.
void ResetProgramState();

} // namespace velorin
