#pragma once
// The ".PRC" price data file: reading it into the staging area.

#include <cstdio>

namespace velorin {

// Fills the staging area from a data file. With `silent` 0 the user picks
// the file first; with 1 the path in the selection's currentTopic is read.
// Returns 1 when the staging area holds rows, else 0 (message shown).
int LoadDataFile(int silent);

// Parses marketData.fileText into the staging area; 1 or 0.
int ParseDataFileText();

// Size of an open file; the position is left where it was.
long FileSizeOf(std::FILE* file);

// A decimal number as strtod reads it in the "C" locale, whatever locale the
// process runs under (a GUI toolkit may set LC_NUMERIC from the user's
// settings); what is not a number reads as 0.0. For every feed that stages
// numbers "as strtod reads them".
double ReadNumber(const char* text);

} // namespace velorin
