#pragma once
// The direct pairing: each row of the first source against the second from
// its row 0 on. The measure the fast pairing is held to.

#include <cstring>

#include "chart_model/chart.h"
#include "market_data/data_source.h"

namespace velorin::test_support {

inline std::int32_t PairBySearch(const DataColumns& a, int n, const DataColumns& b, int m,
                                 PairData& out) {
    const bool asText = a.dateNumber[0] == 0.0 || b.dateNumber[0] == 0.0;
    out.pairCount = 0;
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < m; ++j)
            if (asText ? std::strncmp(a.dateText[i], b.dateText[j], DateTextSize) == 0
                       : a.dateNumber[i] == b.dateNumber[j]) {
                std::memcpy(out.pairDateText[out.pairCount], a.dateText[i], DateTextSize);
                out.firstSeries[out.pairCount] = a.close[i];
                out.secondSeries[out.pairCount++] = b.close[j];
                break;
            }
    return out.pairCount;
}

} // namespace velorin::test_support
