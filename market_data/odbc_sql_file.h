#pragma once
// SQL text files (".sql"): reading one into the selection's SQL text,
// writing that text to one, and the cleaning every SQL text gets.

#include <cstddef>

namespace velorin {

// Bytes of a .sql file read at most: what the SQL text holds.
std::size_t SqlTextLimit();

// Line ends become blanks and double quotes single quotes, in place, over
// the first `length` bytes.
void CleanSqlText(char* text, std::size_t length);

// Clears the SQL text and the unsaved mark, then reads a .sql file into the
// SQL text (cut at SqlTextLimit() bytes, cleaned). With `restoring` 0 the
// user picks the file, and the selection's topic ("SQLText,path") and item
// (the file name up to its first ".") are set and remembered; with 1 the
// path is the topic from its ninth character on. Returns 1, or 0 after
// cancel or with "File Open Error" / "Non-existent SQLFile".
int LoadSqlFile(int restoring);

// Asks for a file and writes the SQL text to it; sets topic and item as
// loading does and clears the unsaved mark. Returns 1, or 0 after
// "Unable to save SQL" (also when the user cancels).
int SaveSqlFile();

} // namespace velorin
