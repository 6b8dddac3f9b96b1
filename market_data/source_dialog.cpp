#include "market_data/source_dialog.h"

#include <cctype>
#include <cstring>

#include "market_data/data_source.h"
#include "market_data/dde_text.h"

namespace velorin {

SourceLists sourceLists;

void ResetSourceLists() {
    sourceLists = SourceLists{};
}

namespace {

// Add and Delete look at the first 99 entries; the lists hold 100.
constexpr int SearchedRows = 99;

const char* const InvalidTexts[SourceComboCount] = {"Invalid Timer value", "Invalid Item value",
                                                    "Invalid Topic value", "Invalid Source value"};

template <std::size_t N> void SetText(char (&field)[N], const std::string& text) {
    const std::size_t n = text.size() < N - 1 ? text.size() : N - 1;
    std::memcpy(field, text.data(), n);
    field[n] = '\0';
}

void SetRow(int combo, int row, const char* text) {
    char* to = SourceListRow(combo, row);
    const std::size_t width = SourceListWidth(combo);
    std::strncpy(to, text, width - 1);
    to[width - 1] = '\0';
}

int FindRow(int combo, const std::string& text) {
    for (int row = 0; row < SearchedRows; ++row)
        if (text == SourceListRow(combo, row)) return row;
    return -1;
}

bool AllDigits(const std::string& text) {
    for (unsigned char c : text)
        if (!std::isdigit(c)) return false;
    return true;
}

SourceDialogRunner* runner = nullptr;

} // namespace

char* SourceListRow(int combo, int row) {
    switch (combo) {
    case ComboTimer:
        return sourceLists.tickvalList[row];
    case ComboItem:
        return sourceLists.itemList[row];
    case ComboTopic:
        return sourceLists.topicList[row];
    default:
        return sourceLists.sourceList[row];
    }
}

std::size_t SourceListWidth(int combo) {
    switch (combo) {
    case ComboTimer:
        return sizeof sourceLists.tickvalList[0];
    case ComboItem:
        return sizeof sourceLists.itemList[0];
    case ComboTopic:
        return sizeof sourceLists.topicList[0];
    default:
        return sizeof sourceLists.sourceList[0];
    }
}

int SourceListLength(int combo) {
    int n = 0;
    while (n < SourceListRows && SourceListRow(combo, n)[0] != '\0')
        ++n;
    return n;
}

SourceDialogState OpenSourceDialog() {
    FromTickDbRange(marketData.selection);
    SourceDialogState state;
    for (int combo = 0; combo < SourceComboCount; ++combo) {
        const int at = sourceLists.remembered[combo];
        state.selection[combo] = at < SourceListLength(combo) ? at : -1;
        if (state.selection[combo] >= 0) state.text[combo] = SourceListRow(combo, at);
    }
    state.fullQuote = marketData.hasFullColumns != 0;
    state.tickByTick = marketData.fetchIsTick != 0;
    state.offsetTime = ddeFeed.offsetTime != 0;
    const char r = marketData.resolutionCode;
    state.resolution = r == 'w' || r == 'm' ? r : 'd';
    ToTickDbRange(marketData.selection);
    return state;
}

bool ResolutionButtonsShown(const std::string& source, const std::string& topic) {
    const bool shown = IsReuterService(source.c_str()) && (topic == "TS1" || topic == "ts1");
    if (shown) marketData.fetchIsTick = 0;
    return shown;
}

int SourceDialogOk(const SourceDialogState& state) {
    marketData.hasFullColumns = state.fullQuote ? 1 : 0;
    marketData.fetchIsTick = state.tickByTick ? 1 : 0;
    ddeFeed.offsetTime = state.offsetTime ? 1 : 0;
    marketData.resolutionCode = state.resolution == 'm' ? 'm' : state.resolution == 'w' ? 'w' : 'd';
    for (const std::string& text : state.text)
        if (text.empty()) return 1;
    ConnectionSelection& s = marketData.selection;
    SetText(s.currentSource, state.text[ComboSource]);
    SetText(s.currentTopic, state.text[ComboTopic]);
    SetText(s.currentItem, state.text[ComboItem]);
    SetText(s.currentTickval, state.text[ComboTimer]);
    for (int combo = 0; combo < SourceComboCount; ++combo)
        sourceLists.remembered[combo] = state.selection[combo];
    ToTickDbRange(s);
    return 0;
}

const char* SourceDialogAdd(const SourceDialogState& state) {
    for (int combo = 0; combo < SourceComboCount; ++combo) {
        const std::string& text = state.text[combo];
        if (text.empty()) continue;
        if (combo == ComboTimer && !AllDigits(text)) return InvalidTexts[ComboTimer];
        if (FindRow(combo, text) >= 0) continue;
        const int free = SourceListLength(combo);
        if (free < SourceListRows) SetRow(combo, free, text.c_str());
    }
    return nullptr;
}

const char* SourceDialogDelete(const SourceDialogState& state) {
    for (int combo = 0; combo < SourceComboCount; ++combo) {
        const std::string& text = state.text[combo];
        if (text.empty() || state.selection[combo] < 0) continue;
        const int row = FindRow(combo, text);
        if (row < 0) return InvalidTexts[combo];
        for (int r = row; r + 1 < SourceListRows; ++r)
            SetRow(combo, r, SourceListRow(combo, r + 1));
        SourceListRow(combo, SourceListRows - 1)[0] = '\0';
    }
    return nullptr;
}

SourceDialogRunner* InstallSourceDialogRunner(SourceDialogRunner* next) {
    SourceDialogRunner* previous = runner;
    runner = next;
    return previous;
}

int RunSourceDialog() {
    return runner ? runner->RunSourceDialog() : 1;
}

} // namespace velorin
