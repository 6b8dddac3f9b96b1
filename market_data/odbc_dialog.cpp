#include "market_data/odbc_dialog.h"

#include <cstdio>
#include <cstring>

#include "base/user_seam.h"
#include "market_data/data_source.h"
#include "market_data/odbc_sql_file.h"
#include "market_data/odbc_state.h"

namespace velorin {
namespace {

SqlDialogHost* installedHost = nullptr;

// The text of a control read into a buffer of `size` bytes.
void ReadControl(char* destination, std::size_t size, const std::string& text) {
    const std::size_t length = text.size() < size - 1 ? text.size() : size - 1;
    std::memcpy(destination, text.data(), length);
    destination[length] = '\0';
}

template <std::size_t N> void ReadControl(char (&destination)[N], const std::string& text) {
    ReadControl(destination, N, text);
}

// One list of the settings: up to the first empty entry, at most 101
// entries scanned (the lists hold 100).
template <std::size_t Width>
std::vector<std::string> ListEntries(const char (&list)[SqlListRows][Width]) {
    std::vector<std::string> entries;
    for (int i = 0; i < SqlListRows && list[i][0] != '\0'; ++i)
        entries.emplace_back(list[i], strnlen(list[i], Width));
    return entries;
}

} // namespace

SqlDialogView OpenSqlDialogView() {
    SqlDialogView view;
    const int ids[SqlComboCount] = {dsnsql::Name, dsnsql::TableName, dsnsql::Fields,
                                    dsnsql::WhereField, dsnsql::Code};
    const std::vector<std::string> lists[SqlComboCount] = {
        ListEntries(sqlLists.dsnList), ListEntries(sqlLists.sqlTableList),
        ListEntries(sqlLists.sqlFieldsList), ListEntries(sqlLists.sqlWhereList),
        ListEntries(sqlLists.sqlCodesList)};
    for (int i = 0; i < SqlComboCount; ++i) {
        const int remembered = odbcFeed.comboSelection[i];
        const bool inList = remembered >= 0 && remembered < static_cast<int>(lists[i].size());
        view.combos[i] = SqlCombo{ids[i], lists[i], inList ? remembered : -1};
    }
    view.userName = odbcFeed.userName;
    view.password = odbcFeed.password;
    view.procedure = odbcFeed.isProcedure == 1;
    const char* text = marketData.selection.currentSqlText;
    const std::size_t length = std::strlen(text);
    if (view.procedure && std::strncmp(text, "{call ", 6) == 0 && length > 7) {
        // The name inside the braces.
        std::size_t end = length;
        if (text[end - 1] == '}') --end;
        view.sqlText.assign(text + 6, end - 6);
    } else {
        view.sqlText = text;
    }
    odbcFeed.unsavedText = 0;
    return view;
}

void SqlTextEdited(bool procedureChecked) {
    if (!procedureChecked) odbcFeed.unsavedText = 1;
}

void ClearSqlDialogText() {
    marketData.selection.currentSqlText[0] = '\0';
    odbcFeed.unsavedText = 0;
}

int AcceptSqlDialog(const SqlDialogInput& input, int button) {
    ConnectionSelection& sel = marketData.selection;
    // 1. A fresh selection from the controls, each cut to its width.
    sel.currentTopic[0] = sel.currentItem[0] = '\0';
    ReadControl(sel.currentDsn, input.dsn);
    ReadControl(sel.currentSqlTable, input.table);
    ReadControl(sel.currentSqlFields, input.fields);
    ReadControl(sel.currentSqlWhere, input.where);
    ReadControl(sel.currentSqlCode, input.code);
    ReadControl(odbcFeed.userName, input.userName);
    ReadControl(odbcFeed.password, input.password);
    odbcFeed.connectName[0] = '\0';
    sel.currentSqlText[0] = '\0';

    // 2. A procedure: its name, at most 254 characters.
    odbcFeed.isProcedure = input.procedure ? 1 : 0;
    if (input.procedure) {
        char name[255];
        ReadControl(name, input.sqlText);
        CleanSqlText(name, std::strlen(name));
        if (name[0] != '\0') {
            std::snprintf(sel.currentSqlText, sizeof sel.currentSqlText, "{call %s}", name);
            std::snprintf(sel.currentTopic, sizeof sel.currentTopic, "%s", "SQLProcedure");
            std::snprintf(sel.currentItem, sizeof sel.currentItem, "%s", name);
        }
        odbcFeed.unsavedText = 0;
    } else {
        // 3. Free text; a saved or opened text keeps the file's identity.
        ReadControl(sel.currentSqlText, input.sqlText);
        CleanSqlText(sel.currentSqlText, std::strlen(sel.currentSqlText));
        if (sel.currentSqlText[0] != '\0' && odbcFeed.unsavedText == 0) {
            std::memcpy(sel.currentTopic, odbcFeed.savedTopic, sizeof sel.currentTopic);
            std::memcpy(sel.currentItem, odbcFeed.savedItem, sizeof sel.currentItem);
        }
    }

    // 4. A table query needs all four; a text only its connection.
    if (sel.currentSqlText[0] == '\0' &&
        (sel.currentDsn[0] == '\0' || sel.currentSqlTable[0] == '\0' ||
         sel.currentSqlFields[0] == '\0' || sel.currentSqlCode[0] == '\0')) {
        Seam().ShowMessage("Incorrect Parameter values", "QDX-Velorin", MessageIcon::Information);
        return SqlDialogStayOpen;
    }

    // 5. Unsaved text is offered a file; the dialog goes on either way.
    if (sel.currentSqlText[0] != '\0' && odbcFeed.unsavedText == 1 && !input.procedure)
        SaveSqlFile();

    // 6.
    ReadControl(odbcFeed.connectName, sel.currentDsn);
    for (int i = 0; i < SqlComboCount; ++i)
        odbcFeed.comboSelection[i] = input.comboSelection[i];
    return button;
}

int RunSqlDialog() {
    return installedHost ? installedHost->RunSqlDialog() : SqlDialogCancel;
}

SqlDialogHost* InstallSqlDialog(SqlDialogHost* host) {
    SqlDialogHost* previous = installedHost;
    installedHost = host;
    return previous;
}

} // namespace velorin
