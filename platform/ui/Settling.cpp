#include "platform/ui/Settling.h"

#include <gtkmm/window.h>

#include <utility>

#include "platform/base/NotificationCenter.h"
#include "platform/base/RunLoop.h"
#include "platform/ui/NativeWindow.h"
#include "platform/ui/Window.h"

namespace valdren::platform {
namespace {

constexpr int kFrames = 3;
/// From the first frame on: a busy machine may take longer to draw it than a desktop to place it.
constexpr Seconds kMostSeconds{1};
constexpr Seconds kMostSecondsWithoutAFrame{5};

/// Posted when the first frame of a followed window has been drawn. The object is its `GtkWindow`.
constexpr const char* kWindowDidDraw = "WindowDidDraw";

constexpr const char* kFramesKey = "quorbel-equal-frames";

/// The frames of a window since it was shown.
struct Frames {
  int width = 0;
  int height = 0;
  int equal = 0;
  /// Each is told of before it is drawn.
  int begun = 0;
  guint callback = 0;
};

Frames* framesOf(GtkWindow* window) {
  return static_cast<Frames*>(g_object_get_data(G_OBJECT(window), kFramesKey));
}

gboolean countFrame(GtkWidget* window, GdkFrameClock*, gpointer data) {
  Frames& frames = *static_cast<Frames*>(data);
  const int width = gtk_widget_get_width(window);
  const int height = gtk_widget_get_height(window);
  const bool isEqual = width == frames.width && height == frames.height;
  frames.width = width;
  frames.height = height;
  frames.equal = width <= 0 ? 0 : isEqual ? frames.equal + 1 : 1;
  auto& center = NotificationCenter::defaultCenter();
  if (++frames.begun == 2) center.postNotificationName(kWindowDidDraw, window);
  if (frames.equal < kFrames) return G_SOURCE_CONTINUE;
  frames.callback = 0;
  center.postNotificationName(kWindowDidSettle, window);
  return G_SOURCE_REMOVE;
}

void forget(GtkWidget* window, Frames* frames) {
  if (frames->callback) gtk_widget_remove_tick_callback(window, frames->callback);
  *frames = {};
}

void countAnew(GtkWidget* window, Frames* frames) {
  forget(window, frames);
  frames->callback = gtk_widget_add_tick_callback(window, countFrame, frames, nullptr);
}

/// The key window; or, if it is only shown for pages, the window below it.
GtkWindow* shownWindow(const Window* key) {
  if (!key) return nullptr;
  GtkWindow* const window = key->native().window().gobj();
  if (gtk_widget_get_visible(GTK_WIDGET(window))) return window;
  GtkWindow* const below = gtk_window_get_transient_for(window);
  return below && gtk_widget_get_visible(GTK_WIDGET(below)) ? below : nullptr;
}

class Settling final : public Timer, private WeakTarget {
 public:
  explicit Settling(std::function<void()> task)
      : task_(std::move(task)), key_(Window::keyWindow()) {
    // A launch opens its window after making the screens, which may already ask.
    next_ = RunLoop::shared().scheduleTimer(kNextTurn, [this] { begin(); });
  }
  bool isValid() const override { return task_ != nullptr; }

 private:
  void begin() {
    GtkWindow* const window = shownWindow(key_ ? key_.get() : Window::keyWindow());
    if (!window || hasSettled(window)) return end();
    const Frames* const frames = framesOf(window);
    endAfter(frames && frames->begun > 1 ? kMostSeconds : kMostSecondsWithoutAFrame);
    auto& center = NotificationCenter::defaultCenter();
    center.addObserver(
        *this, kWindowDidDraw, [this](const Notification&) { endAfter(kMostSeconds); }, window);
    // After the present frame.
    center.addObserver(
        *this, kWindowDidSettle, [this](const Notification&) { endAfter(kNextTurn); }, window);
  }

  void endAfter(Seconds seconds) {
    next_ = RunLoop::shared().scheduleTimer(seconds, [this] { end(); });
  }

  void end() {
    NotificationCenter::defaultCenter().removeObserver(*this);
    // The task may destroy this object.
    const std::function<void()> task = std::exchange(task_, nullptr);
    task();
  }

  std::function<void()> task_;
  /// The key window when it was asked.
  WeakPtr<Window> key_;
  std::unique_ptr<Timer> next_;
};

}  // namespace

void followSettling(GtkWindow* window) {
  if (framesOf(window)) return;
  auto* const frames = new Frames;
  g_object_set_data_full(G_OBJECT(window), kFramesKey, frames,
                         [](gpointer kept) { delete static_cast<Frames*>(kept); });
  g_signal_connect(window, "map", G_CALLBACK(countAnew), frames);
  g_signal_connect(window, "unmap", G_CALLBACK(forget), frames);
  if (gtk_widget_get_mapped(GTK_WIDGET(window))) countAnew(GTK_WIDGET(window), frames);
}

bool hasSettled(GtkWindow* window) {
  const Frames* const frames = framesOf(window);
  return frames && frames->equal >= kFrames;
}

std::unique_ptr<Timer> whenKeyWindowHasSettled(std::function<void()> task) {
  GtkWindow* const window = shownWindow(Window::keyWindow());
  if (!window || !hasSettled(window)) return std::make_unique<Settling>(std::move(task));
  task();
  return nullptr;
}

}  // namespace valdren::platform
