#pragma once
// Start-up, the event loop and the exit of the desktop program.

namespace velorin {

struct StartOptions {
    int startupMilliseconds = 5000; // how long the start-up dialog stays up
};

// Runs the program; returns the process exit code.
int RunApplication(int argc, char** argv, const StartOptions& options = {});

// The name under which the first running instance listens for a second one.
const char* InstanceServerName();

} // namespace velorin
