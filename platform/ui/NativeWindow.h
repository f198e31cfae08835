// The toolkit's side of a window: a top-level with a header bar for a status bar.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/ui/Geometry.h"

namespace Gtk {
class Window;
}
struct _GdkTexture;

namespace valdren::platform {

class View;

class NativeWindow {
 public:
  NativeWindow(Size size, View& stage);
  ~NativeWindow();
  NativeWindow(const NativeWindow&) = delete;
  NativeWindow& operator=(const NativeWindow&) = delete;

  Gtk::Window& window();

  void show();
  void hide();
  void setTitle(const std::string& title);
  void resize(Size size);
  /// Whether the window may take another shape. It may not where the desktop decides on its size,
  /// where the shape is too large for the monitor, and where nobody tells the window's place, so
  /// that nobody knows whether all of it would be seen.
  bool canTurn(Size size) const;
  /// Gives the window another shape, moved as little as brings all of it into the monitor; nothing
  /// where it may not take that shape.
  void turn(Size size);
  /// Back to a shape, and to the place that the window had in it.
  void turnBack(Size size);
  /// Whether all of this area of the window is on its monitor, as far as the desktop tells.
  bool isOnScreen(const Rect& area) const;
  Size size() const;
  bool isStatusBarHidden() const;
  void setStatusBarHidden(bool hidden);
  double statusBarHeight() const;
  bool savePicture(const std::string& path) const;
  bool isBlank(const Rect& area) const;

  /// Calls `step` with the progress, 0 to 1, at each frame until it was called with 1; once, with
  /// 1, at once when the desktop wants no animations.
  void animate(double seconds, std::function<void(double progress)> step);
  void stopAnimation();

 private:
  struct Widgets;
  using Picture = std::unique_ptr<_GdkTexture, void (*)(void*)>;

  /// What the window shows now, in so many pixels a point; null when it shows nothing.
  Picture picture(float scale) const;

  std::unique_ptr<Widgets> widgets_;
};

}  // namespace valdren::platform
