// The refresh of a banner: one pending call and the interval that it was last given.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "platform/base/RunLoop.h"

namespace valdren {

/// Destroying it drops the pending refresh.
class VADReloadTimer {
 public:
  explicit VADReloadTimer(std::function<void()> reload) : reload_(std::move(reload)) {}

  /// The interval in a response header: its leading number, 0 when it has none or is not a number.
  static double secondsFromHeader(std::string_view header);

  /// Drops the pending refresh; then, unless `seconds` is 0, asks for one after as long and keeps
  /// the interval. Below 0 means at once.
  void scheduleReloadTimer(double seconds);
  /// Asks for the refresh that has come at a bad time once more, after the last interval, though
  /// not within the next half second.
  void putOff();
  /// Starts the last interval anew; only drops the pending refresh when there was none.
  void activateReloadTimer() { scheduleReloadTimer(reloadSeconds_); }
  void resetReloadTimer() { reloadTimer_.reset(); }

  /// The last interval that was not 0; 0 at first.
  double reloadSeconds() const { return reloadSeconds_; }
  bool isPending() const { return reloadTimer_ && reloadTimer_->isValid(); }

 private:
  void start(double seconds);

  std::function<void()> reload_;
  std::unique_ptr<platform::Timer> reloadTimer_;
  double reloadSeconds_ = 0;
};

}  // namespace valdren
