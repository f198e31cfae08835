// Shared by web view tests: a recording delegate, and a web view in its own window.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ui/Window.h"
#include "platform/web/WebView.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

/// Records its calls as lines: "ask TYPE ADDRESS", "start", "finish", "fail".
class RecordingDelegate final : public platform::WebViewDelegate {
 public:
  bool webViewShouldStartLoad(platform::WebView& view, const platform::URLRequest& request,
                              platform::NavigationType type) override;
  void webViewDidStartLoad(platform::WebView&) override { keep("start"); }
  void webViewDidFinishLoad(platform::WebView&) override { keep("finish"); }
  void webViewDidFailLoad(platform::WebView&, const platform::Error& error) override;

  int count(const std::string& line) const;
  bool has(const std::string& line) const { return count(line) > 0; }
  int finishes() const { return count("finish"); }
  /// Whether the page was asked to go to this address, whatever the type.
  bool asked(const std::string& address) const;
  int fails() const { return count("fail"); }
  /// The addresses of this scheme that the page went to; they were refused unless `decide` is set.
  std::vector<std::string> addressesOf(const std::string& scheme) const;

  std::vector<std::string> lines;
  std::vector<platform::URLRequest> requests;
  platform::Error lastError;
  /// Answers; by default http, https, about, data and blob may load.
  std::function<bool(const platform::URLRequest&, platform::NavigationType)> decide;
  /// Runs after each recorded line.
  std::function<void(const std::string& line)> during;

 private:
  void keep(const std::string& line);
};

/// A web view with its delegate, and the window that shows it on request.
class Page {
 public:
  explicit Page(const platform::Rect& frame = {0, 0, 320, 50},
                platform::WebView* related = nullptr);
  explicit Page(std::shared_ptr<platform::WebView> view);
  ~Page();

  /// Shows the view in a window of `size` and waits until it is visible.
  void show(platform::Size size = {400, 300});
  /// Loads the text and runs the loop until the load has ended; false when it fails.
  bool load(const std::string& html, const std::string& base = {});
  bool go(const std::string& address);
  /// Runs the loop until one more load finishes; false when it fails.
  bool waitForEnd(int endsBefore);
  int ends() const { return delegate.finishes() + delegate.fails(); }
  std::string evaluate(const std::string& script);
  /// Runs the loop until the script's result is `text`.
  bool becomes(const std::string& script, const std::string& text, double seconds = 10);
  /// Runs the loop until the condition is true.
  bool holds(const std::string& condition) {
    return becomes("String(!!(" + condition + "))", "true", 30);
  }
  /// Presses and releases the pointer's first button over this point of the view.
  void click(platform::Point point);

  RecordingDelegate delegate;
  std::shared_ptr<platform::WebView> view;
  std::shared_ptr<platform::Window> window;
};

/// The web processes of this program.
std::vector<int> webProcesses();

}  // namespace quorbel_tests
