#pragma once
// The ODBC 2 calls the database feed makes, one virtual per call, so that
// the feed's rules run against the driver manager on the desktop and against
// a scripted driver in tests. Results are the driver manager's: 0 success,
// 1 success with information, 100 no data, anything else a failure.

#include <cstdint>

namespace velorin {

using OdbcHandle = void*;

inline constexpr short OdbcSuccess = 0;
inline constexpr short OdbcSuccessWithInfo = 1;
inline constexpr short OdbcNoData = 100;
inline constexpr short OdbcError = -1;

// SQLFreeStmt options.
inline constexpr int OdbcClose = 0;
inline constexpr int OdbcDrop = 1;
inline constexpr int OdbcUnbind = 2;
inline constexpr int OdbcResetParams = 3;

// SQL types a result column may report.
inline constexpr short SqlTypeFloat = 6;
inline constexpr short SqlTypeDouble = 8;
inline constexpr short SqlTypeDate = 9;
inline constexpr short SqlTypeTime = 10;
inline constexpr short SqlTypeTimestamp = 11;

// A fetched date, laid out as the driver writes it (year, month, day).
struct OdbcDate {
    std::int16_t year;
    std::uint16_t month;
    std::uint16_t day;
};

class OdbcCalls {
  public:
    virtual ~OdbcCalls() = default;
    virtual short AllocEnv(OdbcHandle* env) = 0;
    virtual short AllocConnect(OdbcHandle env, OdbcHandle* connection) = 0;
    virtual short Connect(OdbcHandle connection, const char* dataSource, const char* user,
                          const char* password) = 0;
    virtual short AllocStmt(OdbcHandle connection, OdbcHandle* statement) = 0;
    virtual short FreeStmt(OdbcHandle statement, int option) = 0;
    virtual short Disconnect(OdbcHandle connection) = 0;
    virtual short FreeConnect(OdbcHandle connection) = 0;
    virtual short FreeEnv(OdbcHandle env) = 0;
    virtual short Cancel(OdbcHandle statement) = 0;
    virtual short Prepare(OdbcHandle statement, const char* text) = 0;
    // SQLBindParameter(number, input, C char, SQL char, columnSize, 0,
    // value, 0, null-terminated): `value` must outlive the execution.
    virtual short BindTextParameter(OdbcHandle statement, int number, const char* value,
                                    int columnSize) = 0;
    virtual short Execute(OdbcHandle statement) = 0;
    virtual short NumResultCols(OdbcHandle statement, short* count) = 0;
    // SQLDescribeCol: the column's name into `name` (`nameSize` bytes) and
    // its SQL type.
    virtual short DescribeCol(OdbcHandle statement, int column, char* name, int nameSize,
                              short* sqlType) = 0;
    // SQLBindCol as C date and C double; the targets must outlive the fetches.
    virtual short BindDateColumn(OdbcHandle statement, int column, OdbcDate* target) = 0;
    virtual short BindDoubleColumn(OdbcHandle statement, int column, double* target) = 0;
    virtual short Fetch(OdbcHandle statement) = 0;
    // SQLBindCol as C char: `size` bytes, the text NUL-terminated. Only the
    // batch's list of codes binds text; calls without it refuse.
    virtual short BindTextColumn(OdbcHandle statement, int column, char* target, int size) {
        (void)statement, (void)column, (void)target, (void)size;
        return OdbcError;
    }
};

// The calls in force. Never null: without an installed driver manager every
// SQLAllocEnv fails, so every connection fails silently.
OdbcCalls& TheOdbcCalls();
// Installs `calls` (nullptr restores the absent one); returns the previous one.
OdbcCalls* InstallOdbcCalls(OdbcCalls* calls);

} // namespace velorin
