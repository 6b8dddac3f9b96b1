// Arbitrary bytes into velorin-feed's core: the first byte chooses the
// topic, the text up to the first NUL is the item, the rest is the file F.PRC
// that the item may name. Every served reply is checked to hold only whole
// rows of one shape: the same number of separators on every line, each
// line ended by CR LF.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include "tools/velorin_feed/feed_core.h"

namespace {

using namespace velorin::feed;

std::string Folder() {
    static std::string folder = [] {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "fuzz_velorin_feed_XXXXXX").string();
        if (!mkdtemp(pattern.data())) std::abort();
        return pattern;
    }();
    return folder;
}

void CheckRows(std::string_view reply, char separator) {
    long shape = -1;
    while (!reply.empty()) {
        const std::size_t end = reply.find("\r\n");
        if (end == reply.npos) std::abort();
        const std::string_view line = reply.substr(0, end);
        const long n = static_cast<long>(std::count(line.begin(), line.end(), separator));
        if (shape >= 0 && n != shape) std::abort();
        shape = n;
        reply.remove_prefix(end + 2);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::size_t nul = text.find('\0');
    const std::string_view item = text.substr(0, nul);
    const std::string_view file = nul == text.npos ? std::string_view{} : text.substr(nul + 1);
    if (std::FILE* f = std::fopen((Folder() + "/F.PRC").c_str(), "wb")) {
        std::fwrite(file.data(), 1, file.size(), f);
        std::fclose(f);
    }
    FeedOptions options;
    options.folder = Folder();
    options.maps.push_back({"M", "T", Folder()});
    FeedCore core(options, data[0]);
    static const char* const topics[][2] = {
        {"Reuter", "TS1"}, {"Reuter", "IDN"}, {"Excel", "[tickdb.xls]F,S"}, {"M", "T"}};
    const auto& topic = topics[data[0] & 3];
    Failure failure;
    const std::uint32_t c = core.Connect(topic[0], topic[1], failure);
    std::string reply;
    if (c == 0 || !core.Request(c, item, reply, failure)) return 0;
    if ((data[0] & 3) < 2) CheckRows(reply, ',');
    if ((data[0] & 3) == 2) CheckRows(reply, '\t');
    if (core.AdviseStart(":1.1", c, item, failure)) {
        Advice advice;
        if (!core.NextAdvise(advice) || advice.conversation != c) std::abort();
    }
    return 0;
}
