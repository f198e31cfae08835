// The tour's way through the ads: the in-app browser, a web app, a web app that wants to lie on its
// side, and what the ad requests after them tell.
#include <cstdio>

#include "ads/screens/VADBrowserController.h"
#include "ads/screens/VADBrowserControllerPrivate.h"
#include "ads/screens/VADWebAppViewController.h"
#include "ads/screens/VADWebAppViewControllerPrivate.h"
#include "ads/support/VADPrivateUtilities.h"
#include "sandbox/Sandbox.h"
#include "tests/support/Pictures.h"
#include "tests/support/Taps.h"
#include "tour/AdReport.h"
#include "tour/Tour.h"
#include "tour/TourViews.h"

namespace platform = valdren::platform;

namespace quorbel {
namespace {

using valdren::VADBrowserController;
using valdren::VADBrowserControllerPrivate;
using valdren::VADPrivateUtilities;
using valdren::VADWebAppViewController;
using valdren::VADWebAppViewControllerPrivate;
using valdren::VADWebView;

/// An ad or a page of the web engine, which may have to start a process first.
constexpr platform::Seconds kPagePatience{30};
/// A screen that goes away.
constexpr platform::Seconds kLeavingPatience{10};
/// The side of the web app screen's close button, in points.
constexpr double kCorner = 32;

// The banner.

void askForAd(const std::string& unit) {
  SoundScreen* const shown = soundScreen();
  if (!shown) return;
  shown->banner().setAdUnitID(unit);
  shown->banner().loadRequest(SoundScreen::makeRequest());
}

std::string adProblem(const std::string& brand) {
  if (std::string problem = bannerProblem(); !problem.empty()) return problem;
  const std::string shown = soundScreen()->banner().webView()->title();
  return shown == brand ? "" : "the banner shows \"" + shown + "\" instead of \"" + brand + "\"";
}

void tapBanner() {
  if (SoundScreen* const shown = soundScreen()) tap(shown->banner());
}

std::string soundboardProblem(bool landscape) {
  SoundScreen* const shown = topScreen<SoundScreen>();
  if (!shown) return "the soundboard does not come back";
  if (shown->view()->superview()->subviews().size() > 1) return "the screen over it does not go";
  const platform::Window& window = *shown->window();
  if (window.isStatusBarHidden()) return "the status bar does not come back";
  if (platform::isLandscape(window.orientation()) != landscape) {
    return "the window is not turned back";
  }
  return "";
}

// Pages.

/// Taps the middle of the first element that the selector finds, once it is in sight.
void tapElement(VADWebView& page, const std::string& selector) {
  const std::string script = "(function(){var found=document.querySelector(\"" + selector +
                             "\");if(!found)return'';found.scrollIntoView({block:'center'});"
                             "var box=found.getBoundingClientRect();"
                             "return(box.left+box.width/2)+' '+(box.top+box.height/2);})()";
  page.stringByEvaluatingJavaScriptFromString(script, [&page](const std::string& place) {
    platform::Point point;
    if (std::sscanf(place.c_str(), "%lf %lf", &point.x, &point.y) != 2 || !page.window()) return;
    quorbel_tests::tap(*page.window(), {page.frame().x + point.x, page.frame().y + point.y});
  });
}

std::string pageProblem(VADWebView& page, const std::string& title) {
  if (page.isLoading()) return "the page is still loading";
  if (page.title() != title) return "the page is called \"" + page.title() + "\"";
  // Without the corner where a close button may lie.
  const platform::Rect& frame = page.frame();
  if (quorbel_tests::isBlank(*page.window(), {0, kCorner, frame.width, frame.height - kCorner})) {
    return "the page is not drawn";
  }
  return "";
}

// The in-app browser.

VADBrowserController* browser() {
  return topScreen<VADBrowserController>();
}

VADBrowserControllerPrivate& parts(const VADBrowserController& screen) {
  return *VADPrivateUtilities::privateObjectForKey<VADBrowserControllerPrivate>(&screen);
}

/// `page` is what its address has to hold.
std::string browserProblem(const std::string& page, bool canGoBack) {
  VADBrowserController* const shown = browser();
  if (!shown || !shown->webView()) return "the in-app browser is not shown";
  if (!shown->view()->isUserInteractionEnabled()) return "the in-app browser has not appeared";
  if (!shown->window()->isStatusBarHidden()) return "the status bar is shown";
  VADWebView& web = *shown->webView();
  if (std::string problem = pageProblem(web, "The corner shop"); !problem.empty()) return problem;
  const auto url = web.currentURL();
  if (!url || url->absoluteString().find(page) == std::string::npos) {
    return "the page is " + (url ? url->absoluteString() : "none");
  }
  const VADBrowserControllerPrivate& mine = parts(*shown);
  if (mine.prompt->text() != url->host()) return "the toolbar does not say whose page it is";
  if (mine.toolbar->items().size() != 9) return "the toolbar's items are missing";
  if (!shown->window()->isOnScreen(mine.toolbar->frame())) return "the toolbar is off the screen";
  if (!mine.safariButton->isEnabled()) return "the page cannot be viewed in another browser";
  if (mine.backButton->isEnabled() != canGoBack) return "the back button has the wrong state";
  return "";
}

void tapItem(const std::shared_ptr<platform::BarButtonItem> VADBrowserControllerPrivate::*item) {
  if (VADBrowserController* const shown = browser()) tap(*(parts(*shown).*item)->view());
}

// The web app screen.

VADWebAppViewController* webApp() {
  return topScreen<VADWebAppViewController>();
}

VADWebAppViewControllerPrivate& parts(const VADWebAppViewController& screen) {
  return *VADPrivateUtilities::privateObjectForKey<VADWebAppViewControllerPrivate>(&screen);
}

std::string webAppProblem(const std::string& title) {
  VADWebAppViewController* const shown = webApp();
  if (!shown || !shown->webView()) return "the web app is not shown";
  if (!shown->view()->isUserInteractionEnabled()) return "the web app has not appeared";
  if (!shown->window()->isStatusBarHidden()) return "the status bar is shown";
  const VADWebAppViewControllerPrivate& mine = parts(*shown);
  if (mine.loadingSpinner) return "the spinner still turns";
  if (mine.closeButton->frame() != platform::Rect{0, 0, kCorner, kCorner})
    return "the close button is off";
  if (!shown->window()->isOnScreen(mine.closeButton->frame()))
    return "the close button is off the screen";
  return pageProblem(*shown->webView(), title);
}

/// `said` is kept from one look to the next, because pages answer later.
std::string greetingProblem(const std::shared_ptr<std::string>& said) {
  if (std::string problem = webAppProblem("Tidepool"); !problem.empty()) return problem;
  webApp()->webView()->stringByEvaluatingJavaScriptFromString(
      "document.getElementById('onshow').textContent",
      [said](const std::string& text) { *said = text; });
  return said->find("\"version\"") == std::string::npos ? "the page has not got \"onshow\"" : "";
}

std::string lyingWebAppProblem() {
  if (std::string problem = webAppProblem("Pocket Garden"); !problem.empty()) return problem;
  const platform::Window& window = *webApp()->window();
  return platform::isLandscape(window.orientation()) || !window.canTurn()
             ? ""
             : "the window is not turned";
}

std::string shapeRemark() {
  const platform::Window* const window = platform::Window::keyWindow();
  return window && !platform::isLandscape(window->orientation()) ? "shown as the window is" : "";
}

/// The steps that several ads have in common.
class AdSteps {
 public:
  explicit AdSteps(sandbox::Sandbox* network) : network_(network) {}

  std::vector<TourStep> all() {
    throughTheBrowser();
    throughTheWebApp();
    throughTheLyingWebApp();
    ask("the last ad", "ad-harbour", "Harbour Roast",
        // The page came inside the ad, so that it has no address with an "ai".
        {{"pcc", "1"},
         {"pai", kMissing},
         {"pit", kTicketPing},
         {"plpnc", kMissing},
         {"pcl", kAnyPositive},
         {"plpd", kAnyPositive}});
    return std::move(steps_);
  }

 private:
  void throughTheBrowser() {
    ask("an ad for the browser", "ad-browser", "Fernweh Atlas", {{"pcc", kMissing}});
    add("tap it for its page", tapBanner, [] { return browserProblem("/land/plain?", false); });
    add(
        "a link in the page",
        [] {
          if (browser()) tapElement(*browser()->webView(), "a[href*='page=2']");
        },
        [] { return browserProblem("page=2", true); });
    add(
        "back in the page", [] { tapItem(&VADBrowserControllerPrivate::backButton); },
        [] { return browserProblem("ai=", false); });
    back("Done", [] { tapItem(&VADBrowserControllerPrivate::doneButton); });
  }

  void throughTheWebApp() {
    ask("an ad for a web app", "ad-webapp", "Tidepool",
        {{"pcc", "1"},
         {"pai", kTicket},
         {"pit", kTicketPing},
         {"plpnc", "1"},
         {"pcbo", kMissing},
         {"ppcl", kAnyPositive},
         {"pcl", kAnyPositive},
         {"plpl", kAnyPositive},
         {"plpd", kAnyPositive}});
    add("tap the web app", tapBanner,
        [said = std::make_shared<std::string>()] { return greetingProblem(said); });
    back("close the web app", [] {
      if (webApp()) tap(*parts(*webApp()).closeButton);
    });
  }

  void throughTheLyingWebApp() {
    ask("an ad that lies on its side", "ad-webapp-html", "Pocket Garden",
        {{"pcc", "1"},
         {"pai", kTicket},
         {"plpnc", kMissing},
         {"pcl", kAnyPositive},
         {"plpd", kAnyPositive}});
    add("tap it and be turned", tapBanner, lyingWebAppProblem);
    steps_.back().remark = shapeRemark;
    back("the page closes itself", [] {
      if (webApp()) tapElement(*webApp()->webView(), "a");
    });
  }

  /// The ad, and what the request for it tells of the one before.
  void ask(std::string title, const std::string& unit, const std::string& brand,
           std::vector<ExpectedParameter> told) {
    add(
        std::move(title),
        [unit, network = network_, wasLandscape = wasLandscape_] {
          const platform::Window* const window = platform::Window::keyWindow();
          *wasLandscape = window && platform::isLandscape(window->orientation());
          // No other ad shall come between this one and the tap.
          if (network) network->setRefreshRate(platform::Seconds(0));
          askForAd(unit);
        },
        [brand, told = std::move(told), network = network_] {
          std::string problem = adProblem(brand);
          if (problem.empty() && network) problem = adRequestProblem(*network, told);
          return problem;
        });
  }

  /// Back to the soundboard, with the window as it was before the page.
  void back(std::string title, std::function<void()> act) {
    steps_.push_back({std::move(title), std::move(act),
                      [wasLandscape = wasLandscape_] { return soundboardProblem(*wasLandscape); },
                      kLeavingPatience});
  }

  void add(std::string title, std::function<void()> act, std::function<std::string()> problem) {
    steps_.push_back({std::move(title), std::move(act), std::move(problem), kPagePatience});
  }

  sandbox::Sandbox* network_;
  std::shared_ptr<bool> wasLandscape_ = std::make_shared<bool>(false);
  std::vector<TourStep> steps_;
};

}  // namespace

std::vector<TourStep> adSteps(sandbox::Sandbox* network) {
  return AdSteps(network).all();
}

}  // namespace quorbel
