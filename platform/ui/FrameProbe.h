// Finds out whether a window is drawn.
#pragma once

#include <cstdint>
#include <functional>

typedef struct _GtkWindow GtkWindow;
struct wl_callback;

namespace valdren::platform {

/// Requests one frame of a window at a time, with nothing to draw. A desktop sends no frames to a
/// window that is not visible. The window must outlive this object.
class FrameProbe {
 public:
  /// `answered` is called when the frame comes, on desktops that report it.
  FrameProbe(GtkWindow* window, std::function<void()> answered);
  ~FrameProbe();
  FrameProbe(const FrameProbe&) = delete;
  FrameProbe& operator=(const FrameProbe&) = delete;

  /// Requests a frame unless one is pending. The window must be mapped.
  void ask();
  /// Cancels the pending request.
  void drop();
  bool isWaiting() const;

 private:
  bool askCompositor();

  GtkWindow* window_;
  std::function<void()> answered_;
  wl_callback* callback_ = nullptr;
  /// The window's frame number at the request; -1 when there is none.
  std::int64_t frame_ = -1;
};

}  // namespace valdren::platform
