#pragma once
// The feed server's rules, free of any bus: the services and topics it
// serves from folders of ".PRC" files, the reply text of every item the
// program asks for, and the simulated ticks its advise loops push.
//
//   "Reuter", topic "TS1": '/RI=<stem> /ST=... /EN=... /FI=TIMESTAMP,<fields> /PE=<d|w|m>'
//                          the history of <folder>/<stem>.PRC, weekly and
//                          monthly rows made from the daily ones
//   "Reuter", topic "IDN": "<stem>,[TRADE TIME,<fields>]" or "<stem>": one live row
//   "Excel", topic "[tickdb.xls]<stem>,<sheet>", item "R3C1:R2000C5": the
//                          instrument's tick rows (time, close, open, high, low)
//   a --map SERVICE/TOPIC=FOLDER: item <stem>, the file's bytes as they stand
//
// Rows end in CR LF; the Reuter topics separate fields by commas, the tick
// sheet by TABs. File stems, services and topics match without regard to case.

#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace velorin::feed {

// A service and topic served from a folder (--map SERVICE/TOPIC=FOLDER).
struct FolderMap {
    std::string service, topic, folder;
};

struct FeedOptions {
    std::string folder = "."; // the Reuter and Excel instruments
    double rate = 2.0;        // simulated ticks per second over all advise loops
    std::uint64_t seed = 0;
    bool seedGiven = false; // else the front takes one from the clock
    std::vector<FolderMap> maps;
    bool help = false;
};

extern const char FeedUsage[];

// Reads the command line (argv[0] is the program); false with `error`.
bool ParseFeedOptions(int argc, const char* const* argv, FeedOptions& options, std::string& error);

// Why a call was refused: `name` is the last part of the bus error name
// (NoService, NoTopic, NoConversation, NoItem, NoData).
struct Failure {
    std::string name, message;
};

// New data of one advise loop, for `client`.
struct Advice {
    std::string client;
    std::uint32_t conversation = 0;
    std::string item, data;
};

class FeedCore {
  public:
    FeedCore(FeedOptions options, std::uint64_t seed);

    // The services served, as their bus names spell them.
    std::vector<std::string> Services() const;
    // The time of day the live rows carry, in seconds from midnight.
    void SetClock(int secondsOfDay) { clock_ = secondsOfDay; }

    // Conversations belong to the server, not to a caller: any caller may
    // use the number until it is disconnected. The oldest go beyond
    // MaxConversations, so callers that never disconnect cost nothing lasting.
    static constexpr std::size_t MaxConversations = 4096;

    // A conversation on `service` and `topic`; 0 when refused.
    std::uint32_t Connect(std::string_view service, std::string_view topic, Failure& failure);
    bool Request(std::uint32_t conversation, std::string_view item, std::string& reply,
                 Failure& failure);
    // An advise loop whose data go to `client`.
    bool AdviseStart(const std::string& client, std::uint32_t conversation, std::string_view item,
                     Failure& failure);
    void AdviseStop(std::uint32_t conversation, std::string_view item);
    void Disconnect(std::uint32_t conversation);
    // Ends the advise loops of a client that left the bus.
    void DropClient(const std::string& client);
    bool HasAdviseLoops() const { return !loops_.empty(); }
    // One simulated tick, for the advise loops in turn: the instrument
    // moves and the loop's new data are made. False without loops.
    bool NextAdvise(Advice& advice);

  private:
    enum class Kind { History, Live, Ticks, Folder };
    struct Row {
        std::string date, close, open, high, low, volume; // open..volume empty: two columns
    };
    struct Instrument {
        std::string text; // the file as read
        std::vector<Row> rows;
        std::size_t lastRowOffset = 0;
        char separator = ',';
        const char* lineEnd = "\r\n";
        int decimals = 2;
        std::int64_t last = 0, open = 0, high = 0, low = 0, volume = 0; // the live day
        std::deque<std::string> ticks;
    };
    struct Conversation {
        Kind kind;
        std::string folder;
        Instrument* tickInstrument = nullptr;
    };
    struct Loop {
        std::uint32_t conversation;
        std::string item, client;
    };

    Instrument* Load(const std::string& folder, std::string_view stem);
    void Step(Instrument& instrument);
    void AddTick(Instrument& instrument);
    std::string Price(const Instrument& instrument, std::int64_t units) const;
    std::string TimeOfDay() const;
    bool Reply(const Conversation& c, std::string_view item, bool live, std::string& out,
               Failure& failure);

    FeedOptions options_;
    std::uint64_t random_;
    int clock_ = 9 * 3600;
    std::map<std::string, Instrument> instruments_; // by folder and lower-case stem
    std::map<std::uint32_t, Conversation> conversations_;
    std::uint32_t nextConversation_ = 1;
    std::vector<Loop> loops_;
    std::size_t nextLoop_ = 0;
};

} // namespace velorin::feed
