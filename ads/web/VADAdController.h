// What the web side of a banner asks of the loader behind it.
#pragma once

#include <memory>
#include <vector>

#include "platform/base/URL.h"
#include "platform/base/WeakPtr.h"
#include "platform/ui/ViewController.h"

namespace valdren {

class VADAdEvents;
class VADRequestPrivate;
class VADWebView;

/// How far a loader has come with its present request.
enum VADState : int {
  kVADStateIdle = 0,
  kVADStateLoadingScript = 1,
  kVADStateScriptFailed = 2,
  kVADStateBuildingURL = 3,
  kVADStateLoadingAd = 4,
  kVADStateRenderingAd = 5,
  kVADStateShowingAd = 6,
  kVADStateFailed = 7,
};

/// Implemented by the loader, `VADObjectPrivate`. Whoever calls in from outside the loader holds a
/// reference to it until the call is over, because a publisher may throw the banner away in any
/// delegate callback.
class VADAdController : public virtual platform::WeakTarget,
                        public std::enable_shared_from_this<VADAdController> {
 public:
  virtual VADState state() const = 0;
  virtual void changeState(VADState state) = 0;
  /// When an ad was last shown, in seconds by `VADTiming::counter`; 0 before the first.
  virtual double timeLastLoaded() const = 0;
  /// The request in force; null before the first.
  virtual const std::shared_ptr<VADRequestPrivate>& request() const = 0;
  /// Never null.
  virtual const std::shared_ptr<VADAdEvents>& delegateManager() const = 0;
  /// Null when the publisher has set none, or when it is gone.
  virtual platform::ViewController* rootViewController() const = 0;
  /// The view that shows the ad. Never null.
  virtual const std::shared_ptr<VADWebView>& webView() const = 0;
  /// The impression pings that the present ad asked for.
  virtual std::vector<platform::URL> pendingTrackingURLs() const = 0;
  /// The click pings that the present ad asked for.
  virtual std::vector<platform::URL> pendingClickURLs() const = 0;
  /// A `VADOrientationCode` for the screens that the ad opens.
  virtual int supportedOrientations() const = 0;
  /// Fires a ping at each URL. Those beyond 1000 under way at once are dropped.
  virtual void trackURLs(const std::vector<platform::URL>& urls) = 0;
  /// The web process of the ad's page, shown or on its way, is gone.
  virtual void webProcessDidEnd() {}

 protected:
  ~VADAdController() = default;
};

}  // namespace valdren
