#include "interaction/chart_menu.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/rendering/chart_fixture.h"

namespace velorin {
namespace {

using testing::ChartFixture;
using Texts = std::vector<std::string>;

std::string TextOf(const MenuItem& m) {
    return m.text ? m.text : "-";
}

// The items directly inside the first submenu called `title` ("" for the
// top level); submenus are listed by their title.
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
        t.push_back(TextOf(m));
    return t;
}

TEST(ChartMenu, TopLevelByKind) {
    const struct {
        const char* kind;
        Texts top;
    } cases[] = {
        {"Price", {"Resolution", "Colour", "Draw", "Price Scale ...", "Data Source ..."}},
        {"Volume", {"Resolution", "Colour", "Draw", "Data Source ..."}},
        {"Predictor", {"Resolution", "Colour", "Grid", "Data Source ..."}},
        {"MACD", {"Resolution", "Colour", "Grid", "Periods ...", "Data Source ..."}},
        {"Fibonacci",
         {"Resolution", "Colour", "Grid", "Fibonacci Lines", "Extend Envelopes", "Levels...",
          "Price Scale ...", "Data Source ..."}},
        {"Spread", {"Resolution", "Colour", "Grid"}},
        {"Overlay", {"Resolution", "Colour", "Highlight Region"}},
        {"price", {}}, // names match whole and case sensitive
    };
    for (const auto& c : cases) {
        ChartFixture f(c.kind, LayoutFibonacci, 100);
        EXPECT_EQ(TextsOf(Level(ChartMenuItems(f.chart(), 100), "")), c.top) << c.kind;
    }
}

TEST(ChartMenu, DrawNeedsRowsAndTrendsAFineResolution) {
    ChartFixture f("Price", LayoutPlain, 24);
    EXPECT_EQ(TextsOf(Level(ChartMenuItems(f.chart(), 24), "Draw")), Texts{"Grid"});
    f.chart().rowCount = 25;
    EXPECT_EQ(TextsOf(Level(ChartMenuItems(f.chart(), 25), "Draw")),
              (Texts{"Trend", "Channel", "Vertical", "Horizontal", "Grid"}));
    f.chart().view->resolution = 25.0;
    EXPECT_EQ(TextsOf(Level(ChartMenuItems(f.chart(), 25), "Draw")),
              (Texts{"Vertical", "Horizontal", "Grid"}));
    // The short form has no row rule.
    ChartFixture rsi("RSI", LayoutOneCurve, 10);
    EXPECT_EQ(TextsOf(Level(ChartMenuItems(rsi.chart(), 10), "Draw")),
              (Texts{"Vertical", "Horizontal", "Grid"}));
    EXPECT_EQ(TextsOf(Level(ChartMenuItems(rsi.chart(), 10), "Grid")), Texts{"On"});
    rsi.chart().view->gridOn = 1;
    EXPECT_EQ(TextsOf(Level(ChartMenuItems(rsi.chart(), 10), "Grid")), Texts{"Off"});
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
    } steps[] = {{0.1, "x 1/4"},  {0.49, "x 1/4"}, {0.5, "x 1/2"}, {3.7, "x 2"},
                 {24.99, "x 16"}, {25.0, "x 25"},  {400.0, "x 50"}};
    for (const auto& s : steps) {
        f.chart().view->resolution = s.stored;
        Texts checked;
        for (const MenuItem& m : resolution(300))
            if (m.checked) {
                EXPECT_TRUE(m.disabled);
                checked.push_back(TextOf(m));
            }
        EXPECT_EQ(checked, Texts{s.checked}) << s.stored;
    }

    // Kinds on common rows have no end point.
    ChartFixture pair("Correlation", LayoutPair, 300);
    EXPECT_EQ(Level(ChartMenuItems(pair.chart(), 1), "Resolution").size(), 9u);
}

} // namespace
} // namespace velorin
