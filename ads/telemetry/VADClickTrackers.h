// The pings of one ad after another.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "ads/telemetry/VADClickTracker.h"

namespace valdren {

/// Keeps a tracker for each ping until its outcome is known. Its end drops what is under way. Main
/// thread only.
class VADClickTrackers final : private VADClickTrackerDelegate {
 public:
  /// `log` takes a line about each ping.
  explicit VADClickTrackers(std::function<void(const std::string& line)> log)
      : log_(std::move(log)) {}
  ~VADClickTrackers();
  VADClickTrackers(const VADClickTrackers&) = delete;
  VADClickTrackers& operator=(const VADClickTrackers&) = delete;

  /// Fires a ping at each URL. Those beyond 1000 under way at once are dropped.
  void trackURLs(const std::vector<platform::URL>& urls);
  /// Those that have not been cleared away yet.
  const std::set<std::shared_ptr<VADClickTracker>>& pending() const { return trackers_; }
  /// Drops the clearing away that is still to come.
  void cancelPendingActions();

 private:
  void trackerDidRedirect(VADClickTracker&, const platform::URL&) override;
  void trackerDidFailWithError(VADClickTracker&, const std::optional<platform::Error>&) override;
  void cleanupTrackersOnNextTurn();
  void cleanupTrackers();

  std::function<void(const std::string& line)> log_;
  std::set<std::shared_ptr<VADClickTracker>> trackers_;
};

}  // namespace valdren
