// The toolkit's part of a window: a top-level window whose header bar is the status bar.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/base/Seconds.h"
#include "platform/ui/Geometry.h"

namespace Gtk {
class Window;
}

namespace valdren::platform {

class View;

class NativeWindow {
 public:
  NativeWindow(Size size, View& content);
  ~NativeWindow();
  NativeWindow(const NativeWindow&) = delete;
  NativeWindow& operator=(const NativeWindow&) = delete;

  Gtk::Window& window();

  void show();
  void hide();
  void setTitle(const std::string& title);
  void resize(Size size);
  /// Whether the window may take another shape. False when the desktop decides the size, when the
  /// shape is larger than the monitor, or when the window's position is unknown, so that part of it
  /// could be invisible.
  bool canTurn(Size size) const;
  /// Changes the window's shape and moves it as little as needed to keep it on the monitor. Nothing
  /// when `canTurn` is false.
  void turn(Size size);
  /// Restores a shape and the window's position in it.
  void turnBack(Size size);
  /// Whether this area of the window is completely on its monitor, as far as the desktop reports
  /// it.
  bool isOnScreen(const Rect& area) const;
  Size size() const;
  bool isStatusBarHidden() const;
  void setStatusBarHidden(bool hidden);
  double statusBarHeight() const;

  /// Calls `step` with the progress, 0 to 1, at each frame until it was called with 1. Without
  /// animations on the desktop it calls once, at once, with 1.
  void animate(Seconds duration, std::function<void(double progress)> step);
  void stopAnimation();

 private:
  struct Widgets;
  std::unique_ptr<Widgets> widgets_;
};

}  // namespace valdren::platform
