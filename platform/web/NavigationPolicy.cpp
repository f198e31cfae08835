#include "platform/web/NavigationPolicy.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/base/GObjectPtr.h"
#include "platform/base/Log.h"
#include "platform/base/RunLoop.h"

namespace valdren::platform {
namespace {

/// Valid as long as the action. Pages control the length, so callers check it before copying.
std::string_view addressOf(WebKitNavigationAction* action) {
  const char* const address =
      webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
  return address ? address : "";
}

Headers headersOf(WebKitURIRequest* request) {
  Headers headers;
  if (SoupMessageHeaders* const given = webkit_uri_request_get_http_headers(request)) {
    soup_message_headers_foreach(
        given,
        [](const char* name, const char* value, gpointer into) {
          (*static_cast<Headers*>(into))[name] = value;
        },
        &headers);
  }
  return headers;
}

/// Whether the response cannot be shown or is marked as an attachment.
bool isDownload(WebKitResponsePolicyDecision* decision) {
  if (!webkit_response_policy_decision_is_mime_type_supported(decision)) return true;
  WebKitURIResponse* const response = webkit_response_policy_decision_get_response(decision);
  SoupMessageHeaders* const headers = webkit_uri_response_get_http_headers(response);
  char* disposition = nullptr;
  if (!headers || !soup_message_headers_get_content_disposition(headers, &disposition, nullptr)) {
    return false;
  }
  const bool attachment = g_ascii_strcasecmp(disposition, "attachment") == 0;
  g_free(disposition);
  return attachment;
}

bool isLoadable(std::string_view scheme) {
  constexpr std::array<std::string_view, 5> kLoadable{"http", "https", "about", "data", "blob"};
  return std::find(kLoadable.begin(), kLoadable.end(), scheme) != kLoadable.end();
}

}  // namespace

bool NavigationPolicy::canLoad(const URL& url) {
  return isLoadable(url.lowercaseScheme());
}

NavigationPolicy::NavigationPolicy(WebKitWebView* view, WebEngine::Client& client,
                                   LoadTracker& loads)
    : view_(view), client_(client), loads_(loads) {
  g_signal_connect(view_, "decide-policy", G_CALLBACK(decided), this);
  g_signal_connect(view_, "create", G_CALLBACK(windowAsked), this);
}

NavigationPolicy::~NavigationPolicy() {
  g_signal_handlers_disconnect_by_data(view_, this);
}

gboolean NavigationPolicy::decided(WebKitWebView*, WebKitPolicyDecision* decision,
                                   WebKitPolicyDecisionType type, gpointer self) {
  auto& policy = *static_cast<NavigationPolicy*>(self);
  if (type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE) {
    policy.decideResponse(WEBKIT_RESPONSE_POLICY_DECISION(decision));
    return TRUE;
  }
  if (policy.isEnding_) {
    webkit_policy_decision_ignore(decision);
    return TRUE;
  }
  WebKitNavigationAction* const action = webkit_navigation_policy_decision_get_navigation_action(
      WEBKIT_NAVIGATION_POLICY_DECISION(decision));
  if (type == WEBKIT_POLICY_DECISION_TYPE_NEW_WINDOW_ACTION) {
    policy.openHere(action);
    webkit_policy_decision_ignore(decision);
    return TRUE;
  }
  const std::weak_ptr<const void> alive = policy.lifetime();
  const bool allowed = policy.allows(action);
  if (allowed && !alive.expired()) {
    policy.use(decision);
  } else {
    webkit_policy_decision_ignore(decision);
  }
  return TRUE;
}

GtkWidget* NavigationPolicy::windowAsked(WebKitWebView*, WebKitNavigationAction* action,
                                         gpointer self) {
  static_cast<NavigationPolicy*>(self)->openHere(action);
  return nullptr;
}

void NavigationPolicy::decideResponse(WebKitResponsePolicyDecision* decision) {
  if (isDownload(decision)) {
    webkit_policy_decision_ignore(WEBKIT_POLICY_DECISION(decision));
    return;
  }
  if (webkit_response_policy_decision_is_main_frame_main_resource(decision)) proceed_(true);
  webkit_policy_decision_use(WEBKIT_POLICY_DECISION(decision));
}

bool NavigationPolicy::allows(WebKitNavigationAction* action) {
  const std::string_view address = addressOf(action);
  if (!approved_.empty() && address == approved_) {
    approved_.clear();
    return true;
  }
  const std::weak_ptr<const void> alive = lifetime();
  const bool allowed = ask(action, address);
  if (alive.expired()) return false;
  if (!allowed) {
    loads_.refused(address);
  } else if (loads_.awaits(address)) {
    budget_ = {};  // the next page does not pay for this one
    proceed_(false);
  }
  return allowed;
}

bool NavigationPolicy::ask(WebKitNavigationAction* action, std::string_view address) {
  if (isFlood(address) || isTooLong(address)) return false;
  const std::optional<URL> url = URL::fromPage(address);
  if (!url) return false;
  URLRequest request{*url};
  request.headers = headersOf(webkit_navigation_action_get_request(action));
  request.headers["User-Agent"] =
      webkit_settings_get_user_agent(webkit_web_view_get_settings(view_));
  const int type = webkit_navigation_action_get_navigation_type(action);
  return client_.engineShouldStartLoad(request, static_cast<NavigationType>(type)) && canLoad(*url);
}

bool NavigationPolicy::isTooLong(std::string_view address) {
  // The engine writes known schemes in lower case.
  if (address.size() <= kLongestMessage || isLoadable(address.substr(0, address.find(':')))) {
    return false;
  }
  if (!std::exchange(saidTooLong_, true)) {
    logWarning("A page's messages over 64 KiB are refused.");
  }
  return true;
}

bool NavigationPolicy::isFlood(std::string_view address) {
  if (loads_.awaits(address)) return false;
  const double before = budget_.refused();
  const bool granted = budget_.take(address.size());
  if (address.size() > kLongestAddress && !address.starts_with("data:")) {
    endPage("A page that goes to an address of more than 2 MiB is ended.");
    return true;
  }
  if (granted) return false;
  if (budget_.refused() >= PageBudget::kPatience) {
    endPage("A page that floods the application with navigations is ended.");
  } else if (before == 0) {
    logWarning("A page's flood of navigations is refused.");
  }
  return true;
}

void NavigationPolicy::endPage(const char* why) {
  // Addresses that it has already sent are refused without reading them, because reading is slow.
  if (std::exchange(isEnding_, true)) return;
  logWarning(why);
  RunLoop::shared().performAfterDelay(*this, kNextTurn, [this] {
    isEnding_ = false;
    budget_ = {};
    webkit_web_view_terminate_web_process(view_);  // may destroy this
  });
}

void NavigationPolicy::openHere(WebKitNavigationAction* action) {
  const std::weak_ptr<const void> alive = lifetime();
  if (isEnding_ || !ask(action, addressOf(action)) || alive.expired()) return;
  approved_ = addressOf(action);
  loads_.asked(approved_, true);
  webkit_web_view_load_request(view_, webkit_navigation_action_get_request(action));
}

void NavigationPolicy::use(WebKitPolicyDecision* decision) const {
  const GObjectPtr<WebKitWebsitePolicies> policies(WEBKIT_WEBSITE_POLICIES(
      g_object_new(WEBKIT_TYPE_WEBSITE_POLICIES, "autoplay",
                   autoplay_ ? WEBKIT_AUTOPLAY_ALLOW : WEBKIT_AUTOPLAY_DENY, nullptr)));
  webkit_policy_decision_use_with_policies(decision, policies.get());
}

}  // namespace valdren::platform
