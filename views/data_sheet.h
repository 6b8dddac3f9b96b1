#pragma once
// The grid of a Data View: the rows of a data source as the user sees and
// corrects them. The sheet is a copy; the source changes only when
// "Update" stages the sheet's rows back through the row rules every feed
// uses. Its blocks belong to the view's chart record and go with it.

#include <cstdint>

#include "base/series.h"
#include "chart_model/chart.h"
#include "market_data/data_source.h"

namespace velorin {

// Columns of a source with all prices: close, open, high, low, volume
// ("A" to "E"); a source of dates and closes has column "A" alone.
inline constexpr int SheetColumns = 5;
inline constexpr int SheetVolumeColumn = 4;
// Room for the text of one cell: "%.4f" of any double fits in 320.
inline constexpr int CellTextSize = 320;

struct DataSheet {
    DateText* label;            // row headings: the date texts
    double* cell[SheetColumns]; // by column; a cell without text holds EmptyCell
    std::int32_t rows;          // at most MaxRows
    std::int32_t columns;       // 5 or 1
    std::int32_t volumeHidden;  // column "E" is not shown: the source has no volume
    std::int32_t changed;       // the user edited or deleted since the last fill or "Update"
    std::int32_t editable;      // 0 for tick data: nothing can be typed or deleted
};

// A cell with no text, such as the volume of a quote that carried none.
double EmptyCell();
bool IsEmptyCell(double value);

// The sheet of a Data View's chart record; nullptr for other charts.
DataSheet* SheetOf(const Chart& chart);
// Allocates the sheet with its label and column blocks into the chart's
// free block entries (released with the record); nullptr on failure.
DataSheet* NewSheet(Chart& chart);

// The text of a cell: "%.4f" for prices, "%.f" for the volume, nothing for
// an empty cell. Returns the length written (the text is always ended).
int FormatCell(double value, int column, char* out, int size);

// The rule for a typed cell: the text read as a number (what follows the
// number is ignored) must be above zero, since prices and volumes are
// positive. Returns false for zero, a negative value or text that is no
// number; otherwise true with `value` set, which the cell then shows in
// its column's format.
bool AcceptCellText(const char* text, double* value);

// How the volume cell of a row is tested for the no-volume marker -998.0:
// at creation against the following row, at a reload against the row
// itself. Only the last row can tell the two apart.
enum class SheetFill { Creation, Reload };

// Fills the sheet from the first `rows` rows of `source` (fewer when the
// source has fewer): labels, cells, and column "E" hidden when the first
// row has no volume. The sheet has five columns with `fullColumns`, else
// one. Nothing is pending afterwards.
void FillSheet(DataSheet& sheet, const DataSource& source, int rows, bool fullColumns,
               SheetFill fill);

// Removes rows `first` to `last` (0-based, either order, clipped to the
// sheet); the rows below move up. Marks the sheet changed.
void DeleteSheetRows(DataSheet& sheet, int first, int last);

// "Update"'s rows: the sheet as the grid's texts read back into the
// staging area. Labels become the date texts, the cells the prices, the
// volume times 1000 (an empty or zero volume -998,000: no volume); the date
// numbers are left as the staging area holds them, and a one-column sheet
// stages the other columns as missing. Sets hasFullColumns from
// `fullColumns`, fetchRowCount, and fetchIsTick for a single row.
void StageSheetRows(const DataSheet& sheet, bool fullColumns);

} // namespace velorin
