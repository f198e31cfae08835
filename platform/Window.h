// The application's window: a status bar, one root screen, and the screens presented over it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ViewController.h"

namespace platform {

class NativeWindow;

/// Owns its root screen. Main thread only.
class Window : public virtual Trackable, public std::enable_shared_from_this<Window> {
 public:
  /// A window that is not shown yet; `size` in points, with the status bar.
  explicit Window(Size size);
  ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  /// The window made key last, or null.
  static Window* keyWindow();

  const std::shared_ptr<ViewController>& rootViewController() const { return root_; }
  /// Shows this screen in place of the former root and whatever was presented over it. Null empties
  /// the window.
  void setRootViewController(std::shared_ptr<ViewController> controller);
  /// Shows the window, in front and with the keyboard's focus where the desktop allows it.
  void makeKeyAndVisible();
  bool isVisible() const { return visible_; }

  /// Makes this the key window without showing it.
  void makeKey();

  /// When true, the window shows itself once its root presents a screen, and hides when the last
  /// one has been dismissed; nothing slides. For windows over somebody else's.
  void setShownForModalsOnly(bool only) { shownForModalsOnly_ = only; }
  /// The screen on top: the root, or the last one presented; null without a root.
  ViewController* topViewController() const;

  void setTitle(const std::string& title);
  /// The part that screens fill, without the status bar.
  Rect contentBounds() const;
  /// Asks for a new size, with the status bar; the desktop has the last word.
  void resize(Size size);
  Size size() const;
  InterfaceOrientation orientation() const;

  bool isStatusBarHidden() const;
  void setStatusBarHidden(bool hidden);
  double statusBarHeight() const;

  /// Writes what the window shows now to a PNG file; false when it shows nothing or the file cannot
  /// be written.
  bool savePicture(const std::string& path);

  /// Brings a running transition to its end at once.
  void finishTransition();

  NativeWindow& native() const { return *native_; }

 private:
  friend class ViewController;
  class Stage;
  struct Transition;

  void present(ViewController& presenter, std::shared_ptr<ViewController> controller,
               bool animated);
  void dismiss(ViewController& presenter, bool animated);
  void run(std::unique_ptr<Transition> transition, bool animated);
  void place(Transition& transition, double progress);
  void turnFor(ViewController& controller);
  void turnBack();
  void hide();
  void orientationMayHaveChanged();

  std::unique_ptr<NativeWindow> native_;
  std::shared_ptr<Stage> stage_;
  std::shared_ptr<ViewController> root_;
  std::unique_ptr<Transition> transition_;
  InterfaceOrientation lastOrientation_ = InterfaceOrientation::Unknown;
  const ViewController* turnedFor_ = nullptr;
  bool visible_ = false;
  bool shownForModalsOnly_ = false;
};

}  // namespace platform
