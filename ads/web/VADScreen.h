// What the ads code knows of full-screen screens without knowing the screens themselves.
#pragma once

namespace valdren {

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

/// A view controller that takes itself off the screen when its page asks for it.
class VADRelinquishableScreen {
 public:
  virtual void relinquishScreen() = 0;

 protected:
  ~VADRelinquishableScreen() = default;
};

}  // namespace valdren
