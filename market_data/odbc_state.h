#pragma once
// What the database feed keeps for the whole run: the connection part of
// the selection that ConnectionSelection does not hold, the state of the
// "Database Connectivity" dialog, its nine-list share of the settings (the
// five database lists), and the handles of the connection in progress.

#include <cstdint>

#include "market_data/odbc_calls.h"

namespace velorin {

inline constexpr int SqlListRows = 100;
inline constexpr int SqlComboCount = 5; // data source, table, fields, where field, code

// The database lists of the settings record; an empty row ends a list.
struct SqlLists {
    char dsnList[SqlListRows][100];
    char sqlTableList[SqlListRows][100];
    char sqlFieldsList[SqlListRows][255];
    char sqlWhereList[SqlListRows][100];
    char sqlCodesList[SqlListRows][100];
};

struct OdbcFeedState {
    char connectName[20]; // the data source name given to the driver manager
    char userName[20];
    char password[20];        // kept and stored in clear
    std::int32_t unsavedText; // the SQL text was edited and not saved
    std::int32_t isProcedure; // the "Procedure" box
    char savedTopic[255];     // topic of the .sql file last opened or saved
    char savedItem[255];      // its item
    std::int32_t menuResult;  // the last dialog result: 0 one query, 1 Save All
    // The entry each combo showed at the last OK, in combo order (-1: a
    // typed value); 0 at start.
    std::int32_t comboSelection[SqlComboCount];

    // One environment, two connections and two statements: the first
    // statement lists the batch's codes, the second reads price rows.
    OdbcHandle env;
    OdbcHandle connection[2];
    OdbcHandle statement[2];
};

extern OdbcFeedState odbcFeed;
extern SqlLists sqlLists;

// Start-up values: everything empty and zero, no handles.
void ResetOdbcFeedState();

} // namespace velorin
