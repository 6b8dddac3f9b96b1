#pragma once
// The one way the program talks to the user: message boxes, file dialogs,
// the wait cursor and modal dialogs. The desktop program installs a Qt
// implementation; tests install a recording one and answer every question.

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velorin {

enum class MessageIcon { Information, Stop, Warning, Question };

struct FileDialogRequest {
    std::string filter; // e.g. "Text Files (*.PRC)"
    std::string title;  // e.g. "Open Data File"
    std::string defaultExtension;
    bool save = false;
};

// One editable drop-down of a modal dialog: the user may pick from the list
// or type a value of their own.
struct ComboField {
    int controlId = 0;                // the control's id, e.g. 20201
    std::string label;                // "" when the field has only its icon
    std::string icon;                 // "GREEN", "RED", "YELLOW"
    std::string text;                 // in: edit text at start; out: text on OK
    std::vector<std::string> choices; // the list, in order
};

// A modal dialog made of combo boxes (the period and scale dialogs).
struct ComboDialog {
    std::string name;  // resource name, e.g. "PERIOD"
    std::string title; // e.g. "Period"
    std::vector<ComboField> fields;
};

// A modal dialog of read-only values that only OK closes.
struct ValuesDialog {
    std::string name;
    std::string title;
    std::vector<std::pair<std::string, std::string>> rows; // label, value text
    // When given, one per row: the name of the coloured icon that keys the
    // value in place of its label ("YELLOW", "GREEN", ...).
    std::vector<std::string> icons;
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
    // Runs a combo-box dialog. Returns 0 after OK, with each field's `text`
    // set to what the box held (at most 50 characters), 1 after Cancel.
    virtual int RunComboDialog(ComboDialog& dialog) {
        (void)dialog;
        return 1;
    }
    // Shows a read-only values dialog until OK.
    virtual void ShowValuesDialog(const ValuesDialog& dialog) { (void)dialog; }
    // The colour dialog started on `rgb` (0x00RRGGBB). Returns 1 with `rgb`
    // set after OK, 0 after Cancel. The implementation keeps 16 custom
    // colours for the whole run.
    virtual int ChooseColour(std::uint32_t& rgb) {
        (void)rgb;
        return 0;
    }
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
