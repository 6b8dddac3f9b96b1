#include "market_data/data_source.h"

#include <cstring>

namespace velorin {

MarketDataState marketData;

namespace {

constexpr std::uint16_t ColumnBytes(int column) {
    // Column 0 is the date text; the six others are doubles.
    return static_cast<std::uint16_t>(column == 0 ? MaxRows * DateTextSize
                                                  : MaxRows * static_cast<int>(sizeof(double)));
}
static_assert(MaxRows * DateTextSize <= 65535, "date text column must fit one block");
static_assert(MaxRows * sizeof(double) <= 65535, "a column must fit one block");
static_assert(FileTextSize <= 65535, "text buffers must fit one block");
static_assert(sizeof(DataSource) <= 65535, "the record must fit one block");

// Stores the address of column `column` (0..6, in DataColumns order).
void SetColumn(DataColumns& columns, int column, void* address) {
    switch (column) {
    case 0:
        columns.dateText = static_cast<DateText*>(address);
        break;
    case 1:
        columns.dateNumber = static_cast<double*>(address);
        break;
    case 2:
        columns.low = static_cast<double*>(address);
        break;
    case 3:
        columns.high = static_cast<double*>(address);
        break;
    case 4:
        columns.open = static_cast<double*>(address);
        break;
    case 5:
        columns.close = static_cast<double*>(address);
        break;
    default:
        columns.volume = static_cast<double*>(address);
        break;
    }
}

bool SlotInRange(int slot) {
    return slot >= 0 && slot < MaxSourceSlots;
}

} // namespace

void ResetMarketDataState() {
    // The staging blocks are not touched: their handles and addresses stay.
    const DataColumns fetchColumns = marketData.fetchColumns;
    BlockHandle fetchBlockHandles[7];
    std::memcpy(fetchBlockHandles, marketData.fetchBlockHandles, sizeof fetchBlockHandles);
    char* const fileText = marketData.fileText;
    char* const tokenText = marketData.tokenText;
    const BlockHandle fileTextHandle = marketData.fileTextHandle;
    const BlockHandle tokenTextHandle = marketData.tokenTextHandle;

    std::memset(&marketData, 0, sizeof marketData);

    marketData.fetchColumns = fetchColumns;
    std::memcpy(marketData.fetchBlockHandles, fetchBlockHandles, sizeof fetchBlockHandles);
    marketData.fileText = fileText;
    marketData.tokenText = tokenText;
    marketData.fileTextHandle = fileTextHandle;
    marketData.tokenTextHandle = tokenTextHandle;
    marketData.hasFullColumns = 1;
    marketData.filterOn = 0;
    marketData.filterBand = 0.1;
    marketData.resolutionCode = 'd';
}

bool AllocateStagingBlocks() {
    // A second call must not leak the first set.
    ReleaseStagingBlocks();
    for (int column = 0; column < 7; ++column) {
        void* p = AllocateBlock(&marketData.fetchBlockHandles[column], ColumnBytes(column));
        if (!p) return false;
        SetColumn(marketData.fetchColumns, column, p);
    }
    marketData.fileText = static_cast<char*>(
        AllocateBlock(&marketData.fileTextHandle, static_cast<std::uint16_t>(FileTextSize)));
    if (!marketData.fileText) return false;
    marketData.tokenText = static_cast<char*>(
        AllocateBlock(&marketData.tokenTextHandle, static_cast<std::uint16_t>(FileTextSize)));
    if (!marketData.tokenText) return false;
    return true;
}

void ReleaseStagingBlocks() {
    ReleaseBlock(marketData.tokenTextHandle);
    marketData.tokenTextHandle = nullptr;
    marketData.tokenText = nullptr;
    ReleaseBlock(marketData.fileTextHandle);
    marketData.fileTextHandle = nullptr;
    marketData.fileText = nullptr;
    for (int column = 6; column >= 0; --column) {
        ReleaseBlock(marketData.fetchBlockHandles[column]);
        marketData.fetchBlockHandles[column] = nullptr;
        SetColumn(marketData.fetchColumns, column, nullptr);
    }
}

int NewDataSource(int slot) {
    if (!SlotInRange(slot)) return 0;
    // 1. Clear the slot, then the record itself.
    marketData.dataSources[slot] = nullptr;
    BlockHandle recordHandle = nullptr;
    auto* source = static_cast<DataSource*>(
        AllocateBlock(&recordHandle, static_cast<std::uint16_t>(sizeof(DataSource))));
    if (!source) return 0;
    source->blockHandles[0] = recordHandle;
    for (int i = 1; i < 9; ++i)
        source->blockHandles[i] = nullptr;
    marketData.dataSources[slot] = source;

    // 2. The DataColumns record.
    source->columns = static_cast<DataColumns*>(
        AllocateBlock(&source->blockHandles[1], static_cast<std::uint16_t>(sizeof(DataColumns))));
    if (!source->columns) return 0;

    // 3. The seven arrays in column order. 4: a failure leaves the partial
    // record in place for FreeDataSource.
    for (int column = 0; column < 7; ++column) {
        void* p = AllocateBlock(&source->blockHandles[2 + column], ColumnBytes(column));
        if (!p) return 0;
        SetColumn(*source->columns, column, p);
    }
    return 1;
}

void FreeDataSource(int slot) {
    if (!SlotInRange(slot)) return;
    DataSource* source = marketData.dataSources[slot];
    if (!source) return;
    for (int i = 8; i >= 1; --i) {
        if (source->blockHandles[i]) ReleaseBlock(source->blockHandles[i]);
        source->blockHandles[i] = nullptr;
    }
    // The record holds its own handle: read it, then release it last.
    BlockHandle recordHandle = source->blockHandles[0];
    marketData.dataSources[slot] = nullptr;
    ReleaseBlock(recordHandle);
}

DataSource* SourceAt(int slot) {
    return SlotInRange(slot) ? marketData.dataSources[slot] : nullptr;
}

} // namespace velorin
