// The state of a full-screen screen.
#pragma once

#include <memory>

#include "ads/support/VADPrivateUtilities.h"
#include "ads/web/VADScreen.h"
#include "platform/base/WeakPtr.h"
#include "platform/web/WebView.h"

namespace valdren {

class VADAdEvents;
class VADViewController;

struct VADViewControllerPrivate : public VADPrivateObject, public virtual platform::WeakTarget {
  int supportedOrientations = kVADOrientationAny;
  platform::WeakPtr<platform::WebView> openingWebView;
  std::shared_ptr<VADAdEvents> delegateManager;
  bool statusBarWasHidden = false;
  bool publisherIdleTimerDisabled = false;
  /// The screen sends the user out of the application.
  bool appClosing = false;
  /// The screen is on its way in or out over the host's own.
  bool interactingWithParent = false;

  /// The screen itself, from presenting until relinquishing.
  std::shared_ptr<VADViewController> retained;
  bool first = true;
  /// The screen was asked to come up and could not.
  bool refused = false;
};

}  // namespace valdren
