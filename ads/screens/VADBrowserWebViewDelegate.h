// The web view delegate of the in-app browser: counts navigations, times the landing page, keeps
// the toolbar up to date.
#pragma once

#include <memory>

#include "ads/web/VADWebViewDelegate.h"

namespace valdren {

class VADBrowserController;

class VADBrowserWebViewDelegate final : public VADWebViewDelegate {
 public:
  /// The browser is not owned.
  static std::shared_ptr<VADBrowserWebViewDelegate> initWithBrowserController(
      VADBrowserController& browser);
  ~VADBrowserWebViewDelegate() override;

  bool webViewShouldStartLoad(platform::WebView& webView, const platform::URLRequest& request,
                              platform::NavigationType type) override;
  void webViewDidStartLoad(platform::WebView& webView) override;
  void webViewDidFinishLoad(platform::WebView& webView) override;
  void webViewDidFailLoad(platform::WebView& webView, const platform::Error& error) override;
  void webViewDidChangeTitle(platform::WebView& webView) override;

 private:
  explicit VADBrowserWebViewDelegate(VADBrowserController& browser);

  platform::WeakPtr<VADBrowserController> browserController_;
};

}  // namespace valdren
