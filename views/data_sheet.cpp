#include "views/data_sheet.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "market_data/data_file.h"

namespace velorin {
namespace {

// Allocates one block into the next free entry of the chart's handles.
void* TakeChartBlock(Chart& chart, std::size_t size) {
    for (BlockHandle& handle : chart.blockHandles) {
        if (handle) continue;
        return AllocateBlock(&handle, static_cast<std::uint16_t>(size));
    }
    return nullptr;
}

// The number a cell's text reads as: the value written in the column's
// format and read back, as the grid would hand it over.
double CellNumber(double value, int column) {
    if (IsEmptyCell(value)) return 0.0;
    char text[CellTextSize];
    FormatCell(value, column, text, sizeof text);
    return ReadNumber(text);
}

} // namespace

double EmptyCell() {
    return std::numeric_limits<double>::quiet_NaN();
}

bool IsEmptyCell(double value) {
    return std::isnan(value);
}

DataSheet* SheetOf(const Chart& chart) {
    const ChartKindInfo* info = KindById(chart.kind);
    if (!info || info->windowClass != WindowClass::DataView) return nullptr;
    return reinterpret_cast<DataSheet*>(chart.dataViewWindow);
}

DataSheet* NewSheet(Chart& chart) {
    auto* sheet = static_cast<DataSheet*>(TakeChartBlock(chart, sizeof(DataSheet)));
    if (!sheet) return nullptr;
    sheet->label = static_cast<DateText*>(TakeChartBlock(chart, sizeof(DateText) * MaxRows));
    bool ok = sheet->label != nullptr;
    for (double*& column : sheet->cell)
        ok = ok && (column = static_cast<double*>(TakeChartBlock(chart, sizeof(double) * MaxRows)));
    if (!ok) return nullptr; // the blocks taken go with the record
    chart.dataViewWindow = reinterpret_cast<WindowId>(sheet);
    return sheet;
}

int FormatCell(double value, int column, char* out, int size) {
    if (size <= 0) return 0;
    out[0] = '\0';
    if (IsEmptyCell(value)) return 0;
    // The "C" form whatever the locale: "%.4f" and "%.f".
    const int precision = column == SheetVolumeColumn ? 0 : 4;
    const auto r = std::to_chars(out, out + size - 1, value, std::chars_format::fixed, precision);
    const int length = r.ec == std::errc() ? static_cast<int>(r.ptr - out) : 0;
    out[length] = '\0';
    return length;
}

bool AcceptCellText(const char* text, double* value) {
    const double v = ReadNumber(text);
    if (!(v > 0.0) || !std::isfinite(v)) return false;
    *value = v;
    return true;
}

void FillSheet(DataSheet& sheet, const DataSource& source, int rows, bool fullColumns,
               SheetFill fill) {
    const DataColumns& c = *source.columns;
    const int n = std::clamp(std::min(rows, source.rowCount), 0, MaxRows);
    const double* from[SheetColumns] = {c.close, c.open, c.high, c.low, c.volume};
    sheet.rows = n;
    sheet.columns = fullColumns ? SheetColumns : 1;
    for (int r = 0; r < n; ++r) {
        std::memcpy(sheet.label[r], c.dateText[r], sizeof(DateText));
        sheet.label[r][DateTextSize - 1] = '\0';
        for (int k = 0; k < sheet.columns; ++k)
            sheet.cell[k][r] = from[k][r];
        if (!fullColumns) continue;
        const int tested = fill == SheetFill::Creation ? r + 1 : r;
        if (tested < MaxRows && c.volume[tested] == NO_VOLUME_MARKER)
            sheet.cell[SheetVolumeColumn][r] = EmptyCell();
    }
    sheet.volumeHidden = fullColumns && n > 0 && c.volume[0] == NO_VOLUME_MARKER;
    sheet.changed = 0;
}

void DeleteSheetRows(DataSheet& sheet, int first, int last) {
    if (first > last) std::swap(first, last);
    first = std::max(first, 0);
    last = std::min(last, sheet.rows - 1);
    if (first > last) return;
    const int gone = last - first + 1;
    const int after = sheet.rows - last - 1;
    std::memmove(sheet.label[first], sheet.label[last + 1], sizeof(DateText) * after);
    for (double* column : sheet.cell)
        std::memmove(column + first, column + last + 1, sizeof(double) * after);
    sheet.rows -= gone;
    sheet.changed = 1;
}

void StageSheetRows(const DataSheet& sheet, bool fullColumns) {
    DataColumns& to = marketData.fetchColumns;
    const int n = std::clamp(sheet.rows, 0, MaxRows);
    const bool five = fullColumns && sheet.columns == SheetColumns;
    marketData.hasFullColumns = fullColumns ? 1 : 0;
    for (int r = 0; r < n; ++r) {
        std::memcpy(to.dateText[r], sheet.label[r], sizeof(DateText));
        to.close[r] = CellNumber(sheet.cell[0][r], 0);
        if (!five) {
            // As a feed stages a short form: the other columns are missing.
            to.open[r] = to.high[r] = to.low[r] = to.volume[r] = MISSING_VALUE;
            continue;
        }
        to.open[r] = CellNumber(sheet.cell[1][r], 1);
        to.high[r] = CellNumber(sheet.cell[2][r], 2);
        to.low[r] = CellNumber(sheet.cell[3][r], 3);
        // Back to units: the source divides by 1000 again.
        const double volume = CellNumber(sheet.cell[SheetVolumeColumn][r], SheetVolumeColumn);
        to.volume[r] = volume == 0.0 ? NO_VOLUME_MARKER * 1000.0 : volume * 1000.0;
    }
    marketData.fetchRowCount = n;
    marketData.fetchIsTick = n == 1 ? 1 : 0;
}

} // namespace velorin
