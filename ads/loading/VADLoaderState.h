// How far a loader has come with its present request.
#pragma once

#include <functional>
#include <memory>

#include "ads/web/VADAdController.h"
#include "platform/base/RunLoop.h"
#include "platform/base/Seconds.h"

namespace valdren {

/// Idle at first. A request goes through the states of `VADState` in their order; whatever ends it
/// leads to one in which the next is accepted.
class VADLoaderState {
 public:
  /// So long may the page of an ad take until all of it is there, in seconds.
  static constexpr platform::Seconds kShowSeconds{30};

  /// `notShown` is called when an ad has not shown in time.
  explicit VADLoaderState(std::function<void()> notShown) : notShown_(std::move(notShown)) {}

  VADState now() const { return now_; }
  /// Whether a request is under way, so that no other one is accepted.
  bool isMakingRequest() const;
  /// When an ad was last shown, in seconds by `VADTiming::counter`; 0 before the first.
  double timeLastLoaded() const { return timeLastLoaded_; }

  /// Drops what the present state waits for and goes on to another. The same one changes nothing.
  void change(VADState state);
  /// Keeps a call that the present state waits for.
  void waitFor(std::unique_ptr<platform::Timer> call) { awaited_ = std::move(call); }

  /// The state's name in the log.
  static const char* nameOf(VADState state);

 private:
  std::function<void()> notShown_;
  VADState now_ = kVADStateIdle;
  std::unique_ptr<platform::Timer> awaited_;
  double timeLastLoaded_ = 0;
};

}  // namespace valdren
