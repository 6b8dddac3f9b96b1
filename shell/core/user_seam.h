#pragma once
// Before writing code here, read DEVELOPERS.md at the repository root: team rules.
// The one way the program talks to the user: message boxes, file dialogs,
// the wait cursor and modal dialogs. The desktop program installs a Qt
// implementation; tests install a recording one and answer every question.

#include <string>
#include <string_view>

namespace velorin {

enum class MessageIcon { Information, Stop, Warning, Question };

struct FileDialogRequest {
    std::string filter;         // e.g. "Text Files (*.PRC)"
    std::string title;          // e.g. "Open Data File"
    std::string defaultExtension;
    bool save = false;
};

class UserSeam {
  public:
    virtual ~UserSeam() = default;
    // Shows a message; returns the id of the button pressed (1 = OK).
    virtual int ShowMessage(std::string_view text, std::string_view caption, MessageIcon icon) = 0;
    // Asks for a file. Returns 1 with `pathOut` set when a file was chosen,
    // 0 when the user cancelled, -1 when the dialog itself failed.
    virtual int AskFile(const FileDialogRequest& request, std::string& pathOut) = 0;
    // Wait cursor on (true) or back to what it was (false); calls nest.
    virtual void SetWaitCursor(bool on) = 0;
};

// The seam in force. Never null: without an installed seam a silent one
// answers every message with 1 and cancels every file dialog.
UserSeam& Seam();
// Installs `seam` (nullptr restores the silent one); returns the previous one.
UserSeam* InstallSeam(UserSeam* seam);

// Scoped wait cursor through the seam.
class WaitCursor {
  public:
    WaitCursor() { Seam().SetWaitCursor(true); }
    ~WaitCursor() { Seam().SetWaitCursor(false); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

} // namespace velorin
