#include "ads/screens/VADScreenOpener.h"

#include "ads/screens/VADBrowserController.h"
#include "ads/screens/VADWebAppViewController.h"
#include "ads/web/VADScreen.h"

namespace valdren {
namespace {

void setOptions(VADViewController& screen, const VADScreenOptions& options) {
  screen.setSupportedOrientations(options.supportedOrientations);
  screen.setOpeningWebView(options.openingWebView);
  screen.setDelegateManager(options.delegateManager);
}

std::shared_ptr<VADWebAppViewController> webAppWith(const VADScreenOptions& options) {
  auto webApp = VADWebAppViewController::create();
  setOptions(*webApp, options);
  return webApp;
}

class Screens final : public VADScreenFactory {
 public:
  std::shared_ptr<VADScreen> browser(const VADScreenOptions& options, const platform::URL& url,
                                     const std::optional<platform::URL>& referringURL) override {
    auto browser = VADBrowserController::create();
    setOptions(*browser, options);
    browser->load(url, referringURL);
    return browser;
  }
  std::shared_ptr<VADScreen> webApp(const VADScreenOptions& options,
                                    const platform::URL& url) override {
    auto webApp = webAppWith(options);
    webApp->load(url);
    return webApp;
  }
  std::shared_ptr<VADScreen> webAppWithHTML(const VADScreenOptions& options,
                                            const std::string& html,
                                            const std::optional<std::string>& origin) override {
    auto webApp = webAppWith(options);
    webApp->setOriginOfGivenPage(origin);
    webApp->loadHTML(html, std::nullopt);
    return webApp;
  }
};

}  // namespace

std::unique_ptr<VADOpener> openerWithScreens() {
  static Screens screens;
  return std::make_unique<VADOpener>(&screens);
}

}  // namespace valdren
