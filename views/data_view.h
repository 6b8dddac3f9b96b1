#pragma once
// The Data View: a window holding a spreadsheet of a source's rows, tied
// to the chart it was opened from by source. Its creation, its commands and
// how it follows the crosshair, free of any window system; the grid window
// carries them out.

#include <vector>

#include "chart_model/chart.h"
#include "chart_model/creation.h"
#include "interaction/handle_menu.h"

namespace velorin {

inline constexpr int DataViewWidth = 485;

// Opens a Data View of the chart in front: a companion record on the same
// source (while a layout is restored, on the row's source when it matched
// an open one, with the title last made), the sheet filled, and a window
// of class DataView captioned "Data %s" with the title, 485 wide (the
// row's rectangle while restoring). Adds a reference to the source and a
// window to the count. Returns 1, or 0 after a message: no chart, no
// memory for the record, no memory for the sheet ("can't create data
// view"), or no window ("Unable to create Data View - Please close some",
// also when the desk holds its 50 windows).
int CreateDataView(const CreationMode& mode = {});

// "Update": nothing unless the sheet changed. Otherwise its rows are
// staged, the change is cleared and ApplyEditedRows runs on the view's
// conversation, under the wait cursor. Returns what ApplyEditedRows did.
int UpdateSourceFromSheet(Chart& view);

// "Reset": the sheet takes the record's row count and is filled again from
// the source (volumes tested row by row). Nothing is pending afterwards.
void ReloadSheet(Chart& view);

// After the rows of the source changed: a sheet with nothing pending is
// filled again as by "Reset" and true returned; one holding the user's
// corrections keeps them until "Update" or "Reset".
bool RefreshSheet(Chart& view);

// The grid's popup: "Update", "Reset", "Delete" unless the source is tick
// data, and always "Colour" with "Sheet", "Col Heading" and "Row Heading",
// each with "Background ..." and "Foreground ...".
std::vector<MenuItem> DataViewMenu(bool tickSource);

// The palette entry a colour command of the grid sets (18 to 23), or -1.
int SheetColourEntry(int commandId);
// The colour dialog on that entry; OK stores the colour. False for any
// other command; true after OK or Cancel.
bool ChooseSheetColour(int commandId);

// What the grid does when the crosshair of a chart on its source stands on
// `row` (1-based) while its current cell is on `cursorRow`: scroll a line
// up for the row before, a line down for the row after, nothing for the
// same row, and move the current cell further away.
enum class FollowStep { None, LineUp, LineDown, MoveCursor };
FollowStep CrosshairFollowStep(int cursorRow, int row);

} // namespace velorin
