// Decides which navigations of a page are allowed.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/web/LoadTracker.h"
#include "platform/web/PageBudget.h"
#include "platform/web/WebEngineLibrary.h"
#include "platform/web/WebView.h"

namespace valdren::platform {

/// Asks the client about each navigation of the main frame and of subframes, and about each new
/// window, which becomes a navigation of the same view. Only page content is loaded, whatever the
/// client answers, and nothing is downloaded. Other addresses are messages to the client; those
/// over `kLongestMessage` are refused without asking. All arguments outlive this object.
class NavigationPolicy : public WeakTarget {
 public:
  /// In bytes.
  static constexpr std::size_t kLongestMessage = 64 * 1024;
  /// In bytes. Reading a longer address blocks the main thread too long, so its page is ended. A
  /// longer "data:" page is only refused.
  static constexpr std::size_t kLongestAddress = 2 * 1024 * 1024;

  NavigationPolicy(WebKitWebView* view, WebEngine::Client& client, LoadTracker& loads);
  ~NavigationPolicy();
  NavigationPolicy(const NavigationPolicy&) = delete;
  NavigationPolicy& operator=(const NavigationPolicy&) = delete;

  /// Whether media may play before a user action.
  void setAutoplay(bool allowed) { autoplay_ = allowed; }

  /// Called when the requested page may proceed: with false before its first request, with true
  /// when its response has started.
  void setProceedHandler(std::function<void(bool responded)> handler) {
    proceed_ = std::move(handler);
  }

  /// Whether this address can be a page at all.
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
  std::string approved_;  // already allowed by the client; empty when there is none
  std::function<void(bool)> proceed_ = [](bool) {};
  bool autoplay_ = false;
  bool saidTooLong_ = false;
  bool isEnding_ = false;  // true until the next turn
};

}  // namespace valdren::platform
