#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <random>
#include <vector>

#include "market_data/block.h"
#include "market_data/data_source.h"
#include "persistence/settings_file.h"
#include "tests/support/recording_seam.h"
#include "tests/support/temp_dir.h"

namespace velorin {
namespace {

using test_support::RecordingSeam;
using test_support::TempDir;

std::string Repeat(const std::string& text, int n) {
    std::string all;
    for (int i = 0; i < n; ++i)
        all += text;
    return all;
}
std::string ReadAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}
const auto Fresh = [] { return std::make_unique<Settings>(); };

constexpr const char* ListHeaders[] = {"[Item]",     "[Topic]",     "[Source]",   "[DSN]",
                                       "[SQLTable]", "[SQLFields]", "[SQLWhere]", "[SQLCodes]"};
// The list sections after "[Connection]", one entry each, and the rest.
std::string Tail(const std::string& tickval = "60") {
    std::string t = "[Tickval]\r\n" + tickval + "\r\n\r\n";
    for (const char* h : ListHeaders)
        t += std::string(h) + "\r\nE\r\n\r\n";
    return t + "[Default]\r\n" + Repeat("0\r\n", 23) + "-1\r\n\r\n[Colour]\r\n16777215\r\n" +
           Repeat("0\r\n", 23) + "\r\n[System]\r\n5\r\n0\r\n0\r\n800\r\n600\r\n4.000000\r\n" +
           "/out\r\nCodes1\r\nCodes2\r\nPairs\r\n";
}
void FillLists(Settings& s) {
    std::strcpy(s.tickvalList[0], "60");
    for (auto* list : {s.itemList[0], s.topicList[0], s.sourceList[0], s.sqlFieldsList[0],
                       s.dsnList[0], s.sqlTableList[0], s.sqlWhereList[0], s.sqlCodesList[0]})
        std::strcpy(list, "E");
    s.defaultColours[23] = -1, s.colours[0] = 16777215;
    s.fetchFrequencyMinutes = 5, s.frameWidth = 800, s.frameHeight = 600, s.defaultResolution = 4;
    std::strcpy(s.batchFolder, "/out"), std::strcpy(s.batchTable1, "Codes1");
    std::strcpy(s.batchTable2, "Codes2"), std::strcpy(s.batchPairTable, "Pairs");
}

const std::string Zero = "0\t\r\n*";
const std::string AcmeHead = "DATAFILE\t/desk/ACME.PRC\tACME\t60\td\t1\t";

TEST(SettingsWriter, SmallDeskByteForByte) {
    auto s = Fresh();
    FillLists(*s);
    auto trend = std::make_unique<TrendLineSet>();
    auto horizontal = std::make_unique<HorizontalLineSet>();
    trend->inUse[0] = 1, trend->extended[0] = 1;
    std::strcpy(trend->dateA[0], "01/03/00"), std::strcpy(trend->dateB[0], "02/01/00");
    trend->valueA[0] = 101.5, trend->valueB[0] = 110.25;
    trend->length[0] = 120.5, trend->unitY[0] = 0.75, trend->unitX[0] = 4;
    horizontal->inUse[1] = 1, horizontal->point[1] = {5, 6}, horizontal->value[1] = 99.125;
    LayoutRecord esma{};
    esma.source = "DATAFILE", esma.topic = "/desk/ACME.PRC", esma.item = "ACME";
    esma.tickSeconds = 60, esma.resolutionCode = 'd', esma.hasFullColumns = 1;
    esma.x = 10, esma.y = 20, esma.width = 300, esma.height = 200;
    esma.priceScaleDenominator = 1, esma.resolution = 4, esma.gridOn = 1, esma.showBar = 1;
    esma.paramForm = ParamForm::FirstSmoothing, esma.kindName = "ESMA";
    std::copy_n(std::begin({0.1, 0.2, 0.3}), 3, esma.smoothing);
    std::copy_n(std::begin({7, 8, 9}), 3, esma.periods);
    esma.trendLines = trend.get(), esma.horizontalLines = horizontal.get();
    LayoutRecord view = esma, stochastics = esma, macd = esma;
    view.kindName = "Data View", view.paramForm = ParamForm::None, view.y = 240;
    stochastics.kindName = "Stochastics", stochastics.paramForm = ParamForm::Periods;
    stochastics.trendLines = nullptr, stochastics.horizontalLines = nullptr;
    macd.kindName = "MACD", macd.paramForm = ParamForm::ThreeSmoothings;
    macd.trendLines = nullptr, macd.horizontalLines = nullptr, macd.filtered = 1;
    const std::vector<LayoutRecord> records = {esma, view, stochastics, macd};
    const std::string body = "10\t20\t300\t200\t1\t4.000000\t1\t0\t1\t0\t0\t0\t";
    const std::string expected =
        "[Connection]\r\n*" + AcmeHead + body + "0.100000\t0\t0\tESMA\t\r\n*" +
        "1\t1\t0\t01/03/00\t101.500000\t02/01/00\t110.250000\t120.500000\t0.750000\t4.000000"
        "\t\r\n*" +
        Repeat(Zero, 8 + 9 + 9 + 1) + "1\t5\t6\t99.125000\t\r\n*" + Repeat(Zero, 7) + AcmeHead +
        "10\t240\t300\t200\t1\t4.000000\t1\t0\t1\t0\t0\t0\t0\t0\t0\tData View\t\r\n*" + AcmeHead +
        body + "7\t8\t9\tStochastics\t\r\n*" + Repeat(Zero, 36) + AcmeHead +
        "10\t20\t300\t200\t1\t4.000000\t1\t1\t1\t0\t0\t0\t0.100000\t0.200000\t0.300000\tMACD"
        "\t\r\n*" +
        Repeat(Zero, 36) + "\r\n" + Tail();
    EXPECT_EQ(SettingsText(*s, records), expected);
    // At most 51 records are written, one more than are read back.
    const std::vector<LayoutRecord> many(60, view);
    const std::string text = SettingsText(*s, many);
    std::size_t count = 0;
    for (std::size_t at = text.find("Data View"); at != text.npos;
         at = text.find("Data View", at + 1))
        ++count;
    EXPECT_EQ(count, 51u);
}

// One connection line of "[Connection]" with `fields` after the source.
TEST(SettingsReader, TokeniserRules) {
    const std::string line = AcmeHead + "1\t2\t3\t4\t1\t4.000000\t1\t0\t1\t0\t0\t0\t14\t0\t0\t";
    struct Case {
        const char* name;
        std::string connections;
        std::function<void(const Settings&)> check;
    } cases[] = {
        {"runs of delimiters count as one",
         "\r\n\r\n**DATAFILE\t\t/desk/"
         "ACME.PRC\t**ACME\t60\td\t1\t1\t2\t3\t4\t1\t4\t1\t0\t1\t0\t0\t0"
         "\t14\t0\t0\tRSI\t\r\n*" +
             Repeat(Zero, 36),
         [](const Settings& s) {
             EXPECT_STREQ(s.connections[0].topic, "/desk/ACME.PRC");
             EXPECT_STREQ(s.connections[0].kindName, "RSI");
             EXPECT_EQ(s.connections[0].param1, 14.0);
         }},
        {"a missing kind name keeps the old one; an empty field shifts the rest",
         line + "\t\r\n*" + Repeat(Zero, 36) + "DATAFILE\t\t" + line.substr(24) + "RSI\t\r\n*",
         [](const Settings& s) {
             EXPECT_STREQ(s.connections[0].kindName, "Old");
             EXPECT_STREQ(s.connections[1].topic, "ACME");
             EXPECT_EQ(s.connections[1].resolutionCode, '1');
         }},
        {"a Data View has no drawing lines; flag 0 keeps a slot's old values",
         line + "Data View\t\r\n*" + line +
             "Price\t\r\n*0\t\r\n*1\t0\t1\tD1\t1.5\tD2\t2.5\t3\t4\t5\t\r\n*" + Repeat(Zero, 34),
         [](const Settings& s) {
             EXPECT_STREQ(s.connections[1].kindName, "Price");
             const TrendLineSet& t = s.connections[1].trendLines;
             EXPECT_EQ(t.inUse[0] * 10 + t.valueA[0] + t.inUse[1] * 100 + t.unitX[1], 114.0);
             EXPECT_STREQ(t.dateB[1], "D2");
             EXPECT_EQ(s.connections[1].source[0], 'D');
             EXPECT_EQ(s.connections[2].source[0], '\0'); // emptied before the read
         }},
        {"the 51st record is skipped and reading goes on at [Tickval]",
         Repeat(line + "Data View\t\r\n*", 50) + "EXTRA" + line.substr(8) + "Price\t\r\n*" +
             Repeat(Zero, 36),
         [](const Settings& s) {
             EXPECT_STREQ(s.connections[49].source, "DATAFILE");
             EXPECT_STREQ(s.tickvalList[0], "60");
         }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        auto s = Fresh();
        for (LayoutRow& row : s->connections)
            std::strcpy(row.kindName, "Old"), std::strcpy(row.source, "S");
        s->connections[1].trendLines.valueA[0] = 9.0;
        ParseSettingsText(*s, "[Connection]" + c.connections + "\r\n" + Tail());
        c.check(*s);
        EXPECT_STREQ(s->batchPairTable, "Pairs");
    }
}

std::string Replace(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
}

TEST(SettingsReader, ListsNumbersAndSystemLines) {
    auto s = Fresh();
    std::string text = "[Connection]\r\n*\r\n" + Tail();
    text = Replace(text, "[Topic]\r\nE", "[Topic]\r\nT0\r\n[Source]\r\nT2");
    text = Replace(text, "[Default]\r\n0\r\n0", "[Default]\r\n010\r\n0x1F");
    ParseSettingsText(*s, Replace(text, "/out\r\n", "\r\n")); // an empty text line vanishes
    EXPECT_STREQ(s->topicList[0], "T0");
    EXPECT_STREQ(s->topicList[1], "");    // the next header ended the list
    EXPECT_STREQ(s->sourceList[0], "T2"); // the first line is taken unseen
    EXPECT_EQ(s->defaultColours[0], 8);
    EXPECT_EQ(s->defaultColours[1], 31);
    EXPECT_EQ(s->defaultColours[23], -1);
    EXPECT_STREQ(s->batchFolder, "Codes1");
    EXPECT_STREQ(s->batchTable2, "Pairs");
    EXPECT_STREQ(s->batchPairTable, "");
    const double snaps[][2] = {{0, 0.25},  {0.25, 0.25}, {0.3, 0.5}, {1.5, 2}, {3, 4},
                               {16.5, 25}, {50, 50},     {50.01, 4}, {1e9, 4}, {-5, 0.25}};
    for (const auto& [in, out] : snaps)
        EXPECT_EQ(SnapResolution(in), out) << in;
}

TEST(SettingsFile, FailuresCopiesAndTheCut) {
    TempDir dir;
    RecordingSeam seam;
    auto s = Fresh();
    FillLists(*s);
    const std::string path = dir.PathOf("velorin.vln"), good = "[Connection]\r\n*\r\n" + Tail();
    EXPECT_EQ(LoadSettings(*s, dir.PathOf("none.vl").c_str()), 0);
    EXPECT_EQ(SaveSettings(*s, {}, dir.PathOf("no/such/folder.vl").c_str()), 0);
    EXPECT_EQ(seam.MessageCount(), 0u);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}),
              0); // nothing left behind
    dir.Write("velorin.vln", "old");
    FailAllocationAfter(0);
    EXPECT_EQ(SaveSettings(*s, {}, path.c_str()), 0);
    EXPECT_EQ(ReadAll(path), "old");
    FailAllocationAfter(0);
    EXPECT_EQ(LoadSettings(*s, path.c_str()), 0);
    EXPECT_EQ(seam.Texts(),
              std::vector<std::string>(2, "Memory alloc failed - Please close some windows"));
    ASSERT_EQ(SaveSettings(*s, {}, path.c_str()), 1);
    EXPECT_EQ(ReadAll(path), good);
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(path).permissions(), perms::owner_read | perms::owner_write);
    auto back = Fresh();
    std::filesystem::create_directories(dir.PathOf("velorig.vln/x")); // the copy cannot be made
    EXPECT_EQ(LoadSettings(*back, path.c_str(), path.c_str()), 0);
    EXPECT_STREQ(back->tickvalList[0], "");
    std::filesystem::remove_all(dir.PathOf("velorig.vln"));
    EXPECT_EQ(LoadSettings(*back, path.c_str(), path.c_str()), 1);
    EXPECT_EQ(ReadAll(dir.PathOf("velorig.vln")), good);
    EXPECT_EQ(std::memcmp(back.get(), s.get(), sizeof(Settings)), 0);
    // 65,536 bytes more than a file: only the remainder is read, and the user is told once.
    dir.Write("big.vl",
              std::string(good).replace(good.find("60"), 2, "77") + std::string(65536, 'x'));
    EXPECT_EQ(LoadSettings(*back, dir.PathOf("big.vl").c_str()), 1);
    EXPECT_STREQ(back->tickvalList[0], "77");
    EXPECT_EQ(seam.Texts().back(), "File larger than 64 KB - only its first part was read");
    EXPECT_EQ(seam.MessageCount(), 3u);
}

TEST(SettingsFile, RandomDesksComeBackAsWritten) {
    const char* kinds[] = {"Price",       "Volume",    "RSI",       "ESMA",  "MACD",
                           "Stochastics", "Fibonacci", "Data View", "Trend", "Predictor"};
    for (unsigned seed = 1; seed <= 40; ++seed) {
        std::mt19937 random(seed);
        const auto pick = [&](int n) { return static_cast<int>(random() % unsigned(n)); };
        const auto real = [&] { return (pick(2000001) - 1000000) / 1000.0; };
        const auto word = [&](char* out) { std::sprintf(out, "w%d.x/%d", pick(1000), pick(9)); };
        auto s = Fresh();
        FillLists(*s);
        const int rows = pick(51);
        for (int r = 0; r < rows; ++r) {
            LayoutRow& row = s->connections[r];
            word(row.source), word(row.topic), word(row.item);
            std::sprintf(row.timerText, "%d", pick(600));
            std::strcpy(row.kindName, kinds[pick(10)]);
            row.resolutionCode = "dwm"[pick(3)];
            for (std::int32_t* v : {&row.hasFullColumns, &row.x, &row.y, &row.width, &row.height,
                                    &row.priceScaleDenominator, &row.gridOn, &row.filtered,
                                    &row.showBar, &row.showCandle, &row.showHighLow, &row.showLine})
                *v = pick(3000) - 1000;
            row.resolution = real();
            const ParamForm form = RecordOfRow(row).paramForm;
            const bool whole = form == ParamForm::Periods;
            row.param1 = form == ParamForm::None ? 0 : whole ? pick(300) : real();
            row.param2 = row.param3 = form == ParamForm::ThreeSmoothings ? real() : 0;
            if (whole) row.param2 = pick(50), row.param3 = pick(50);
            if (std::strcmp(row.kindName, "Data View") == 0) continue;
            for (int i = 0; i < MaxDrawnObjects; ++i) {
                TrendLineSet& t = row.trendLines;
                ChannelSet& c = row.channelLines;
                if ((t.inUse[i] = pick(2)))
                    t.extended[i] = pick(2), word(t.dateA[i]), word(t.dateB[i]),
                    t.valueA[i] = real(), t.valueB[i] = real(), t.unitX[i] = real();
                if ((c.inUse[i] = pick(2)))
                    c.freePlaced[i] = pick(2), word(c.dateA[i]), word(c.dateB[i]), word(c.dateC[i]),
                    c.valueC[i] = real(), c.pixelGap[i] = real();
                if ((row.verticalLines.inUse[i] = pick(2))) row.verticalLines.point[i] = {3, -4};
                if ((row.horizontalLines.inUse[i] = pick(2)))
                    row.horizontalLines.point[i].y = pick(500),
                    row.horizontalLines.value[i] = real();
            }
        }
        const auto written = [&](const Settings& from) {
            std::vector<LayoutRecord> records;
            for (int r = 0; r < rows; ++r)
                records.push_back(RecordOfRow(from.connections[r]));
            return SettingsText(from, records);
        };
        auto back = Fresh();
        ParseSettingsText(*back, written(*s));
        ASSERT_EQ(std::memcmp(back.get(), s.get(), sizeof(Settings)), 0) << "seed " << seed;
        EXPECT_EQ(written(*back), written(*s));
    }
}

} // namespace
} // namespace velorin
