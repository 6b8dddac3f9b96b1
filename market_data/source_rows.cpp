#include "market_data/source_rows.h"

#include <cmath>
#include <cstring>

#include "base/series.h"

namespace velorin {
namespace {

bool Usable(double value) {
    return value != MISSING_VALUE && value != 0.0;
}

bool Within(double value, double reference, double band) {
    return std::fabs(value - reference) < reference * band;
}

int StagedRows() {
    const DataColumns& c = marketData.fetchColumns;
    const bool ready =
        c.dateText && c.dateNumber && c.low && c.high && c.open && c.close && c.volume;
    if (!ready || marketData.fetchRowCount < 0) return 0;
    return marketData.fetchRowCount > MaxRows ? MaxRows : marketData.fetchRowCount;
}

} // namespace

bool StagedRowIsValid(int row, bool full) {
    const DataColumns& c = marketData.fetchColumns;
    if (!full) return Usable(c.close[row]);
    return Usable(c.open[row]) && Usable(c.close[row]) && Usable(c.volume[row]) &&
           Usable(c.low[row]) && Usable(c.high[row]);
}

int FirstValidStagedRow(int rows, bool full) {
    for (int row = 0; row < rows; ++row)
        if (StagedRowIsValid(row, full)) return row;
    return -1;
}

int CopyStagedRows(DataColumns& to, int first, int rows, bool full, bool filtered) {
    const DataColumns& staged = marketData.fetchColumns;
    const double band = marketData.filterBand;
    double refLow = staged.low[first];
    double refHigh = staged.high[first];
    double refClose = staged.close[first];
    double refOpen = staged.open[first];
    int kept = 0;
    for (int row = first; row < rows; ++row) {
        if (!StagedRowIsValid(row, full)) continue;
        if (filtered) {
            bool pass = Within(staged.close[row], refClose, band);
            if (full) {
                pass = pass && Within(staged.open[row], refOpen, band) &&
                       Within(staged.low[row], refLow, band) &&
                       Within(staged.high[row], refHigh, band);
            }
            if (!pass) continue;
            refLow = staged.low[row];
            refHigh = staged.high[row];
            refClose = staged.close[row];
            refOpen = staged.open[row];
        }
        std::memcpy(to.dateText[kept], staged.dateText[row], sizeof(DateText));
        to.dateText[kept][DateTextSize - 1] = '\0';
        to.dateNumber[kept] = staged.dateNumber[row];
        to.high[kept] = staged.high[row];
        to.low[kept] = staged.low[row];
        to.open[kept] = staged.open[row];
        to.close[kept] = staged.close[row];
        to.volume[kept] = staged.volume[row] / 1000.0;
        ++kept;
    }
    return kept;
}

int RebuildSourceRows(DataSource& source) {
    const int rows = StagedRows();
    const bool full = marketData.hasFullColumns != 0;
    const int first = FirstValidStagedRow(rows, full);
    if (first < 0 || !source.columns) return -1;
    source.rowCount = CopyStagedRows(*source.columns, first, rows, full, source.filtered != 0);
    return source.rowCount;
}

} // namespace velorin
