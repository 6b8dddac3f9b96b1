#include "tools/sample_data/sample_database.h"

#include <sqlite3.h>

#include <cstdio>
#include <filesystem>
#include <sstream>

#include "tools/sample_data/sample_data.h"

namespace velorin::sample_data {
namespace {

// Rows per INSERT, well inside what either database takes in one statement.
constexpr int RowsPerInsert = 400;

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::string part;
    std::istringstream in(text);
    while (std::getline(in, part, separator))
        parts.push_back(part);
    if (!text.empty() && text.back() == separator) parts.emplace_back();
    return parts;
}

// "mm/dd/yyyy" as the DATE literal 'yyyy-mm-dd'.
std::string DateLiteral(const std::string& date) {
    return "'" + date.substr(6, 4) + "-" + date.substr(0, 2) + "-" + date.substr(3, 2) + "'";
}

void AppendRows(std::string& script, const DatabaseInstrument& instrument) {
    std::vector<std::string> lines;
    for (const std::string& line : Split(instrument.prices, '\n'))
        if (!line.empty() && line != "\r")
            lines.push_back(line.back() == '\r' ? line.substr(0, line.size() - 1) : line);
    for (std::size_t first = 0; first < lines.size(); first += RowsPerInsert) {
        script += "INSERT INTO prices (code, tradedate, close, open, high, low, volume) VALUES\n";
        const std::size_t end = std::min(lines.size(), first + RowsPerInsert);
        for (std::size_t i = first; i < end; ++i) {
            const std::vector<std::string> f = Split(lines[i], ',');
            script += "('" + instrument.code + "'," + DateLiteral(f[0]) + "," + f[1];
            if (f.size() >= 6)
                script += "," + f[2] + "," + f[3] + "," + f[4] + "," + f[5];
            else
                script += ",NULL,NULL,NULL,NULL";
            script += i + 1 < end ? "),\n" : ");\n";
        }
    }
}

} // namespace

std::vector<DatabaseInstrument> DatabaseInstruments() {
    std::vector<DatabaseInstrument> instruments;
    for (const Instrument& instrument : DefaultDesk()) {
        const std::string& name = instrument.fileName;
        instruments.push_back({name.substr(0, name.find('.')), InstrumentText(instrument)});
    }
    const Instrument longRun{"LONGRUN.PRC", 2500, true, 0x10A6F0006ULL, 2630, 120, 900000, -1, -1};
    instruments.push_back({"LONGRUN", InstrumentText(longRun)});
    return instruments;
}

std::string SampleDatabaseScript() {
    std::string script =
        "BEGIN;\n"
        "CREATE TABLE prices (code VARCHAR(20) NOT NULL, tradedate DATE, close DOUBLE PRECISION,"
        " open DOUBLE PRECISION, high DOUBLE PRECISION, low DOUBLE PRECISION,"
        " volume DOUBLE PRECISION);\n"
        "CREATE TABLE codes (code VARCHAR(20) NOT NULL);\n"
        "CREATE VIEW closes AS SELECT code, tradedate, close FROM prices;\n";
    for (const DatabaseInstrument& instrument : DatabaseInstruments()) {
        script += "INSERT INTO codes (code) VALUES ('" + instrument.code + "');\n";
        AppendRows(script, instrument);
    }
    script += "CREATE INDEX prices_code_date ON prices (code, tradedate);\n"
              "COMMIT;\n";
    return script;
}

bool WriteSampleDatabase(const std::string& path, std::string* error,
                         const std::string& extraScript) {
    std::error_code ec;
    std::filesystem::remove(path, ec);
    sqlite3* db = nullptr;
    if (sqlite3_open(path.c_str(), &db) != SQLITE_OK) {
        if (error) *error = "cannot create " + path + ": " + (db ? sqlite3_errmsg(db) : "");
        sqlite3_close(db);
        return false;
    }
    char* message = nullptr;
    const std::string script = SampleDatabaseScript() + extraScript;
    const int result = sqlite3_exec(db, script.c_str(), nullptr, nullptr, &message);
    if (result != SQLITE_OK && error)
        *error = "cannot fill " + path + ": " + (message ? message : "");
    sqlite3_free(message);
    sqlite3_close(db);
    return result == SQLITE_OK;
}

} // namespace velorin::sample_data
