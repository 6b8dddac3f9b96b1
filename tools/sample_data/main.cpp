// velorin_sample_data <folder>: writes the deterministic demonstration desk,
// and beside it the sample database velorin_sample.db.
// velorin_sample_data --sql: prints the database script (for a server).
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "tools/sample_data/sample_data.h"
#if VELORIN_SAMPLE_DATABASE
#include "tools/sample_data/sample_database.h"
#endif

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "Usage: velorin_sample_data <folder> | --sql\n");
        return 2;
    }
#if VELORIN_SAMPLE_DATABASE
    if (std::strcmp(argv[1], "--sql") == 0) {
        const std::string script = velorin::sample_data::SampleDatabaseScript();
        std::fwrite(script.data(), 1, script.size(), stdout);
        return 0;
    }
#endif
    std::string error;
    std::vector<std::string> written;
    if (!velorin::sample_data::WriteDesk(argv[1], &error, &written)) {
        std::fprintf(stderr, "velorin_sample_data: %s\n", error.c_str());
        return 1;
    }
#if VELORIN_SAMPLE_DATABASE
    const std::string database =
        std::string(argv[1]) + "/" + velorin::sample_data::SampleDatabaseName;
    if (!velorin::sample_data::WriteSampleDatabase(database, &error)) {
        std::fprintf(stderr, "velorin_sample_data: %s\n", error.c_str());
        return 1;
    }
    written.push_back(database);
#endif
    for (const std::string& path : written)
        std::printf("%s\n", path.c_str());
    return 0;
}
