// The base of the full-screen screens: presents itself, announces the full-screen period, and puts
// everything back when it goes.
#pragma once

#include <memory>
#include <string_view>

#include "ads/web/VADScreen.h"
#include "platform/base/NotificationCenter.h"
#include "platform/ui/ViewController.h"
#include "platform/web/WebView.h"

namespace valdren {

class VADAdEvents;
struct VADViewControllerPrivate;

/// From presenting until relinquishing, a screen keeps itself alive. Only the first screen of a
/// stack talks to the delegate manager and touches the status bar and the idle timer. Made by
/// `create`, here and in subclasses. Main thread only.
class VADViewController : public platform::ViewController, public VADScreen {
 public:
  static std::shared_ptr<VADViewController> create();
  ~VADViewController() override;

  /// Shows this screen over the host's: over the root of its window, which becomes the key one, or
  /// of the key window when it has none, or over `host` when that is a screen of this kind. Without
  /// a host, logs so. Nothing is shown or announced when the screen is up already, when the other
  /// one cannot present (it presents something, or is in no window) and beyond 16 screens of this
  /// kind on top of each other.
  void presentFromViewController(platform::ViewController* host) override;
  /// Takes this screen, and those presented over it, off the display; nothing unless it is up.
  void relinquishScreen() override;

  /// Whether whoever presents this screen is no screen of this kind. Keeps its value once the
  /// screen is gone.
  bool isFirstVADViewController() const;

  /// The code for "any", "portrait" or "landscape", exactly so written; unknown for all else.
  static VADOrientationCode orientationFromString(std::string_view text);
  /// A `VADOrientationCode`.
  int supportedOrientations() const;
  void setSupportedOrientations(int code);
  /// The web view that opened this screen; not owned.
  platform::WebView* openingWebView() const;
  void setOpeningWebView(platform::WeakPtr<platform::WebView> webView);
  const std::shared_ptr<VADAdEvents>& delegateManager() const;
  void setDelegateManager(std::shared_ptr<VADAdEvents> manager);
  bool statusBarWasHidden() const;
  void setStatusBarWasHidden(bool hidden);

  bool shouldAutorotateToInterfaceOrientation(platform::InterfaceOrientation orientation) override;
  void viewDidAppear(bool animated) override;
  void viewDidDisappear(bool animated) override;
  /// Escape, and the way back from a first page, close the screen.
  bool cancelPressed() override;
  bool backPressed() override;

  /// Takes over the orientations that a "settings" message names.
  void settingsChanged(const platform::Notification& notification);

 protected:
  VADViewController();
  /// Second half of the construction, when virtual operations work; subclasses call the base first.
  virtual void init();
  virtual std::shared_ptr<VADViewControllerPrivate> createPrivateData();
  VADViewControllerPrivate& privateData() const { return *private_; }

  template <class Screen>
  static std::shared_ptr<Screen> initialized(std::shared_ptr<Screen> screen) {
    static_cast<VADViewController&>(*screen).init();
    return screen;
  }

 private:
  void presentSelfFrom(platform::ViewController& host);
  bool canPresentOver(platform::ViewController& host) const;
  void takeOverDisplay();
  void giveDisplayBack();
  void endNestedScreens();
  void endRemovedScreen();
  void letGo();

  // The registry owns it.
  VADViewControllerPrivate* private_ = nullptr;
};

}  // namespace valdren
