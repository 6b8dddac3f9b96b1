#pragma once
// The rules of the live-feed connection dialog ("SOURCE"), free of any
// window: the four lists it offers and remembers, what it shows when it
// opens, and what OK, "Add" and "Delete" do with what its controls hold.

#include <cstdint>
#include <string>

namespace velorin {

inline constexpr int SourceListRows = 100;

// Control ids.
namespace source_dialog {
inline constexpr int Item = 201;
inline constexpr int Topic = 202;
inline constexpr int Source = 203;
inline constexpr int Timer = 204;
inline constexpr int FullQuote = 205;
inline constexpr int Add = 206;
inline constexpr int Delete = 207;
inline constexpr int TickByTick = 209;
inline constexpr int Daily = 211;
inline constexpr int Weekly = 212;
inline constexpr int Monthly = 213;
inline constexpr int OffsetTime = 214;
} // namespace source_dialog

// The dialog's combos, in the order Add and Delete visit them.
enum SourceCombo : int { ComboTimer = 0, ComboItem = 1, ComboTopic = 2, ComboSource = 3 };
inline constexpr int SourceComboCount = 4;

// The lists of the settings file the dialog offers (an empty row ends a
// list), and the entry each combo showed at the last OK (-1: typed text).
struct SourceLists {
    char sourceList[SourceListRows][100];
    char topicList[SourceListRows][255];
    char itemList[SourceListRows][255];
    char tickvalList[SourceListRows][100];
    std::int32_t remembered[SourceComboCount];
};
extern SourceLists sourceLists;
void ResetSourceLists();

// Row `row` of the list behind `combo`, and the width of its rows.
char* SourceListRow(int combo, int row);
std::size_t SourceListWidth(int combo);
// Entries up to the first empty one.
int SourceListLength(int combo);

// What the controls hold.
struct SourceDialogState {
    std::string text[SourceComboCount];                 // edit texts, by SourceCombo
    int selection[SourceComboCount] = {-1, -1, -1, -1}; // list entry shown, -1: typed
    bool fullQuote = true, tickByTick = false, offsetTime = false;
    char resolution = 'd';
};

// When the dialog opens: a tick-database range in the selection is turned
// back into its instrument and sheet, the edits show the remembered entries
// and the boxes the selection's flags; then the range form is restored.
SourceDialogState OpenSourceDialog();

// The "d", "w" and "m" buttons are shown only for the history topic of the
// live service; TickbyTick is then cleared (and fetchIsTick with it).
bool ResolutionButtonsShown(const std::string& source, const std::string& topic);

// OK: 1 (nothing to do) when any of the four edits is empty; otherwise the
// selection takes the texts and boxes, the remembered entries are kept, a
// tick database becomes its spreadsheet range, and 0 (go ahead).
int SourceDialogOk(const SourceDialogState& state);

// "Add" and "Delete", Timer first, then Item, Topic and Source. Each returns
// the message to show (nullptr for none); what was done before it stands.
const char* SourceDialogAdd(const SourceDialogState& state);
const char* SourceDialogDelete(const SourceDialogState& state);

// The dialog of the desktop; without one installed the dialog answers 1.
class SourceDialogRunner {
  public:
    virtual ~SourceDialogRunner() = default;
    virtual int RunSourceDialog() = 0;
};
SourceDialogRunner* InstallSourceDialogRunner(SourceDialogRunner* runner);
int RunSourceDialog();

} // namespace velorin
