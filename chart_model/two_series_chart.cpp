#include "chart_model/two_series_chart.h"

#include <cstdio>
#include <cstring>

#include "analysis/two_series.h"
#include "base/user_seam.h"
#include "chart_model/desk.h"
#include "chart_model/pairing.h"
#include "chart_model/price_chart.h"
#include "market_data/data_source.h"

namespace velorin {
namespace {

constexpr const char* AppCaption = "QDX-Velorin";
constexpr const char* DisciplineCaption = "QDX-Velorin Trading Discipline";
constexpr const char* NoConnection = "Non Existent Connection To Data source";
constexpr int MinimumRows = 25; // of the chart in front, and common rows of the two

void SayUnless(bool batch, const char* text, const char* caption) {
    if (!batch) Seam().ShowMessage(text, caption, MessageIcon::Information);
}

// Cuts a chart title at its first blank, in place: from then on the chart
// keeps only its instrument word.
void CutToFirstWord(char (&title)[100]) {
    if (char* blank = std::strchr(title, ' ')) *blank = '\0';
}

int CreatePairChart(const char* kindName, const CreationMode& mode, bool overlay) {
    const bool batch = mode.batch();
    Desk& desk = TheDesk();

    WindowId firstWindow = 0;
    Chart* first = nullptr;
    if (batch) {
        firstWindow = chartDefaults.batchFirstChart;
        first = firstWindow ? desk.ChartOf(firstWindow) : nullptr;
    } else {
        first = desk.ActiveChart(&firstWindow);
    }
    if (!first) {
        SayUnless(batch, NoConnection, AppCaption);
        return 0;
    }
    const ChartKindInfo* firstInfo = KindByName(first->kindName);
    if (firstInfo && firstInfo->layout == LayoutCompanion) {
        SayUnless(batch, "Please Select Chart", AppCaption);
        return 0;
    }
    if (!overlay && first->rowCount < MinimumRows) {
        SayUnless(batch, "Insufficient data", DisciplineCaption);
        return 0;
    }

    // The second chart: any window, this one or a companion view included.
    WindowId secondWindow = 0;
    if (batch) {
        secondWindow = chartDefaults.batchSecondChart;
    } else {
        char prompt[160];
        if (overlay)
            std::snprintf(prompt, sizeof prompt, "Overlay Chart 1: ");
        else
            std::snprintf(prompt, sizeof prompt, "%s Data 1: ", kindName);
        secondWindow = desk.PickSecondChart(firstWindow, prompt);
    }
    Chart* second = secondWindow ? desk.ChartOf(secondWindow) : nullptr;
    // The first window may have gone while the user was picking.
    if (!second || desk.ChartOf(firstWindow) != first) {
        SayUnless(batch, NoConnection, AppCaption);
        return 0;
    }

    // An unknown name fails the allocation.
    const ChartKindInfo* info = KindByName(kindName);
    Chart* chart = info && info->layout == LayoutPair ? NewChart(LayoutPair) : nullptr;
    if (!chart) {
        SayUnless(batch, "Memory Allocation For New Window failed - Please close some windows",
                  AppCaption);
        return 0;
    }
    std::snprintf(chart->kindName, sizeof chart->kindName, "%s", kindName);
    chart->kind = info->kind;
    chart->connectionId = first->connectionId;
    chart->sourceSlot = first->sourceSlot;
    chart->secondSourceSlot = -1; // no hold on the second source yet
    chart->hasFullColumns = first->hasFullColumns;
    ChartView& view = *chart->view;
    view.showHighLow = first->view->showHighLow;
    view.showCandle = first->view->showCandle;
    view.showBar = first->view->showBar;
    view.showLine = first->view->showLine;
    view.gridOn = overlay ? 0 : first->view->gridOn;
    view.resolution = batch ? chartDefaults.defaultResolution : first->view->resolution;
    chart->predictorShort = first->predictorShort;
    chart->predictorMedium = first->predictorMedium;
    chart->predictorLong = first->predictorLong;
    chart->analysisParams->period[1] = DefaultCorrelationWindow;
    chart->dataViewWindow = 0;
    chart->levelsViewWindow = 0;
    chart->priceScaleDenominator = 1;
    DataSource* firstSource = SourceAt(first->sourceSlot);
    if (firstSource) ++firstSource->refCount;
    WaitCursor wait;

    DataSource* secondSource = SourceAt(second->sourceSlot);
    PairData& pairs = *chart->pairData;
    if (firstSource && secondSource)
        PairByDate(*firstSource->columns, firstSource->rowCount, *secondSource->columns,
                   secondSource->rowCount, pairs);
    chart->rowCount = firstSource ? firstSource->rowCount : 0;
    chart->secondConnectionId = second->connectionId;
    chart->secondSourceSlot = second->sourceSlot;
    if (secondSource) ++secondSource->refCount;

    // From here a refusal gives back both holds with the record.
    auto refuse = [&](const char* text) {
        SayUnless(batch, text, DisciplineCaption);
        ReleaseChart(chart);
        return 0;
    };
    if (pairs.pairCount < MinimumRows) return refuse("Insufficient data");
    std::int32_t& period = chart->analysisParams->period[1];
    if (pairs.pairCount < period) period = pairs.pairCount;
    if (info->rowMinimum > 0 && pairs.pairCount < info->rowMinimum)
        return refuse(info->rowMinimumMessage);
    if (info->pairEngine) info->pairEngine(*chart);

    // The new chart keeps the first chart's whole title; both source charts
    // are left with their first word, which the caption names.
    std::memcpy(chart->chartTitle, first->chartTitle, sizeof chart->chartTitle);
    CutToFirstWord(first->chartTitle);
    CutToFirstWord(second->chartTitle);
    const int rows = chart->rowCount;
    const char* from = rows > 0 ? firstSource->columns->dateText[0] : "";
    const char* to = rows > 0 ? firstSource->columns->dateText[rows - 1] : "";
    // A caption longer than its field is cut.
    if (std::snprintf(chart->windowCaption, sizeof chart->windowCaption, "%s %s/%s %.20s - %.20s",
                      chart->kindName, first->chartTitle, second->chartTitle, from, to) < 0)
        chart->windowCaption[0] = '\0';

    const ChildWindowRequest request{chart,
                                     info->windowClass,
                                     chart->windowCaption,
                                     batch ? WindowPlacement::FillClient
                                           : WindowPlacement::SystemDefault,
                                     0,
                                     0,
                                     0,
                                     0,
                                     false};
    if (!desk.CreateChild(request)) {
        SayUnless(batch, "Unable to create Window - Please close some", AppCaption);
        ReleaseChart(chart);
        return 0;
    }
    RegisterChart();
    return 1;
}

} // namespace

int CreateTwoSeriesChart(const char* kindName, const CreationMode& mode) {
    return CreatePairChart(kindName, mode, false);
}

int CreateOverlayChart(const char* kindName, const CreationMode& mode) {
    return CreatePairChart(kindName, mode, true);
}

} // namespace velorin
