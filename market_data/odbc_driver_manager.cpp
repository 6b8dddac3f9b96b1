#include "market_data/odbc_driver_manager.h"

#include <sql.h>
#include <sqlext.h>

#include <array>
#include <map>

#include "market_data/odbc_calls.h"

namespace velorin {
namespace {

static_assert(sizeof(OdbcDate) == sizeof(DATE_STRUCT), "a fetched date is a DATE_STRUCT");

SQLCHAR* Text(const char* text) {
    return reinterpret_cast<SQLCHAR*>(const_cast<char*>(text));
}

class DriverManagerCalls final : public OdbcCalls {
  public:
    short AllocEnv(OdbcHandle* env) override {
        SQLHENV h = SQL_NULL_HENV;
        const SQLRETURN r = SQLAllocEnv(&h);
        *env = h;
        return r;
    }
    short AllocConnect(OdbcHandle env, OdbcHandle* connection) override {
        SQLHDBC h = SQL_NULL_HDBC;
        const SQLRETURN r = SQLAllocConnect(env, &h);
        *connection = h;
        return r;
    }
    short Connect(OdbcHandle connection, const char* dataSource, const char* user,
                  const char* password) override {
        return SQLConnect(connection, Text(dataSource), SQL_NTS, Text(user), SQL_NTS,
                          Text(password), SQL_NTS);
    }
    short AllocStmt(OdbcHandle connection, OdbcHandle* statement) override {
        SQLHSTMT h = SQL_NULL_HSTMT;
        const SQLRETURN r = SQLAllocStmt(connection, &h);
        *statement = h;
        return r;
    }
    short FreeStmt(OdbcHandle statement, int option) override {
        if (option == OdbcDrop) indicators_.erase(statement);
        return SQLFreeStmt(statement, static_cast<SQLUSMALLINT>(option));
    }
    short Disconnect(OdbcHandle connection) override { return SQLDisconnect(connection); }
    short FreeConnect(OdbcHandle connection) override { return SQLFreeConnect(connection); }
    short FreeEnv(OdbcHandle env) override { return SQLFreeEnv(env); }
    short Cancel(OdbcHandle statement) override { return SQLCancel(statement); }
    short Prepare(OdbcHandle statement, const char* text) override {
        return SQLPrepare(statement, Text(text), SQL_NTS);
    }
    short BindTextParameter(OdbcHandle statement, int number, const char* value,
                            int columnSize) override {
        SQLLEN& length = indicators_[statement][0];
        length = SQL_NTS;
        return SQLBindParameter(statement, static_cast<SQLUSMALLINT>(number), SQL_PARAM_INPUT,
                                SQL_C_CHAR, SQL_CHAR, static_cast<SQLULEN>(columnSize), 0,
                                const_cast<char*>(value), 0, &length);
    }
    short Execute(OdbcHandle statement) override { return SQLExecute(statement); }
    short NumResultCols(OdbcHandle statement, short* count) override {
        SQLSMALLINT n = 0;
        const SQLRETURN r = SQLNumResultCols(statement, &n);
        *count = n;
        return r;
    }
    short DescribeCol(OdbcHandle statement, int column, char* name, int nameSize,
                      short* sqlType) override {
        SQLSMALLINT nameLength = 0, type = 0, digits = 0, nullable = 0;
        SQLULEN size = 0;
        const SQLRETURN r = SQLDescribeCol(
            statement, static_cast<SQLUSMALLINT>(column), reinterpret_cast<SQLCHAR*>(name),
            static_cast<SQLSMALLINT>(nameSize), &nameLength, &type, &size, &digits, &nullable);
        *sqlType = type;
        return r;
    }
    short BindDateColumn(OdbcHandle statement, int column, OdbcDate* target) override {
        return SQLBindCol(statement, static_cast<SQLUSMALLINT>(column), SQL_C_DATE, target,
                          sizeof *target, Indicator(statement, column));
    }
    short BindDoubleColumn(OdbcHandle statement, int column, double* target) override {
        return SQLBindCol(statement, static_cast<SQLUSMALLINT>(column), SQL_C_DOUBLE, target,
                          sizeof *target, Indicator(statement, column));
    }
    short BindTextColumn(OdbcHandle statement, int column, char* target, int size) override {
        return SQLBindCol(statement, static_cast<SQLUSMALLINT>(column), SQL_C_CHAR, target, size,
                          Indicator(statement, column));
    }
    short Fetch(OdbcHandle statement) override { return SQLFetch(statement); }

  private:
    // Length and null indicators of a statement: [0] the parameter, [1..]
    // the bound columns. The driver writes SQL_NULL_DATA there for a null
    // cell and leaves the bound value alone.
    SQLLEN* Indicator(OdbcHandle statement, int column) {
        std::array<SQLLEN, 8>& slots = indicators_[statement];
        return column >= 1 && column < 8 ? &slots[static_cast<std::size_t>(column)] : nullptr;
    }
    std::map<OdbcHandle, std::array<SQLLEN, 8>> indicators_;
};

} // namespace

void InstallOdbcDriverManager() {
    static DriverManagerCalls calls;
    InstallOdbcCalls(&calls);
}

} // namespace velorin
