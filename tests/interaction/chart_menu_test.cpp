#include "interaction/chart_menu.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <tuple>
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
        depth -= m.endSubmenu;
        if (depth < inside) break;
        if (depth == inside && !m.endSubmenu) out.push_back(m);
        if (m.submenu && inside < 0 && title == m.text) inside = depth + 1;
        depth += m.submenu;
    }
    return out;
}

// Each item as its text, then " =id" when it gives a command and `ids` is
// set, then " *" when it is checked.
Texts TextsOf(const std::vector<MenuItem>& items, bool ids = false) {
    Texts t;
    for (const MenuItem& m : items) {
        t.push_back(m.text ? m.text : "-");
        if (ids && m.id) t.back() += " =" + std::to_string(m.id);
        if (m.checked) t.back() += " *";
    }
    return t;
}

Texts Words(const std::string& line) {
    Texts t;
    std::istringstream in(line);
    for (std::string w; std::getline(in, w, '|');)
        t.push_back(w);
    return t;
}

Texts Submenu(ChartFixture& f, const char* title, int sourceRows, bool ids = false) {
    return TextsOf(Level(ChartMenuItems(f.chart(), sourceRows), title), ids);
}

// The top level of the chart menu by kind, as the menu rules list it: R
// "Resolution", C "Colour", D "Draw" in full form, d in short form, G
// "Grid", P "Price Scale ...", S "Data Source ..."; E: "Resolution" opens
// with the end point items.
TEST(ChartMenu, TopLevelByKind) {
    // clang-format off
    const std::map<std::string, std::string> entries = {
        {"R", "Resolution"}, {"C", "Colour"}, {"D", "Draw"}, {"d", "Draw"}, {"G", "Grid"},
        {"P", "Price Scale ... =10418"}, {"S", "Data Source ... =10417"},
        {"Periods", "Periods ... =10411"}, {"Lines", "Fibonacci Lines =20524"},
        {"Envelopes", "Extend Envelopes =20523"}, {"Levels", "Levels... =20532"},
        {"Highlight", "Highlight Region =20529"}};
    const std::pair<const char*, const char*> rows[] = {
        {"Price|RMA|ESMA|WMA|Trend|Swing Charting", "E|R|C|D|P|S"},
        {"Volume|Stochastics|Stdev|OBV|Tic Volume|RSI|RVI|Oscillator|Momentum|Perc. Range|"
         "OverboughtSold", "E|R|C|d|S"},
        {"Predictor", "E|R|C|G|S"}, {"MACD", "E|R|C|G|Periods|S"},
        {"Fibonacci", "R|C|G|Lines|Envelopes|Levels|P|S"},
        {"Correlation|Historical Correlation|Price Ratio|Spread|Relative Strength|"
         "Relative Performance", "R|C|G"},
        {"Overlay", "R|C|Highlight"},
        {"Data View|Levels View|price", ""}}; // names match whole and case sensitive
    // clang-format on
    for (const auto& [kinds, line] : rows) {
        Texts expected;
        for (const std::string& w : Words(line))
            if (w != "E") expected.push_back(entries.at(w));
        for (const std::string& kind : Words(kinds)) {
            ChartFixture f(kind.c_str(), LayoutFibonacci, 100);
            ASSERT_EQ(Submenu(f, "", 100, true), expected) << kind;
            const Texts resolution = Submenu(f, "Resolution", 100), draw = Submenu(f, "Draw", 100);
            EXPECT_EQ(!resolution.empty() && resolution[0] == "Select End Point", line[0] == 'E');
            EXPECT_EQ(!draw.empty() && draw[0] == "Trend", std::string(line).find('D') < 99)
                << kind;
        }
    }
}

TEST(ChartMenu, DrawNeedsRowsAndTrendsAFineResolution) {
    ChartFixture f("Price", LayoutPlain, 24);
    EXPECT_EQ(Submenu(f, "Draw", 24), Texts{"Grid"});
    f.chart().rowCount = 25;
    EXPECT_EQ(Submenu(f, "Draw", 25, true), Words("Trend =20501|Channel =20502|Vertical =20512|"
                                                  "Horizontal =20513|Grid"));
    f.chart().view->resolution = 25.0;
    EXPECT_EQ(Submenu(f, "Draw", 25), Words("Vertical|Horizontal|Grid"));
}

TEST(ChartMenu, ResolutionChecksTheStepAtOrBelowTheStoredValue) {
    ChartFixture f("Price", LayoutPlain, 300);
    EXPECT_EQ(Submenu(f, "Resolution", 300),
              Words("Select End Point|-|x 1/4|x 1/2|x 1 *|x 2|x 4|x 8|x 16|x 25|x 50"));
    // A chart cut at an end point can get all its rows back.
    EXPECT_EQ(Submenu(f, "Resolution", 310, true)[1], "Get All =20312");
    // clang-format off
    const std::pair<double, int> steps[] = {{0.1, 20301}, {0.49, 20301}, {0.5, 20302}, {3.7, 20304},
                                            {24.99, 20307}, {25.0, 20308}, {400.0, 20309}};
    // clang-format on
    for (const auto& [stored, id] : steps) {
        f.chart().view->resolution = stored;
        std::vector<int> checked; // checked and greyed
        for (const MenuItem& m : Level(ChartMenuItems(f.chart(), 300), "Resolution"))
            if (m.checked) checked.push_back(m.disabled ? m.id : -m.id);
        EXPECT_EQ(checked, std::vector<int>{id}) << stored;
    }
}

TEST(HandleMenu, DrawnObjects) {
    ChartFixture f("Price", LayoutPlain, 100);
    TrendLineSet& t = *f.chart().drawings->trendLines;
    t.extended[2] = 1;   // "Extend Trend" checked
    t.freePlaced[2] = 1; // "Data Value" not checked
    const std::string all = "|Clear All Lines =20518", colour = "|Colour ... =20519";
    // clang-format off
    const std::tuple<HitObject, int, std::string> cases[] = {
        {HitObject::Trend, 0, "Move Trend =20533|Clone Trend =20539|Clear Trend =20504|Clear All "
         "Trends =20509" + all + "|Extend Trend =20525 *|Data Value =20537" + colour},
        {HitObject::Channel, 1, "Move Channel =20534|Clear Channel =20505|Clear All Channels =20510"
         + all + "|Extend Channel =20526" + colour},
        {HitObject::Gann, 2, "Clear Gann =20508|Clear All Ganns =20511" + all +
         "|Extend Gann =20527" + colour},
        {HitObject::Vertical, 3, "Move Vertical =20535|Clear Vertical =20514|Clear All Verticals "
         "=20516" + all + colour},
        {HitObject::Horizontal, 4, "Move Horizontal =20536|Clear Horizontal =20515|Clear All "
         "Horizontals =20517" + all + colour}};
    // clang-format on
    for (const auto& [object, colourTarget, texts] : cases) {
        ChartMouseState mouse{};
        EXPECT_EQ(TextsOf(HandleMenu(f.chart(), {object, 2}, 0, 0, mouse), true), Words(texts));
        EXPECT_EQ(mouse.colourTarget, colourTarget) << texts;
    }
}

// The curve handles by kind and slot: "Period ..." where no exclusion
// holds, the curve it changes, and the colour target.
TEST(HandleMenu, CurvesByKindAndSlot) {
    // clang-format off
    // Kind, slot, the curve picked (-1: left as it was), colour target, items.
    const std::tuple<const char*, int, int, int, const char*> cases[] = {
        {"Price", 0, -1, 5, "Data View ...|Colour ...|Style"}, {"RMA", 2, -1, 6, "Colour ..."},
        {"Volume", 0, -1, 5, "Data View ...|Colour ..."}, {"OBV", 3, 1, 7, "Colour ..."},
        {"RSI", 3, 1, 7, "Colour ...|Period ..."}, {"Spread", 3, 1, 7, "Colour ..."},
        {"Predictor", 3, 1, 7, "Colour ...|Period"}, {"Swing Charting", 4, 1, 8, "Colour ..."},
        {"RMA", 4, 1, 8, "Colour ...|Period ..."}, {"MACD", 5, 2, 9, "Colour ...|Period ..."},
        {"Stochastics", 4, 2, 8, "Colour ...|Period ..."}, {"Trend", 7, -1, 11, "Colour ..."},
        {"Stochastics", 6, 4, 10, "Colour ...|Period ..."},
        {"Price", 12, -1, 14, "Colour ...|Period ..."}};
    // clang-format on
    for (const auto& [kind, slot, picked, colourTarget, texts] : cases) {
        ChartFixture f(kind, LayoutFibonacci, 100);
        f.chart().hasFullColumns = 1;
        ChartMouseState mouse{};
        mouse.selectedCurve = -1;
        const auto items = HandleMenu(f.chart(), {HitObject::Curve, slot}, 0, 0, mouse);
        EXPECT_EQ(TextsOf(Level(items, "")), Words(texts)) << kind << " " << slot;
        EXPECT_EQ(std::pair(mouse.selectedCurve, mouse.colourTarget),
                  std::pair(picked, colourTarget))
            << kind << " " << slot;
    }
}

TEST(HandleMenu, StyleAndPredictorTerms) {
    ChartFixture f("Predictor", LayoutThreeCurves, 24);
    Chart& c = f.chart();
    c.hasFullColumns = 1, c.predictorShort = 0, c.predictorMedium = 1;
    ChartMouseState mouse{};
    auto submenu = [&](int slot, const char* title) {
        return Level(HandleMenu(c, {HitObject::Curve, slot}, 0, 0, mouse), title);
    };
    EXPECT_EQ(TextsOf(submenu(3, "Period"), true),
              Words("Short =20101|Medium =20102|Long =20103|-|Medium =20102 *"));
    EXPECT_TRUE(submenu(3, "Period")[4].disabled);
    // clang-format off
    const std::tuple<int, int, int, int, const char*> styles[] = { // line, candle, bar, rows
        {1, 0, 0, 24, "High-Low|Barchart"}, {1, 0, 0, 25, "High-Low|Barchart|CandleStick"},
        {0, 1, 0, 24, "Line|Barchart"}, {0, 0, 1, 24, "Line"}, {0, 0, 1, 25, "Line|CandleStick"}};
    // clang-format on
    for (const auto& [line, candle, bar, rows, texts] : styles) {
        c.view->showLine = line, c.view->showCandle = candle, c.view->showBar = bar;
        c.rowCount = rows;
        EXPECT_EQ(TextsOf(submenu(0, "Style")), Words(texts)) << texts;
    }
}

} // namespace
} // namespace velorin
