// Arbitrary bytes into the database feed's readers of outside text:
//
//  - the bytes as a .sql file, read back through LoadSqlFile (as a layout
//    restore does): the text stays within its buffer and holds no line end
//    and no double quote;
//  - the first three lines as a stored source, topic and item, split back
//    into the selection, and the statement built from it: within 1,024 bytes;
//  - the bytes as a driver's result rows (8 bytes a row: year, month, day,
//    a price and a volume) through RunPriceQuery and ConnectDataSource: at
//    most 1,999 rows, dates rising strictly, no zero volume.
// Invariants are checked with abort(), so libFuzzer reports them.

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "market_data/connect.h"
#include "market_data/data_source.h"
#include "market_data/date.h"
#include "market_data/odbc_calls.h"
#include "market_data/odbc_feed.h"
#include "market_data/odbc_sql_file.h"
#include "market_data/odbc_state.h"

namespace {

using namespace velorin;

const std::uint8_t* rowBytes = nullptr;
std::size_t rowCount = 0;

// A driver whose result is six columns of rows taken from the input.
class BytesDriver final : public OdbcCalls {
  public:
    short AllocEnv(OdbcHandle* h) override { return Give(h); }
    short AllocConnect(OdbcHandle, OdbcHandle* h) override { return Give(h); }
    short Connect(OdbcHandle, const char*, const char*, const char*) override { return 0; }
    short AllocStmt(OdbcHandle, OdbcHandle* h) override { return Give(h); }
    short FreeStmt(OdbcHandle, int) override { return 0; }
    short Disconnect(OdbcHandle) override { return 0; }
    short FreeConnect(OdbcHandle) override { return 0; }
    short FreeEnv(OdbcHandle) override { return 0; }
    short Cancel(OdbcHandle) override { return 0; }
    short Prepare(OdbcHandle, const char*) override { return 0; }
    short BindTextParameter(OdbcHandle, int, const char*, int) override { return 0; }
    short Execute(OdbcHandle) override {
        next_ = 0;
        return 0;
    }
    short NumResultCols(OdbcHandle, short* n) override {
        *n = 6;
        return 0;
    }
    short DescribeCol(OdbcHandle, int column, char*, int, short* type) override {
        *type = column == 1 ? SqlTypeDate : SqlTypeDouble;
        return 0;
    }
    short BindDateColumn(OdbcHandle, int, OdbcDate* t) override {
        date_ = t;
        return 0;
    }
    short BindDoubleColumn(OdbcHandle, int column, double* t) override {
        values_[column] = t;
        return 0;
    }
    short Fetch(OdbcHandle) override {
        if (next_ >= rowCount) return OdbcNoData;
        const std::uint8_t* b = rowBytes + 8 * next_++;
        date_->year = static_cast<std::int16_t>(1900 + b[0] + (b[1] & 0x7F));
        date_->month = b[2] % 14;
        date_->day = b[3] % 33;
        const double price = (b[4] | (b[5] << 8)) / 100.0;
        for (int c = 2; c <= 5; ++c)
            *values_[c] = price;
        *values_[6] = b[6] < 16 ? 0.0 : b[6] * 10.0 + b[7];
        return 0;
    }

  private:
    short Give(OdbcHandle* h) {
        *h = reinterpret_cast<OdbcHandle>(++handles_);
        return 0;
    }
    std::uintptr_t handles_ = 0;
    std::size_t next_ = 0;
    OdbcDate* date_ = nullptr;
    double* values_[7] = {};
} bytesDriver;

void Require(bool condition) {
    if (!condition) std::abort();
}

std::string TempPath() {
    static const std::string path = [] {
        char name[] = "/tmp/velorin_fuzz_odbc_XXXXXX";
        const int fd = mkstemp(name);
        if (fd >= 0) close(fd);
        return std::string(name);
    }();
    return path;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool ready = [] {
        ResetMarketDataState();
        AllocateStagingBlocks();
        InstallOdbcCalls(&bytesDriver);
        return true;
    }();
    (void)ready;
    ResetOdbcFeedState();
    std::memset(&marketData.selection, 0, sizeof marketData.selection);
    dateRules.todayDate = 40178.0; // 31 December 2009
    dateRules.rejectFuture = true;

    // The bytes as a .sql file.
    const std::string path = TempPath();
    if (std::FILE* f = std::fopen(path.c_str(), "wb")) {
        std::fwrite(data, 1, size, f);
        std::fclose(f);
    }
    ConnectionSelection& sel = marketData.selection;
    std::snprintf(sel.currentTopic, sizeof sel.currentTopic, "SQLText,%s", path.c_str());
    Require(LoadSqlFile(1) == 1);
    const std::size_t length = std::strlen(sel.currentSqlText);
    Require(length <= SqlTextLimit() && length <= size);
    Require(!std::strpbrk(sel.currentSqlText, "\r\n\""));

    // The first three lines as a stored identity.
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::string parts[3];
    std::size_t at = 0;
    for (std::string& part : parts) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        if (at < text.size()) part = text.substr(at, std::min<std::size_t>(end - at, 250));
        at = end + 1;
    }
    if (parts[1].rfind("SQLText,", 0) == 0) parts[1][0] = 's'; // no file reads here
    Require(SplitDatabaseSource(parts[0].c_str(), parts[1].c_str(), parts[2].c_str()) == 1);
    odbcFeed.menuResult = size % 2;
    char statement[StatementTextSize + 1];
    statement[StatementTextSize] = 'X';
    BuildStatementText(statement);
    Require(statement[StatementTextSize] == 'X' && std::strlen(statement) < StatementTextSize);

    // The bytes as result rows.
    rowBytes = data;
    rowCount = size / 8;
    sel.currentSqlText[0] = '\0';
    if (OdbcConnect() == 0) {
        if (RunPriceQuery("SELECT", "C") == 0) {
            const int rows = marketData.fetchRowCount;
            Require(rows >= 1 && rows <= MaxDatabaseRows);
            const DataColumns& f = marketData.fetchColumns;
            for (int i = 0; i < rows; ++i) {
                Require(f.volume[i] != 0.0);
                Require(i == 0 || f.dateNumber[i] == 0.0 || f.dateNumber[i] > f.dateNumber[i - 1]);
            }
            std::strcpy(sel.currentSource, "DSN,x,y,z");
            if (ConnectDataSource(true)) FreeDataSource(0);
        }
        OdbcDisconnect();
    }
    return 0;
}
