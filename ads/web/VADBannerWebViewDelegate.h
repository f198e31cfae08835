// The web view delegate of a banner: tells clicks from the ad's own doings and follows the loader's
// states.
#pragma once

#include <memory>

#include "ads/web/VADAdController.h"
#include "ads/web/VADWebViewDelegate.h"

namespace valdren {

class VADBannerWebViewDelegate final : public VADWebViewDelegate {
 public:
  /// Becomes the delegate of the loader's web view. The loader is not owned.
  static std::shared_ptr<VADBannerWebViewDelegate> initWithObjectPrivate(
      VADAdController& loader, std::unique_ptr<VADOpener> opener);
  ~VADBannerWebViewDelegate() override;

  /// Whether such a navigation, now, would be the user's click.
  bool isClick(platform::NavigationType type) const;

  bool webViewShouldStartLoad(platform::WebView& webView, const platform::URLRequest& request,
                              platform::NavigationType type) override;
  void webViewDidFinishLoad(platform::WebView& webView) override;
  void webViewDidFailLoad(platform::WebView& webView, const platform::Error& error) override;
  void webViewProcessDidEnd(platform::WebView& webView, const platform::Error& error) override;

 private:
  VADBannerWebViewDelegate(VADAdController& loader, std::unique_ptr<VADOpener> opener);
  void openClickURL(const platform::URL& url, platform::WebView& webView);

  platform::WeakPtr<VADAdController> private_;
};

}  // namespace valdren
