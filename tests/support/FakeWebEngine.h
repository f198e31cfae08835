// Web engines without a browser. They record requests, and a test simulates the page.
#pragma once

#include <string>
#include <vector>

#include "platform/web/WebView.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

class FakeWebEngines;

/// Lives as long as its web view.
class FakeWebEngine final : public platform::WebEngine {
 public:
  struct HTML {
    std::string text;
    std::optional<platform::URL> baseURL;
  };

  FakeWebEngine(FakeWebEngines& owner, platform::View& host, Client& client, WebEngine* related)
      : host(host), client(client), related(related), owner_(owner) {}
  ~FakeWebEngine() override;

  platform::View& host;
  /// Used to report what the page does: ask for navigations; start, finish and fail loads.
  Client& client;
  /// The engine whose web process it should share; for comparison only.
  const WebEngine* const related;

  // The recorded calls, in order.
  Settings settings;
  std::vector<platform::URLRequest> requests;
  std::vector<HTML> pages;
  std::vector<std::string> scripts;
  int reloads = 0;
  int backs = 0;
  int forwards = 0;

  // The engine's answers.
  bool back = false;
  bool forward = false;
  bool loading = false;
  bool secure = false;
  std::optional<platform::URL> url;
  std::optional<platform::URL> shown;
  std::string pageTitle;
  std::string agent = "Mozilla/5.0 (Test)";

  /// Asks the client whether the page may go to `text`, with the user agent among the headers like
  /// the real engine. Changes nothing else.
  bool navigate(const std::string& text,
                platform::NavigationType type = platform::NavigationType::Other);
  void start() {
    loading = true;
    client.engineDidStartLoad();
  }
  /// Finishes the load; the loaded page is the present one from now on.
  void finish() {
    loading = false;
    shown = url;
    client.engineDidFinishLoad();
  }
  void fail() {
    loading = false;
    client.engineDidFailLoad({"fake", 1, "The server cannot be reached."});
  }

  void apply(const Settings& wanted) override { settings = wanted; }
  void loadRequest(const platform::URLRequest& request) override;
  void loadHTML(const std::string& html, const std::optional<platform::URL>& baseURL) override;
  /// Gives "" at once.
  void evaluate(const std::string& script, std::function<void(std::string)> result) override {
    scripts.push_back(script);
    if (result) result("");
  }
  void reload() override { ++reloads; }
  void stopLoading() override { loading = false; }
  void goBack() override { ++backs; }
  void goForward() override { ++forwards; }
  bool canGoBack() const override { return back; }
  bool canGoForward() const override { return forward; }
  bool isLoading() const override { return loading; }
  std::optional<platform::URL> currentURL() const override { return url; }
  std::optional<platform::URL> shownURL() const override { return shown; }
  std::string title() const override { return pageTitle; }
  bool isSecure() const override { return secure; }
  std::string userAgent() const override { return agent; }

 private:
  FakeWebEngines& owner_;
};

/// Replaces the engines while it exists. It must outlive the web views made meanwhile.
class FakeWebEngines final : public platform::WebEngines {
 public:
  std::unique_ptr<platform::WebEngine> makeEngine(platform::View& host,
                                                  platform::WebEngine::Client& client,
                                                  platform::WebEngine* related) override;

  void keepPrepared(bool kept) override { keepsNext = kept; }
  /// Whether a web process is to be kept ready.
  bool keepsNext = false;

  /// The engines of existing web views, in the order of creation.
  const std::vector<FakeWebEngine*>& engines() const { return engines_; }
  /// The engine of the web view made last, which must exist.
  FakeWebEngine& last() const { return *engines_.at(engines_.size() - 1); }
  /// The engine of a web view that was made meanwhile.
  static FakeWebEngine& of(platform::WebView& view) {
    return static_cast<FakeWebEngine&>(view.engine());
  }
  /// The number of engines ever made.
  int made() const { return made_; }

 private:
  friend class FakeWebEngine;
  std::vector<FakeWebEngine*> engines_;
  int made_ = 0;
  Replacement replacement_{*this};
};

}  // namespace quorbel_tests
