// Whether a page still answers.
#pragma once

#include <webkit/webkit.h>

#include <memory>

#include "platform/base/RunLoop.h"

namespace valdren::platform {

/// Asks a page again and again for a small thing that only its own thread can say, whether the
/// person does anything in it or not, and ends the web process of a page that does not answer.
class PageWatch : public Trackable {
 public:
  /// Between two questions, in seconds.
  static constexpr double kSeconds = 5;
  /// So many times in a row is a page found without an answer before it is ended. More than one:
  /// when our own loop was held up, the answer may lie there unread.
  static constexpr int kPatience = 2;

  /// `view` outlives this.
  explicit PageWatch(WebKitWebView* view) : view_(view) {}
  ~PageWatch() { invalidateWeakReferences(); }
  PageWatch(const PageWatch&) = delete;
  PageWatch& operator=(const PageWatch&) = delete;

  /// Watches the page that the view has now, from the first question on.
  void start();
  void stop();

 private:
  void look();
  void ask();

  WebKitWebView* view_;
  std::unique_ptr<Timer> next_;
  bool asked_ = false;
  int found_ = 0;  // without an answer
};

}  // namespace valdren::platform
