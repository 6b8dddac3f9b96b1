#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "chart_model/chart.h"
#include "chart_model/period_dialogs.h"
#include "market_data/data_source.h"
#include "tests/support/recording_seam.h"

namespace velorin {
namespace {

using Texts = std::vector<std::string>;

class PeriodDialogs : public ::testing::Test {
  protected:
    void TearDown() override {
        for (Chart* c : charts)
            FreeChartBlocks(c);
        FreeDataSource(7);
    }
    Chart& MakeChart(int kind, int layout = LayoutFourCurves) {
        charts.push_back(NewChart(layout));
        charts.back()->kind = kind;
        return *charts.back();
    }
    // Runs `dialog` once with `typed` as the answer; it must end as OK.
    template <typename F> void Type(F dialog, Texts typed) {
        seam.QueueComboAnswer(std::move(typed));
        EXPECT_EQ(dialog(), 0);
    }
    const ComboField& Shown(std::size_t i = 0) const { return seam.comboDialogs.back().fields[i]; }

    test_support::RecordingSeam seam;
    std::vector<Chart*> charts;
};

TEST_F(PeriodDialogs, DialogsOpenOnTheCurrentValuesWithTheirLists) {
    Chart& rma = MakeChart(3);
    rma.analysisParams->period[2] = 21;
    EXPECT_EQ(RunPeriodDialog(rma, 2), 1); // nothing scripted: Cancel
    EXPECT_EQ(Shown().text, "21");
    ASSERT_EQ(Shown().choices.size(), 199u);
    EXPECT_EQ(Shown().choices.back(), "200");

    Chart& esma = MakeChart(4, LayoutOneCurve);
    esma.smoothing[0] = 0.2;
    RunPeriodDialog(esma, 1);
    EXPECT_EQ(Shown().text, "0.200");
    EXPECT_EQ(Shown().choices, Texts({"0.100", "0.200", "0.300", "0.400", "0.500", "0.600", "0.700",
                                      "0.800", "0.900", "1.000"}));

    Chart& macd = MakeChart(26, LayoutThreeCurves);
    macd.smoothing[0] = 0.075, macd.smoothing[1] = 0.15, macd.smoothing[2] = 0.2;
    EXPECT_EQ(RunPeriodThreeDialog(macd), 1);
    EXPECT_EQ(Shown(0).text + Shown(1).text + Shown(2).text,
              "0.1500.0750.200"); // short, long, signal

    Chart& frac = MakeChart(1, LayoutPlain);
    frac.priceScaleDenominator = 32;
    EXPECT_EQ(RunFracDialog(frac), 1);
    EXPECT_EQ(Shown().choices, Texts({"1", "8", "16", "32", "64", "128", "256"}));

    const std::size_t shownSoFar = seam.comboDialogs.size();
    EXPECT_EQ(RunPeriodDialog(frac, 1), 1); // "Price" has no period
    EXPECT_EQ(RunPeriodDialog(rma, 9), 1);  // beyond the periods
    EXPECT_EQ(seam.comboDialogs.size(), shownSoFar);
}

TEST_F(PeriodDialogs, PeriodTakesOnlyWholeNumbersAboveOne) {
    Chart& c = MakeChart(6);
    const std::pair<std::string, int> cases[] = {
        {"300", 300},
        {"1", 300},
        {"abc", 300},
        {"12abc", 300},
        {"1.0", 300},
        {"--5", 300},
        {"99999999999", 300},
        {" 12 ", 12},
        {"+13", 13},
        {std::string(48, ' ') + "300", 30}, // only the first 50 characters are read
    };
    for (const auto& [typed, expected] : cases) {
        Type([&] { return RunPeriodDialog(c, 1); }, {typed});
        EXPECT_EQ(c.analysisParams->period[1], expected) << '"' << typed << '"';
    }
    EXPECT_EQ(seam.MessageCount(), 0u);
}

TEST_F(PeriodDialogs, StochasticsKeepsTheFirstAndThirdPeriodsEqual) {
    Chart& c = MakeChart(9);
    std::int32_t* p = c.analysisParams->period;
    p[1] = 14, p[2] = 5, p[3] = 14, p[4] = 21;
    Type([&] { return RunPeriodDialog(c, 3); }, {"9"});
    Type([&] { return RunPeriodDialog(c, 2); }, {"6"});
    Type([&] { return RunPeriodDialog(c, 4); }, {"30"});
    EXPECT_EQ(std::vector<int>({p[1], p[2], p[3], p[4]}), std::vector<int>({9, 6, 9, 30}));
    Type([&] { return RunPeriodDialog(c, 1); }, {"7"});
    EXPECT_EQ(p[3], 7);
}

TEST_F(PeriodDialogs, FractionsAndWindowsHaveTheirOwnBounds) {
    Chart& esma = MakeChart(4, LayoutOneCurve);
    esma.smoothing[0] = 0.2;
    for (const char* refused : {"1.5", "0", "-0.5", "nan", "inf", "0.5x"})
        Type([&] { return RunPeriodDialog(esma, 1); }, {refused});
    EXPECT_EQ(esma.smoothing[0], 0.2);
    Type([&] { return RunPeriodDialog(esma, 1); }, {"1"});
    EXPECT_EQ(esma.smoothing[0], 1.0);

    Chart& corr = MakeChart(17, LayoutPair);
    corr.analysisParams->period[1] = 100;
    Type([&] { return RunPeriodDialog(corr, 3); }, {"9"});
    EXPECT_EQ(Shown().choices.size(), 991u); // 10 to 1000
    EXPECT_EQ(corr.analysisParams->period[1], 100);
    Type([&] { return RunPeriodDialog(corr, 3); }, {"10"});
    EXPECT_EQ(corr.analysisParams->period[1], 10);

    Chart& macd = MakeChart(26, LayoutThreeCurves);
    macd.smoothing[0] = 0.075, macd.smoothing[1] = 0.15, macd.smoothing[2] = 0.2;
    for (const Texts& refused : {Texts{"0.3", "0.1", "0.2"}, Texts{"0.1", "0.1", "0.2"},
                                 Texts{"0.1", "0.3", "1.5"}, Texts{"0.1", "x", "0.2"}})
        Type([&] { return RunPeriodThreeDialog(macd); }, refused);
    EXPECT_EQ(std::vector<double>(macd.smoothing, macd.smoothing + 3),
              std::vector<double>({0.075, 0.15, 0.2}));
    Type([&] { return RunPeriodThreeDialog(macd); }, {"0.1", "0.3", "1"});
    EXPECT_EQ(std::vector<double>(macd.smoothing, macd.smoothing + 3),
              std::vector<double>({0.3, 0.1, 1.0}));
}

TEST_F(PeriodDialogs, PriceScaleFallsBackToDecimal) {
    Chart& c = MakeChart(1, LayoutPlain);
    for (const auto& [typed, expected] :
         {std::pair{"64", 64}, {"4", 1}, {"256", 256}, {"abc", 1}}) {
        Type([&] { return RunFracDialog(c); }, {typed});
        EXPECT_EQ(c.priceScaleDenominator, expected) << typed;
    }
}

TEST_F(PeriodDialogs, FibonacciShowsTheTwelveLevelsOfTheLastRow) {
    Chart& c = MakeChart(19, LayoutFibonacci);
    ASSERT_EQ(NewDataSource(7), 1);
    DataSource* s = SourceAt(7);
    c.sourceSlot = 7;
    s->rowCount = 300;
    s->columns->close[299] = 101.25;
    for (int k = 0; k < 7; ++k)
        c.modelSeries->slot[k][299] = 100.0 - k;
    c.fibonacciExtra->upperEnvelope[299] = 110.0;
    c.fibonacciExtra->lowerEnvelope[299] = 90.5;
    c.fibonacciExtra->priceStdev = 1.5;

    ShowFibonacciDialog(c);
    ASSERT_EQ(seam.valuesDialogs.size(), 1u);
    Texts shown;
    for (const auto& row : seam.valuesDialogs[0].rows)
        shown.push_back(row.second);
    EXPECT_EQ(shown, Texts({"113.000000", "111.500000", "100.000000", "99.000000", "98.000000",
                            "97.000000", "96.000000", "95.000000", "94.000000", "89.000000",
                            "87.500000", "101.250000"}));
}

} // namespace
} // namespace velorin
