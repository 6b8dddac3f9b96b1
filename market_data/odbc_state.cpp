#include "market_data/odbc_state.h"

#include <cstring>

namespace velorin {

OdbcFeedState odbcFeed;
SqlLists sqlLists;

void ResetOdbcFeedState() {
    std::memset(&odbcFeed, 0, sizeof odbcFeed);
    std::memset(&sqlLists, 0, sizeof sqlLists);
    odbcFeed.env = nullptr;
    for (int i = 0; i < 2; ++i)
        odbcFeed.connection[i] = odbcFeed.statement[i] = nullptr;
}

namespace {

// No driver manager: the environment is never obtained.
class AbsentOdbcCalls final : public OdbcCalls {
  public:
    short AllocEnv(OdbcHandle* env) override {
        *env = nullptr;
        return OdbcError;
    }
    short AllocConnect(OdbcHandle, OdbcHandle* c) override {
        *c = nullptr;
        return OdbcError;
    }
    short Connect(OdbcHandle, const char*, const char*, const char*) override { return OdbcError; }
    short AllocStmt(OdbcHandle, OdbcHandle* s) override {
        *s = nullptr;
        return OdbcError;
    }
    short FreeStmt(OdbcHandle, int) override { return OdbcError; }
    short Disconnect(OdbcHandle) override { return OdbcError; }
    short FreeConnect(OdbcHandle) override { return OdbcError; }
    short FreeEnv(OdbcHandle) override { return OdbcError; }
    short Cancel(OdbcHandle) override { return OdbcError; }
    short Prepare(OdbcHandle, const char*) override { return OdbcError; }
    short BindTextParameter(OdbcHandle, int, const char*, int) override { return OdbcError; }
    short Execute(OdbcHandle) override { return OdbcError; }
    short NumResultCols(OdbcHandle, short* n) override {
        *n = 0;
        return OdbcError;
    }
    short DescribeCol(OdbcHandle, int, char*, int, short*) override { return OdbcError; }
    short BindDateColumn(OdbcHandle, int, OdbcDate*) override { return OdbcError; }
    short BindDoubleColumn(OdbcHandle, int, double*) override { return OdbcError; }
    short Fetch(OdbcHandle) override { return OdbcNoData; }
};

AbsentOdbcCalls absentCalls;
OdbcCalls* installedCalls = nullptr;

} // namespace

OdbcCalls& TheOdbcCalls() {
    return installedCalls ? *installedCalls : absentCalls;
}

OdbcCalls* InstallOdbcCalls(OdbcCalls* calls) {
    OdbcCalls* previous = installedCalls;
    installedCalls = calls;
    return previous;
}

} // namespace velorin
