#include "market_data/live_feed.h"

namespace velorin {
namespace {

class AbsentFeed final : public LiveFeed {
  public:
    void Disconnect(std::intptr_t) override {}
    LiveValueResult OpenLiveValue() override { return LiveValueResult::NoConnection; }
};

AbsentFeed absentFeed;
LiveFeed* installed = &absentFeed;

} // namespace

LiveFeed& TheLiveFeed() {
    return *installed;
}

LiveFeed* InstallLiveFeed(LiveFeed* feed) {
    LiveFeed* previous = installed == &absentFeed ? nullptr : installed;
    installed = feed ? feed : &absentFeed;
    return previous;
}

} // namespace velorin
