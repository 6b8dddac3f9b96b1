#include "tools/velorin_feed/feed_core.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "market_data/date.h"

namespace velorin::feed {

const char FeedUsage[] =
    "Usage: velorin-feed [--folder DIR] [--rate N] [--seed N] [--map SERVICE/TOPIC=DIR]...\n"
    "Serves price histories, live values and ticks to QDX-Velorin on the session bus.\n"
    "  --folder DIR  the \".PRC\" files of services Reuter (topics TS1 and IDN) and Excel\n"
    "                (topics [tickdb.xls]<stem>,<sheet>); default: the working folder\n"
    "  --rate N      simulated ticks per second over all advise loops (default 2; 0: none)\n"
    "  --seed N      seed of the random walk (default: from the clock)\n"
    "  --map SERVICE/TOPIC=DIR  serve SERVICE and TOPIC from DIR: items are file stems,\n"
    "                replies the whole file (may be given more than once)\n"
    "  --help        this text\n";

namespace {

constexpr std::size_t MaxTickRows = 1998; // rows 3 to 2,000 of the sheet
constexpr int TicksAtStart = 20;
constexpr char TickRange[] = "R3C1:R2000C5";
constexpr char TickTopicPrefix[] = "[tickdb.xls]";

enum class Column { Time, Close, Open, High, Low, Volume };

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
std::string Lowered(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(), Lower);
    return out;
}
bool SameText(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                              [](char x, char y) { return Lower(x) == Lower(y); });
}
bool StartsWithText(std::string_view text, std::string_view prefix) {
    return text.size() >= prefix.size() && SameText(text.substr(0, prefix.size()), prefix);
}
std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}
bool IsSeparator(char c) {
    return c == '\t' || c == ',' || c == ';';
}

// A bus name element: letters, digits, "_" and "-", not beginning with a digit.
bool IsBusNameElement(std::string_view name) {
    if (name.empty() || name.size() > 200 || (name[0] >= '0' && name[0] <= '9')) return false;
    return std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '_' || c == '-';
    });
}

bool ColumnOf(std::string_view name, Column& column) {
    name = Trimmed(name);
    static const struct {
        const char* name;
        Column column;
    } names[] = {{"TIMESTAMP", Column::Time},      {"TRADE TIME", Column::Time},
                 {"TIME OF UPDATE", Column::Time}, {"LAST", Column::Close},
                 {"BID", Column::Close},           {"ASK", Column::Close},
                 {"OPENING PRICE", Column::Open},  {"TODAY'S HIGH", Column::High},
                 {"TODAY'S LOW", Column::Low},     {"VOL ACCUMULATED", Column::Volume}};
    for (const auto& n : names)
        if (SameText(name, n.name)) {
            column = n.column;
            return true;
        }
    return false;
}

bool ColumnsOf(std::string_view list, std::vector<Column>& columns) {
    columns.clear();
    while (true) {
        const std::size_t comma = list.find(',');
        Column c;
        if (!ColumnOf(list.substr(0, comma), c)) return false;
        columns.push_back(c);
        if (comma == list.npos) return true;
        list.remove_prefix(comma + 1);
    }
}

// '/RI=<name> /ST=EARLIEST /EN=LATEST /FI=<fields> /PE=<d|w|m>', quotes
// optional; a key starts at "/XX=" at the beginning or after a blank.
bool ParseHistoryItem(std::string_view item, std::string& name, std::vector<Column>& columns,
                      char& period) {
    item = Trimmed(item);
    if (item.size() >= 2 && item.front() == '\'' && item.back() == '\'')
        item = item.substr(1, item.size() - 2);
    std::string_view fields = "TIMESTAMP,LAST";
    name.clear();
    period = 'd';
    std::size_t i = 0;
    while (i < item.size()) {
        if (item[i] != '/' || i + 4 > item.size() || item[i + 3] != '=' ||
            (i > 0 && item[i - 1] != ' ')) {
            ++i;
            continue;
        }
        const std::string_view key = item.substr(i + 1, 2);
        std::size_t end = i + 4;
        while (end < item.size() && !(item[end] == '/' && item[end - 1] == ' ' &&
                                      end + 3 < item.size() && item[end + 3] == '='))
            ++end;
        const std::string_view value = Trimmed(item.substr(i + 4, end - i - 4));
        if (SameText(key, "RI"))
            name = value;
        else if (SameText(key, "FI"))
            fields = value;
        else if (SameText(key, "PE") && value.size() == 1)
            period = Lower(value[0]);
        i = end;
    }
    return !name.empty() && (period == 'd' || period == 'w' || period == 'm') &&
           ColumnsOf(fields, columns);
}

// "<name>,[<fields>]", or a bare name for the trade time and last price.
bool ParseLiveItem(std::string_view item, std::string& name, std::vector<Column>& columns) {
    const std::size_t open = item.find(",[");
    if (open == item.npos) {
        name = Trimmed(item);
        columns = {Column::Time, Column::Close};
        return !name.empty() && name.find(',') == name.npos;
    }
    name = Trimmed(item.substr(0, open));
    const std::size_t close = item.rfind(']');
    return !name.empty() && close != item.npos && close > open &&
           ColumnsOf(item.substr(open + 2, close - open - 2), columns);
}

bool ReadDouble(std::string_view text, double& value) {
    text = Trimmed(text);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    const auto r = std::from_chars(text.data(), text.data() + text.size(), value);
    return r.ec == std::errc() && r.ptr == text.data() + text.size();
}
bool ReadInteger(std::string_view text, std::int64_t& value) {
    text = Trimmed(text);
    const auto r = std::from_chars(text.data(), text.data() + text.size(), value);
    return r.ec == std::errc() && r.ptr == text.data() + text.size();
}

// The period a date falls in: the Monday-based week or the month. Dates are
// month first ("mm/dd/yyyy", "mm/dd/yy") or ISO ("yyyy-mm-dd"); years below
// 50 are 2000s. False for any other text.
bool PeriodOf(std::string_view date, char period, long long& key) {
    int parts[3] = {0, 0, 0};
    int widths[3] = {0, 0, 0};
    int n = 0;
    for (char c : Trimmed(date)) {
        if (c >= '0' && c <= '9') {
            if (n > 2 || widths[n] >= 4) return false;
            parts[n] = parts[n] * 10 + (c - '0');
            ++widths[n];
        } else if ((c == '/' || c == '-' || c == '.') && n < 2 && widths[n] > 0) {
            ++n;
        } else {
            break; // a time after the date
        }
    }
    if (n != 2 || widths[2] == 0) return false;
    int y = parts[2], m = parts[0], d = parts[1];
    if (widths[0] == 4) y = parts[0], m = parts[1], d = parts[2];
    if (y < 100) y += y < 50 ? 2000 : 1900;
    if (m < 1 || m > 12 || d < 1 || d > 31) return false;
    if (period == 'm') {
        key = y * 12LL + m;
    } else {
        const long long days = DaysFromCivil(y, m, d) + 3; // 1970-01-01 was a Thursday
        key = days >= 0 ? days / 7 : -((-days + 6) / 7);
    }
    return true;
}

// Weekly or monthly rows from daily ones: the period's last date and
// close, first open, highest high, lowest low and summed volume. A row
// whose date cannot be read stands alone.
template <typename Row> std::vector<Row> Aggregate(const std::vector<Row>& rows, char period) {
    std::vector<Row> out;
    long long lastKey = 0;
    bool open = false;
    std::int64_t volume = 0;
    double realVolume = 0;
    bool integral = true;
    double high = 0, low = 0;
    for (const Row& row : rows) {
        long long key = 0;
        const bool dated = PeriodOf(row.date, period, key);
        double h = 0, l = 0, v = 0;
        std::int64_t iv = 0;
        const bool hasHigh = ReadDouble(row.high, h), hasLow = ReadDouble(row.low, l);
        if (!open || !dated || key != lastKey) {
            out.push_back(row);
            volume = 0, realVolume = 0, integral = true;
            high = hasHigh ? h : 0, low = hasLow ? l : 0;
        } else {
            Row& r = out.back();
            r.date = row.date, r.close = row.close;
            if (hasHigh && h > high) high = h, r.high = row.high;
            if (hasLow && l < low) low = l, r.low = row.low;
        }
        if (ReadInteger(row.volume, iv))
            volume += iv, realVolume += static_cast<double>(iv);
        else if (ReadDouble(row.volume, v))
            realVolume += v, integral = false;
        if (!row.volume.empty()) {
            char text[32];
            const auto end = integral ? std::to_chars(text, text + sizeof text, volume).ptr
                                      : std::to_chars(text, text + sizeof text, realVolume).ptr;
            out.back().volume.assign(text, end);
        }
        open = dated;
        lastKey = key;
    }
    return out;
}

std::uint64_t NextRandom(std::uint64_t& state) {
    std::uint64_t z = (state += 0x9E3779B97F4A7C15ULL);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

} // namespace

bool ParseFeedOptions(int argc, const char* const* argv, FeedOptions& options, std::string& error) {
    for (int i = 1; i < argc; ++i) {
        std::string_view arg = argv[i];
        if (arg == "--help" || arg == "-h") {
            options.help = true;
            continue;
        }
        std::string_view value;
        const std::size_t equals = arg.find('=');
        if (arg.starts_with("--") && equals != arg.npos) {
            value = arg.substr(equals + 1);
            arg = arg.substr(0, equals);
        } else if (i + 1 < argc) {
            value = argv[++i];
        } else {
            error = "missing value or unknown option: " + std::string(arg);
            return false;
        }
        if (arg == "--folder" && !value.empty()) {
            options.folder = value;
        } else if (arg == "--rate") {
            if (!ReadDouble(value, options.rate) || !(options.rate >= 0) || options.rate > 1e7) {
                error = "--rate needs a number of ticks per second from 0 to 10000000";
                return false;
            }
        } else if (arg == "--seed") {
            const auto r = std::from_chars(value.data(), value.data() + value.size(), options.seed);
            if (r.ec != std::errc() || r.ptr != value.data() + value.size()) {
                error = "--seed needs a whole number";
                return false;
            }
            options.seedGiven = true;
        } else if (arg == "--map") {
            const std::size_t slash = value.find('/'), is = value.find('=');
            FolderMap map;
            if (slash != value.npos && is != value.npos && slash < is) {
                map.service = value.substr(0, slash);
                map.topic = value.substr(slash + 1, is - slash - 1);
                map.folder = value.substr(is + 1);
            }
            if (!IsBusNameElement(map.service) || map.topic.empty() || map.folder.empty()) {
                error = "--map needs SERVICE/TOPIC=FOLDER, SERVICE of letters, digits, _ and - "
                        "not beginning with a digit";
                return false;
            }
            options.maps.push_back(map);
        } else {
            error = "unknown option or empty value: " + std::string(arg);
            return false;
        }
    }
    return true;
}

FeedCore::FeedCore(FeedOptions options, std::uint64_t seed)
    : options_(std::move(options)), random_(seed) {}

std::vector<std::string> FeedCore::Services() const {
    std::vector<std::string> services = {"Reuter", "Excel"};
    for (const FolderMap& map : options_.maps)
        if (std::none_of(services.begin(), services.end(),
                         [&](const std::string& s) { return SameText(s, map.service); }))
            services.push_back(map.service);
    return services;
}

FeedCore::Instrument* FeedCore::Load(const std::string& folder, std::string_view stem) {
    if (stem.empty() || stem.find('/') != stem.npos) return nullptr;
    const std::string key = folder + '\n' + Lowered(stem);
    if (auto it = instruments_.find(key); it != instruments_.end()) return &it->second;

    namespace fs = std::filesystem;
    const std::string wanted = Lowered(stem) + ".prc";
    std::error_code ec;
    fs::path path;
    for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec))
        if (Lowered(it->path().filename().string()) == wanted && it->is_regular_file(ec)) {
            path = it->path();
            break;
        }
    std::ifstream file(path, std::ios::binary);
    if (path.empty() || !file) return nullptr;
    Instrument ins;
    ins.text.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    if (ins.text.find('\r') == std::string::npos) ins.lineEnd = "\n";

    std::size_t start = 0;
    while (start < ins.text.size()) {
        std::size_t end = ins.text.find('\n', start);
        if (end == std::string::npos) end = ins.text.size();
        std::string_view line(ins.text.data() + start, end - start);
        while (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        std::vector<std::string> fields;
        std::size_t from = 0;
        for (std::size_t i = 0; i <= line.size(); ++i)
            if (i == line.size() || IsSeparator(line[i])) {
                if (i < line.size() && ins.rows.empty() && fields.empty()) ins.separator = line[i];
                fields.emplace_back(Trimmed(line.substr(from, i - from)));
                from = i + 1;
            }
        if (fields.size() >= 2 && !fields[0].empty()) {
            Row row{fields[0], fields[1], "", "", "", ""};
            if (fields.size() >= 6)
                row.open = fields[2], row.high = fields[3], row.low = fields[4],
                row.volume = fields[5];
            ins.rows.push_back(row);
            ins.lastRowOffset = start;
        }
        start = end + 1;
    }
    if (ins.rows.empty()) return nullptr;

    // The live day goes on from the last row.
    const Row& last = ins.rows.back();
    const std::size_t point = last.close.find('.');
    ins.decimals = point == std::string::npos
                       ? 0
                       : static_cast<int>(std::min<std::size_t>(6, last.close.size() - point - 1));
    const double scale = std::pow(10.0, ins.decimals);
    auto units = [&](const std::string& text, std::int64_t fallback) {
        double v = 0;
        return ReadDouble(text, v) ? std::max<std::int64_t>(1, std::llround(v * scale)) : fallback;
    };
    ins.last = units(last.close, 100 * static_cast<std::int64_t>(scale));
    ins.open = units(last.open, ins.last);
    ins.high = std::max(ins.last, units(last.high, ins.last));
    ins.low = std::min(ins.last, units(last.low, ins.last));
    double volume = 0;
    ins.volume = ReadDouble(last.volume, volume) ? std::llround(volume) : 0;
    return &instruments_.emplace(key, std::move(ins)).first->second;
}

void FeedCore::Step(Instrument& ins) {
    // Steps of at most 0.2 % at two ticks a second, smaller as the rate
    // grows (by the square root), so that the walk moves about as far in a
    // second whatever the rate. In millionths of the price.
    const double rate = options_.rate > 2.0 ? options_.rate : 2.0;
    const auto widest = std::max<std::int64_t>(1, std::llround(2000.0 * std::sqrt(2.0 / rate)));
    const std::uint64_t r = NextRandom(random_);
    const std::int64_t millionths =
        static_cast<std::int64_t>(r % static_cast<std::uint64_t>(2 * widest + 1)) - widest;
    std::int64_t move = ins.last * millionths / 1000000;
    if (move == 0 && widest >= 1000 && millionths != 0) move = millionths > 0 ? 1 : -1;
    ins.last = std::max<std::int64_t>(1, ins.last + move);
    ins.high = std::max(ins.high, ins.last);
    ins.low = std::min(ins.low, ins.last);
    ins.volume += 1 + static_cast<std::int64_t>((r >> 16) % 1000);
}

std::string FeedCore::Price(const Instrument& ins, std::int64_t units) const {
    std::string digits = std::to_string(units);
    if (ins.decimals == 0) return digits;
    if (digits.size() <= static_cast<std::size_t>(ins.decimals))
        digits.insert(0, static_cast<std::size_t>(ins.decimals) + 1 - digits.size(), '0');
    digits.insert(digits.size() - static_cast<std::size_t>(ins.decimals), 1, '.');
    return digits;
}

std::string FeedCore::TimeOfDay() const {
    const int s = ((clock_ % 86400) + 86400) % 86400;
    char text[16];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d", s / 3600, s / 60 % 60, s % 60);
    return text;
}

void FeedCore::AddTick(Instrument& ins) {
    Step(ins);
    ins.ticks.push_back(TimeOfDay() + '\t' + Price(ins, ins.last) + '\t' + Price(ins, ins.open) +
                        '\t' + Price(ins, ins.high) + '\t' + Price(ins, ins.low) + "\r\n");
    if (ins.ticks.size() > MaxTickRows) ins.ticks.pop_front();
}

std::uint32_t FeedCore::Connect(std::string_view service, std::string_view topic,
                                Failure& failure) {
    Conversation c{Kind::Folder, "", nullptr};
    bool known = false, served = false;
    for (const FolderMap& map : options_.maps)
        if (SameText(service, map.service)) {
            known = true;
            if (SameText(topic, map.topic)) {
                served = true;
                c.folder = map.folder;
                break;
            }
        }
    if (!served && SameText(service, "Reuter")) {
        known = true;
        served = SameText(topic, "TS1") || SameText(topic, "IDN");
        c.kind = SameText(topic, "TS1") ? Kind::History : Kind::Live;
    } else if (!served && SameText(service, "Excel")) {
        known = true;
        if (StartsWithText(topic, TickTopicPrefix)) {
            std::string_view rest = topic.substr(sizeof TickTopicPrefix - 1);
            c.kind = Kind::Ticks;
            c.tickInstrument = Load(options_.folder, rest.substr(0, rest.find(',')));
            served = c.tickInstrument != nullptr;
        }
    }
    if (!known) {
        failure = {"NoService", "service " + std::string(service) + " is not served here"};
        return 0;
    }
    if (!served) {
        failure = {"NoTopic", "topic " + std::string(topic) + " is not served"};
        return 0;
    }
    if (c.tickInstrument && c.tickInstrument->ticks.empty()) {
        // A fresh sheet starts with a few ticks, one second apart.
        const int now = clock_;
        for (int i = TicksAtStart; i > 0; --i) {
            clock_ = now - i;
            AddTick(*c.tickInstrument);
        }
        clock_ = now;
    }
    const std::uint32_t id = nextConversation_++;
    if (nextConversation_ == 0) nextConversation_ = 1;
    conversations_[id] = std::move(c);
    if (conversations_.size() > MaxConversations) Disconnect(conversations_.begin()->first);
    return id;
}

bool FeedCore::Reply(const Conversation& c, std::string_view item, bool advance, std::string& out,
                     Failure& failure) {
    std::string name;
    std::vector<Column> columns;
    char period = 'd';
    Instrument* ins = nullptr;
    switch (c.kind) {
    case Kind::History:
        if (ParseHistoryItem(item, name, columns, period)) ins = Load(options_.folder, name);
        break;
    case Kind::Live:
        if (ParseLiveItem(item, name, columns)) ins = Load(options_.folder, name);
        break;
    case Kind::Ticks:
        if (SameText(item, TickRange)) ins = c.tickInstrument;
        break;
    case Kind::Folder:
        ins = Load(c.folder, item);
        break;
    }
    if (!ins) {
        failure = {"NoItem", "no such item: " + std::string(item)};
        return false;
    }
    out.clear();
    if (c.kind == Kind::Ticks) {
        // The sheet's range is sent whole, as a spreadsheet's advise of a
        // range does: the program replaces the whole series with it.
        if (advance) AddTick(*ins);
        for (const std::string& tick : ins->ticks)
            out += tick;
        return true;
    }
    if (advance) Step(*ins);
    const Row live{c.kind == Kind::Live ? TimeOfDay() : ins->rows.back().date,
                   Price(*ins, ins->last),
                   Price(*ins, ins->open),
                   Price(*ins, ins->high),
                   Price(*ins, ins->low),
                   std::to_string(ins->volume)};
    if (c.kind == Kind::Folder) {
        if (!advance) {
            out = ins->text;
            return true;
        }
        // The whole history with its last row live: a feed of whole series
        // replaces the rows it had.
        const bool full = !ins->rows.back().open.empty();
        const char s = ins->separator;
        out.assign(ins->text, 0, ins->lastRowOffset);
        out += live.date + s + live.close;
        if (full) out += s + live.open + s + live.high + s + live.low + s + live.volume;
        out += ins->lineEnd;
        return true;
    }
    auto field = [](const Row& row, Column column) -> const std::string& {
        switch (column) {
        case Column::Time:
            return row.date;
        case Column::Close:
            return row.close;
        case Column::Open:
            return row.open.empty() ? row.close : row.open;
        case Column::High:
            return row.high.empty() ? row.close : row.high;
        case Column::Low:
            return row.low.empty() ? row.close : row.low;
        case Column::Volume:
            break;
        }
        static const std::string none = "0";
        return row.volume.empty() ? none : row.volume;
    };
    auto append = [&](const Row& row) {
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (i > 0) out += ',';
            out += field(row, columns[i]);
        }
        out += "\r\n";
    };
    if (c.kind == Kind::Live || advance)
        append(live);
    else if (period == 'd')
        for (const Row& row : ins->rows)
            append(row);
    else
        for (const Row& row : Aggregate(ins->rows, period))
            append(row);
    return true;
}

bool FeedCore::Request(std::uint32_t conversation, std::string_view item, std::string& reply,
                       Failure& failure) {
    const auto it = conversations_.find(conversation);
    if (it == conversations_.end()) {
        failure = {"NoConversation", "no such conversation"};
        return false;
    }
    if (!Reply(it->second, item, false, reply, failure)) return false;
    if (reply.empty()) {
        failure = {"NoData", "no data for " + std::string(item)};
        return false;
    }
    return true;
}

bool FeedCore::AdviseStart(const std::string& client, std::uint32_t conversation,
                           std::string_view item, Failure& failure) {
    std::string scratch;
    if (!Request(conversation, item, scratch, failure)) return false;
    AdviseStop(conversation, item);
    loops_.push_back({conversation, std::string(item), client});
    return true;
}

void FeedCore::AdviseStop(std::uint32_t conversation, std::string_view item) {
    std::erase_if(loops_, [&](const Loop& l) {
        return l.conversation == conversation && SameText(l.item, item);
    });
}

void FeedCore::Disconnect(std::uint32_t conversation) {
    std::erase_if(loops_, [&](const Loop& l) { return l.conversation == conversation; });
    conversations_.erase(conversation);
}

void FeedCore::DropClient(const std::string& client) {
    std::erase_if(loops_, [&](const Loop& l) { return l.client == client; });
}

bool FeedCore::NextAdvise(Advice& advice) {
    while (!loops_.empty()) {
        const Loop& loop = loops_[nextLoop_++ % loops_.size()];
        const Conversation& c = conversations_.at(loop.conversation);
        Failure failure;
        if (Reply(c, loop.item, true, advice.data, failure)) {
            advice.client = loop.client;
            advice.conversation = loop.conversation;
            advice.item = loop.item;
            return true;
        }
        const std::uint32_t conversation = loop.conversation;
        const std::string item = loop.item;
        AdviseStop(conversation, item);
    }
    return false;
}

} // namespace velorin::feed
