// A page in a window of its own, for tests of the sandbox's pages.
#pragma once

#include <gtk/gtk.h>

#include "tests/support/Loop.h"
#include "tests/support/WebPage.h"

namespace inspector_tests {

class Browser {
 public:
  explicit Browser(double width = 1200, double height = 900) : page_({0, 0, width, height}) {
    page_.delegate.decide = [this](const platform::URLRequest& request, platform::NavigationType) {
      const bool isMessage = request.url.lowercaseScheme() == "gmsg";
      if (isMessage) messages_.push_back(request.url.absoluteString());
      return !isMessage;
    };
    page_.show({width, height});
  }
  ~Browser() { setDark(false); }

  /// Loads the page and waits; false when it fails.
  bool load(const std::string& url) { return page_.go(url); }
  bool loadHTML(const std::string& html, const std::string& base) {
    messages_.clear();
    return page_.load(html, base);
  }
  std::string evaluate(const std::string& expression) { return page_.evaluate(expression); }
  /// Waits until the expression is true.
  bool waitFor(const std::string& expression) {
    return page_.becomes("String(!!(" + expression + "))", "true", 30);
  }
  static void setDark(bool dark) {
    g_object_set(gtk_settings_get_default(), "gtk-application-prefer-dark-theme", dark, nullptr);
  }

  /// The message addresses that the page navigated to. They are refused, as in a client.
  const std::vector<std::string>& messages() const { return messages_; }

 private:
  quorbel_tests::Page page_;
  std::vector<std::string> messages_;
};

}  // namespace inspector_tests
