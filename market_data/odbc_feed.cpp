#include "market_data/odbc_feed.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>

#include "base/series.h"
#include "base/user_seam.h"
#include "market_data/data_source.h"
#include "market_data/date.h"
#include "market_data/odbc_calls.h"
#include "market_data/odbc_sql_file.h"
#include "market_data/odbc_state.h"

namespace velorin {
namespace {

void Inform(const char* text) {
    Seam().ShowMessage(text, "QDX-Velorin", MessageIcon::Information);
}

bool Accepted(short result) {
    return result == OdbcSuccess || result == OdbcSuccessWithInfo;
}

// Bounded copy into a text buffer of `size` bytes, always terminated.
void CopyText(char* destination, std::size_t size, const char* source, std::size_t length) {
    if (size == 0) return;
    if (length > size - 1) length = size - 1;
    std::memmove(destination, source, length);
    destination[length] = '\0';
}

template <std::size_t N> void CopyText(char (&destination)[N], const char* source) {
    CopyText(destination, N, source, std::strlen(source));
}

void Format(char* destination, std::size_t size, const char* format, ...) {
    va_list args;
    va_start(args, format);
    std::vsnprintf(destination, size, format, args);
    va_end(args);
}

// Appends `text` to the terminated text in `buffer` (`size` bytes), cut at
// the end of the buffer.
void Append(char* buffer, std::size_t size, const char* text, std::size_t length) {
    const std::size_t used = std::strlen(buffer);
    if (used + 1 >= size) return;
    CopyText(buffer + used, size - used, text, length);
}
void Append(char* buffer, std::size_t size, const char* text) {
    Append(buffer, size, text, std::strlen(text));
}

// What OdbcConnect has obtained so far, released in reverse on failure and
// in full by OdbcDisconnect.
struct Obtained {
    bool statement[2] = {false, false};
    bool connected[2] = {false, false};
    bool connection[2] = {false, false};
};

void Release(const Obtained& got) {
    OdbcCalls& calls = TheOdbcCalls();
    for (int i = 1; i >= 0; --i)
        if (got.statement[i]) calls.FreeStmt(odbcFeed.statement[i], OdbcDrop);
    for (int i = 1; i >= 0; --i)
        if (got.connected[i]) calls.Disconnect(odbcFeed.connection[i]);
    for (int i = 1; i >= 0; --i)
        if (got.connection[i]) calls.FreeConnect(odbcFeed.connection[i]);
    calls.FreeEnv(odbcFeed.env);
}

void ForgetHandles() {
    odbcFeed.env = nullptr;
    for (int i = 0; i < 2; ++i)
        odbcFeed.connection[i] = odbcFeed.statement[i] = nullptr;
}

// The row the driver writes at each fetch.
struct BoundRow {
    OdbcDate date;
    double close, open, high, low, volume;
};
BoundRow boundRow;

constexpr const char* MonthNames[12] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                        "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// The date text of a fetched row: "%02u/%s/%d" in a 12-byte buffer.
void DateTextOf(const OdbcDate& date, char (&text)[12]) {
    char wide[32];
    std::snprintf(wide, sizeof wide, "%02u/%s/%d", static_cast<unsigned>(date.day),
                  MonthNames[date.month - 1], static_cast<int>(date.year));
    CopyText(text, wide);
}

bool IsDateType(short type) {
    return type == SqlTypeDate || type == SqlTypeTime || type == SqlTypeTimestamp;
}

} // namespace

int OdbcConnect() {
    OdbcCalls& calls = TheOdbcCalls();
    ForgetHandles();
    if (calls.AllocEnv(&odbcFeed.env) != OdbcSuccess) {
        odbcFeed.env = nullptr;
        return -1;
    }
    Obtained got;
    auto fail = [&] {
        Release(got);
        ForgetHandles();
        return -1;
    };
    for (int i = 0; i < 2; ++i) {
        if (!Accepted(calls.AllocConnect(odbcFeed.env, &odbcFeed.connection[i]))) return fail();
        got.connection[i] = true;
    }
    for (int i = 0; i < 2; ++i) {
        if (!Accepted(calls.Connect(odbcFeed.connection[i], odbcFeed.connectName, odbcFeed.userName,
                                    odbcFeed.password)))
            return fail();
        got.connected[i] = true;
        if (!Accepted(calls.AllocStmt(odbcFeed.connection[i], &odbcFeed.statement[i])))
            return fail();
        got.statement[i] = true;
    }
    return 0;
}

int OdbcDisconnect() {
    OdbcCalls& calls = TheOdbcCalls();
    for (int i = 1; i >= 0; --i)
        calls.FreeStmt(odbcFeed.statement[i], OdbcDrop);
    for (int i = 1; i >= 0; --i)
        calls.Disconnect(odbcFeed.connection[i]);
    for (int i = 1; i >= 0; --i)
        calls.FreeConnect(odbcFeed.connection[i]);
    const short result = calls.FreeEnv(odbcFeed.env);
    ForgetHandles();
    return Accepted(result) ? 0 : -1;
}

void BuildStatementText(char* text) {
    const ConnectionSelection& sel = marketData.selection;
    if (sel.currentSqlText[0] != '\0' && odbcFeed.menuResult == 0) {
        CopyText(text, StatementTextSize, sel.currentSqlText, std::strlen(sel.currentSqlText));
        return;
    }
    text[0] = '\0';
    Append(text, StatementTextSize, "SELECT ");
    Append(text, StatementTextSize, sel.currentSqlFields);
    Append(text, StatementTextSize, " FROM ");
    Append(text, StatementTextSize, sel.currentSqlTable);
    if (sel.currentSqlWhere[0] != '\0') {
        Append(text, StatementTextSize, " WHERE ");
        Append(text, StatementTextSize, sel.currentSqlWhere);
        Append(text, StatementTextSize, "=(?) ");
    }
    Append(text, StatementTextSize, " ORDER BY ");
    Append(text, StatementTextSize, sel.currentSqlFields, std::strcspn(sel.currentSqlFields, ","));
}

int RunPriceQuery(const char* statementText, const char* code) {
    OdbcCalls& calls = TheOdbcCalls();
    OdbcHandle statement = odbcFeed.statement[1];
    const ConnectionSelection& sel = marketData.selection;

    calls.Cancel(statement);
    calls.FreeStmt(statement, OdbcResetParams);
    const short prepared = calls.Prepare(statement, statementText);
    if (sel.currentSqlText[0] == '\0' && sel.currentSqlWhere[0] != '\0')
        calls.BindTextParameter(statement, 1, code, 100);
    if (!Accepted(prepared) || !Accepted(calls.Execute(statement))) {
        marketData.fetchRowCount = 0;
        Inform("SQL execute failed\n");
        return -1;
    }

    short columns = 0;
    calls.NumResultCols(statement, &columns);
    if (columns == 2) {
        marketData.hasFullColumns = 0;
    } else if (columns == 6) {
        marketData.hasFullColumns = 1;
    } else {
        Inform("Incorrect number of columns");
        return -1;
    }
    for (int column = 1; column <= columns; ++column) {
        char name[128] = "";
        short type = 0;
        calls.DescribeCol(statement, column, name, sizeof name, &type);
        if (column == 1 && !IsDateType(type)) {
            Inform("first field should be in date format");
            return -1;
        }
        if (column > 1 && type != SqlTypeDouble && type != SqlTypeFloat) {
            Inform("price and volume fields should be in double format");
            return -1;
        }
    }

    const bool six = columns == 6;
    calls.FreeStmt(statement, OdbcUnbind);
    calls.BindDateColumn(statement, 1, &boundRow.date);
    calls.BindDoubleColumn(statement, 2, &boundRow.close);
    if (six) {
        calls.BindDoubleColumn(statement, 3, &boundRow.open);
        calls.BindDoubleColumn(statement, 4, &boundRow.high);
        calls.BindDoubleColumn(statement, 5, &boundRow.low);
        calls.BindDoubleColumn(statement, 6, &boundRow.volume);
    }

    DataColumns& out = marketData.fetchColumns;
    int rows = 0;
    while (rows < MaxDatabaseRows) {
        // A cell the driver leaves alone (a null) reads as zero: a null
        // date ends the read, a null price is no data.
        boundRow = BoundRow{};
        if (calls.Fetch(statement) == OdbcNoData) break;
        const OdbcDate date = boundRow.date;
        if (date.day < 1 || date.day > 31 || date.month < 1 || date.month > 12) break;

        char text[12];
        DateTextOf(date, text);
        const double number = ParseDate(text);
        if (number < 0.0) break;
        if (rows > 0 && number != 0.0 && !(number > out.dateNumber[rows - 1])) break;
        if (std::strlen(text) > 8) ShortenDateText(text, sizeof text);
        CopyText(out.dateText[rows], sizeof out.dateText[rows], text, std::strlen(text));
        out.dateNumber[rows] = number;
        out.close[rows] = boundRow.close;
        if (six) {
            out.open[rows] = boundRow.open;
            out.high[rows] = boundRow.high;
            out.low[rows] = boundRow.low;
            out.volume[rows] = boundRow.volume == 0.0 ? 0.00001 : boundRow.volume;
        } else {
            out.open[rows] = out.high[rows] = out.low[rows] = out.volume[rows] = MISSING_VALUE;
        }
        ++rows;
    }
    marketData.fetchRowCount = rows;
    if (rows == 0) return -1;
    marketData.fetchIsTick = 0;
    return 0;
}

void SetDatabaseSourceIdentity() {
    ConnectionSelection& sel = marketData.selection;
    Format(sel.currentSource, sizeof sel.currentSource, "DSN,%s,%s,%s", sel.currentDsn,
           odbcFeed.userName, odbcFeed.password);
    if (sel.currentSqlText[0] == '\0') {
        Format(sel.currentTopic, sizeof sel.currentTopic, "%s;%s,%s", sel.currentSqlTable,
               sel.currentSqlWhere, sel.currentSqlFields);
        CopyText(sel.currentItem, sel.currentSqlCode);
    } else if (odbcFeed.unsavedText == 1) {
        CopyText(sel.currentTopic, "SQLFreeText");
        CopyText(sel.currentItem, "Unsaved");
    }
}

bool StageDatabaseQuery(int dialogResult) {
    odbcFeed.menuResult = dialogResult;
    char statement[StatementTextSize];
    BuildStatementText(statement);
    if (dialogResult != 0) return false;
    if (RunPriceQuery(statement, marketData.selection.currentSqlCode) != 0) return false;
    SetDatabaseSourceIdentity();
    return true;
}

int SplitDatabaseSource(const char* source, const char* topic, const char* item) {
    // The arguments may be the selection's own fields: work on copies.
    const std::string sourceText(source), topicText(topic), itemText(item);
    ConnectionSelection& sel = marketData.selection;
    CopyText(sel.currentSource, sourceText.c_str());
    CopyText(sel.currentTopic, topicText.c_str());
    CopyText(sel.currentItem, itemText.c_str());
    sel.currentDsn[0] = sel.currentSqlTable[0] = sel.currentSqlFields[0] = '\0';
    sel.currentSqlWhere[0] = sel.currentSqlCode[0] = sel.currentSqlText[0] = '\0';
    odbcFeed.userName[0] = odbcFeed.password[0] = '\0';

    // "DSN,name[,user[,password]]"
    const char* p = sourceText.c_str();
    if (std::strncmp(p, "DSN,", 4) == 0) p += 4;
    char* const targets[] = {sel.currentDsn, odbcFeed.userName, odbcFeed.password};
    const std::size_t sizes[] = {sizeof sel.currentDsn, sizeof odbcFeed.userName,
                                 sizeof odbcFeed.password};
    for (int field = 0; field < 3; ++field) {
        const std::size_t length = std::strcspn(p, ",");
        CopyText(targets[field], sizes[field], p, length);
        if (p[length] != ',') break;
        p += length + 1;
    }
    CopyText(odbcFeed.connectName, sel.currentDsn);

    if (std::strncmp(topicText.c_str(), "SQLText,", 8) == 0) return LoadSqlFile(1) ? 1 : 0;
    if (topicText == "SQLProcedure") {
        Format(sel.currentSqlText, sizeof sel.currentSqlText, "{call %s}", itemText.c_str());
        return 1;
    }
    const char* t = topicText.c_str();
    const std::size_t tableLength = std::strcspn(t, ",;");
    CopyText(sel.currentSqlTable, sizeof sel.currentSqlTable, t, tableLength);
    if (t[tableLength] == ';') {
        const char* where = t + tableLength + 1;
        const std::size_t whereLength = std::strcspn(where, ",");
        CopyText(sel.currentSqlWhere, sizeof sel.currentSqlWhere, where, whereLength);
        if (where[whereLength] == ',') CopyText(sel.currentSqlFields, where + whereLength + 1);
    }
    CopyText(sel.currentSqlCode, itemText.c_str());
    return 1;
}

} // namespace velorin
