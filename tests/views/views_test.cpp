// The Data View and Levels View without windows: the cell rules, the
// sheet's fill, "Update" back into the source and its charts, the
// refusals, a layout bringing a Data View back, and the levels' order.
#include <gtest/gtest.h>

#include <cstdio>

#include "chart_model/analysis_chart.h"
#include "rendering/palette.h"
#include "tests/shell/fake_frame.h"
#include "views/data_sheet.h"
#include "views/data_view.h"
#include "views/levels_view.h"

namespace velorin {
namespace {

// Price charts on PriceFileText: close 100 + r % 7, volume 1000 + r.
class Views : public test_support::HeadlessDesk {
  protected:
    Chart& Top() { return *frame.children.back().chart; }
    DataSheet& Sheet() { return *SheetOf(Top()); }
    std::string Cell(int column, int row) {
        char text[CellTextSize];
        FormatCell(Sheet().cell[column][row], column, text, sizeof text);
        return text;
    }
    DataSource& Source() { return *SourceAt(0); }
};

TEST_F(Views, TypedCellsArePositiveNumbersShownInTheirColumnsFormat) {
    const struct {
        const char* typed;
        const char* price; // nullptr: refused
        const char* volume;
    } cases[] = {{"0", nullptr, nullptr},        {"-3", nullptr, nullptr},
                 {"abc", nullptr, nullptr},      {"", nullptr, nullptr},
                 {"nan", nullptr, nullptr},      {"1e999", nullptr, nullptr},
                 {"42.123456", "42.1235", "42"}, {"12abc", "12.0000", "12"},
                 {" 7.5", "7.5000", "8"},        {"2.5", "2.5000", "2"}};
    for (const auto& c : cases) {
        double value = -1.0;
        ASSERT_EQ(AcceptCellText(c.typed, &value), c.price != nullptr) << c.typed;
        if (!c.price) continue;
        char price[CellTextSize], volume[CellTextSize];
        FormatCell(value, 0, price, sizeof price);
        FormatCell(value, SheetVolumeColumn, volume, sizeof volume);
        EXPECT_STREQ(price, c.price);
        EXPECT_STREQ(volume, c.volume);
    }
}

TEST_F(Views, ASourceWithoutVolumeHidesColumnETestingTheNextRowAtCreation) {
    Open(30);
    for (int r = 0; r < 30; ++r) // quotes without volume, as a live feed stages them
        Source().columns->volume[r] = NO_VOLUME_MARKER;
    ASSERT_EQ(CreateDataView(), 1);
    EXPECT_EQ(Sheet().columns, 5);
    EXPECT_TRUE(Sheet().volumeHidden);
    // At creation each row looks at the row after it; the last one finds
    // no marker beyond the rows and shows its own.
    EXPECT_EQ(Cell(SheetVolumeColumn, 28) + "|" + Cell(SheetVolumeColumn, 29), "|-998");
    ReloadSheet(Top());
    EXPECT_EQ(Cell(SheetVolumeColumn, 29), "");
    Sheet().changed = 1;
    ASSERT_EQ(UpdateSourceFromSheet(Top()), 1);
    EXPECT_EQ(Source().columns->volume[29], NO_VOLUME_MARKER); // still without volume
}

TEST_F(Views, UpdateRebuildsTheSourceAndRecomputesEveryChartOnIt) {
    Open(40);
    FrameCommand(frame, cmd::Rsi);
    const WindowId price = frame.children[0].id, rsi = frame.children[1].id;
    const double rsiBefore = frame.children[1].chart->modelSeries->slot[0][39];
    ASSERT_EQ(CreateDataView(), 1);
    const WindowId view = frame.children.back().id;
    EXPECT_STREQ(Top().windowCaption, "Data ACME 1/1/1990 - 1/12/91");
    EXPECT_EQ(Top().kind, 100);
    EXPECT_EQ(Source().refCount, 3);
    EXPECT_EQ(deskRegistry.chartCount, 3);
    EXPECT_EQ(Cell(0, 3) + " " + Cell(1, 3) + " " + Cell(4, 3), "103.0000 102.0000 1");
    EXPECT_EQ(UpdateSourceFromSheet(Top()), 0); // nothing typed: nothing happens
    EXPECT_TRUE(frame.invalidated.empty());
    ASSERT_TRUE(AcceptCellText("123.456789", &Sheet().cell[0][39]));
    Sheet().changed = 1;
    ASSERT_EQ(UpdateSourceFromSheet(Top()), 1);
    EXPECT_EQ(Source().columns->close[39], 123.4568);
    EXPECT_EQ(Source().columns->volume[39], 1.0); // read back as the grid shows it
    EXPECT_EQ(frame.invalidated, (std::vector<WindowId>{rsi, price}));
    EXPECT_EQ(frame.refreshedViews, std::vector<WindowId>{view});
    EXPECT_NE(frame.children[1].chart->modelSeries->slot[0][39], rsiBefore);
    for (const auto& c : frame.children)
        EXPECT_EQ(c.chart->anchorsPending, 1);
    // Three rows deleted go from the source and every chart.
    DeleteSheetRows(Sheet(), 12, 10);
    ASSERT_EQ(UpdateSourceFromSheet(Top()), 1);
    EXPECT_EQ(Source().rowCount, 37);
    EXPECT_STREQ(Source().columns->dateText[10], "1/14/90");
    for (const auto& c : frame.children)
        EXPECT_EQ(c.chart->rowCount, 37);
    // With every row deleted the source keeps its rows and no chart hears.
    frame.invalidated.clear();
    DeleteSheetRows(Sheet(), 0, 36);
    EXPECT_EQ(UpdateSourceFromSheet(Top()), 0);
    EXPECT_EQ(Source().rowCount, 37);
    EXPECT_TRUE(frame.invalidated.empty());
}

TEST_F(Views, OnAFilteredSourceARowEditedTwelvePercentAwayVanishes) {
    marketData.filterOn = 1;
    Open(30);
    ASSERT_EQ(CreateDataView(), 1);
    Sheet().cell[0][20] *= 1.12;
    Sheet().cell[0][21] *= 1.05; // within the band: kept
    Sheet().changed = 1;
    ASSERT_EQ(UpdateSourceFromSheet(Top()), 1);
    EXPECT_EQ(Source().rowCount, 29);
    EXPECT_STREQ(Source().columns->dateText[20], "1/22/90");
    EXPECT_EQ(Source().columns->close[20], 105.0);
}

TEST_F(Views, RefusalsLeaveTheDeskAsItWas) {
    const struct {
        int setup; // 0 empty desk, 1 record fails, 2 sheet fails, 3 desk full, 4 levels on a price
        const char* text;
    } cases[] = {{0, "No window handle"},
                 {1, "Memory Allocation For New Window failed - Please close some windows"},
                 {2, "can't create data view"},
                 {3, "Unable to create Data View - Please close some"},
                 {4, "Please select Fibonacci Chart first"}};
    for (const auto& c : cases) {
        if (c.setup == 1) Open(30);
        const long blocks = blockAllocator.liveBlocks;
        const std::size_t windows = frame.children.size();
        seam.Clear();
        if (c.setup == 1) FailAllocationAfter(0);
        if (c.setup == 2) FailAllocationAfter(2); // after the record and its view
        if (c.setup == 3) deskRegistry.chartCount = MaxCharts;
        EXPECT_EQ(c.setup == 4 ? CreateLevelsView() : CreateDataView(), 0);
        blockAllocator.failCountdown = -1;
        if (c.setup == 3) deskRegistry.chartCount = 1;
        EXPECT_EQ(seam.LastText(), c.text);
        EXPECT_EQ(blockAllocator.liveBlocks, blocks) << c.text;
        EXPECT_EQ(frame.children.size(), windows);
        EXPECT_EQ(c.setup ? Source().refCount : 1, 1);
    }
}

TEST_F(Views, ATickSourceIsReadOnlyAndItsMenuOnlyColours) {
    Open(30);
    Source().tick = 1;
    ASSERT_EQ(CreateDataView(), 1);
    EXPECT_EQ(Sheet().editable, 0);
    const std::vector<MenuItem> tick = DataViewMenu(true), plain = DataViewMenu(false);
    EXPECT_STREQ(tick[0].text, "Colour");
    EXPECT_EQ(plain.size(), tick.size() + 3);
    EXPECT_EQ(std::string(plain[0].text) + plain[1].text + plain[2].text, "UpdateResetDelete");
}

TEST_F(Views, ColourCommandsAndTheCrosshairStep) {
    seam.QueueColour(0x00FF8000);
    EXPECT_TRUE(ChooseSheetColour(cmd::ColHeadingBackground));
    EXPECT_EQ(palette.current[20], MakeColour(0xFF, 0x80, 0x00));
    EXPECT_EQ(seam.colourRequests.size(), 1u);
    EXPECT_TRUE(ChooseSheetColour(cmd::RowHeadingForeground)); // cancelled
    EXPECT_EQ(palette.current[23], palette.defaults[23]);
    EXPECT_FALSE(ChooseSheetColour(cmd::SheetPalette));
    const FollowStep steps[] = {CrosshairFollowStep(10, 10), CrosshairFollowStep(10, 9),
                                CrosshairFollowStep(10, 11), CrosshairFollowStep(10, 12)};
    EXPECT_EQ(std::vector<FollowStep>(steps, steps + 4),
              (std::vector<FollowStep>{FollowStep::None, FollowStep::LineUp, FollowStep::LineDown,
                                       FollowStep::MoveCursor}));
}

TEST_F(Views, ALayoutBringsTheDataViewBackInItsPlace) {
    Open(30);
    ASSERT_EQ(CreateDataView(), 1);
    frame.children[1].x = 30, frame.children[1].y = 40;
    frame.children[1].width = 485, frame.children[1].height = 300;
    seam.QueueFile(dir.PathOf("desk.vl"));
    FrameCommand(frame, cmd::SaveAs);
    FrameCommand(frame, cmd::New);
    seam.QueueFile(dir.PathOf("desk.vl"));
    FrameCommand(frame, cmd::Open);
    ASSERT_EQ(frame.children.size(), 2u) << seam.LastText();
    const auto& back = frame.children[1];
    EXPECT_STREQ(back.chart->kindName, "Data View");
    EXPECT_EQ(std::vector<int>({back.x, back.y, back.width, back.height}),
              (std::vector<int>{30, 40, 485, 300}));
    EXPECT_EQ(SheetOf(*back.chart)->rows, 30);
}

TEST_F(Views, TheLevelsViewListsTheTwelveLevelsHighestFirst) {
    Open(300);
    FrameCommand(frame, cmd::Fibonacci);
    const WindowId fibonacci = frame.children.back().id;
    ASSERT_EQ(CreateLevelsView(), 1) << seam.LastText();
    EXPECT_EQ(Top().levelsViewWindow, fibonacci);
    EXPECT_EQ(std::string(Top().windowCaption), "Levels " + std::string(Top().chartTitle));
    EXPECT_EQ(Source().refCount, 3);
    LevelsRow rows[LevelsRowCount];
    LevelsRows(*frame.children[1].chart, rows);
    std::string labels;
    for (int i = 0; i < LevelsRowCount; ++i) {
        labels += rows[i].label;
        char text[400];
        std::snprintf(text, sizeof text, "%4f", rows[i].value);
        EXPECT_STREQ(rows[i].text, text);
        EXPECT_GE(rows[i > 0 ? i - 1 : 0].value, rows[i].value);
    }
    for (const char* name : {" Resistance 2", " Level 7", " Support 2", " Price"})
        EXPECT_NE(labels.find(name), std::string::npos) << name;
    EXPECT_EQ(labels.find(" Resistance 2"), 0u); // the envelope plus two deviations is on top
    RecomputeChart(fibonacci, *frame.children[1].chart);
    EXPECT_EQ(frame.levelsUpdates, 1);
}

} // namespace
} // namespace velorin
