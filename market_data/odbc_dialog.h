#pragma once
// The rules of the "Database Connectivity" dialog ("DSNSQL"), free of any
// window: what its controls show when it opens, what OK and "Save All" do
// with what they hold, and the hook through which the database command runs
// the dialog of the desktop.

#include <string>
#include <vector>

namespace velorin {

// Control ids of the dialog.
namespace dsnsql {
inline constexpr int Name = 1009;
inline constexpr int TableName = 1004;
inline constexpr int Fields = 1005;
inline constexpr int WhereField = 1010;
inline constexpr int Code = 1006;
inline constexpr int Username = 1007;
inline constexpr int Password = 1008;
inline constexpr int SqlText = 1011;
inline constexpr int Procedure = 1014;
inline constexpr int Open = 3;
inline constexpr int Clear = 4;
inline constexpr int SaveAll = 1003;
} // namespace dsnsql

// Dialog results.
inline constexpr int SqlDialogCancel = -1;
inline constexpr int SqlDialogOk = 0;
inline constexpr int SqlDialogSaveAll = 1;
// OK was refused ("Incorrect Parameter values"): the dialog stays open.
inline constexpr int SqlDialogStayOpen = -2;

// One combo: its list (up to the first empty entry) and the entry shown.
struct SqlCombo {
    int controlId;
    std::vector<std::string> choices;
    int selected; // index into choices, -1 when the remembered one is gone
};

// What the controls show when the dialog opens.
struct SqlDialogView {
    SqlCombo combos[5]; // Name, Table Name, Fields, Where Field, Code
    std::string userName;
    std::string password;
    std::string sqlText; // the procedure's name alone when "Procedure" is on
    bool procedure;
};

// What the controls hold when OK or "Save All" is pressed.
struct SqlDialogInput {
    std::string dsn, table, fields, where, code;
    std::string userName, password;
    std::string sqlText;
    bool procedure = false;
    int comboSelection[5] = {-1, -1, -1, -1, -1}; // list entry each combo shows, -1: typed
};

// Fills the view from the lists and the selection; clears the unsaved mark.
SqlDialogView OpenSqlDialogView();

// The text box changed while "Procedure" is off: the text is unsaved.
void SqlTextEdited(bool procedureChecked);

// "Clear": no SQL text, nothing unsaved.
void ClearSqlDialogText();

// OK (`button` SqlDialogOk) or "Save All" (SqlDialogSaveAll): fills the
// selection from `input`, checks it and may offer to save unsaved text.
// Returns `button`, or SqlDialogStayOpen after "Incorrect Parameter values".
int AcceptSqlDialog(const SqlDialogInput& input, int button);

// The dialog of the desktop; tests install their own.
class SqlDialogHost {
  public:
    virtual ~SqlDialogHost() = default;
    // Runs the dialog modally: SqlDialogCancel, SqlDialogOk or SqlDialogSaveAll.
    virtual int RunSqlDialog() = 0;
};

// Runs the installed dialog; without one the dialog is cancelled.
int RunSqlDialog();
// Installs `host` (nullptr: none); returns the previous one.
SqlDialogHost* InstallSqlDialog(SqlDialogHost* host);

} // namespace velorin
