// The application's window: a status bar, one root screen, and the screens presented over it.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ui/ViewController.h"

namespace valdren::platform {

class NativeWindow;
class Timer;

/// Owns its root screen. Main thread only.
class Window : public virtual WeakTarget, public std::enable_shared_from_this<Window> {
 public:
  /// A window that is not shown yet; `size` in points, including the status bar.
  explicit Window(Size size);
  ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  /// The window made key last, or null.
  static Window* keyWindow();

  const std::shared_ptr<ViewController>& rootViewController() const { return root_; }
  /// Replaces the former root and all screens presented over it. Null empties the window.
  void setRootViewController(std::shared_ptr<ViewController> controller);
  /// Shows the window, in front and with the keyboard's focus if the desktop allows it.
  void makeKeyAndVisible();
  bool isVisible() const { return visible_; }

  /// Makes this the key window without showing it.
  void makeKey();

  /// When true, the window is shown when its root presents a screen and hidden when the last one is
  /// dismissed, without animation. For windows over a host's window.
  void setShownForModalsOnly(bool only) { shownForModalsOnly_ = only; }
  /// The screen on top: the root, or the last one presented; null without a root.
  ViewController* topViewController() const;

  /// Forwards a low-memory notice to every screen.
  void didReceiveMemoryWarning();

  void setTitle(const std::string& title);
  /// The area of the screens, without the status bar.
  Rect contentBounds() const;
  /// Asks the desktop for a new size, including the status bar. The desktop decides.
  void resize(Size size);
  Size size() const;
  InterfaceOrientation orientation() const;
  /// Whether the window can swap its width and height: the desktop leaves its size to it, and the
  /// turned window would fit the monitor.
  bool canTurn() const;

  bool isStatusBarHidden() const;
  void setStatusBarHidden(bool hidden);
  double statusBarHeight() const;

  /// Whether this area of the screens (in coordinates of `contentBounds`) is completely on the
  /// monitor, as far as the desktop reports it.
  bool isOnScreen(const Rect& area) const;

  /// Ends a running transition at once.
  void finishTransition();

  NativeWindow& native() const { return *native_; }

 private:
  friend class ViewController;
  class ScreenStack;
  struct Transition;

  void present(ViewController& presenter, std::shared_ptr<ViewController> controller,
               bool animated);
  void dismiss(ViewController& presenter, bool animated);
  void change(std::function<void()> change);
  void replaceRoot(std::shared_ptr<ViewController> controller);
  void show(const std::shared_ptr<ViewController>& controller,
            const std::shared_ptr<ViewController>& over, bool animated);
  void hide(const std::shared_ptr<ViewController>& controller,
            const std::shared_ptr<ViewController>& over, bool animated);
  bool isInStack(ViewController& screen) const;
  void run(Transition transition);
  void endTransition();
  void place(const Transition& transition, double progress);
  void turnFor(const std::shared_ptr<ViewController>& controller);
  void checkTurn();
  void turnBack();
  void hide();
  void orientationMayHaveChanged();

  std::unique_ptr<NativeWindow> native_;
  std::shared_ptr<ScreenStack> screenStack_;
  std::shared_ptr<ViewController> root_;
  std::shared_ptr<Transition> transition_;
  /// Changes that were requested during another change.
  std::deque<std::function<void()>> waiting_;
  bool changing_ = false;
  InterfaceOrientation lastOrientation_ = InterfaceOrientation::Unknown;
  /// The presented screen that the window was turned for, and its size before.
  std::weak_ptr<ViewController> turnedFor_;
  Size sizeBeforeTurn_;
  std::unique_ptr<Timer> turnCheck_;
  bool refusesToTurn_ = false;
  bool visible_ = false;
  bool shownForModalsOnly_ = false;
};

}  // namespace valdren::platform
