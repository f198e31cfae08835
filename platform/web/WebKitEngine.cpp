#include "platform/web/WebKitEngine.h"

#include <gtkmm/widget.h>

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "platform/base/Log.h"
#include "platform/base/RunLoop.h"
#include "platform/ui/NativeView.h"
#include "platform/web/EngineCheck.h"
#include "platform/web/PageWidget.h"
#include "platform/web/Refusals.h"
#include "platform/web/SpareProcess.h"
#include "platform/web/WaitingEngine.h"
#include "platform/web/WebSession.h"

namespace valdren::platform {
namespace {

constexpr const char* kBlank = "about:blank";
constexpr double kSmallestZoom = 0.25;
constexpr int kAttempts = 4;
/// The time that the engine may take, in seconds, from the decision on a load to its start. It
/// reports to be idle in between.
constexpr Seconds kStartSeconds{0.5};

WebKitWebView* makeView(WebKitSettings* settings, WebKitUserContentManager* content,
                        WebKitWebView* related) {
  // A related view shares the other view's web process, context and session.
  GObject* const view =
      related
          ? G_OBJECT(g_object_new(pageWidgetType(), "settings", settings, "user-content-manager",
                                  content, "related-view", related, nullptr))
          : G_OBJECT(g_object_new(pageWidgetType(), "settings", settings, "user-content-manager",
                                  content, "web-context", webContext(), "network-session",
                                  webSession(), nullptr));
  g_object_ref_sink(view);
  const GdkRGBA clear{0, 0, 0, 0};
  webkit_web_view_set_background_color(WEBKIT_WEB_VIEW(view), &clear);
  return WEBKIT_WEB_VIEW(view);
}

/// The user's text size relative to the default. The engine enlarges whole pages by it.
double textScale() {
  int dpi = 0;  // in 1024ths
  g_object_get(gtk_settings_get_default(), "gtk-xft-dpi", &dpi, nullptr);
  return dpi > 0 ? dpi / 1024.0 / 96 : 1;
}

/// The address in the engine's own spelling.
std::string spelled(const std::string& address) {
  const GObjectPtr<WebKitURIRequest> request(webkit_uri_request_new(address.c_str()));
  return webkit_uri_request_get_uri(request.get());
}

std::string_view withoutFragment(std::string_view address) {
  return address.substr(0, address.find('#'));
}

Error errorOf(const GError* error) {
  return {g_quark_to_string(error->domain), error->code, error->message};
}

std::string textOf(WebKitWebView* view, GAsyncResult* result) {
  GError* error = nullptr;
  const GObjectPtr<JSCValue> value(
      webkit_web_view_evaluate_javascript_finish(view, result, &error));
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
      settings_(makeStrangersSettings()),
      spare_(related ? nullptr : takeSpareProcess()),
      view_(makeView(settings_.get(), scripts_.manager(),
                     related ? related->view_.get() : spare_.get())),
      keys_(gtk_event_controller_key_new()),
      client_(client),
      loads_(client),
      policy_(view_.get(), client, loads_),
      watch_(view_.get()) {
  refuseWhatReachesBeyondThePage(view_.get());
  connectSignals();
  policy_.setProceedHandler([this](bool responded) {
    if (!responded && fromNetwork_) return;
    setScriptsRun(true);
    forgetWidth();  // the new page is measured at full size
  });
  scripts_.setWidthHandler([this](double viewport, double width) {
    measured_ = {viewport, width};
    takeMeasure();
  });
  apply({});
  // By default it has no role, and its class as its name.
  g_object_set(view_.get(), "accessible-role", GTK_ACCESSIBLE_ROLE_DOCUMENT, nullptr);
  host_.native().setContent(Glib::wrap(GTK_WIDGET(view_.get())));
  boundsChanged();
  // The engine makes its own GL context current without telling the toolkit. The toolkit would
  // continue to use the context that it believes to be current and crash in its next frame.
  gdk_gl_context_clear_current();
}

WebKitEngine::~WebKitEngine() {
  invalidateWeakReferences();
  g_signal_handlers_disconnect_by_data(view_.get(), this);
  g_signal_handlers_disconnect_by_data(gtk_widget_get_settings(GTK_WIDGET(view_.get())), this);
  gtk_widget_remove_controller(GTK_WIDGET(view_.get()), keys_);
  host_.native().setContent(nullptr);
  webkit_web_view_stop_loading(view_.get());
  // On the next turn: the engine may be in a call to this object and still use its view. Disposing
  // ends the page even when others hold the view, such as a question that a hung page does not
  // answer.
  RunLoop::shared().autorelease(
      std::shared_ptr<WebKitWebView>(view_.release(), [](WebKitWebView* view) {
        g_object_run_dispose(G_OBJECT(view));
        g_object_unref(view);
        endKeptProcesses();
      }));
}

void WebKitEngine::connectSignals() {
  g_signal_connect(view_.get(), "load-changed", G_CALLBACK(loadChanged), this);
  g_signal_connect(view_.get(), "load-failed", G_CALLBACK(loadFailed), this);
  g_signal_connect(view_.get(), "notify::is-loading", G_CALLBACK(loadingChanged), this);
  g_signal_connect(view_.get(), "web-process-terminated", G_CALLBACK(processEnded), this);
  g_signal_connect(view_.get(), "insecure-content-detected",
                   G_CALLBACK(+[](WebKitWebView*, WebKitInsecureContentEvent, gpointer self) {
                     static_cast<WebKitEngine*>(self)->insecureContent_ = true;
                   }),
                   this);
  g_signal_connect(view_.get(), "notify::title",
                   G_CALLBACK(+[](WebKitWebView*, GParamSpec*, gpointer self) {
                     static_cast<WebKitEngine*>(self)->client_.engineDidChangeTitle();
                   }),
                   this);
  g_signal_connect(gtk_widget_get_settings(GTK_WIDGET(view_.get())), "notify::gtk-xft-dpi",
                   G_CALLBACK(+[](GtkSettings*, GParamSpec*, gpointer self) {
                     static_cast<WebKitEngine*>(self)->fit();
                   }),
                   this);
  gtk_event_controller_set_propagation_phase(keys_, GTK_PHASE_CAPTURE);
  g_signal_connect(keys_, "key-pressed", G_CALLBACK(keyPressed), this);
  gtk_widget_add_controller(GTK_WIDGET(view_.get()), keys_);
}

void WebKitEngine::loadChanged(WebKitWebView*, WebKitLoadEvent event, gpointer self) {
  auto& engine = *static_cast<WebKitEngine*>(self);
  if (event == WEBKIT_LOAD_COMMITTED) {
    engine.spare_.reset();
    engine.shown_ = engine.currentURL();
    engine.setScriptsRun(true);
    engine.insecureContent_ = false;
    engine.forgetWidth();
    engine.watch_.start();
  }
  if (event == WEBKIT_LOAD_STARTED) {
    engine.overdue_.reset();
    engine.load_ = {};
    return engine.loads_.started();
  }
  if (event == WEBKIT_LOAD_FINISHED) return engine.loads_.finished();
}

gboolean WebKitEngine::loadFailed(WebKitWebView*, WebKitLoadEvent, char*, GError* error,
                                  gpointer self) {
  auto& engine = *static_cast<WebKitEngine*>(self);
  if (!engine.load_) engine.setScriptsRun(true);
  engine.loads_.failed(
      errorOf(error), g_error_matches(error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED));
  return TRUE;  // suppresses the engine's error page
}

void WebKitEngine::loadingChanged(WebKitWebView* view, GParamSpec*, gpointer self) {
  if (webkit_web_view_is_loading(view)) return;
  // On the next turn: the end of a load is reported with this change, and the next load may follow
  // at once.
  auto& engine = *static_cast<WebKitEngine*>(self);
  RunLoop::shared().performAfterDelay(engine, kNextTurn, [&engine] { engine.settle(); });
}

void WebKitEngine::settle() {
  if (webkit_web_view_is_loading(view_.get())) return;
  const std::weak_ptr<const void> alive = lifetime();
  const bool settled = loads_.settled();
  if (alive.expired()) return;
  if (settled) {
    setScriptsRun(true);
    load_ = {};
    return;
  }
  overdue_ = RunLoop::shared().scheduleTimer(kStartSeconds, [this] { beginAgain(); });
}

void WebKitEngine::beginAgain() {
  if (webkit_web_view_is_loading(view_.get()) || loads_.settled()) return;
  const std::function<void()> load = load_;
  if (!load || ++attempts_ >= kAttempts) {
    load_ = {};
    setScriptsRun(true);
    return loads_.failed({"platform.web", 0, "The page could not be replaced."}, false);
  }
  if (replaces_) setScriptsRun(false);
  load();
}

void WebKitEngine::processEnded(WebKitWebView*, WebKitWebProcessTerminationReason reason,
                                gpointer self) {
  auto& engine = *static_cast<WebKitEngine*>(self);
  engine.load_ = {};
  engine.shown_.reset();
  engine.watch_.stop();
  engine.setScriptsRun(true);
  logWarning("The process of a web page has ended.");
  engine.loads_.crashed(
      {"platform.web", static_cast<int>(reason), "The process of the page has ended."});
}

gboolean WebKitEngine::keyPressed(GtkEventControllerKey* keys, guint key, guint, GdkModifierType,
                                  gpointer self) {
  if (key != GDK_KEY_Return && key != GDK_KEY_KP_Enter && key != GDK_KEY_space) return FALSE;
  // The engine sends unused keys again.
  auto& engine = *static_cast<WebKitEngine*>(self);
  const guint32 time = gtk_event_controller_get_current_event_time(GTK_EVENT_CONTROLLER(keys));
  if (time != GDK_CURRENT_TIME && time == engine.keyTime_) return FALSE;
  engine.keyTime_ = time;
  // Following a link by keyboard counts as a touch.
  const Rect bounds = engine.host_.bounds();
  engine.host_.hitTest({bounds.width / 2, bounds.height / 2}, EventType::Touches);
  return FALSE;
}

void WebKitEngine::apply(const Settings& settings) {
  webkit_settings_set_media_playback_allows_inline(settings_.get(),
                                                   settings.allowsInlineMediaPlayback);
  webkit_settings_set_media_playback_requires_user_gesture(
      settings_.get(), settings.mediaPlaybackRequiresUserAction);
  policy_.setAutoplay(!settings.mediaPlaybackRequiresUserAction);
  scalesPageToFit_ = settings.scalesPageToFit;
  scripts_.select(settings.dataDetectorTypes, settings.scalesPageToFit);
  fit();
}

void WebKitEngine::boundsChanged() {
  // A page that was never laid out in the bounds in between does not report its width again.
  takeMeasure();
  // A hidden page is laid out in its size, too; the toolkit would give it none.
  GtkWidget* const widget = GTK_WIDGET(view_.get());
  const auto width = static_cast<int>(std::lround(host_.bounds().width));
  const auto height = static_cast<int>(std::lround(host_.bounds().height));
  if (gtk_widget_get_mapped(widget) || width <= 0 || height <= 0) return;
  int ignored = 0;
  gtk_widget_measure(widget, GTK_ORIENTATION_HORIZONTAL, -1, &ignored, &ignored, &ignored,
                     &ignored);
  gtk_widget_measure(widget, GTK_ORIENTATION_VERTICAL, width, &ignored, &ignored, &ignored,
                     &ignored);
  const GtkAllocation place{0, 0, width, height};
  gtk_widget_size_allocate(widget, &place, -1);
}

void WebKitEngine::takeMeasure() {
  // A page that is zoomed out does not show its full width.
  if (std::abs(measured_.viewport - fullViewport()) <= 1) pageWidth_ = measured_.width;
  fit();
}

void WebKitEngine::forgetWidth() {
  measured_ = {};
  pageWidth_ = 0;
  fit();
}

double WebKitEngine::fullViewport() const {
  return host_.bounds().width / textScale();
}

void WebKitEngine::fit() {
  double zoom = 1;
  if (!scalesPageToFit_) {
    // Such a page is made for exactly these bounds. The engine would enlarge it with the user's
    // text size and cut it off.
    zoom = 1 / textScale();
  } else if (const double viewport = fullViewport(); viewport > 0 && pageWidth_ > viewport) {
    zoom = std::max(viewport / pageWidth_, kSmallestZoom);
  }
  // Small differences are ignored: a page whose layout changes at each zoom would never settle.
  if (std::abs(zoom - webkit_web_view_get_zoom_level(view_.get())) > 0.01) {
    webkit_web_view_set_zoom_level(view_.get(), zoom);
  }
}

void WebKitEngine::begin(std::function<void()> load, bool fromNetwork) {
  attempts_ = 0;
  fromNetwork_ = fromNetwork;
  overdue_.reset();
  load_ = std::move(load);
  // A page that does not exist yet cannot interfere, and its first script must run.
  replaces_ = webkit_web_view_get_uri(view_.get()) != nullptr;
  if (replaces_) setScriptsRun(false);
  const std::function<void()> begun = load_;  // the start of the load clears load_
  begun();
}

void WebKitEngine::setScriptsRun(bool run) {
  webkit_settings_set_enable_javascript(settings_.get(), run);
}

void WebKitEngine::loadRequest(const URLRequest& request) {
  const char* const present = webkit_web_view_get_uri(view_.get());
  const std::string target = spelled(request.url.absoluteString());
  const bool mayStay = present && target.find('#') != std::string::npos &&
                       withoutFragment(target) == withoutFragment(present);
  const bool fromNetwork = request.url.lowercaseScheme().starts_with("http") && !mayStay;
  begin(
      [this, request, target, mayStay] {
        const GObjectPtr<WebKitURIRequest> made(
            webkit_uri_request_new(request.url.absoluteString().c_str()));
        if (SoupMessageHeaders* const headers = webkit_uri_request_get_http_headers(made.get())) {
          for (const auto& [name, value] : request.headers) {
            soup_message_headers_replace(headers, name.c_str(), value.c_str());
          }
        }
        loads_.asked(target, mayStay);
        webkit_web_view_load_request(view_.get(), made.get());
      },
      fromNetwork);
}

void WebKitEngine::loadHTML(const std::string& html, const std::optional<URL>& baseURL) {
  const bool based = baseURL && NavigationPolicy::canLoad(*baseURL);
  const std::string base = based ? baseURL->absoluteString() : kBlank;
  begin(
      [this, html, base] {
        loads_.asked(spelled(base), false);
        webkit_web_view_load_html(view_.get(), html.c_str(), base.c_str());
      },
      false);
}

void WebKitEngine::evaluate(const std::string& script, std::function<void(std::string)> result) {
  using Result = std::function<void(std::string)>;
  const auto length = static_cast<gssize>(script.size());
  if (!result) {
    webkit_web_view_evaluate_javascript(view_.get(), script.data(), length, nullptr, nullptr,
                                        nullptr, nullptr, nullptr);
    return;
  }
  auto guarded = std::make_unique<Result>(whileAlive(*this, std::move(result)));
  webkit_web_view_evaluate_javascript(
      view_.get(), script.data(), length, nullptr, nullptr, nullptr,
      [](GObject* view, GAsyncResult* finished, gpointer data) {
        const std::unique_ptr<Result> callback(static_cast<Result*>(data));
        (*callback)(textOf(WEBKIT_WEB_VIEW(view), finished));
      },
      guarded.release());
}

void WebKitEngine::reload() {
  const std::optional<URL> present = currentURL();
  if (!present) return;
  begin(
      [this] {
        loads_.asked(webkit_web_view_get_uri(view_.get()), false);
        webkit_web_view_reload(view_.get());
      },
      present->lowercaseScheme().starts_with("http"));
}

void WebKitEngine::stopLoading() {
  load_ = {};
  setScriptsRun(true);
  loads_.stopped();
  webkit_web_view_stop_loading(view_.get());
}

void WebKitEngine::goBack() {
  if (!canGoBack()) return;
  loads_.asked({}, true);
  webkit_web_view_go_back(view_.get());
}

void WebKitEngine::goForward() {
  if (!canGoForward()) return;
  loads_.asked({}, true);
  webkit_web_view_go_forward(view_.get());
}

bool WebKitEngine::canGoBack() const {
  return webkit_web_view_can_go_back(view_.get());
}

bool WebKitEngine::canGoForward() const {
  return webkit_web_view_can_go_forward(view_.get());
}

std::optional<URL> WebKitEngine::currentURL() const {
  const char* const address = webkit_web_view_get_uri(view_.get());
  return address ? URL::fromPage(address) : std::nullopt;
}

std::string WebKitEngine::title() const {
  const char* const title = webkit_web_view_get_title(view_.get());
  return title ? title : "";
}

bool WebKitEngine::isSecure() const {
  GTlsCertificateFlags errors{};
  return !insecureContent_ && webkit_web_view_get_tls_info(view_.get(), nullptr, &errors) &&
         errors == 0;
}

std::string WebKitEngine::userAgent() const {
  return webkit_settings_get_user_agent(settings_.get());
}

WebEngines& WebEngines::standard() {
  class WebKitEngines final : public WebEngines {
    std::unique_ptr<WebEngine> makeEngine(View& host, WebEngine::Client& client,
                                          WebEngine* related) override {
      if (!isUsable()) return std::make_unique<WaitingEngine>(host, client, related);
      return std::make_unique<WebKitEngine>(host, client, WaitingEngine::resolve(related));
    }
    void prepare() override {
      if (isUsable()) startSpareProcess();
    }
    void keepPrepared(bool kept) override {
      if (kept && isUsable()) keepSpareProcess();
      if (!kept) endSpareProcess();
    }
    static bool isUsable() { return EngineCheck::shared().isUsable().value_or(false); }
  };
  static WebKitEngines engines;
  return engines;
}

}  // namespace valdren::platform
