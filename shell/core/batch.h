#pragma once
// The Make All run of a whole database: every instrument a table lists gets
// its price chart and the standard charts made on a desk that each new chart
// fills, each saved silently as a .bmp into the batch folder; the pairs of
// the pair table get the two-series charts. After each instrument the
// conversion tool turns that instrument's bitmaps into GIF files, and once
// it has written its log every bitmap of the folder is deleted.

#include <string>

namespace velorin {

class Frame;

// The outside conversion tool, started through the command processor. Its
// log file is the only signal that it has finished.
class BitmapConverter {
  public:
    virtual ~BitmapConverter() = default;
    // Hands `command` to the command processor and returns at once.
    virtual void Start(const std::string& command);
    // Where the tool writes its log when finished: the working directory.
    virtual std::string LogPath() const { return "cnvtogif.log"; }
    // One wait between two looks for the log: up to 5 seconds, over as soon
    // as the log is there. False when the user has given up the wait.
    virtual bool Pause();
    // The wait is over: the log came, or the user gave it up.
    virtual void WaitEnded() {}
};

// The converter in force; never null.
BitmapConverter& TheBitmapConverter();
// Installs `converter` (nullptr restores the command processor's); returns
// the previous one.
BitmapConverter* InstallBitmapConverter(BitmapConverter* converter);

// The file name of one image: `folder`, a separator, the code(s) and the
// kind's three letters with ".bmp".
std::string BatchImagePath(const char* folder, const char* code, const char* suffix);
std::string BatchPairImagePath(const char* folder, const char* first, const char* second,
                               const char* suffix);

// The command that converts the bitmaps of `folder` whose names begin with
// `prefix` (all of them when it is empty) and names the log. The tool is the
// script `cnvtogif` beside the program, or the one on the path.
std::string ConversionCommand(const char* folder, const char* prefix);

// Deletes the old log and starts the tool on the folder's bitmaps.
void ConvertBitmaps(const char* folder, const char* prefix);
// Waits for the tool's log, with no time-out, then deletes every .bmp of the
// folder, those of other instruments too, and returns true. When the
// converter gives up the wait (the user cancelled) the bitmaps stay where
// they are, `shell.batchCancelled` is set, and the result is false.
bool WaitAndClean(const char* folder);

// One run over the codes that `listStatement` lists, each read with
// `dataStatement` (its code as parameter one). Needs an open connection;
// the first statement carries the list. Returns the last fetch result of the
// list, or -1 when the list query failed.
int BatchSingles(Frame& frame, const char* listStatement, const char* dataStatement,
                 const char* folder);
// The same over rows "first/second" of a pair table.
int BatchPairs(Frame& frame, const char* listStatement, const char* dataStatement,
               const char* folder);

// The run of "Save All": the two tables of single instruments and the pair
// table of the settings, each listed by the selection's where field, with
// messages held back. Needs an open connection and the statement built for
// the dialog's result. Leaves every chart closed. A cancelled conversion
// wait ends the run after the instrument in hand, with the selection and the
// chart styles restored as at the end of a whole run.
void RunDatabaseBatch(Frame& frame);

} // namespace velorin
