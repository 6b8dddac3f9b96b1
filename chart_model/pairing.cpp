#include "chart_model/pairing.h"

#include <algorithm>
#include <cstring>

namespace velorin {
namespace {

// An open-addressed table from a date to the first row of the second source
// that has it; twice MaxRows rounded up to a power of two keeps it at most
// half full. Entries hold row + 1, 0 for a free one.
constexpr std::uint32_t TableSize = 4096;
static_assert(TableSize >= 2 * MaxRows && (TableSize & (TableSize - 1)) == 0);
using RowTable = std::int16_t[TableSize];

std::uint32_t Mix(std::uint64_t x) {
    x ^= x >> 33;
    x *= 0xff51afd7ed558ccdULL;
    x ^= x >> 33;
    return static_cast<std::uint32_t>(x);
}

// Dates as numbers: exact equality of the doubles, so -0.0 and 0.0 meet and
// a NaN meets nothing.
struct NumberDates {
    const double* first;
    const double* second;
    std::uint32_t HashFirst(int row) const { return Hash(first[row]); }
    std::uint32_t HashSecond(int row) const { return Hash(second[row]); }
    bool Same(int firstRow, int secondRow) const { return first[firstRow] == second[secondRow]; }
    bool SameSecond(int a, int b) const { return second[a] == second[b]; }
    static std::uint32_t Hash(double v) {
        const double positive = v + 0.0; // -0.0 hashes as 0.0
        std::uint64_t bits;
        std::memcpy(&bits, &positive, sizeof bits);
        return Mix(bits);
    }
};

// Dates as texts: the 20-character date texts, equal up to their end.
struct TextDates {
    const DateText* first;
    const DateText* second;
    std::uint32_t HashFirst(int row) const { return Hash(first[row]); }
    std::uint32_t HashSecond(int row) const { return Hash(second[row]); }
    bool Same(int firstRow, int secondRow) const {
        return std::strncmp(first[firstRow], second[secondRow], DateTextSize) == 0;
    }
    bool SameSecond(int a, int b) const {
        return std::strncmp(second[a], second[b], DateTextSize) == 0;
    }
    static std::uint32_t Hash(const DateText& text) {
        std::uint64_t h = 1469598103934665603ULL;
        for (int i = 0; i < DateTextSize && text[i] != '\0'; ++i) {
            h ^= static_cast<unsigned char>(text[i]);
            h *= 1099511628211ULL;
        }
        return Mix(h);
    }
};

template <typename Dates>
std::int32_t Pair(const Dates& dates, const DataColumns& first, int firstRows,
                  const DataColumns& second, int secondRows, PairData& pairs) {
    RowTable table = {};
    constexpr std::uint32_t mask = TableSize - 1;
    for (int j = 0; j < secondRows; ++j) {
        std::uint32_t at = dates.HashSecond(j) & mask;
        while (table[at] != 0 && !dates.SameSecond(table[at] - 1, j))
            at = (at + 1) & mask;
        if (table[at] == 0) table[at] = static_cast<std::int16_t>(j + 1); // the first row stays
    }
    std::int32_t count = 0;
    for (int i = 0; i < firstRows; ++i) {
        std::uint32_t at = dates.HashFirst(i) & mask;
        while (table[at] != 0 && !dates.Same(i, table[at] - 1))
            at = (at + 1) & mask;
        if (table[at] == 0) continue; // no partner: the row drops out
        const int j = table[at] - 1;
        std::memcpy(pairs.pairDateText[count], first.dateText[i], DateTextSize);
        pairs.firstSeries[count] = first.close[i];
        pairs.secondSeries[count] = second.close[j];
        ++count;
    }
    return count;
}

} // namespace

std::int32_t PairByDate(const DataColumns& first, std::int32_t firstRows, const DataColumns& second,
                        std::int32_t secondRows, PairData& pairs) {
    const int n = std::clamp<std::int32_t>(firstRows, 0, MaxRows);
    const int m = std::clamp<std::int32_t>(secondRows, 0, MaxRows);
    const bool asText = first.dateNumber[0] == 0.0 || second.dateNumber[0] == 0.0;
    pairs.pairCount =
        asText ? Pair(TextDates{first.dateText, second.dateText}, first, n, second, m, pairs)
               : Pair(NumberDates{first.dateNumber, second.dateNumber}, first, n, second, m, pairs);
    return pairs.pairCount;
}

} // namespace velorin
