// The in-app browser: a page above a toolbar.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "ads/screens/VADViewController.h"
#include "platform/base/URL.h"
#include "platform/ui/BarButtonItem.h"
#include "platform/ui/Toolbar.h"

namespace valdren {

class VADWebView;
struct VADBrowserControllerPrivate;

/// Builds its views when it first appears, and keeps them.
class VADBrowserController final : public VADViewController {
 public:
  static std::shared_ptr<VADBrowserController> create();
  ~VADBrowserController() override;

  /// Loads the page, now or when the screen appears; nothing without a URL. The referring page, if
  /// any, goes along as "Referer".
  void load(const std::optional<platform::URL>& url,
            const std::optional<platform::URL>& referringURL = std::nullopt);
  // Nothing where the page's history does not reach.
  void back();
  void forward();
  void reload();
  void stop();
  /// Leaves the application for the system's browser, with the present page.
  void openInSafari();
  /// Brings the toolbar up to date with the page.
  void refreshToolbar();
  /// Says whose page is shown, how it came, and its title.
  void refreshPrompt();

  /// A plain item that works on this screen. `width` is in points; `name` is its accessibility
  /// label.
  std::shared_ptr<platform::BarButtonItem> buttonWithImage(
      const std::shared_ptr<platform::Image>& image, const std::string& name, double width,
      bool enabled, void (VADBrowserController::*action)());

  /// Null before the screen has appeared.
  const std::shared_ptr<VADWebView>& webView() const;
  void setWebView(std::shared_ptr<VADWebView> webView);
  const std::shared_ptr<platform::Toolbar>& toolbar() const;
  void setToolbar(std::shared_ptr<platform::Toolbar> toolbar);

  void loadView() override;
  void viewWillAppear(bool animated) override;
  void didRotateFromInterfaceOrientation(platform::InterfaceOrientation from) override;
  /// Back to the page before, else away from the screen.
  bool backPressed() override;

 protected:
  void init() override;
  std::shared_ptr<VADViewControllerPrivate> createPrivateData() override;

 private:
  VADBrowserController() = default;
  VADBrowserControllerPrivate& vars() const;

  void appDidEnterForeground();
  void createWebView();
  void createToolbar();
  void createToolbarButtons();
  std::shared_ptr<platform::BarButtonItem> systemItem(platform::BarSystemItem item,
                                                      const std::string& name, double width,
                                                      bool enabled,
                                                      void (VADBrowserController::*action)());
  void layOut();
};

}  // namespace valdren
