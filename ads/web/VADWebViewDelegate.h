// Decides the navigations of a page and carries out the messages that its script sends by
// navigating to message URLs.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/Value.h"
#include "platform/ui/ViewController.h"
#include "platform/web/WebView.h"

namespace valdren {

class VADClickTracker;
class VADNotification;
class VADOpener;

/// Posted on the platform's default centre for each message and each navigation that the page's
/// user made; the object is the `platform::WebView`, the user info "u" the address and, for
/// messages, "a" the message's name. For the embedding application.
inline constexpr const char* VADWebViewDelegateDidReceiveWebAction = "didReceiveWebAction";

/// Owned by reference counting, because a page's message may end the life of its screen. Web views
/// refer to it weakly.
class VADWebViewDelegate : public platform::WebViewDelegate,
                           public std::enable_shared_from_this<VADWebViewDelegate> {
 public:
  /// Its pages open no screens.
  VADWebViewDelegate();
  explicit VADWebViewDelegate(std::unique_ptr<VADOpener> opener);
  virtual ~VADWebViewDelegate();
  VADWebViewDelegate(const VADWebViewDelegate&) = delete;
  VADWebViewDelegate& operator=(const VADWebViewDelegate&) = delete;

  /// Tells the page the orientation as an angle; nothing for an unknown one.
  static void notifyWebViewOfOrientationChange(platform::WebView& webView,
                                               platform::InterfaceOrientation orientation);

  /// Whose page the web view shows, as `platform::URL::origin`; none where that is nobody's, or the
  /// page is not known.
  static std::optional<std::string> originOfPage(const platform::WebView& webView);

  /// Whether a page has been loaded to its end.
  bool hasLoadedAtLeastOnce() const { return hasLoadedAtLeastOnce_; }
  /// Never null.
  VADOpener* opener() const { return opener_.get(); }

  /// The screen over which destinations are presented and which "close" closes; not owned.
  platform::ViewController* viewController() const { return viewController_.get(); }
  void setViewController(platform::WeakPtr<platform::ViewController> viewController) {
    viewController_ = viewController;
  }
  /// The web view of the screen that opened this one; not owned.
  platform::WebView* openingWebView() const { return openingWebView_.get(); }
  void setOpeningWebView(platform::WeakPtr<platform::WebView> webView) {
    openingWebView_ = webView;
  }

  /// Throws std::invalid_argument for a message URL that stands for no message, and
  /// std::out_of_range for one whose name is missing; the platform refuses the navigation then.
  bool webViewShouldStartLoad(platform::WebView& webView, const platform::URLRequest& request,
                              platform::NavigationType type) override;
  void webViewDidStartLoad(platform::WebView& webView) override;
  void webViewDidFinishLoad(platform::WebView& webView) override;
  void webViewDidFailLoad(platform::WebView& webView, const platform::Error& error) override;

  /// Fires a ping; with `appendSpamSignals`, the click signals for the URL's "ai" value go along.
  /// Replaces a ping of this delegate that is still under way.
  void trackURLString(const std::string* urlString, bool appendSpamSignals);
  void processTouchSignals(const platform::Dictionary& parameters);
  /// Tells the page which of the URLs something on this system opens.
  void processCanOpenURLs(const std::vector<std::string>& urls, platform::WebView& webView);
  /// Runs "js" in the page that opened this one's screen.
  void evaluateJavaScriptInOpener(const platform::Dictionary& parameters);
  /// The value's leading integer, or -1 when there is none under the key.
  static int intForKey(std::string_view key, const platform::Dictionary& dictionary);

 protected:
  /// The origin that a page without an address of its own has from the one that gave it.
  virtual std::optional<std::string> originOfGivenPage() const { return std::nullopt; }
  /// Called once, after the first page has been loaded.
  virtual void loadedFirstPage(platform::WebView&) {}

 private:
  void performMessage(const VADNotification& notification, const platform::URL& url,
                      platform::WebView& webView);
  void askOpener(const platform::Dictionary& parameters, platform::WebView& webView);
  /// Whether one message more may wait for the next turn of the run loop; counts it.
  bool mayDefer();

  bool hasLoadedAtLeastOnce_ = false;
  int deferredMessages_ = 0;
  std::unique_ptr<VADOpener> opener_;
  std::shared_ptr<VADClickTracker> tracker_;
  platform::WeakPtr<platform::ViewController> viewController_;
  platform::WeakPtr<platform::WebView> openingWebView_;
};

}  // namespace valdren
