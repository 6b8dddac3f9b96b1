// Writing and reading the settings file of a full desk: 50 records, each
// with its 36 drawing lines, and ten entries in every list. Three slots of
// each group are in use: with all 36 in use a record takes about 2.2 KB and
// 50 of them pass the 64 KB a file may hold.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "persistence/settings_file.h"

namespace {

using namespace velorin;

std::unique_ptr<Settings> FullDesk(int slotsInUse) {
    auto s = std::make_unique<Settings>();
    for (int i = 0; i < 10; ++i) {
        std::snprintf(s->tickvalList[i], 100, "%d", 60 * (i + 1));
        std::snprintf(s->itemList[i], 255, "ITEM%d", i);
        std::snprintf(s->topicList[i], 255, "/desk/T%d.PRC", i);
        std::snprintf(s->sourceList[i], 100, "SRC%d", i);
        std::snprintf(s->dsnList[i], 100, "DSN%d", i);
        std::snprintf(s->sqlTableList[i], 100, "TABLE%d", i);
        std::snprintf(s->sqlFieldsList[i], 255, "date,open,high,low,close,volume%d", i);
        std::snprintf(s->sqlWhereList[i], 100, "code%d", i);
        std::snprintf(s->sqlCodesList[i], 100, "C%d", i);
    }
    for (int i = 0; i < SettingsColourCount; ++i)
        s->colours[i] = s->defaultColours[i] = 0x10203 * i;
    s->defaultResolution = 4.0;
    std::strcpy(s->batchFolder, "/out"), std::strcpy(s->batchTable1, "T1");
    std::strcpy(s->batchTable2, "T2"), std::strcpy(s->batchPairTable, "P");
    for (int r = 0; r < LayoutRowCount; ++r) {
        LayoutRow& row = s->connections[r];
        std::strcpy(row.source, "DATAFILE");
        std::snprintf(row.topic, 255, "/data/desk/INSTRUMENT%02d.PRC", r);
        std::snprintf(row.item, 255, "INSTRUMENT%02d", r);
        std::strcpy(row.timerText, "60");
        std::strcpy(row.kindName, r % 2 ? "RSI" : "Price");
        row.resolutionCode = 'd', row.width = 400, row.height = 300, row.resolution = 4;
        row.param1 = 14, row.priceScaleDenominator = 1, row.showLine = 1;
        for (int i = 0; i < MaxDrawnObjects; ++i) {
            TrendLineSet& t = row.trendLines;
            ChannelSet& c = row.channelLines;
            const int flag = i < slotsInUse ? 1 : 0;
            t.inUse[i] = c.inUse[i] = row.verticalLines.inUse[i] = flag;
            row.horizontalLines.inUse[i] = flag;
            std::strcpy(t.dateA[i], "01/03/2000"), std::strcpy(t.dateB[i], "12/29/2000");
            std::strcpy(c.dateA[i], "01/03/2000"), std::strcpy(c.dateB[i], "06/30/2000");
            std::strcpy(c.dateC[i], "12/29/2000");
            t.valueA[i] = c.valueA[i] = 101.25 + i, t.valueB[i] = c.valueB[i] = 117.5 - i;
            c.valueC[i] = 99.875, t.length[i] = c.length[i] = 240.5, c.pixelGap[i] = 31;
            row.verticalLines.point[i] = {40 * i, 100};
            row.horizontalLines.value[i] = 105.0625 + i;
        }
    }
    return s;
}

std::vector<LayoutRecord> RecordsOf(const Settings& s) {
    std::vector<LayoutRecord> records;
    for (const LayoutRow& row : s.connections)
        records.push_back(RecordOfRow(row));
    return records;
}

std::string BenchPath() {
    return "/tmp/velorin_bench_" + std::to_string(::getpid()) + ".vln";
}

void BM_WriteSettingsFile(benchmark::State& state) {
    const auto s = FullDesk(3);
    const auto records = RecordsOf(*s);
    const std::string path = BenchPath();
    for (auto _ : state)
        if (SaveSettings(*s, records, path.c_str()) != 1) state.SkipWithError("write failed");
    state.counters["bytes"] = static_cast<double>(SettingsText(*s, records).size());
    std::remove(path.c_str());
}
BENCHMARK(BM_WriteSettingsFile)->Unit(benchmark::kMicrosecond);

void BM_SettingsTextOnly(benchmark::State& state) {
    const auto s = FullDesk(3);
    const auto records = RecordsOf(*s);
    for (auto _ : state)
        benchmark::DoNotOptimize(SettingsText(*s, records));
}
BENCHMARK(BM_SettingsTextOnly)->Unit(benchmark::kMicrosecond);

void BM_ReadSettingsFile(benchmark::State& state) {
    const auto s = FullDesk(3);
    const std::string path = BenchPath();
    SaveSettings(*s, RecordsOf(*s), path.c_str());
    auto back = std::make_unique<Settings>();
    for (auto _ : state)
        if (LoadSettings(*back, path.c_str()) != 1) state.SkipWithError("read failed");
    if (back->connections[49].horizontalLines.value[2] != 107.0625)
        state.SkipWithError("read back differs");
    std::remove(path.c_str());
}
BENCHMARK(BM_ReadSettingsFile)->Unit(benchmark::kMicrosecond);

} // namespace
