// The ad banner that an application puts into its views.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "ads/api/VADBannerViewDelegate.h"
#include "ads/request/VADRequest.h"
#include "platform/base/Export.h"
#include "platform/ui/View.h"
#include "platform/ui/ViewController.h"

namespace valdren {

class VADDelegateManager;
class VADObjectPrivate;
class VADWebView;

/// Shows an ad of 320 x 50 points, refreshed as the ad server says:
///
///     auto banner = std::make_shared<valdren::VADBannerView>(platform::Rect{0, 0, 320, 50});
///     banner->setAdUnitID("your ad unit");
///     banner->setRootViewController(&screen);
///     view->addSubview(banner);
///     banner->loadRequest(valdren::VADRequest::request());
///
/// Main thread only. It may be removed at any time, also from its delegate's callbacks.
class VALDREN_EXPORT VADBannerView : public platform::View {
 public:
  /// The frame may be empty and set later.
  explicit VADBannerView(const platform::Rect& frame = {});
  ~VADBannerView() override;

  /// Which ads to show; empty at first.
  std::string adUnitID() const;
  void setAdUnitID(const std::string& adUnitID);

  /// The screen over which full-screen pages open; required before `loadRequest`. Not owned.
  platform::ViewController* rootViewController() const;
  void setRootViewController(platform::ViewController* controller);

  /// Told what happens to the ad; null stops that. Not owned.
  VADBannerViewDelegate* delegate() const;
  void setDelegate(VADBannerViewDelegate* delegate);

  /// Always NO, also after a refresh.
  bool hasAutoRefreshed() const;
  /// The view that shows the ad, never null; for the client's own code.
  const std::shared_ptr<VADWebView>& webView() const;

  /// Asks for an ad; null stands for a request with default values. The banner keeps a copy.
  /// Without a root view controller, logs so and reports error code 0. While a request is under
  /// way, and in the background, this does nothing; a launch need not be over. On another thread
  /// than the main one, and without a named ad network, one log line says so.
  void loadRequest(const std::shared_ptr<VADRequest>& request);

  /// A touch of the ad often opens a page, which is made ready for.
  platform::View* hitTest(platform::Point point, platform::EventType type) override;

 private:
  void commonInitializer();
  std::shared_ptr<VADObjectPrivate> loader() const;
  std::shared_ptr<VADDelegateManager> delegateManager() const;
};

}  // namespace valdren
