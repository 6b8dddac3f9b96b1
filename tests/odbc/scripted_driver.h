#pragma once
// An ODBC driver for tests: every call is logged as "Call handle", the n-th
// occurrence of a call can be made to fail ("Connect#2"), and a result of
// columns and rows is served through the bound buffers. Installs itself.

#include <algorithm>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "market_data/odbc_calls.h"

namespace velorin::test_support {

class ScriptedDriver final : public OdbcCalls {
  public:
    struct Row {
        OdbcDate date; // day 0: a null date, the bound date is left alone
        double values[5];
    };
    ~ScriptedDriver() override { InstallOdbcCalls(previous_); }

    std::vector<std::string> failAt, log;
    std::vector<short> types{SqlTypeDate,   SqlTypeDouble, SqlTypeDouble,
                             SqlTypeDouble, SqlTypeDouble, SqlTypeDouble};
    std::deque<Row> rows; // each fetch takes the first
    std::string prepared, parameter;

    short AllocEnv(OdbcHandle* h) override { return New("AllocEnv", h, "env"); }
    short AllocConnect(OdbcHandle, OdbcHandle* h) override {
        return New("AllocConnect", h, counts_["AllocConnect"] ? "dbc2" : "dbc1");
    }
    short Connect(OdbcHandle c, const char*, const char*, const char*) override {
        return Call("Connect", c);
    }
    short AllocStmt(OdbcHandle c, OdbcHandle* h) override {
        return New("AllocStmt", h, names_[c] == "dbc1" ? "stmt1" : "stmt2");
    }
    short FreeStmt(OdbcHandle s, int option) override {
        return Call(option == OdbcDrop ? "Drop" : "FreeStmt", s);
    }
    short Disconnect(OdbcHandle c) override { return Call("Disconnect", c); }
    short FreeConnect(OdbcHandle c) override { return Call("FreeConnect", c); }
    short FreeEnv(OdbcHandle e) override { return Call("FreeEnv", e); }
    short Cancel(OdbcHandle s) override { return Call("Cancel", s); }
    short Prepare(OdbcHandle s, const char* text) override {
        prepared = text;
        parameter.clear();
        return Call("Prepare", s);
    }
    short BindTextParameter(OdbcHandle s, int, const char* value, int) override {
        parameter = value;
        return Call("BindParameter", s);
    }
    short Execute(OdbcHandle s) override { return Call("Execute", s); }
    short NumResultCols(OdbcHandle, short* n) override {
        *n = static_cast<short>(types.size());
        return OdbcSuccess;
    }
    short DescribeCol(OdbcHandle, int column, char*, int, short* type) override {
        *type = types[static_cast<std::size_t>(column - 1)];
        return OdbcSuccess;
    }
    short BindDateColumn(OdbcHandle, int, OdbcDate* target) override {
        date_ = target;
        return OdbcSuccess;
    }
    short BindDoubleColumn(OdbcHandle, int column, double* target) override {
        doubles_[column] = target;
        return OdbcSuccess;
    }
    short Fetch(OdbcHandle) override {
        if (rows.empty()) return OdbcNoData;
        if (rows.front().date.day != 0) *date_ = rows.front().date;
        for (const auto& [column, target] : doubles_)
            *target = rows.front().values[column - 2];
        rows.pop_front();
        return OdbcSuccess;
    }

  private:
    short Call(const std::string& call, OdbcHandle h) {
        log.push_back(call + " " + names_[h]);
        const std::string occurrence = call + "#" + std::to_string(++counts_[call]);
        return std::count(failAt.begin(), failAt.end(), occurrence) ? OdbcError : OdbcSuccess;
    }
    short New(const std::string& call, OdbcHandle* h, const std::string& name) {
        *h = reinterpret_cast<OdbcHandle>(names_.size() + 1);
        names_[*h] = name;
        return Call(call, *h);
    }

    OdbcCalls* previous_ = InstallOdbcCalls(this);
    std::map<std::string, int> counts_;
    std::map<OdbcHandle, std::string> names_;
    OdbcDate* date_ = nullptr;
    std::map<int, double*> doubles_;
};

} // namespace velorin::test_support
