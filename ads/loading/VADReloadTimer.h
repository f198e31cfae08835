// The refresh of a banner: one pending call and the interval that it was last given. It waits while
// nobody sees the banner.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "platform/base/RunLoop.h"
#include "platform/base/WeakPtr.h"

namespace valdren {

/// Nothing is pending in the background and while a screen covers the banner; the interval starts
/// anew afterwards. Destroying it drops the pending refresh.
class VADReloadTimer : public platform::WeakTarget {
 public:
  explicit VADReloadTimer(std::function<void()> reload);
  ~VADReloadTimer();
  VADReloadTimer(const VADReloadTimer&) = delete;
  VADReloadTimer& operator=(const VADReloadTimer&) = delete;

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
  /// The same, unless a refresh is pending: for a request that brought no ad and set no interval.
  void keepRefreshing();
  void resetReloadTimer() { reloadTimer_.reset(); }

  /// The last interval that was not 0; 0 at first.
  double reloadSeconds() const { return reloadSeconds_; }

 private:
  void observe(const char* name, void (VADReloadTimer::*handler)());
  void start(double seconds);

  std::function<void()> reload_;
  std::unique_ptr<platform::Timer> reloadTimer_;
  double reloadSeconds_ = 0;
};

}  // namespace valdren
