// The full-screen web app: a page with nothing but a close button over it.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "ads/screens/VADViewController.h"
#include "ads/web/VADAdController.h"
#include "platform/base/URL.h"

namespace valdren {

class VADWebView;
struct VADWebAppViewControllerPrivate;

/// Builds its views when it first appears, and keeps them. The page is told when it is shown
/// ("onshow", once) and hidden ("onhide").
class VADWebAppViewController final : public VADViewController {
 public:
  static std::shared_ptr<VADWebAppViewController> create();

  /// Loads the page, now or when the screen appears; nothing without a URL.
  void load(const std::optional<platform::URL>& url);
  /// The same for a page in a text; nothing without one. A URL that waits goes before it.
  void loadHTML(const std::optional<std::string>& html,
                const std::optional<platform::URL>& baseURL);

  /// Whose page the text is that is loaded without a base URL: the page's that gave it; nobody's
  /// when none is set. See `platform::URL::origin`.
  void setOriginOfGivenPage(std::optional<std::string> origin);

  /// Null before the screen has appeared.
  const std::shared_ptr<VADWebView>& webView() const;
  void setWebView(std::shared_ptr<VADWebView> webView);
  /// The loader whose click pings the page's destinations fire; null at first.
  const std::shared_ptr<VADAdController>& adController() const;
  void setAdController(std::shared_ptr<VADAdController> adController);

  void viewWillAppear(bool animated) override;
  void viewDidAppear(bool animated) override;
  void viewDidDisappear(bool animated) override;
  void didRotateFromInterfaceOrientation(platform::InterfaceOrientation from) override;

 protected:
  void init() override;
  std::shared_ptr<VADViewControllerPrivate> createPrivateData() override;

 private:
  VADWebAppViewController() = default;
  VADWebAppViewControllerPrivate& vars() const;

  void createWebView();
  void loadWhatWaits();
  void createCloseButton();
  void showLoadingSpinner();
};

}  // namespace valdren
