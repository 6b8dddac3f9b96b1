#pragma once
// The databases the driver tests and benchmarks run against. SQLite: the
// sample database, made per process and registered as a data source in a
// private ODBC user file, whenever the SQLite ODBC driver is installed.
// PostgreSQL: the server that tools/odbc/test-odbc-drivers.sh starts, named
// by VELORIN_TEST_PG_DSN, _USER and _PASSWORD.

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/support/temp_dir.h"
#include "tools/sample_data/sample_database.h"

namespace velorin::test_support {

struct Backend {
    std::string dsn; // empty: not available, see `skipReason`
    std::string user, password, skipReason;
    bool procedures = false;
};

// The tables of bad input both servers hold beside the sample rows.
inline std::string TestTables() {
    std::ifstream in(VELORIN_TEST_TABLES_SQL, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

inline const Backend& SqliteBackend() {
    static const Backend backend = [] {
        Backend b;
        std::string driver, error;
        for (const char* folder : {"x86_64-linux-gnu/odbc", "aarch64-linux-gnu/odbc", "odbc"})
            if (std::filesystem::exists(std::string("/usr/lib/") + folder + "/libsqlite3odbc.so"))
                driver = std::string("/usr/lib/") + folder + "/libsqlite3odbc.so";
        static TempDir dir;
        const std::string database = dir.PathOf("sample.db");
        if (driver.empty()) {
            b.skipReason = "the SQLite ODBC driver (libsqliteodbc) is not installed";
        } else if (!sample_data::WriteSampleDatabase(database, &error, TestTables())) {
            b.skipReason = "cannot write the sample database: " + error;
        } else {
            // The private user file keeps what the environment already names.
            std::ifstream existing(getenv("ODBCINI") ? getenv("ODBCINI") : "", std::ios::binary);
            std::string ini(std::istreambuf_iterator<char>(existing), {});
            ini += "\n[VelorinTestSqlite]\nDriver = " + driver + "\nDatabase = " + database + "\n";
            setenv("ODBCINI", dir.Write("odbc.ini", ini).c_str(), 1);
            b.dsn = "VelorinTestSqlite";
        }
        return b;
    }();
    return backend;
}

inline Backend PostgresBackend() {
    const auto env = [](const char* name) {
        const char* value = getenv(name);
        return std::string(value ? value : "");
    };
    return {env("VELORIN_TEST_PG_DSN"), env("VELORIN_TEST_PG_USER"),
            env("VELORIN_TEST_PG_PASSWORD"),
            "no PostgreSQL data source: run tools/odbc/test-odbc-drivers.sh", true};
}

} // namespace velorin::test_support
