// What pages and their opener know of full-screen screens.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/base/URL.h"
#include "platform/ui/ViewController.h"
#include "platform/web/WebView.h"

namespace valdren {

class VADAdEvents;

// Posted on the platform's default centre with the screen as object.
inline constexpr const char* kVADViewControllerWillPresentFullScreen =
    "VADViewControllerWillPresentFullScreen";
inline constexpr const char* kVADViewControllerDidRelinquishFullScreen =
    "VADViewControllerDidRelinquishFullScreen";

/// The orientations in which a screen may be shown.
enum VADOrientationCode : int {
  kVADOrientationUnknown = 0,
  kVADOrientationAny = 1,
  kVADOrientationPortrait = 2,
  kVADOrientationLandscape = 3,
};

/// A view controller that comes up over another one by itself, and goes when its page asks for it.
class VADScreen {
 public:
  virtual void presentFromViewController(platform::ViewController* host) = 0;
  virtual void relinquishScreen() = 0;

 protected:
  ~VADScreen() = default;
};

/// What every screen is given before it comes up.
struct VADScreenOptions {
  /// A `VADOrientationCode`.
  int supportedOrientations = kVADOrientationAny;
  /// The page that opens the screen; not owned.
  platform::WeakPtr<platform::WebView> openingWebView;
  /// Told when the screen comes and goes; may be null.
  std::shared_ptr<VADAdEvents> delegateManager;
};

/// Makes the screens that ads open. Each loads its page when it appears.
class VADScreenFactory {
 public:
  virtual std::shared_ptr<VADScreen> browser(const VADScreenOptions& options,
                                             const platform::URL& url,
                                             const std::optional<platform::URL>& referringURL) = 0;
  virtual std::shared_ptr<VADScreen> webApp(const VADScreenOptions& options,
                                            const platform::URL& url) = 0;
  /// The page is a text, of the page with this `platform::URL::origin`; of nobody without one.
  virtual std::shared_ptr<VADScreen> webAppWithHTML(const VADScreenOptions& options,
                                                    const std::string& html,
                                                    const std::optional<std::string>& origin) = 0;

 protected:
  ~VADScreenFactory() = default;
};

}  // namespace valdren
