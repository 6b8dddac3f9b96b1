#include "shell/core/shell_state.h"

#include <cstring>

namespace velorin {

ShellState shell;

void ResetShellState() {
    std::memset(&shell, 0, sizeof shell);
    shell.realTimeOn = 1;
    shell.fetchFrequencyMinutes = 0;
    shell.defaultFreePlaced = 1;
    shell.defaultExtended = 0;
    shell.priceThickness = 1;
    shell.modelThickness = 1;
    shell.attachmentThickness = 1;
}

} // namespace velorin
