#include "platform/web/PageWatch.h"

#include <functional>

#include "platform/base/Log.h"

namespace valdren::platform {

void PageWatch::start() {
  stop();
  next_ = RunLoop::shared().scheduleTimer(kSeconds, [this] { look(); });
}

void PageWatch::stop() {
  next_.reset();
  asked_ = false;
  found_ = 0;
}

void PageWatch::look() {
  if (asked_ && ++found_ >= kPatience) {
    stop();
    logWarning("A web page has hung and is ended.");
    webkit_web_view_terminate_web_process(view_);  // may destroy this
    return;
  }
  next_ = RunLoop::shared().scheduleTimer(kSeconds, [this] { look(); });
  if (!asked_) ask();
}

void PageWatch::ask() {
  asked_ = true;
  auto answered = std::make_unique<std::function<void()>>(whileAlive(*this, [this] {
    asked_ = false;
    found_ = 0;
  }));
  // Not a script: the engine treats scripts of the application as user actions.
  webkit_web_view_can_execute_editing_command(
      view_, WEBKIT_EDITING_COMMAND_COPY, nullptr,
      [](GObject* view, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<std::function<void()>> callback(
            static_cast<std::function<void()>*>(data));
        // Every reply counts, also that the page is gone.
        webkit_web_view_can_execute_editing_command_finish(WEBKIT_WEB_VIEW(view), result, nullptr);
        (*callback)();
      },
      answered.release());
}

}  // namespace valdren::platform
