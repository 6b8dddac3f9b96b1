#include "interaction/chart_menu.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "tests/support/chart_fixture.h"

namespace velorin {
namespace {

using testing::ChartFixture;
using Texts = std::vector<std::string>;

// The items directly inside the first submenu called `title` ("" for the
// top level); submenus are listed by their title, separators as "-".
std::vector<MenuItem> Level(const std::vector<MenuItem>& items, const std::string& title) {
    std::vector<MenuItem> out;
    int depth = 0, inside = title.empty() ? 0 : -1;
    for (const MenuItem& m : items) {
        if (m.endSubmenu) {
            if (--depth < inside) break;
            continue;
        }
        if (depth == inside) out.push_back(m);
        if (m.submenu) {
            if (inside < 0 && title == m.text) inside = depth + 1;
            ++depth;
        }
    }
    return out;
}

Texts TextsOf(const std::vector<MenuItem>& items) {
    Texts t;
    for (const MenuItem& m : items)
        t.push_back(m.text ? m.text : "-");
    return t;
}

Texts Words(const std::string& line) {
    Texts t;
    for (std::size_t at = 0; at < line.size();) {
        const std::size_t end = std::min(line.find('|', at), line.size());
        t.push_back(line.substr(at, end - at));
        at = end + 1;
    }
    return t;
}

// The top level of the chart menu by kind, as the menu rules list it: R
// "Resolution", C "Colour", D "Draw" in full form, d in short form, G
// "Grid", P "Price Scale ...", S "Data Source ..."; E: "Resolution" opens
// with the end point items.
TEST(ChartMenu, TopLevelByKind) {
    auto item = [](const char* text, int id) { return MenuItem{text, id, false, false, 0, false}; };
    // clang-format off
    const std::map<std::string, MenuItem> entries = {
        {"R", item("Resolution", 0)}, {"C", item("Colour", 0)}, {"D", item("Draw", 0)},
        {"d", item("Draw", 0)}, {"G", item("Grid", 0)}, {"P", item("Price Scale ...", 10418)},
        {"S", item("Data Source ...", 10417)}, {"Periods", item("Periods ...", 10411)},
        {"Lines", item("Fibonacci Lines", 20524)}, {"Envelopes", item("Extend Envelopes", 20523)},
        {"Levels", item("Levels...", 20532)}, {"Highlight", item("Highlight Region", 20529)}};
    // clang-format on
    const std::pair<const char*, const char*> rows[] = {
        {"Price|RMA|ESMA|WMA|Trend|Swing Charting", "E|R|C|D|P|S"},
        {"Volume|Stochastics|Stdev|OBV|Tic Volume|RSI|RVI|Oscillator|Momentum|Perc. "
         "Range|OverboughtSold",
         "E|R|C|d|S"},
        {"Predictor", "E|R|C|G|S"},
        {"MACD", "E|R|C|G|Periods|S"},
        {"Fibonacci", "R|C|G|Lines|Envelopes|Levels|P|S"},
        {"Correlation|Historical Correlation|Price Ratio|Spread|Relative Strength|Relative "
         "Performance",
         "R|C|G"},
        {"Overlay", "R|C|Highlight"},
        {"Data View|Levels View|price", ""}, // names match whole and case sensitive
    };
    for (const auto& [kinds, line] : rows) {
        for (const std::string& kind : Words(kinds)) {
            SCOPED_TRACE(kind);
            ChartFixture f(kind.c_str(), LayoutFibonacci, 100);
            const std::vector<MenuItem> items = ChartMenuItems(f.chart(), 100);
            std::vector<MenuItem> expected;
            for (const std::string& w : *line ? Words(line) : Texts{})
                if (w != "E") expected.push_back(entries.at(w));
            const std::vector<MenuItem> top = Level(items, "");
            ASSERT_EQ(TextsOf(top), TextsOf(expected));
            for (std::size_t i = 0; i < top.size(); ++i)
                EXPECT_EQ(top[i].id, expected[i].id) << top[i].text;
            if (items.empty()) continue;
            EXPECT_EQ(TextsOf(Level(items, "Resolution"))[0],
                      line[0] == 'E' ? "Select End Point" : "x 1/4");
            const Texts draw = TextsOf(Level(items, "Draw"));
            EXPECT_EQ(!draw.empty() && draw[0] == "Trend", std::strstr(line, "D") != nullptr);
        }
    }
}

TEST(ChartMenu, DrawNeedsRowsAndTrendsAFineResolution) {
    ChartFixture f("Price", LayoutPlain, 24);
    EXPECT_EQ(TextsOf(Level(ChartMenuItems(f.chart(), 24), "Draw")), Texts{"Grid"});
    f.chart().rowCount = 25;
    const std::vector<MenuItem> draw = Level(ChartMenuItems(f.chart(), 25), "Draw");
    EXPECT_EQ(TextsOf(draw), (Texts{"Trend", "Channel", "Vertical", "Horizontal", "Grid"}));
    EXPECT_EQ(std::vector<int>({draw[0].id, draw[1].id, draw[2].id, draw[3].id}),
              std::vector<int>({20501, 20502, 20512, 20513}));
    f.chart().view->resolution = 25.0;
    EXPECT_EQ(TextsOf(Level(ChartMenuItems(f.chart(), 25), "Draw")),
              (Texts{"Vertical", "Horizontal", "Grid"}));
    // The short form has no row rule.
    ChartFixture rsi("RSI", LayoutOneCurve, 10);
    EXPECT_EQ(TextsOf(Level(ChartMenuItems(rsi.chart(), 10), "Draw")),
              (Texts{"Vertical", "Horizontal", "Grid"}));
    EXPECT_EQ(TextsOf(Level(ChartMenuItems(rsi.chart(), 10), "Grid")), Texts{"On"});
    rsi.chart().view->gridOn = 1;
    EXPECT_EQ(Level(ChartMenuItems(rsi.chart(), 10), "Grid")[0].text, std::string("Off"));
}

TEST(ChartMenu, ResolutionSubmenu) {
    ChartFixture f("Price", LayoutPlain, 300);
    auto resolution = [&](int sourceRows) {
        return Level(ChartMenuItems(f.chart(), sourceRows), "Resolution");
    };
    EXPECT_EQ(TextsOf(resolution(300)), (Texts{"Select End Point", "-", "x 1/4", "x 1/2", "x 1",
                                               "x 2", "x 4", "x 8", "x 16", "x 25", "x 50"}));
    // A chart cut at an end point can get all its rows back.
    EXPECT_EQ(TextsOf(resolution(310))[1], "Get All");
    EXPECT_EQ(resolution(310)[1].id, 20312);

    // Stretched values check the step at or below them, and only that one.
    const struct {
        double stored;
        const char* checked;
        int id;
    } steps[] = {{0.1, "x 1/4", 20301}, {0.49, "x 1/4", 20301}, {0.5, "x 1/2", 20302},
                 {3.7, "x 2", 20304},   {24.99, "x 16", 20307}, {25.0, "x 25", 20308},
                 {400.0, "x 50", 20309}};
    for (const auto& s : steps) {
        f.chart().view->resolution = s.stored;
        Texts checked;
        for (const MenuItem& m : resolution(300))
            if (m.checked) {
                EXPECT_TRUE(m.disabled);
                EXPECT_EQ(m.id, s.id);
                checked.push_back(m.text);
            }
        EXPECT_EQ(checked, Texts{s.checked}) << s.stored;
    }
}

TEST(HandleMenu, DrawnObjects) {
    ChartFixture f("Price", LayoutPlain, 100);
    TrendLineSet& t = *f.chart().drawings->trendLines;
    t.extended[2] = 1;   // "Extend Trend" checked
    t.freePlaced[2] = 1; // "Data Value" not checked
    const struct {
        HitObject object;
        int colourTarget;
        const char* texts;
        std::vector<int> ids;
    } cases[] = {
        // clang-format off
        {HitObject::Trend, 0, "Move Trend|Clone Trend|Clear Trend|Clear All Trends|Clear All Lines|"
         "Extend Trend|Data Value|Colour ...", {20533, 20539, 20504, 20509, 20518, 20525, 20537, 20519}},
        {HitObject::Channel, 1, "Move Channel|Clear Channel|Clear All Channels|Clear All Lines|"
         "Extend Channel|Colour ...", {20534, 20505, 20510, 20518, 20526, 20519}},
        {HitObject::Gann, 2, "Clear Gann|Clear All Ganns|Clear All Lines|Extend Gann|Colour ...",
         {20508, 20511, 20518, 20527, 20519}},
        {HitObject::Vertical, 3, "Move Vertical|Clear Vertical|Clear All Verticals|Clear All Lines|"
         "Colour ...", {20535, 20514, 20516, 20518, 20519}},
        {HitObject::Horizontal, 4, "Move Horizontal|Clear Horizontal|Clear All Horizontals|"
         "Clear All Lines|Colour ...", {20536, 20515, 20517, 20518, 20519}},
        // clang-format on
    };
    for (const auto& c : cases) {
        ChartMouseState mouse{};
        const std::vector<MenuItem> items = HandleMenu(f.chart(), {c.object, 2}, 0, 0, mouse);
        EXPECT_EQ(TextsOf(items), Words(c.texts));
        std::vector<int> ids, checked;
        for (const MenuItem& m : items) {
            ids.push_back(m.id);
            if (m.checked) checked.push_back(m.id);
        }
        EXPECT_EQ(ids, c.ids);
        EXPECT_EQ(checked,
                  c.object == HitObject::Trend ? std::vector<int>{20525} : std::vector<int>{});
        EXPECT_EQ(mouse.colourTarget, c.colourTarget);
    }
}

// The curve handles by kind and slot: "Period ..." where no exclusion
// holds, the curve it changes, and the colour target.
TEST(HandleMenu, CurvesByKindAndSlot) {
    const struct {
        const char* kind;
        int slot;
        const char* texts;
        int selectedCurve; // -1: left as it was
        int colourTarget;
    } cases[] = {
        {"Price", 0, "Data View ...|Colour ...|Style", -1, 5},
        {"Volume", 0, "Data View ...|Colour ...", -1, 5},
        {"Fibonacci", 0, "Data View ...|Colour ...", -1, 5},
        {"RMA", 2, "Colour ...", -1, 6},
        {"RSI", 3, "Colour ...|Period ...", 1, 7},
        {"OBV", 3, "Colour ...", 1, 7},
        {"Spread", 3, "Colour ...", 1, 7},
        {"Predictor", 3, "Colour ...|Period", 1, 7},
        {"RMA", 4, "Colour ...|Period ...", 1, 8},
        {"Stochastics", 4, "Colour ...|Period ...", 2, 8},
        {"Swing Charting", 4, "Colour ...", 1, 8},
        {"MACD", 4, "Colour ...", 1, 8},
        {"MACD", 5, "Colour ...|Period ...", 2, 9},
        {"Stochastics", 6, "Colour ...|Period ...", 4, 10},
        {"Trend", 7, "Colour ...", -1, 11},
        {"Price", 12, "Colour ...|Period ...", -1, 14},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.kind) + " slot " + std::to_string(c.slot));
        ChartFixture f(c.kind, LayoutFibonacci, 100);
        f.chart().hasFullColumns = 1;
        ChartMouseState mouse{};
        mouse.selectedCurve = -1;
        const auto items = HandleMenu(f.chart(), {HitObject::Curve, c.slot}, 0, 0, mouse);
        EXPECT_EQ(TextsOf(Level(items, "")), Words(c.texts));
        EXPECT_EQ(mouse.selectedCurve, c.selectedCurve);
        EXPECT_EQ(mouse.colourTarget, c.colourTarget);
    }
}

TEST(HandleMenu, StyleAndPredictorTerms) {
    ChartFixture f("Predictor", LayoutThreeCurves, 24);
    Chart& c = f.chart();
    c.hasFullColumns = 1;
    c.predictorShort = 0;
    c.predictorMedium = 1;
    ChartMouseState mouse{};
    const auto terms = Level(HandleMenu(c, {HitObject::Curve, 3}, 0, 0, mouse), "Period");
    EXPECT_EQ(TextsOf(terms), (Texts{"Short", "Medium", "Long", "-", "Medium"}));
    EXPECT_TRUE(terms[4].checked && terms[4].disabled);
    EXPECT_EQ(terms[4].id, 20102);

    const struct {
        int line, candle, bar, rows;
        const char* texts;
    } styles[] = {
        {1, 0, 0, 24, "High-Low|Barchart"}, {1, 0, 0, 25, "High-Low|Barchart|CandleStick"},
        {0, 1, 0, 24, "Line|Barchart"},     {0, 0, 1, 24, "Line"},
        {0, 0, 1, 25, "Line|CandleStick"},
    };
    for (const auto& s : styles) {
        c.view->showLine = s.line, c.view->showCandle = s.candle, c.view->showBar = s.bar;
        c.rowCount = s.rows;
        const auto items = HandleMenu(c, {HitObject::Curve, 0}, 0, 0, mouse);
        EXPECT_EQ(TextsOf(Level(items, "Style")), Words(s.texts)) << s.texts;
    }
    c.hasFullColumns = 0; // two columns have no style
    EXPECT_EQ(HandleMenu(c, {HitObject::Curve, 0}, 0, 0, mouse).size(), 2u);
}

} // namespace
} // namespace velorin
