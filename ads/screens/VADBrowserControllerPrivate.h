// The state of the in-app browser.
#pragma once

#include <memory>
#include <optional>

#include "ads/screens/VADBrowserWebViewDelegate.h"
#include "ads/screens/VADViewControllerPrivate.h"
#include "ads/web/VADWebView.h"
#include "platform/ui/ActivityIndicator.h"
#include "platform/ui/Label.h"
#include "platform/ui/Toolbar.h"

namespace valdren {

struct VADBrowserControllerPrivate final : public VADViewControllerPrivate {
  ~VADBrowserControllerPrivate() override;

  // A destination from before the web view was made.
  std::optional<platform::URL> urlToLoad;
  std::optional<platform::URL> referringURLToLoad;

  std::shared_ptr<VADBrowserWebViewDelegate> webViewDelegate;
  std::shared_ptr<VADWebView> webView;
  std::shared_ptr<platform::Toolbar> toolbar;
  std::shared_ptr<platform::BarButtonItem> flexibleSpaceButton;
  std::shared_ptr<platform::BarButtonItem> backButton;
  std::shared_ptr<platform::BarButtonItem> forwardButton;
  std::shared_ptr<platform::BarButtonItem> reloadButton;
  std::shared_ptr<platform::BarButtonItem> safariButton;
  std::shared_ptr<platform::BarButtonItem> doneButton;
  std::shared_ptr<platform::ActivityIndicator> spinner;
  std::shared_ptr<platform::BarButtonItem> spinnerContainingButton;
  /// Says whose page is shown, and whether it came over a verified connection.
  std::shared_ptr<platform::Label> prompt;
};

}  // namespace valdren
