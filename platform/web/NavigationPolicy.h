// Which navigations of a page may go ahead.
#pragma once

#include <webkit/webkit.h>

#include <functional>
#include <string>
#include <string_view>

#include "platform/web/LoadTracker.h"
#include "platform/web/PageBudget.h"
#include "platform/web/WebView.h"

namespace valdren::platform {

/// Asks the client about each navigation of the main frame and of subframes, and about each new
/// window, which becomes a navigation of the same view. Whatever the client says, only what a web
/// page consists of is loaded, and no download is begun. An address that is no page's is a message
/// to the client, which is not asked about one over `kLongestMessage`. All outlive it.
class NavigationPolicy : public Trackable {
 public:
  /// In bytes.
  static constexpr std::size_t kLongestMessage = 64 * 1024;
  /// In bytes. Reading a longer one stops the main thread for too long, so the page that goes there
  /// is ended. One that is the page itself ("data:") is only refused.
  static constexpr std::size_t kLongestAddress = 2 * 1024 * 1024;

  NavigationPolicy(WebKitWebView* view, WebEngine::Client& client, LoadTracker& loads);
  ~NavigationPolicy();
  NavigationPolicy(const NavigationPolicy&) = delete;
  NavigationPolicy& operator=(const NavigationPolicy&) = delete;

  /// Whether media may play before the person has done something in the page.
  void setAutoplay(bool allowed) { autoplay_ = allowed; }

  /// Is told when the page that the web view was asked for may go ahead: with false before its
  /// first byte was asked for, with true when its response has begun to arrive.
  void setProceedHandler(std::function<void(bool responded)> handler) {
    proceed_ = std::move(handler);
  }

  /// Whether a page can come from there at all.
  static bool canLoad(const URL& url);

 private:
  static gboolean decided(WebKitWebView* view, WebKitPolicyDecision* decision,
                          WebKitPolicyDecisionType type, gpointer self);
  static GtkWidget* windowAsked(WebKitWebView* view, WebKitNavigationAction* action, gpointer self);

  void decideResponse(WebKitResponsePolicyDecision* decision);
  bool allows(WebKitNavigationAction* action);
  bool ask(WebKitNavigationAction* action, std::string_view address);
  bool isTooLong(std::string_view address);
  bool isFlood(std::string_view address);
  void endPage(const char* why);
  void openHere(WebKitNavigationAction* action);
  void use(WebKitPolicyDecision* decision) const;

  WebKitWebView* view_;
  WebEngine::Client& client_;
  LoadTracker& loads_;
  PageBudget budget_;
  std::string approved_;  // the client was asked already; empty when there is none
  std::function<void(bool)> proceed_ = [](bool) {};
  bool autoplay_ = false;
  bool saidTooLong_ = false;
  bool isEnding_ = false;  // until the next turn
};

}  // namespace valdren::platform
