// The state of a web app screen.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "ads/screens/VADViewControllerPrivate.h"
#include "ads/screens/VADWebAppWebViewDelegate.h"
#include "ads/web/VADAdController.h"
#include "ads/web/VADWebView.h"
#include "platform/ui/ActivityIndicator.h"
#include "platform/ui/Button.h"

namespace valdren {

struct VADWebAppViewControllerPrivate final : public VADViewControllerPrivate {
  /// Hands the web view to its delegate, which ends it later.
  ~VADWebAppViewControllerPrivate() override;

  // What to load, from before the web view was made.
  std::optional<platform::URL> urlToLoad;
  std::optional<std::string> htmlToLoad;
  std::optional<platform::URL> htmlBaseURLToLoad;
  std::optional<std::string> originOfGivenPage;

  std::shared_ptr<VADWebAppWebViewDelegate> webViewDelegate;
  std::shared_ptr<VADWebView> webView;
  std::shared_ptr<platform::Button> closeButton;
  /// Null once the first page has loaded.
  std::shared_ptr<platform::ActivityIndicator> loadingSpinner;
  std::shared_ptr<VADAdController> adController;
};

}  // namespace valdren
