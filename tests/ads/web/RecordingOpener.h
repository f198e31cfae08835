// An opener that only records what it should open.
#pragma once

#include <string>
#include <vector>

#include "ads/web/VADOpener.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

/// Handles messages like the real opener. `events` outlives it.
class RecordingOpener final : public valdren::VADOpener {
 public:
  explicit RecordingOpener(std::vector<std::string>& events) : events_(events) {}

  void openBrowserToURL(const std::optional<platform::URL>& url, int orientations) override {
    add("browser " + text(url), orientations);
  }
  void openWebApp(const std::optional<platform::URL>& url, int orientations) override {
    add("webapp " + text(url), orientations);
  }
  void openWebAppWithHTML(const std::optional<std::string>& html, int orientations) override {
    add("html " + html.value_or("none"), orientations);
  }
  void openApp(const std::optional<platform::URL>& url) override {
    events_.push_back("app " + text(url));
  }
  void openEmailComposer(const std::optional<platform::URL>& url) override {
    events_.push_back("mail " + text(url));
  }

 private:
  static std::string text(const std::optional<platform::URL>& url) {
    return url ? url->absoluteString() : "none";
  }
  void add(const std::string& what, int orientations) {
    events_.push_back(what + " " + std::to_string(orientations));
  }
  std::vector<std::string>& events_;
};

}  // namespace quorbel_tests
