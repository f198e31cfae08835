// The engine of a web view until it is known whether pages can be shown.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/base/RunLoop.h"
#include "platform/web/WebKitEngine.h"
#include "platform/web/WebView.h"

namespace valdren::platform {

/// Stores requests and forwards them to a `WebKitEngine`, which it makes once `EngineCheck` allows
/// it and the window is drawn. If no engine is possible, every load fails.
class WaitingEngine final : public WebEngine, public WeakTarget {
 public:
  WaitingEngine(View& host, Client& client, WebEngine* related);
  ~WaitingEngine() override { invalidateWeakReferences(); }

  /// The WebKit engine that this engine is or forwards to; null when there is none.
  static WebKitEngine* resolve(WebEngine* engine);

  void apply(const Settings& settings) override;
  void boundsChanged() override {
    if (engine_) engine_->boundsChanged();
  }
  void loadRequest(const URLRequest& request) override;
  void loadHTML(const std::string& html, const std::optional<URL>& baseURL) override;
  void evaluate(const std::string& script, std::function<void(std::string)> result) override;
  void reload() override {
    if (engine_) engine_->reload();
  }
  void stopLoading() override;
  void goBack() override {
    if (engine_) engine_->goBack();
  }
  void goForward() override {
    if (engine_) engine_->goForward();
  }
  bool canGoBack() const override { return engine_ && engine_->canGoBack(); }
  bool canGoForward() const override { return engine_ && engine_->canGoForward(); }
  bool isLoading() const override { return engine_ ? engine_->isLoading() : bool(load_); }
  std::optional<URL> currentURL() const override;
  std::optional<URL> shownURL() const override {
    return engine_ ? engine_->shownURL() : std::nullopt;
  }
  std::string title() const override { return engine_ ? engine_->title() : ""; }
  bool isSecure() const override { return engine_ && engine_->isSecure(); }
  std::string userAgent() const override;

 private:
  using Action = std::function<void(WebEngine&)>;

  void load(const std::optional<URL>& url, Action action);
  void decided();
  void failLater();

  View& host_;
  Client& client_;
  WeakPtr<WaitingEngine> related_;
  std::unique_ptr<WebKitEngine> engine_;
  Settings settings_;
  Action load_;
  std::optional<URL> url_;
  std::vector<Action> scripts_;
};

}  // namespace valdren::platform
