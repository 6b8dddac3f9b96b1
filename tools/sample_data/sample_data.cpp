#include "tools/sample_data/sample_data.h"
#include "market_data/date.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>

namespace velorin::sample_data {

namespace {

// splitmix64: small, fast and the same everywhere.
class Random {
  public:
    explicit Random(std::uint64_t seed) : state_(seed) {}
    std::uint64_t Next() {
        std::uint64_t z = (state_ += 0x9e3779b97f4a7c15ULL);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
        return z ^ (z >> 31);
    }
    // Uniform in [low, high].
    std::int64_t Between(std::int64_t low, std::int64_t high) {
        const std::uint64_t span = static_cast<std::uint64_t>(high - low) + 1;
        return low + static_cast<std::int64_t>(Next() % span);
    }

  private:
    std::uint64_t state_;
};

void CivilFromDays(long long z, int& y, int& m, int& d) {
    z += 719468;
    const long long era = (z >= 0 ? z : z - 146096) / 146097;
    const long long doe = z - era * 146097;
    const long long yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const long long doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const long long mp = (5 * doy + 2) / 153;
    d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    y = static_cast<int>(yoe + era * 400 + (m <= 2 ? 1 : 0));
}

// 0 Sunday .. 6 Saturday, for days counted from 1970-01-01 (a Thursday).
int Weekday(long long days) {
    return static_cast<int>(((days % 7) + 11) % 7);
}

// Scales a price in cents by (10000 + bp) / 10000, rounded half up.
std::int64_t Scale(std::int64_t cents, std::int64_t basisPoints) {
    const std::int64_t scaled = cents * (10000 + basisPoints);
    return std::max<std::int64_t>(1, (scaled + 5000) / 10000);
}

void AppendCents(std::string& out, std::int64_t cents) {
    char text[32];
    std::snprintf(text, sizeof text, "%lld.%02lld", static_cast<long long>(cents / 100),
                  static_cast<long long>(cents % 100));
    out += text;
}

} // namespace

std::vector<Instrument> DefaultDesk() {
    return {
        {"ACME.PRC", 750, true, 0xAC3E0001ULL, 4210, 140, 1200000, -1, 412},
        {"GLOBEX.PRC", 1000, true, 0x610BE7002ULL, 11840, 110, 3500000, -1, -1},
        {"INITECH.PRC", 600, true, 0x1417EC003ULL, 1785, 200, 650000, 333, -1},
        {"BONDFUT.PRC", 400, false, 0xB04DF0004ULL, 11250, 30, 0, -1, -1},
        {"SHORT.PRC", 24, true, 0x5A0E7005ULL, 5500, 120, 800000, -1, -1},
    };
}

std::vector<std::string> WeekdayDates(int count, int year, int month, int day) {
    std::vector<std::string> dates;
    if (count <= 0) return dates;
    dates.reserve(static_cast<std::size_t>(count));
    long long days = DaysFromCivil(year, month, day);
    while (static_cast<int>(dates.size()) < count) {
        const int weekday = Weekday(days);
        if (weekday != 0 && weekday != 6) {
            int y, m, d;
            CivilFromDays(days, y, m, d);
            char text[16];
            std::snprintf(text, sizeof text, "%02d/%02d/%04d", m, d, y);
            dates.emplace_back(text);
        }
        --days;
    }
    std::reverse(dates.begin(), dates.end());
    return dates;
}

std::string InstrumentText(const Instrument& instrument) {
    const std::vector<std::string> dates =
        WeekdayDates(instrument.rows, LastYear, LastMonth, LastDay);
    Random random(instrument.seed);
    std::string out;
    out.reserve(static_cast<std::size_t>(instrument.rows) * 52);
    const std::int64_t move = instrument.moveBasisPoints;
    std::int64_t close = instrument.startCents;
    for (int row = 0; row < instrument.rows; ++row) {
        // The open gaps a little from the last close; the day's move is the
        // sum of three draws (roughly bell-shaped) with a slight upward
        // drift, turned back up when the price gets low.
        const std::int64_t open = Scale(close, random.Between(-move / 4, move / 4));
        std::int64_t change = random.Between(-move, move) + random.Between(-move, move) +
                              random.Between(-move, move) + move / 20;
        if (open < instrument.startCents / 3) change = std::abs(change);
        std::int64_t next = Scale(open, change);
        const std::int64_t top = std::max(open, next);
        const std::int64_t bottom = std::min(open, next);
        std::int64_t high = Scale(top, random.Between(0, move / 2));
        std::int64_t low = std::max<std::int64_t>(1, Scale(bottom, -random.Between(0, move / 2)));
        std::int64_t printed = next;
        if (row == instrument.spikeRow) {
            // One bad print: the close and high of a single day at 1.6 times.
            printed = next * 16 / 10;
            high = std::max(high, printed);
        }
        const std::int64_t moveSize =
            std::abs(next - close) * 10000 / std::max<std::int64_t>(1, close);
        std::int64_t volume =
            instrument.baseVolume * random.Between(55, 145) / 100 +
            instrument.baseVolume * moveSize / (4 * std::max<std::int64_t>(1, move));
        if (row == instrument.zeroVolumeRow) volume = 0;

        out += dates[static_cast<std::size_t>(row)];
        out += ',';
        AppendCents(out, printed);
        if (instrument.sixColumns) {
            out += ',';
            AppendCents(out, open);
            out += ',';
            AppendCents(out, high);
            out += ',';
            AppendCents(out, low);
            out += ',';
            out += std::to_string(volume);
        }
        out += "\r\n";
        close = next;
    }
    return out;
}

bool WriteDesk(const std::string& folder, std::string* error, std::vector<std::string>* written) {
    namespace fs = std::filesystem;
    std::error_code ec;
    fs::create_directories(fs::path(folder), ec);
    if (ec) {
        if (error) *error = "cannot create folder " + folder + ": " + ec.message();
        return false;
    }
    for (const Instrument& instrument : DefaultDesk()) {
        const std::string text = InstrumentText(instrument);
        if (text.size() >= MaxFileBytes) {
            if (error) *error = instrument.fileName + " would exceed the reader's size limit";
            return false;
        }
        const fs::path path = fs::path(folder) / instrument.fileName;
        std::ofstream file(path, std::ios::binary | std::ios::trunc);
        file.write(text.data(), static_cast<std::streamsize>(text.size()));
        file.close();
        if (!file) {
            if (error) *error = "cannot write " + path.string();
            return false;
        }
        if (written) written->push_back(path.string());
    }
    return true;
}

} // namespace velorin::sample_data
