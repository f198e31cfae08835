#include "platform/web/WebKitEngine.h"

#include <gtkmm/widget.h>

#include <array>

#include "platform/Log.h"
#include "platform/gtk/NativeView.h"
#include "platform/web/Refusals.h"
#include "platform/web/WebSession.h"

namespace platform {
namespace {

constexpr const char* kBlank = "about:blank";

WebKitWebView* makeView(WebKitSettings* settings, WebKitWebView* related) {
  // A related view shares the other's web process, context and session.
  GObject* const view =
      related ? G_OBJECT(g_object_new(WEBKIT_TYPE_WEB_VIEW, "settings", settings, "related-view",
                                      related, nullptr))
              : G_OBJECT(g_object_new(WEBKIT_TYPE_WEB_VIEW, "settings", settings, "web-context",
                                      webContext(), "network-session", webSession(), nullptr));
  const GdkRGBA clear{0, 0, 0, 0};
  webkit_web_view_set_background_color(WEBKIT_WEB_VIEW(view), &clear);
  return WEBKIT_WEB_VIEW(view);
}

/// The address in the engine's own spelling.
std::string spelled(const std::string& address) {
  const auto request = GObjectPtr<WebKitURIRequest>::adopt(webkit_uri_request_new(address.c_str()));
  return webkit_uri_request_get_uri(request.get());
}

Error errorOf(const GError* error) {
  return {g_quark_to_string(error->domain), error->code, error->message};
}

bool isAttachment(WebKitURIResponse* response) {
  SoupMessageHeaders* const headers = webkit_uri_response_get_http_headers(response);
  char* disposition = nullptr;
  if (!headers || !soup_message_headers_get_content_disposition(headers, &disposition, nullptr)) {
    return false;
  }
  const bool attachment = g_ascii_strcasecmp(disposition, "attachment") == 0;
  g_free(disposition);
  return attachment;
}

/// What a page may consist of. Everything else is the delegate's to act on, never to load.
bool canLoad(const URL& url) {
  constexpr std::array<const char*, 5> kLoadable{"http", "https", "about", "data", "blob"};
  const std::string scheme = url.lowercaseScheme();
  for (const char* each : kLoadable) {
    if (scheme == each) return true;
  }
  return false;
}

std::string textOf(WebKitWebView* view, GAsyncResult* result) {
  GError* error = nullptr;
  const auto value =
      GObjectPtr<JSCValue>::adopt(webkit_web_view_evaluate_javascript_finish(view, result, &error));
  g_clear_error(&error);
  if (!value || jsc_value_is_undefined(value.get()) || jsc_value_is_null(value.get())) return {};
  char* const characters = jsc_value_to_string(value.get());
  std::string text = characters ? characters : "";
  g_free(characters);
  return text;
}

}  // namespace

WebKitEngine::WebKitEngine(View& host, Client& client, WebKitEngine* related)
    : host_(host),
      client_(client),
      settings_(GObjectPtr<WebKitSettings>::adopt(makeStrangersSettings())),
      view_(GObjectPtr<WebKitWebView>::share(
          makeView(settings_.get(), related ? related->view_.get() : nullptr))),
      loads_(client) {
  refuseWhatReachesBeyondThePage(view_.get());
  connectSignals();
  apply({});
  host_.native().setContent(Glib::wrap(GTK_WIDGET(view_.get())));
}

WebKitEngine::~WebKitEngine() {
  invalidateWeakReferences();
  g_signal_handlers_disconnect_by_data(view_.get(), this);
  host_.native().setContent(nullptr);
  webkit_web_view_stop_loading(view_.get());
}

void WebKitEngine::connectSignals() {
  using Policy =
      gboolean (*)(WebKitWebView*, WebKitPolicyDecision*, WebKitPolicyDecisionType, gpointer);
  const Policy decide = [](WebKitWebView*, WebKitPolicyDecision* decision,
                           WebKitPolicyDecisionType type, gpointer self) -> gboolean {
    auto& engine = *static_cast<WebKitEngine*>(self);
    if (type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE) {
      engine.decideResponse(decision);
    } else if (type == WEBKIT_POLICY_DECISION_TYPE_NEW_WINDOW_ACTION) {
      webkit_policy_decision_ignore(decision);
      engine.openHere(webkit_navigation_policy_decision_get_navigation_action(
          WEBKIT_NAVIGATION_POLICY_DECISION(decision)));
    } else if (engine.decideNavigation(decision)) {
      webkit_policy_decision_use(decision);
    } else {
      webkit_policy_decision_ignore(decision);
    }
    return TRUE;
  };
  g_signal_connect(view_.get(), "decide-policy", G_CALLBACK(decide), this);

  using Create = GtkWidget* (*)(WebKitWebView*, WebKitNavigationAction*, gpointer);
  const Create create = [](WebKitWebView*, WebKitNavigationAction* action,
                           gpointer self) -> GtkWidget* {
    static_cast<WebKitEngine*>(self)->openHere(action);
    return nullptr;
  };
  g_signal_connect(view_.get(), "create", G_CALLBACK(create), this);

  using Changed = void (*)(WebKitWebView*, WebKitLoadEvent, gpointer);
  const Changed changed = [](WebKitWebView*, WebKitLoadEvent event, gpointer self) {
    auto& engine = *static_cast<WebKitEngine*>(self);
    if (event == WEBKIT_LOAD_STARTED) engine.loads_.started();
    if (event == WEBKIT_LOAD_FINISHED) engine.loads_.finished();
  };
  g_signal_connect(view_.get(), "load-changed", G_CALLBACK(changed), this);

  using Failed = gboolean (*)(WebKitWebView*, WebKitLoadEvent, char*, GError*, gpointer);
  const Failed failed = [](WebKitWebView*, WebKitLoadEvent, char*, GError* error,
                           gpointer self) -> gboolean {
    static_cast<WebKitEngine*>(self)->loads_.failed(
        errorOf(error),
        g_error_matches(error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED));
    return TRUE;  // no error page
  };
  g_signal_connect(view_.get(), "load-failed", G_CALLBACK(failed), this);

  using Terminated = void (*)(WebKitWebView*, WebKitWebProcessTerminationReason, gpointer);
  const Terminated terminated = [](WebKitWebView*, WebKitWebProcessTerminationReason reason,
                                   gpointer self) {
    logWarning("The process of a web page has ended.");
    static_cast<WebKitEngine*>(self)->loads_.crashed(
        {"platform.web", static_cast<int>(reason), "The process of the page has ended."});
  };
  g_signal_connect(view_.get(), "web-process-terminated", G_CALLBACK(terminated), this);
}

bool WebKitEngine::ask(WebKitNavigationAction* action) {
  WebKitURIRequest* const asked = webkit_navigation_action_get_request(action);
  const char* const address = webkit_uri_request_get_uri(asked);
  const std::optional<URL> url = URL::fromPage(address ? address : "");
  if (!url) return false;
  URLRequest request{*url};
  if (SoupMessageHeaders* const headers = webkit_uri_request_get_http_headers(asked)) {
    soup_message_headers_foreach(
        headers,
        [](const char* name, const char* value, gpointer request) {
          static_cast<URLRequest*>(request)->headers[name] = value;
        },
        &request);
  }
  request.headers["User-Agent"] = userAgent();
  const int type = webkit_navigation_action_get_navigation_type(action);
  return client_.engineShouldStartLoad(request, static_cast<NavigationType>(type)) && canLoad(*url);
}

bool WebKitEngine::decideNavigation(WebKitPolicyDecision* decision) {
  WebKitNavigationAction* const action = webkit_navigation_policy_decision_get_navigation_action(
      WEBKIT_NAVIGATION_POLICY_DECISION(decision));
  const char* const address =
      webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
  const std::string uri = address ? address : "";
  if (!approved_.empty() && uri == approved_) {
    approved_.clear();
    return true;
  }
  const std::weak_ptr<const void> alive = lifetime();
  const bool allowed = ask(action);
  if (!allowed && !alive.expired()) loads_.refused(uri);
  return allowed;
}

bool WebKitEngine::openHere(WebKitNavigationAction* action) {
  const std::weak_ptr<const void> alive = lifetime();
  if (!ask(action) || alive.expired()) return false;
  WebKitURIRequest* const request = webkit_navigation_action_get_request(action);
  approved_ = webkit_uri_request_get_uri(request);
  loads_.asked(approved_);
  webkit_web_view_load_request(view_.get(), request);
  return true;
}

void WebKitEngine::decideResponse(WebKitPolicyDecision* decision) {
  auto* const response = WEBKIT_RESPONSE_POLICY_DECISION(decision);
  if (webkit_response_policy_decision_is_mime_type_supported(response) &&
      !isAttachment(webkit_response_policy_decision_get_response(response))) {
    webkit_policy_decision_use(decision);
  } else {
    webkit_policy_decision_ignore(decision);
  }
}

void WebKitEngine::apply(const Settings& settings) {
  webkit_settings_set_media_playback_allows_inline(settings_.get(),
                                                   settings.allowsInlineMediaPlayback);
  webkit_settings_set_media_playback_requires_user_gesture(
      settings_.get(), settings.mediaPlaybackRequiresUserAction);
}

void WebKitEngine::loadRequest(const URLRequest& request) {
  const auto made = GObjectPtr<WebKitURIRequest>::adopt(
      webkit_uri_request_new(request.url.absoluteString().c_str()));
  if (SoupMessageHeaders* const headers = webkit_uri_request_get_http_headers(made.get())) {
    for (const auto& [name, value] : request.headers) {
      soup_message_headers_replace(headers, name.c_str(), value.c_str());
    }
  }
  loads_.asked(webkit_uri_request_get_uri(made.get()));
  webkit_web_view_load_request(view_.get(), made.get());
}

void WebKitEngine::loadHTML(const std::string& html, const std::optional<URL>& baseURL) {
  const bool based = baseURL && canLoad(*baseURL);
  const std::string base = based ? baseURL->absoluteString() : kBlank;
  loads_.asked(spelled(base));
  webkit_web_view_load_html(view_.get(), html.c_str(), base.c_str());
}

void WebKitEngine::evaluate(const std::string& script, std::function<void(std::string)> result) {
  using Result = std::function<void(std::string)>;
  if (!result) {
    webkit_web_view_evaluate_javascript(view_.get(), script.c_str(), gssize(script.size()), nullptr,
                                        nullptr, nullptr, nullptr, nullptr);
    return;
  }
  auto guarded = std::make_unique<Result>(whileAlive(*this, std::move(result)));
  webkit_web_view_evaluate_javascript(
      view_.get(), script.c_str(), gssize(script.size()), nullptr, nullptr, nullptr,
      [](GObject* view, GAsyncResult* finished, gpointer data) {
        const std::unique_ptr<Result> callback(static_cast<Result*>(data));
        (*callback)(textOf(WEBKIT_WEB_VIEW(view), finished));
      },
      guarded.release());
}

void WebKitEngine::reload() {
  loads_.asked({});
  webkit_web_view_reload(view_.get());
}

void WebKitEngine::stopLoading() {
  loads_.stopped();
  webkit_web_view_stop_loading(view_.get());
}

void WebKitEngine::goBack() {
  if (!canGoBack()) return;
  loads_.asked({});
  webkit_web_view_go_back(view_.get());
}

void WebKitEngine::goForward() {
  if (!canGoForward()) return;
  loads_.asked({});
  webkit_web_view_go_forward(view_.get());
}

bool WebKitEngine::canGoBack() const {
  return webkit_web_view_can_go_back(view_.get());
}

bool WebKitEngine::canGoForward() const {
  return webkit_web_view_can_go_forward(view_.get());
}

std::optional<URL> WebKitEngine::currentURL() const {
  const char* const uri = webkit_web_view_get_uri(view_.get());
  return uri ? URL::fromPage(uri) : std::nullopt;
}

std::string WebKitEngine::title() const {
  const char* const title = webkit_web_view_get_title(view_.get());
  return title ? title : "";
}

bool WebKitEngine::isSecure() const {
  GTlsCertificateFlags errors{};
  return webkit_web_view_get_tls_info(view_.get(), nullptr, &errors) && errors == 0;
}

std::string WebKitEngine::userAgent() const {
  return webkit_settings_get_user_agent(settings_.get());
}

WebEngines& WebEngines::standard() {
  class WebKitEngines final : public WebEngines {
    std::unique_ptr<WebEngine> makeEngine(View& host, WebEngine::Client& client,
                                          WebEngine* related) override {
      return std::make_unique<WebKitEngine>(host, client, dynamic_cast<WebKitEngine*>(related));
    }
  };
  static WebKitEngines engines;
  return engines;
}

}  // namespace platform
