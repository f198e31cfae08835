// What happens to an ad, for whoever wants to be told.
#pragma once

namespace valdren {

class VADRequestError;

/// Implemented by `VADDelegateManager`, which tells the publisher. Held by reference counting.
/// Whoever is told may end the banner, its loader and its screens before the call returns.
class VADAdEvents {
 public:
  virtual ~VADAdEvents() = default;

  virtual void didReceiveAd() = 0;
  virtual void didFailToReceiveAdWithError(const VADRequestError& error) = 0;
  virtual void willPresentScreen() = 0;
  virtual void willDismissScreen() = 0;
  virtual void didDismissScreen() = 0;
  virtual void willLeaveApplication() = 0;
};

}  // namespace valdren
