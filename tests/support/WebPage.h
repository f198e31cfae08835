// What web view tests share: a delegate that keeps what it was told, and a web view in a window of
// its own.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ui/Window.h"
#include "platform/web/WebView.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

/// Keeps what it was asked and told as lines: "ask TYPE ADDRESS", "start", "finish", "fail".
class RecordingDelegate final : public platform::WebViewDelegate {
 public:
  bool webViewShouldStartLoad(platform::WebView& view, const platform::URLRequest& request,
                              platform::NavigationType type) override;
  void webViewDidStartLoad(platform::WebView&) override;
  void webViewDidFinishLoad(platform::WebView&) override;
  void webViewDidFailLoad(platform::WebView&, const platform::Error& error) override;

  int count(const std::string& line) const;
  bool has(const std::string& line) const { return count(line) > 0; }
  int finishes() const { return count("finish"); }
  /// Whether the page was asked to go to this address, whatever the type.
  bool asked(const std::string& address) const;
  int fails() const { return count("fail"); }
  std::string text() const;

  std::vector<std::string> lines;
  std::vector<platform::URLRequest> requests;
  platform::Error lastError;
  /// Answers; by default http, https, about, data and blob may load.
  std::function<bool(const platform::URLRequest&, platform::NavigationType)> decide;
  /// Runs after each line was kept.
  std::function<void(const std::string& line)> during;

 private:
  void keep(std::string line);
};

/// A web view, made with its delegate, and the window that shows it when it was asked for.
class Page {
 public:
  explicit Page(const platform::Rect& frame = {0, 0, 320, 50},
                platform::WebView* related = nullptr);
  explicit Page(std::shared_ptr<platform::WebView> view);
  ~Page();

  /// Puts the view into a window of `size` and waits until that is on the screen.
  void show(platform::Size size = {400, 300});
  /// Loads the text and turns the loop until that load has ended; false when it does not finish.
  bool load(const std::string& html, const std::string& base = {});
  bool go(const std::string& address);
  /// Turns the loop until one more load finishes (or fails, which gives false).
  bool waitForEnd(int endsBefore);
  int ends() const { return delegate.finishes() + delegate.fails(); }
  std::string evaluate(const std::string& script);
  /// Turns the loop until the script gives `text`.
  bool becomes(const std::string& script, const std::string& text, double seconds = 10);
  /// Presses and releases the pointer's first button over this point of the view.
  void click(platform::Point point);
  /// The colour of one pixel of what the window shows, as 0xRRGGBB.
  unsigned pixel(platform::Point point);
  bool savePicture(const std::string& path);

  RecordingDelegate delegate;
  std::shared_ptr<platform::WebView> view;
  std::shared_ptr<platform::Window> window;
};

/// The web processes of this program.
std::vector<int> webProcesses();

}  // namespace quorbel_tests
