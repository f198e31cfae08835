// Detects pages that do not answer.
#pragma once

#include <memory>

#include "platform/base/RunLoop.h"
#include "platform/web/WebEngineLibrary.h"

namespace valdren::platform {

/// Regularly asks the page's process for something trivial, and ends the web process of a page that
/// does not answer.
class PageWatch : public WeakTarget {
 public:
  /// The time between two questions.
  static constexpr Seconds kSeconds{5};
  /// The number of missed answers in a row before the page is ended. More than one: if our own loop
  /// was blocked, an answer may still be unread.
  static constexpr int kPatience = 2;

  /// `view` outlives this.
  explicit PageWatch(WebKitWebView* view) : view_(view) {}
  ~PageWatch() { invalidateWeakReferences(); }
  PageWatch(const PageWatch&) = delete;
  PageWatch& operator=(const PageWatch&) = delete;

  /// Starts to watch the view's present page.
  void start();
  void stop();

 private:
  void look();
  void ask();

  WebKitWebView* view_;
  std::unique_ptr<Timer> next_;
  bool asked_ = false;
  int found_ = 0;  // missed answers in a row
};

}  // namespace valdren::platform
