// The WebKit engine of a web view: one WebKit view that fills it.
#pragma once

#include "platform/base/GObjectPtr.h"
#include "platform/base/RunLoop.h"
#include "platform/web/LoadTracker.h"
#include "platform/web/NavigationPolicy.h"
#include "platform/web/PageScripts.h"
#include "platform/web/PageWatch.h"
#include "platform/web/WebEngineLibrary.h"
#include "platform/web/WebView.h"

namespace valdren::platform {

/// May be destroyed inside any of its client's callbacks.
class WebKitEngine final : public WebEngine, public WeakTarget {
 public:
  WebKitEngine(View& host, Client& client, WebKitEngine* related);
  ~WebKitEngine() override;

  void apply(const Settings& settings) override;
  void boundsChanged() override;
  void loadRequest(const URLRequest& request) override;
  void loadHTML(const std::string& html, const std::optional<URL>& baseURL) override;
  void evaluate(const std::string& script, std::function<void(std::string)> result) override;
  void reload() override;
  void stopLoading() override;
  void goBack() override;
  void goForward() override;
  bool canGoBack() const override;
  bool canGoForward() const override;
  bool isLoading() const override { return loads_.isLoading(); }
  std::optional<URL> currentURL() const override;
  std::optional<URL> shownURL() const override { return shown_; }
  std::string title() const override;
  bool isSecure() const override;
  std::string userAgent() const override;

 private:
  static void loadChanged(WebKitWebView* view, WebKitLoadEvent event, gpointer self);
  static gboolean loadFailed(WebKitWebView* view, WebKitLoadEvent event, char* address,
                             GError* error, gpointer self);
  static void loadingChanged(WebKitWebView* view, GParamSpec* property, gpointer self);
  static void processEnded(WebKitWebView* view, WebKitWebProcessTerminationReason reason,
                           gpointer self);
  static gboolean keyPressed(GtkEventControllerKey* controller, guint key, guint code,
                             GdkModifierType state, gpointer self);

  void connectSignals();
  void fit();
  /// The viewport's width at full size, in the page's pixels.
  double fullViewport() const;
  void takeMeasure();
  void forgetWidth();
  /// Starts a requested load, and starts it again when the page that it replaces interferes.
  void begin(std::function<void()> load, bool fromNetwork);
  void settle();
  void beginAgain();
  /// Disables or enables scripts of the page that is being replaced.
  void setScriptsRun(bool run);

  View& host_;
  PageScripts scripts_;
  GObjectPtr<WebKitSettings> settings_;
  GObjectPtr<WebKitWebView> spare_;  // shares its process until the first page is there
  GObjectPtr<WebKitWebView> view_;
  GtkEventController* keys_;  // owned by the view
  guint32 keyTime_ = 0;       // time of the last key that counted as a touch
  Client& client_;
  LoadTracker loads_;
  NavigationPolicy policy_;
  PageWatch watch_;
  std::optional<URL> shown_;
  std::function<void()> load_;  // until it has started
  std::unique_ptr<Timer> overdue_;
  int attempts_ = 0;
  bool replaces_ = false;
  bool fromNetwork_ = false;
  bool scalesPageToFit_ = false;
  /// The page's last report, in its own points: its viewport's width, and its width when it is
  /// wider, or 0.
  struct Measure {
    double viewport = 0;
    double width = 0;
  };
  Measure measured_;
  double pageWidth_ = 0;  // the width it needs, in its pixels; 0 when it fits or is unknown
  bool insecureContent_ = false;
};

}  // namespace valdren::platform
