// The toolkit's side of a window: a top-level with a header bar for a status bar.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/Geometry.h"

namespace Gtk {
class Window;
}
struct _GdkTexture;

namespace platform {

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

  /// What the window shows now; null when it shows nothing.
  Picture picture() const;

  std::unique_ptr<Widgets> widgets_;
};

}  // namespace platform
