#include "tests/inspector/Browser.h"

#include <gtk/gtk.h>
#include <webkit/webkit.h>

#include <cstdlib>
#include <filesystem>
#include <optional>

#include "tests/support/Loop.h"

namespace inspector_tests {

using quorbel_tests::runUntil;

struct Browser::Implementation {
  GtkWidget* window = nullptr;
  WebKitWebView* view = nullptr;
  bool loading = false;
  std::vector<std::string> messages;
  std::optional<std::string> value;
  bool pictureDone = false;
};

namespace {

struct FreeText {
  void operator()(char* text) const { g_free(text); }
};
using Text = std::unique_ptr<char, FreeText>;

}  // namespace

bool Browser::canBeShown() {
  return gtk_is_initialized();
}

Browser::Browser(int width, int height) : implementation_(std::make_unique<Implementation>()) {
  Implementation& own = *implementation_;
  own.window = gtk_window_new();
  auto* session = webkit_network_session_new_ephemeral();
  own.view =
      WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "network-session", session, nullptr));
  g_object_unref(session);
  gtk_window_set_child(GTK_WINDOW(own.window), GTK_WIDGET(own.view));
  gtk_window_set_decorated(GTK_WINDOW(own.window), FALSE);
  gtk_window_set_default_size(GTK_WINDOW(own.window), width, height);
  g_signal_connect(own.view, "load-changed",
                   G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent event, gpointer data) {
                     if (event == WEBKIT_LOAD_FINISHED) {
                       static_cast<Implementation*>(data)->loading = false;
                     }
                   }),
                   &own);
  g_signal_connect(own.view, "decide-policy",
                   G_CALLBACK(+[](WebKitWebView*, WebKitPolicyDecision* decision,
                                  WebKitPolicyDecisionType type, gpointer data) -> gboolean {
                     if (type != WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION) return FALSE;
                     auto* action = webkit_navigation_policy_decision_get_navigation_action(
                         WEBKIT_NAVIGATION_POLICY_DECISION(decision));
                     const std::string uri =
                         webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
                     if (!uri.starts_with("gmsg:")) return FALSE;
                     static_cast<Implementation*>(data)->messages.push_back(uri);
                     webkit_policy_decision_ignore(decision);
                     return TRUE;
                   }),
                   &own);
  gtk_window_present(GTK_WINDOW(own.window));
}

Browser::~Browser() {
  g_signal_handlers_disconnect_by_data(implementation_->view, implementation_.get());
  setDark(false);
  gtk_window_destroy(GTK_WINDOW(implementation_->window));
}

bool Browser::load(const std::string& url) {
  implementation_->loading = true;
  webkit_web_view_load_uri(implementation_->view, url.c_str());
  return runUntil([this] { return !implementation_->loading; }, 30);
}

bool Browser::loadHTML(const std::string& html, const std::string& base) {
  implementation_->loading = true;
  implementation_->messages.clear();
  webkit_web_view_load_html(implementation_->view, html.c_str(), base.c_str());
  return runUntil([this] { return !implementation_->loading; }, 30);
}

std::string Browser::evaluate(const std::string& expression) {
  implementation_->value.reset();
  webkit_web_view_evaluate_javascript(
      implementation_->view, expression.c_str(), -1, nullptr, nullptr, nullptr,
      [](GObject* view, GAsyncResult* result, gpointer data) {
        GError* error = nullptr;
        JSCValue* value =
            webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(view), result, &error);
        auto& answer = static_cast<Implementation*>(data)->value;
        if (value) {
          answer = Text(jsc_value_to_string(value)).get();
          g_object_unref(value);
        } else {
          answer = std::string("ERROR ") + (error ? error->message : "");
          g_clear_error(&error);
        }
      },
      implementation_.get());
  runUntil([this] { return implementation_->value.has_value(); }, 30);
  return implementation_->value.value_or("ERROR no answer");
}

bool Browser::waitFor(const std::string& expression, double seconds) {
  const gint64 end = g_get_monotonic_time() + static_cast<gint64>(seconds * 1e6);
  while (evaluate("!!(" + expression + ")") != "true") {
    if (g_get_monotonic_time() > end) return false;
    quorbel_tests::runFor(0.05);
  }
  return true;
}

void Browser::resize(int width, int height) {
  gtk_window_set_default_size(GTK_WINDOW(implementation_->window), width, height);
  waitFor("innerWidth === " + std::to_string(width), 10);
}

void Browser::setDark(bool dark) {
  g_object_set(gtk_settings_get_default(), "gtk-application-prefer-dark-theme", dark, nullptr);
}

void Browser::picture(const std::string& name) {
  const char* folder = std::getenv("QUORBEL_PICTURES");
  if (!folder) return;
  std::filesystem::create_directories(folder);
  const std::string path = std::string(folder) + "/" + name + ".png";
  implementation_->pictureDone = false;
  struct Order {
    Implementation* own;
    std::string path;
  } order{implementation_.get(), path};
  webkit_web_view_get_snapshot(
      implementation_->view, WEBKIT_SNAPSHOT_REGION_FULL_DOCUMENT, WEBKIT_SNAPSHOT_OPTIONS_NONE,
      nullptr,
      [](GObject* view, GAsyncResult* result, gpointer data) {
        auto* wanted = static_cast<Order*>(data);
        GdkTexture* texture =
            webkit_web_view_get_snapshot_finish(WEBKIT_WEB_VIEW(view), result, nullptr);
        if (texture) {
          gdk_texture_save_to_png(texture, wanted->path.c_str());
          g_object_unref(texture);
        }
        wanted->own->pictureDone = true;
      },
      &order);
  runUntil([this] { return implementation_->pictureDone; }, 30);
}

const std::vector<std::string>& Browser::messages() const {
  return implementation_->messages;
}

}  // namespace inspector_tests
