// velorin_sample_data <folder>: writes the deterministic demonstration desk.
#include <cstdio>
#include <string>
#include <vector>

#include "tools/sample_data/sample_data.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "Usage: velorin_sample_data <folder>\n");
        return 2;
    }
    std::string error;
    std::vector<std::string> written;
    if (!velorin::sample_data::WriteDesk(argv[1], &error, &written)) {
        std::fprintf(stderr, "velorin_sample_data: %s\n", error.c_str());
        return 1;
    }
    for (const std::string& path : written)
        std::printf("%s\n", path.c_str());
    return 0;
}
