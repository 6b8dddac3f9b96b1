#include "chart_model/period_dialogs.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "analysis/fibonacci.h"
#include "market_data/data_source.h"
#include "base/series.h"
#include "base/user_seam.h"
#include "resources/command_ids.h"

namespace velorin {
namespace {

// The combo boxes hand back at most this many characters of their text.
constexpr std::size_t MaxFieldText = 50;

// Numbers are written and read without the C library's locale: the desktop
// toolkit sets LC_NUMERIC from the user's settings, and these texts always
// use a decimal point.
std::string FormatInt(std::int32_t value) {
    char buffer[16];
    const auto r = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, r.ptr);
}

// printf's "%<width>.<precision>f": fixed notation, padded on the left.
std::string FormatFixed(double value, int precision, int width) {
    char buffer[400]; // the widest double in fixed notation has 309 digits
    const auto r =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, precision);
    std::string text(buffer, r.ptr);
    if (static_cast<int>(text.size()) < width)
        text.insert(0, static_cast<std::size_t>(width) - text.size(), ' ');
    return text;
}

std::string_view TrimBlanks(std::string_view text) {
    const auto blank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && blank(text.back()))
        text.remove_suffix(1);
    return text;
}

// What the user typed, as the dialogs read it: the first 50 characters, with
// blanks before and after dropped.
std::string_view FieldText(const std::string& text) {
    return TrimBlanks(std::string_view(text).substr(0, std::min(text.size(), MaxFieldText)));
}

// A whole number is written with decimal digits alone, after an optional
// sign, and must fit in 32 bits; blanks around it do not count (" 12 " is
// 12). Anything else in the text makes it no
// number: "12abc", "1.0", "1e3" and "" are refused rather than read as their
// leading digits, so that a slip of the keyboard never sets a period the
// user did not see.
std::optional<std::int32_t> ReadWholeNumber(const std::string& raw) {
    std::string_view text = FieldText(raw);
    bool negative = false;
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    if (text.empty() || text.front() < '0' || text.front() > '9') return std::nullopt;
    std::int64_t value = 0;
    const auto r = std::from_chars(text.data(), text.data() + text.size(), value);
    if (r.ec != std::errc() || r.ptr != text.data() + text.size()) return std::nullopt;
    if (negative) value = -value;
    if (value < INT32_MIN || value > INT32_MAX) return std::nullopt;
    return static_cast<std::int32_t>(value);
}

// A fraction is a decimal number, optionally signed, with or without a
// decimal point and an exponent ("0.5", ".5", "1", "5e-1"); the whole text
// must be the number.
std::optional<double> ReadFraction(const std::string& raw) {
    std::string_view text = FieldText(raw);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    if (text.empty()) return std::nullopt;
    // from_chars also reads "inf" and "nan"; only digits may start a number.
    const char first = text.front() == '-' && text.size() > 1 ? text[1] : text.front();
    if (!(first == '.' || (first >= '0' && first <= '9'))) return std::nullopt;
    double value = 0.0;
    const auto r =
        std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::general);
    if (r.ec != std::errc() || r.ptr != text.data() + text.size()) return std::nullopt;
    return value;
}

bool IsSmoothingFraction(double value) {
    return value > 0.0 && value <= 1.0;
}

std::vector<std::string> WholeNumberList(int from, int to) {
    std::vector<std::string> list;
    list.reserve(static_cast<std::size_t>(to - from + 1));
    for (int v = from; v <= to; ++v)
        list.push_back(FormatInt(v));
    return list;
}

// 0.100 to 1.000, built by adding 0.1 at each step; the last sum lies just under 1 and shows as
// "1.000".
std::vector<std::string> FractionList() {
    std::vector<std::string> list;
    double value = 0.1;
    for (int i = 0; i < 10; ++i) {
        list.push_back(FormatFixed(value, 3, 5));
        value += 0.1;
    }
    return list;
}

ComboField Field(int controlId, std::string label, std::string icon, std::string text,
                 std::vector<std::string> choices) {
    ComboField field;
    field.controlId = controlId;
    field.label = std::move(label);
    field.icon = std::move(icon);
    field.text = std::move(text);
    field.choices = std::move(choices);
    return field;
}

// Which parameter the one-value dialog edits, by the chart's kind.
enum class PeriodRule {
    None,        // the kind has nothing the dialog could change
    Period,      // a whole number above 1 into the selected period
    StochPeriod, // as Period, and periods 1 and 3 are kept equal
    Smoothing,   // a fraction into smoothing[0]
    LongWindow,  // a whole number of at least 10 into period 1
};

PeriodRule RuleOf(int kind) {
    switch (kind) {
    case 3:
    case 5:
    case 6:
    case 7:
    case 8:
    case 10:
    case 14:
    case 21:
    case 25:
        return PeriodRule::Period;
    case 9:
        return PeriodRule::StochPeriod;
    case 4:
        return PeriodRule::Smoothing;
    case 16:
    case 17:
        return PeriodRule::LongWindow;
    default:
        return PeriodRule::None;
    }
}

constexpr int PeriodCount =
    static_cast<int>(sizeof(AnalysisParams::period) / sizeof(AnalysisParams::period[0]));

} // namespace

// A kind without an editable value, or a curve number outside the periods,
// opens no dialog and counts as Cancel: the caller then recomputes nothing.
int RunPeriodDialog(Chart& chart, int selectedCurve) {
    const PeriodRule rule = RuleOf(chart.kind);
    if (rule == PeriodRule::None) return 1;
    std::int32_t* periods = chart.analysisParams ? chart.analysisParams->period : nullptr;
    const bool usesSelected = rule == PeriodRule::Period || rule == PeriodRule::StochPeriod;
    if (usesSelected && (selectedCurve < 1 || selectedCurve >= PeriodCount)) return 1;
    if (rule != PeriodRule::Smoothing && periods == nullptr) return 1;

    ComboDialog dialog;
    dialog.name = "PERIOD";
    dialog.title = "Period";
    switch (rule) {
    case PeriodRule::Smoothing:
        dialog.fields.push_back(Field(cmd::PeriodField, "", "GREEN",
                                      FormatFixed(chart.smoothing[0], 3, 5), FractionList()));
        break;
    case PeriodRule::LongWindow:
        dialog.fields.push_back(
            Field(cmd::PeriodField, "", "GREEN", FormatInt(periods[1]), WholeNumberList(10, 1000)));
        break;
    default:
        dialog.fields.push_back(Field(cmd::PeriodField, "", "GREEN",
                                      FormatInt(periods[selectedCurve]), WholeNumberList(2, 200)));
        break;
    }

    if (Seam().RunComboDialog(dialog) != 0) return 1;
    if (dialog.fields.empty()) return 0;
    const std::string& typed = dialog.fields[0].text;

    switch (rule) {
    case PeriodRule::Smoothing:
        if (const auto v = ReadFraction(typed); v && IsSmoothingFraction(*v))
            chart.smoothing[0] = *v;
        break;
    case PeriodRule::LongWindow:
        if (const auto v = ReadWholeNumber(typed); v && *v >= 10) periods[1] = *v;
        break;
    case PeriodRule::Period:
    case PeriodRule::StochPeriod:
        if (const auto v = ReadWholeNumber(typed); v && *v > 1) {
            periods[selectedCurve] = *v;
            if (rule == PeriodRule::StochPeriod) {
                if (selectedCurve == 3) periods[1] = periods[3];
                if (selectedCurve == 1) periods[3] = periods[1];
            }
        }
        break;
    case PeriodRule::None:
        break;
    }
    return 0;
}

int RunPeriodThreeDialog(Chart& chart) {
    ComboDialog dialog;
    dialog.name = "PERIODTHREE";
    dialog.title = "Periods";
    dialog.fields.push_back(Field(cmd::ShortTermField, "Short Term", "RED",
                                  FormatFixed(chart.smoothing[1], 3, 5), FractionList()));
    dialog.fields.push_back(Field(cmd::LongTermField, "Long Term", "GREEN",
                                  FormatFixed(chart.smoothing[0], 3, 5), FractionList()));
    dialog.fields.push_back(Field(cmd::SignalField, "Signal", "YELLOW",
                                  FormatFixed(chart.smoothing[2], 3, 5), FractionList()));

    if (Seam().RunComboDialog(dialog) != 0) return 1;
    if (dialog.fields.size() != 3) return 0;
    const auto shortTerm = ReadFraction(dialog.fields[0].text);
    const auto longTerm = ReadFraction(dialog.fields[1].text);
    const auto signal = ReadFraction(dialog.fields[2].text);
    if (!shortTerm || !longTerm || !signal) return 0;
    if (!IsSmoothingFraction(*shortTerm) || !IsSmoothingFraction(*longTerm) ||
        !IsSmoothingFraction(*signal) || !(*shortTerm < *longTerm))
        return 0;
    chart.smoothing[0] = *longTerm;
    chart.smoothing[1] = *shortTerm;
    chart.smoothing[2] = *signal;
    return 0;
}

int RunFracDialog(Chart& chart) {
    static constexpr std::array<std::int32_t, 7> Denominators = {1, 8, 16, 32, 64, 128, 256};
    std::vector<std::string> list;
    for (std::int32_t d : Denominators)
        list.push_back(FormatInt(d));

    ComboDialog dialog;
    dialog.name = "FRAC";
    dialog.title = "Price Scale";
    dialog.fields.push_back(Field(cmd::FracField, "", "GREEN",
                                  FormatInt(chart.priceScaleDenominator), std::move(list)));

    if (Seam().RunComboDialog(dialog) != 0) return 1;
    // Whatever is not one of the listed denominators means a decimal scale.
    std::int32_t denominator = 1;
    if (!dialog.fields.empty()) {
        const auto v = ReadWholeNumber(dialog.fields[0].text);
        if (v && std::find(Denominators.begin(), Denominators.end(), *v) != Denominators.end())
            denominator = *v;
    }
    chart.priceScaleDenominator = denominator;
    return 0;
}

// A chart without its Fibonacci blocks has no levels to show. A source that
// is gone (or empty) shows every level as MISSING_VALUE.
std::array<double, 12> ChartFibonacciLevels(const Chart& chart) {
    static_assert(FibonacciLevelCount == 12);
    if (chart.fibonacciExtra == nullptr || chart.modelSeries == nullptr)
        return ComputeFibonacciLevels(nullptr, nullptr, nullptr, nullptr, 0.0, 0);
    const FibonacciExtra& extra = *chart.fibonacciExtra;
    const double* lines[FibonacciLineCount];
    bool complete = extra.upperEnvelope != nullptr && extra.lowerEnvelope != nullptr;
    for (int k = 0; k < FibonacciLineCount; ++k) {
        lines[k] = chart.modelSeries->slot[k];
        complete = complete && lines[k] != nullptr;
    }
    const DataSource* source = SourceAt(chart.sourceSlot);
    std::int32_t n = 0;
    const double* close = nullptr;
    if (complete && source != nullptr && source->columns != nullptr &&
        source->columns->close != nullptr) {
        n = std::clamp<std::int32_t>(source->rowCount, 0, MaxRows);
        close = source->columns->close;
    }
    return ComputeFibonacciLevels(close, lines, extra.upperEnvelope, extra.lowerEnvelope,
                                  extra.priceStdev, n);
}

void ShowFibonacciDialog(const Chart& chart) {
    if (chart.fibonacciExtra == nullptr || chart.modelSeries == nullptr) return;
    const std::array<double, FibonacciLevelCount> levels = ChartFibonacciLevels(chart);
    // The keys: the envelope levels yellow, the seven averages each in a
    // colour of its own, the price white.
    static constexpr const char* icons[FibonacciLevelCount] = {
        "YELLOW", "YELLOW", "GREEN",   "BLUE",   "RED",    "UNI",
        "VIOLET", "GRAY",   "DYELLOW", "YELLOW", "YELLOW", "WHITE"};
    ValuesDialog dialog;
    dialog.name = "FIBONACCI";
    dialog.title = "Fibonacci";
    for (int i = 0; i < FibonacciLevelCount; ++i) {
        dialog.rows.emplace_back(FibonacciLevelNames[static_cast<std::size_t>(i)],
                                 FormatFixed(levels[static_cast<std::size_t>(i)], 6, 0));
        dialog.icons.emplace_back(icons[i]);
    }
    Seam().ShowValuesDialog(dialog);
}

} // namespace velorin
