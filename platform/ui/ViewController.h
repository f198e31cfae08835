// One screen: its view, appearance, rotation, and the screen that it presents.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/base/Export.h"
#include "platform/ui/View.h"

namespace valdren::platform {

enum class InterfaceOrientation : int {
  Unknown = 0,
  Portrait = 1,
  PortraitUpsideDown = 2,
  LandscapeRight = 3,
  LandscapeLeft = 4,
};

inline bool isLandscape(InterfaceOrientation orientation) {
  return orientation == InterfaceOrientation::LandscapeRight ||
         orientation == InterfaceOrientation::LandscapeLeft;
}

enum class ModalTransitionStyle : int { CoverVertical = 0 };
enum class ModalPresentationStyle : int { FullScreen = 0, PageSheet = 1, FormSheet = 2 };

/// Owned by its window (as root), by its presenter (while presented) and by whoever made it. Main
/// thread only.
class VALDREN_EXPORT ViewController : public virtual WeakTarget,
                                      public std::enable_shared_from_this<ViewController> {
 public:
  ViewController();
  virtual ~ViewController();
  ViewController(const ViewController&) = delete;
  ViewController& operator=(const ViewController&) = delete;

  /// The screen's view; made by `loadView` on first use, followed by `viewDidLoad`.
  const std::shared_ptr<View>& view();
  bool isViewLoaded() const;
  void setView(std::shared_ptr<View> view);
  /// The frame of the view when it is loaded.
  void setInitialFrame(const Rect& frame);
  /// The interface file that `loadView` reads (without its ".ui"), and the id of its outermost
  /// object. An empty name, the default, gives a plain view.
  void setInterface(std::string name, std::string object);
  /// Sets what an action of the interface file's controls does. Called before the view is loaded.
  void setAction(std::string name, std::function<void()> action);

  virtual void loadView();
  virtual void viewDidLoad() {}
  virtual void viewDidUnload() {}
  virtual void viewWillAppear(bool animated);
  virtual void viewDidAppear(bool animated);
  virtual void viewWillDisappear(bool animated);
  virtual void viewDidDisappear(bool animated);
  virtual void didReceiveMemoryWarning() {}

  /// Only portrait unless overridden.
  virtual bool shouldAutorotateToInterfaceOrientation(InterfaceOrientation orientation);
  virtual void didRotateFromInterfaceOrientation(InterfaceOrientation from);
  /// The orientation of the window that shows this screen: landscape right when it is wider than
  /// high, else portrait.
  InterfaceOrientation interfaceOrientation() const;

  /// Called when Escape is pressed while this screen is on top, before the focused page or control
  /// gets the key. Returns whether it had an effect.
  virtual bool cancelPressed() { return false; }
  /// The same for going back: Alt+Left, the Back key, the mouse's back button.
  virtual bool backPressed() { return false; }

  ModalTransitionStyle modalTransitionStyle() const;
  void setModalTransitionStyle(ModalTransitionStyle style);
  ModalPresentationStyle modalPresentationStyle() const;
  void setModalPresentationStyle(ModalPresentationStyle style);

  /// Shows `controller` over the whole window and holds it until it is dismissed. Ignored for null,
  /// while this screen presents another one, and when this screen is in no window. When animated,
  /// the screen slides up, and `viewDidAppear` follows the slide.
  void presentModalViewController(std::shared_ptr<ViewController> controller, bool animated);
  /// Removes the screen that this one presents, and all above it. Nothing happens without one.
  void dismissModalViewControllerAnimated(bool animated);
  /// The screen that this one presents, or null.
  const std::shared_ptr<ViewController>& modalViewController() const;
  /// The screen that presents this one, or null.
  ViewController* presentingViewController() const;

  /// The window that shows this screen (also while it is covered), or null.
  Window* window() const;
  void becomeFirstResponder();

 private:
  friend class Window;

  struct Members;
  const std::unique_ptr<Members> members_;
};

}  // namespace valdren::platform
