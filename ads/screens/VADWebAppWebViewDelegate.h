// The web view delegate of a web app screen: times the page, tells it that it is shown, and ends
// its web view some time after the screen.
#pragma once

#include <memory>

#include "ads/web/VADWebViewDelegate.h"

namespace valdren {

class VADWebView;
struct VADWebAppViewControllerPrivate;

class VADWebAppWebViewDelegate final : public VADWebViewDelegate {
 public:
  /// The screen's state is not owned.
  static std::shared_ptr<VADWebAppWebViewDelegate> initWithWebAppPrivate(
      VADWebAppViewControllerPrivate& webAppPrivate);
  ~VADWebAppWebViewDelegate() override;

  /// Whether the page is to be told that it is shown. When it is not loading it is told at once,
  /// else after its load; once in its life.
  bool pendingOnShow() const { return pendingOnShow_; }
  void setPendingOnShow(bool pending);
  void postOnShowEvent();

  /// The screen goes away: forgets it, and ends the web view and this delegate in two seconds, so
  /// that a message of the page which is still at work can come to its end.
  void releaseWithWebView(std::shared_ptr<VADWebView> webView);

  void webViewDidStartLoad(platform::WebView& webView) override;
  void webViewDidFinishLoad(platform::WebView& webView) override;

 protected:
  std::optional<std::string> originOfGivenPage() const override;
  void loadedFirstPage(platform::WebView& webView) override;

 private:
  explicit VADWebAppWebViewDelegate(VADWebAppViewControllerPrivate& webAppPrivate);
  void delayedRelease(VADWebView& webView);

  platform::WeakPtr<VADWebAppViewControllerPrivate> webAppPrivate_;
  bool pendingOnShow_ = false;
  bool calledOnShow_ = false;
};

}  // namespace valdren
