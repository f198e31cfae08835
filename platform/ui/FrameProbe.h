// A question to the desktop: is this window drawn?
#pragma once

#include <cstdint>
#include <functional>

typedef struct _GtkWindow GtkWindow;
struct wl_callback;

namespace valdren::platform {

/// Asks for one frame of a window at a time, with nothing to draw. A desktop gives no frames to a
/// window that nobody can see. The window must outlive it.
class FrameProbe {
 public:
  /// `answered` is called when the frame comes, where the desktop tells so by itself.
  FrameProbe(GtkWindow* window, std::function<void()> answered);
  ~FrameProbe();
  FrameProbe(const FrameProbe&) = delete;
  FrameProbe& operator=(const FrameProbe&) = delete;

  /// Asks, unless an answer is waited for already. The window must be mapped.
  void ask();
  /// Waits for no answer any more.
  void drop();
  bool isWaiting() const;

 private:
  bool askCompositor();

  GtkWindow* window_;
  std::function<void()> answered_;
  wl_callback* callback_ = nullptr;
  /// The frame that the window was at when it was asked for another; -1 when it was not.
  std::int64_t frame_ = -1;
};

}  // namespace valdren::platform
