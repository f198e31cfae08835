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

  /// Tells every screen that memory runs low.
  void didReceiveMemoryWarning();

  void setTitle(const std::string& title);
  /// The part that screens fill, without the status bar.
  Rect contentBounds() const;
  /// Asks for a new size, with the status bar; the desktop has the last word.
  void resize(Size size);
  Size size() const;
  InterfaceOrientation orientation() const;
  /// Whether the window can swap its sides: its size is its own matter, and the turned window would
  /// be whole on the monitor.
  bool canTurn() const;

  bool isStatusBarHidden() const;
  void setStatusBarHidden(bool hidden);
  double statusBarHeight() const;

  /// Whether all of this part of the screens (as in `contentBounds`) is on the monitor, as far as
  /// the desktop tells.
  bool isOnScreen(const Rect& area) const;
  /// Writes what the window shows now to a PNG file; false when it shows nothing or the file cannot
  /// be written.
  bool savePicture(const std::string& path);
  /// Whether this part of the screens (as in `contentBounds`) is drawn in one colour alone.
  bool isBlank(const Rect& area) const;

  /// Does what a finger does that taps this point of the screens (as in `contentBounds`); false
  /// when nothing there reacts.
  bool tap(Point point);

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
  void change(std::function<void()> change);
  void replaceRoot(std::shared_ptr<ViewController> controller);
  void show(const std::shared_ptr<ViewController>& controller,
            const std::shared_ptr<ViewController>& over, bool animated);
  void hide(const std::shared_ptr<ViewController>& controller,
            const std::shared_ptr<ViewController>& over, bool animated);
  bool isOnStage(ViewController& screen) const;
  void run(Transition transition);
  void endTransition();
  void place(const Transition& transition, double progress);
  void turnFor(const std::shared_ptr<ViewController>& controller);
  void checkTurn();
  void turnBack();
  void hide();
  void orientationMayHaveChanged();

  std::unique_ptr<NativeWindow> native_;
  std::shared_ptr<Stage> stage_;
  std::shared_ptr<ViewController> root_;
  std::shared_ptr<Transition> transition_;
  /// What hooks of the screens asked for while another change was going on.
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
