#pragma once
// The database feed: a connection opened for one query and closed again,
// the statement text, the price query into the staging area, and the
// identity a database source carries ("DSN,..." source, its topic and item)
// with the way back from that identity to the selection.

#include <cstddef>

namespace velorin {

inline constexpr std::size_t StatementTextSize = 1024;
// The price query reads at most this many rows.
inline constexpr int MaxDatabaseRows = 1999;

// Environment, two connections, a statement on each, in that order. Returns
// 0, or -1 with everything obtained so far released in reverse. Silent.
int OdbcConnect();
// Releases what OdbcConnect obtained, second before first. The result is
// that of the environment's release: 0 or -1.
int OdbcDisconnect();

// The statement of the next query, into `text` (StatementTextSize bytes):
// the selection's SQL text as it stands, or, when that is empty or the last
// dialog result was not 0, "SELECT fields FROM table[ WHERE where=(?) ]
// ORDER BY first-field".
void BuildStatementText(char* text);

// Runs `statementText` on the second statement and fills the staging area.
// The code is bound as parameter one only for a built statement with a
// where field. Returns 0 when at least one row was read, else -1 (with a
// message for a failed execution and for unusable columns).
int RunPriceQuery(const char* statementText, const char* code);

// The selection's currentSource, currentTopic and currentItem after a
// successful query: "DSN,name,user,password"; "table;where,fields" and the
// code for a table query; "SQLFreeText" and "Unsaved" for unsaved text;
// otherwise the topic and item that the .sql file or procedure set.
void SetDatabaseSourceIdentity();

// The query of one database command after its dialog answered `dialogResult`
// (0 one query, 1 Save All): remembers the result, builds the statement and,
// for 0, runs it and sets the identity. Needs an open connection. True when
// the staging area holds the rows of the query.
bool StageDatabaseQuery(int dialogResult);

// Fills the selection back from a database source's identity: currentSource,
// currentTopic and currentItem, then data source, user and password, and
// either the .sql file (loaded again), the procedure or the table, where
// field, fields and code. Returns 0 when a .sql file could not be loaded,
// else 1.
int SplitDatabaseSource(const char* source, const char* topic, const char* item);

} // namespace velorin
