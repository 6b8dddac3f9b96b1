#include "market_data/odbc_sql_file.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "base/user_seam.h"
#include "market_data/data_source.h"
#include "market_data/odbc_state.h"

namespace velorin {
namespace {

void Inform(const char* text) {
    Seam().ShowMessage(text, "QDX-Velorin", MessageIcon::Information);
}

template <std::size_t N> void CopyText(char (&destination)[N], const std::string& source) {
    const std::size_t length = source.size() < N - 1 ? source.size() : N - 1;
    std::memcpy(destination, source.data(), length);
    destination[length] = '\0';
}

// topic "SQLText,path" and item the file name up to its first ".", in the
// selection and remembered as the saved pair.
void TakeFileIdentity(const std::string& path) {
    ConnectionSelection& sel = marketData.selection;
    const std::size_t slash = path.find_last_of("/\\");
    std::string title = slash == std::string::npos ? path : path.substr(slash + 1);
    title = title.substr(0, title.find('.'));
    CopyText(sel.currentTopic, "SQLText," + path);
    CopyText(sel.currentItem, title);
    CopyText(odbcFeed.savedTopic, sel.currentTopic);
    CopyText(odbcFeed.savedItem, sel.currentItem);
}

} // namespace

std::size_t SqlTextLimit() {
    return sizeof marketData.selection.currentSqlText - 1;
}

void CleanSqlText(char* text, std::size_t length) {
    for (std::size_t i = 0; i < length; ++i) {
        if (text[i] == '\r' || text[i] == '\n')
            text[i] = ' ';
        else if (text[i] == '"')
            text[i] = '\'';
    }
}

int LoadSqlFile(int restoring) {
    ConnectionSelection& sel = marketData.selection;
    sel.currentSqlText[0] = '\0';
    odbcFeed.unsavedText = 0;

    std::string path;
    if (!restoring) {
        FileDialogRequest request;
        request.filter = "SQL Files (*.sql);;All Files (*.*)";
        request.title = "Open SQL File";
        request.defaultExtension = "*";
        const int answer = Seam().AskFile(request, path);
        if (answer == 0) return 0;
        if (answer != 1) {
            Inform("File Open Error");
            return 0;
        }
    } else {
        path = std::strlen(sel.currentTopic) > 8 ? sel.currentTopic + 8 : "";
    }

    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) {
        Inform("Non-existent SQLFile");
        return 0;
    }
    if (!restoring) TakeFileIdentity(path);
    const std::size_t read = std::fread(sel.currentSqlText, 1, SqlTextLimit(), file);
    std::fclose(file);
    sel.currentSqlText[read] = '\0'; // a NUL inside the file ends the text there
    CleanSqlText(sel.currentSqlText, read);
    return 1;
}

int SaveSqlFile() {
    FileDialogRequest request;
    request.filter = "Save SQL (*.sql)";
    request.title = "Save SQL As";
    request.defaultExtension = "sql";
    request.save = true;
    std::string path;
    if (Seam().AskFile(request, path) != 1) {
        Inform("Unable to save SQL");
        return 0;
    }
    std::FILE* file = std::fopen(path.c_str(), "wb");
    const char* text = marketData.selection.currentSqlText;
    const std::size_t length = std::strlen(text);
    bool ok = file != nullptr;
    if (ok) ok = std::fwrite(text, 1, length, file) == length;
    if (file && std::fclose(file) != 0) ok = false;
    if (!ok) {
        Inform("Unable to save SQL");
        return 0;
    }
    TakeFileIdentity(path);
    odbcFeed.unsavedText = 0;
    return 1;
}

} // namespace velorin
