// The engine behind a web view: one WebKit view that fills it.
#pragma once

#include <webkit/webkit.h>

#include "platform/WebView.h"
#include "platform/gtk/GObjectPtr.h"
#include "platform/web/LoadTracker.h"

namespace platform {

/// May be destroyed inside any of its client's callbacks.
class WebKitEngine final : public WebEngine, public Trackable {
 public:
  WebKitEngine(View& host, Client& client, WebKitEngine* related);
  ~WebKitEngine() override;

  void apply(const Settings& settings) override;
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
  std::string title() const override;
  bool isSecure() const override;
  std::string userAgent() const override;

 private:
  void connectSignals();
  bool ask(WebKitNavigationAction* action);
  bool decideNavigation(WebKitPolicyDecision* decision);
  bool openHere(WebKitNavigationAction* action);
  void decideResponse(WebKitPolicyDecision* decision);

  View& host_;
  Client& client_;
  GObjectPtr<WebKitSettings> settings_;
  GObjectPtr<WebKitWebView> view_;
  LoadTracker loads_;
  std::string approved_;  // asked about already; empty when there is none
};

}  // namespace platform
