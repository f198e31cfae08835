#include "ads/telemetry/VADClickTrackers.h"

#include "platform/base/RunLoop.h"

namespace valdren {
namespace {

/// A page may open one destination after another, and a server may send ad after ad, each with its
/// pings.
constexpr std::size_t kMostTrackers = 1000;

}  // namespace

VADClickTrackers::~VADClickTrackers() {
  invalidateWeakReferences();
  for (const auto& tracker : trackers_) tracker->reset();
}

void VADClickTrackers::trackURLs(const std::vector<platform::URL>& urls) {
  for (const platform::URL& url : urls) {
    if (trackers_.size() >= kMostTrackers) cleanupTrackers();
    if (trackers_.size() >= kMostTrackers) {
      log_("pings are dropped, for there are too many under way");
      return;
    }
    log_("ping to " + url.absoluteString());
    const auto tracker = std::make_shared<VADClickTracker>();
    tracker->setDelegate(this);
    tracker->trackURL(url);
    trackers_.insert(tracker);
  }
}

void VADClickTrackers::cancelPendingActions() {
  platform::RunLoop::shared().cancelPerformRequests(*this);
}

void VADClickTrackers::trackerDidRedirect(VADClickTracker&, const platform::URL& url) {
  log_("a ping has arrived at " + url.absoluteString());
  cleanupTrackersOnNextTurn();
}

void VADClickTrackers::trackerDidFailWithError(VADClickTracker&,
                                               const std::optional<platform::Error>& error) {
  log_("a ping has failed: " + describedFailure(error));
  cleanupTrackersOnNextTurn();
}

void VADClickTrackers::cleanupTrackersOnNextTurn() {
  platform::RunLoop::shared().performAfterDelay(*this, platform::kNextTurn,
                                                [this] { cleanupTrackers(); });
}

void VADClickTrackers::cleanupTrackers() {
  // Those that the system ended in the background have no outcome, and no URL any more.
  std::erase_if(trackers_, [](const auto& tracker) {
    return tracker->hasTracked() || !tracker->trackingURL();
  });
}

}  // namespace valdren
