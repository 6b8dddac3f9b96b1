#include "chart_model/period_dialogs.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "desk_fixture.h"

namespace velorin {
namespace {

using Texts = std::vector<std::string>;

class PeriodDialogs : public testing::DeskTest {
  protected:
    Chart& MakeChart(int kind, int layout) {
        desk.made.push_back(NewChart(layout)); // released by the fixture
        desk.made.back()->kind = kind;
        return *desk.made.back();
    }
    // Runs `dialog` once with `typed` as the answer; it must end as OK.
    template <typename F> void Type(F dialog, Texts typed) {
        seam.QueueComboAnswer(std::move(typed));
        EXPECT_EQ(dialog(), 0);
    }
};

TEST_F(PeriodDialogs, TypedValuesOutsideTheRulesLeaveTheChartAsItWas) {
    Chart& c = MakeChart(6, LayoutFourCurves);
    EXPECT_EQ(RunPeriodDialog(c, 9), 1);                         // beyond the periods: no dialog
    EXPECT_EQ(RunPeriodDialog(MakeChart(1, LayoutPlain), 1), 1); // "Price" has no period
    EXPECT_TRUE(seam.comboDialogs.empty());
    c.analysisParams->period[1] = 21;
    // Only the first 50 characters are read.
    const std::pair<std::string, int> periods[] = {
        {"300", 300}, {"1", 300},          {"12abc", 300},
        {"1.0", 300}, {"--5", 300},        {" 12 ", 12},
        {"+13", 13},  {"99999999999", 13}, {std::string(48, ' ') + "300", 30}};
    for (const auto& [typed, expected] : periods) {
        Type([&] { return RunPeriodDialog(c, 1); }, {typed});
        EXPECT_EQ(c.analysisParams->period[1], expected) << '"' << typed << '"';
    }
    EXPECT_EQ(seam.comboDialogs[0].fields[0].text, "21"); // it opens on the current value
    Chart& esma = MakeChart(4, LayoutOneCurve);
    esma.smoothing[0] = 0.2;
    for (const char* refused : {"1.5", "0", "-0.5", "nan", "inf", "0.5x"})
        Type([&] { return RunPeriodDialog(esma, 1); }, {refused});
    EXPECT_EQ(esma.smoothing[0], 0.2);
    Type([&] { return RunPeriodDialog(esma, 1); }, {"1"});
    EXPECT_EQ(esma.smoothing[0], 1.0);
    EXPECT_EQ(seam.MessageCount(), 0u);
}

TEST_F(PeriodDialogs, MacdTakesShortBelowLongAndStochasticsKeepsPeriodsOneAndThreeEqual) {
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
    Chart& st = MakeChart(9, LayoutFourCurves);
    std::int32_t* p = st.analysisParams->period;
    p[1] = 14, p[2] = 5, p[3] = 14, p[4] = 21;
    for (const auto& typed : {std::pair{3, "9"}, {2, "6"}, {4, "30"}})
        Type([&] { return RunPeriodDialog(st, typed.first); }, {typed.second});
    EXPECT_EQ(std::vector<int>({p[1], p[2], p[3], p[4]}), std::vector<int>({9, 6, 9, 30}));
    Type([&] { return RunPeriodDialog(st, 1); }, {"7"});
    EXPECT_EQ(p[3], 7);
}

} // namespace
} // namespace velorin
