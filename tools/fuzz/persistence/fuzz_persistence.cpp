// Arbitrary bytes as the text of a settings file. The first byte chooses
// whether the rows start filled (old kind names and drawn objects behind
// zero flags) or empty; the rest is the text. What was read is written
// again and read once more.
// Invariants are checked with abort(), so libFuzzer reports them.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "persistence/settings_file.h"

namespace {

using namespace velorin;

void Check(bool condition) {
    if (!condition) std::abort();
}

template <std::size_t Rows, std::size_t Width> void CheckTexts(const char (&list)[Rows][Width]) {
    for (const auto& entry : list)
        Check(std::memchr(entry, '\0', Width) != nullptr);
}

void CheckSettings(const Settings& s) {
    CheckTexts(s.sourceList), CheckTexts(s.topicList), CheckTexts(s.itemList);
    CheckTexts(s.tickvalList), CheckTexts(s.dsnList), CheckTexts(s.sqlTableList);
    CheckTexts(s.sqlFieldsList), CheckTexts(s.sqlWhereList), CheckTexts(s.sqlCodesList);
    for (const LayoutRow& row : s.connections) {
        Check(std::memchr(row.source, '\0', sizeof row.source) != nullptr);
        Check(std::memchr(row.topic, '\0', sizeof row.topic) != nullptr);
        Check(std::memchr(row.item, '\0', sizeof row.item) != nullptr);
        Check(std::memchr(row.timerText, '\0', sizeof row.timerText) != nullptr);
        Check(std::memchr(row.kindName, '\0', sizeof row.kindName) != nullptr);
        for (int i = 0; i < MaxDrawnObjects; ++i) {
            Check(std::memchr(row.trendLines.dateB[i], '\0', DateTextSize) != nullptr);
            Check(std::memchr(row.channelLines.dateC[i], '\0', DateTextSize) != nullptr);
        }
    }
    for (const char* text : {s.batchFolder, s.batchTable1, s.batchTable2, s.batchPairTable})
        Check(std::memchr(text, '\0', SystemTextSize) != nullptr);
    const double r = s.defaultResolution;
    Check(r == 0.25 || r == 0.5 || r == 1 || r == 2 || r == 4 || r == 8 || r == 16 || r == 25 ||
          r == 50);
}

std::string WrittenBack(const Settings& s) {
    std::vector<LayoutRecord> records;
    for (int r = 0; r < LayoutRowCount && s.connections[r].source[0] != '\0'; ++r)
        records.push_back(RecordOfRow(s.connections[r]));
    return SettingsText(s, records);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto first = std::make_unique<Settings>();
    static const auto second = std::make_unique<Settings>();
    if (size == 0) return 0;
    std::memset(first.get(), 0, sizeof(Settings));
    if (data[0] & 1) {
        for (LayoutRow& row : first->connections) {
            std::strcpy(row.kindName, (data[0] & 2) ? "Data View" : "MACD");
            row.trendLines.valueA[0] = 1.5;
            std::strcpy(row.channelLines.dateA[8], "01/01/00");
        }
    }
    const std::string_view text(reinterpret_cast<const char*>(data + 1), size - 1);
    ParseSettingsText(*first, text);
    CheckSettings(*first);
    const std::string written = WrittenBack(*first);
    Check(written.starts_with("[Connection]\r\n*"));
    std::memset(second.get(), 0, sizeof(Settings));
    ParseSettingsText(*second, written);
    CheckSettings(*second);
    (void)WrittenBack(*second);
    return 0;
}
