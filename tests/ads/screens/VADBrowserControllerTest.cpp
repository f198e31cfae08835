// The in-app browser: loading, toolbar and end.
#include "ads/screens/VADBrowserController.h"

#include "ads/screens/VADBrowserControllerPrivate.h"
#include "ads/screens/VADIntrinsicImages.h"
#include "ads/support/VADPrivateUtilities.h"
#include "tests/ads/screens/ScreenTest.h"
#include "tests/support/Taps.h"

namespace valdren {
namespace {

using quorbel_tests::FakeWebEngine;
using quorbel_tests::FakeWebEngines;

class VADBrowserControllerTest : public quorbel_tests::ScreenTest {
 protected:
  VADBrowserController& open(const char* address = "http://shop.example/sale") {
    const auto browser = VADBrowserController::create();
    browser->setDelegateManager(manager);
    browser->load(url(address), referrer);
    browser->presentFromViewController(host.get());
    return *browser;
  }
  static std::shared_ptr<VADBrowserControllerPrivate> varsOf(VADBrowserController& browser) {
    return std::static_pointer_cast<VADBrowserControllerPrivate>(
        VADPrivateUtilities::privateObjectForKey<VADViewControllerPrivate>(
            static_cast<VADViewController*>(&browser)));
  }

  std::optional<platform::URL> referrer;
};

TEST_F(VADBrowserControllerTest, LoadsWhatWaitsOnceItAppearsWithTheReferrer) {
  referrer = url("http://ads.example/banner");
  VADBrowserController& browser = open();
  FakeWebEngine& engine = engines.last();
  ASSERT_EQ(engine.requests.size(), 1u);
  EXPECT_EQ(engine.requests[0].url.absoluteString(), "http://shop.example/sale");
  EXPECT_EQ(engine.requests[0].headers.at("Referer"), "http://ads.example/banner");
  EXPECT_NE(engine.settings.dataDetectorTypes, 0u);

  browser.viewWillAppear(false);
  EXPECT_EQ(engines.made(), 1);
  EXPECT_EQ(engine.requests.size(), 1u);

  browser.load(std::nullopt);
  browser.load(url("http://b.example/"));
  ASSERT_EQ(engine.requests.size(), 2u);
  EXPECT_FALSE(engine.requests[1].headers.contains("Referer"));
}

TEST_F(VADBrowserControllerTest, TheToolbarFollowsThePage) {
  const struct {
    bool back, forward, loading;
  } kStates[] = {{false, false, true}, {false, false, false}, {true, false, false},
                 {true, true, true},   {false, true, false},  {true, true, false}};
  VADBrowserController& browser = open();
  const auto vars = varsOf(browser);
  FakeWebEngine& engine = engines.last();
  for (const auto& state : kStates) {
    engine.back = state.back;
    engine.forward = state.forward;
    engine.loading = state.loading;
    browser.refreshToolbar();
    EXPECT_EQ(vars->backButton->isEnabled(), state.back);
    EXPECT_EQ(vars->forwardButton->isEnabled(), state.forward);
    EXPECT_EQ(vars->safariButton->isEnabled(), !state.loading);
    EXPECT_EQ(vars->spinner->isAnimating(), state.loading);
    EXPECT_TRUE(vars->doneButton->isEnabled());
    const auto& space = vars->flexibleSpaceButton;
    const auto& middle = state.loading ? vars->spinnerContainingButton : vars->reloadButton;
    EXPECT_EQ(browser.toolbar()->items(),
              (std::vector{vars->backButton, space, vars->forwardButton, space, middle, space,
                           vars->safariButton, space, vars->doneButton}));
    engine.back = engine.forward = false;
  }
}

TEST_F(VADBrowserControllerTest, ItemsHaveTheirNamesAndDoTheirWork) {
  VADBrowserController& browser = open();
  const auto vars = varsOf(browser);
  FakeWebEngine& engine = engines.last();
  engine.back = engine.forward = true;
  engine.loading = false;
  browser.refreshToolbar();
  const std::pair<std::shared_ptr<platform::BarButtonItem>, const char*> kItems[] = {
      {vars->backButton, "Back"},
      {vars->forwardButton, "Forward"},
      {vars->reloadButton, "Reload"},
      {vars->safariButton, "View in Safari"},
      {vars->doneButton, "Done"}};
  for (const auto& [item, label] : kItems) EXPECT_EQ(item->accessibilityLabel(), label);
  EXPECT_TRUE(quorbel_tests::press(*vars->backButton->button()));
  EXPECT_TRUE(quorbel_tests::press(*vars->forwardButton->button()));
  EXPECT_TRUE(quorbel_tests::press(*vars->reloadButton->button()));
  EXPECT_EQ(engine.backs, 1);
  EXPECT_EQ(engine.forwards, 1);
  EXPECT_EQ(engine.reloads, 1);
  browser.stop();
  EXPECT_EQ(engine.stops, 1);
  engine.back = engine.forward = false;
  browser.back();
  browser.forward();
  EXPECT_EQ(engine.backs + engine.forwards, 2) << "beyond the page's history";
  EXPECT_TRUE(quorbel_tests::press(*vars->doneButton->button()));
  EXPECT_EQ(window->topViewController(), host.get());
}

TEST_F(VADBrowserControllerTest, TheBarIsAsHighAsTheDeviceAndItsOrientationWant) {
  using platform::InterfaceIdiom;
  using platform::InterfaceOrientation;
  const struct {
    InterfaceIdiom idiom;
    InterfaceOrientation orientation;
    double height;
  } kCases[] = {{InterfaceIdiom::Phone, InterfaceOrientation::Portrait, 44},
                {InterfaceIdiom::Phone, InterfaceOrientation::LandscapeLeft, 30},
                {InterfaceIdiom::Tablet, InterfaceOrientation::Portrait, 44},
                {InterfaceIdiom::Tablet, InterfaceOrientation::LandscapeRight, 44}};
  for (const auto& each : kCases) {
    device.idiom = each.idiom;
    application.orientation = each.orientation;
    VADIdentifierUtilities fresh;
    VADIdentifierUtilities::Replacement replacement(fresh);
    VADBrowserController& browser = open();
    const auto expectFrames = [&] {
      const platform::Rect area = browser.view()->bounds();
      EXPECT_EQ(browser.webView()->frame(),
                (platform::Rect{0, 0, area.width, area.height - each.height}));
      EXPECT_EQ(browser.toolbar()->frame(),
                (platform::Rect{0, area.height - each.height, area.width, each.height}));
    };
    expectFrames();
    for (const platform::Size size : {platform::Size{700, 900}, platform::Size{280, 200}}) {
      browser.view()->setFrame({0, 0, size.width, size.height});
      expectFrames();
    }
    browser.relinquishScreen();
    loop.advance(0);
  }
}

TEST_F(VADBrowserControllerTest, SaysWhosePageItIsAndHowItCame) {
  VADBrowserController& browser = open();
  const auto vars = varsOf(browser);
  FakeWebEngine& engine = engines.last();
  engine.url = url("http://shop.example/");
  engine.start();
  EXPECT_EQ(vars->prompt->text(), "shop.example");
  engine.url.reset();
  engine.fail();
  EXPECT_EQ(vars->prompt->text(), "shop.example") << "whose page did not come";
  engine.finish();
  const struct {
    const char* address;
    const char* title;
    bool secure, loading;
    const char* shown;
    platform::Symbol symbol;
  } kCases[] = {
      {"https://shop.example/", "Sale", true, false, "shop.example", platform::Symbol::Secure},
      {"http://shop.example/", "", false, false, "shop.example", platform::Symbol::NotSecure},
      {"https://shop.example/", "Sale", true, true, "shop.example", platform::Symbol::None},
      {"about:blank", "Trust me", false, false, "", platform::Symbol::None},
  };
  for (const auto& each : kCases) {
    engine.url = url(each.address);
    engine.pageTitle = each.title;
    engine.secure = each.secure;
    engine.loading = each.loading;
    browser.refreshToolbar();
    EXPECT_EQ(vars->prompt->text(), each.shown);
    EXPECT_EQ(vars->prompt->detail(), std::string(each.secure && !each.loading ? "Sale" : ""));
    EXPECT_EQ(vars->prompt->symbol(), each.symbol) << each.address;
  }
  engine.loading = false;
  engine.url = url("https://shop.example/");
  engine.pageTitle = "Winter sale";
  engine.client.engineDidChangeTitle();
  EXPECT_EQ(vars->prompt->detail(), "Winter sale");
}

TEST_F(VADBrowserControllerTest, LeavesForTheSystemsBrowserWithThePresentPage) {
  VADBrowserController& browser = open();
  engines.last().url = url("https://shop.example/here?x=1");
  record.take();
  browser.openInSafari();
  EXPECT_EQ(record.take(), (Events{"will leave"}));
  EXPECT_TRUE(application.openedURLs.empty());
  browser.relinquishScreen();
  loop.advance(1);
  EXPECT_EQ(application.openedURLs, std::vector<std::string>{"https://shop.example/here?x=1"});
  const platform::Dictionary parameters = statistics().parameters();
  EXPECT_TRUE(parameters.contains(kVADParameterPriorClickBreakOut));
}

TEST_F(VADBrowserControllerTest, ComingBackToAnEmptyBrowserClosesIt) {
  const struct {
    bool loaded;
    const char* version;
    bool closes;
  } kCases[] = {{false, "12", true}, {true, "12", false}, {false, "3.2", false}};
  for (const auto& each : kCases) {
    device.version = each.version;
    VADBrowserController& browser = open();
    if (each.loaded) engines.last().finish();
    application.enterForeground();
    EXPECT_EQ(window->topViewController(), &browser);
    loop.advance(0);
    EXPECT_EQ(window->topViewController() == host.get(), each.closes) << each.version;
    if (!each.closes) browser.relinquishScreen();
    loop.advance(1);
  }
}

TEST_F(VADBrowserControllerTest, TheWayBackLeadsThroughThePagesAndThenOut) {
  VADBrowserController& browser = open();
  engines.last().back = true;
  EXPECT_TRUE(browser.backPressed());
  EXPECT_EQ(engines.last().backs, 1);
  EXPECT_EQ(window->topViewController(), &browser);
  engines.last().back = false;
  EXPECT_TRUE(browser.backPressed());
  EXPECT_EQ(window->topViewController(), host.get());
}

TEST_F(VADBrowserControllerTest, EndsItsPageWithItself) {
  VADBrowserController& browser = open();
  const std::shared_ptr<VADWebView> webView = browser.webView();
  ASSERT_NE(webView->delegate(), nullptr);
  browser.relinquishScreen();
  loop.advance(0);
  EXPECT_EQ(webView->delegate(), nullptr);
  ASSERT_EQ(FakeWebEngines::of(*webView).pages.size(), 1u);
  EXPECT_EQ(FakeWebEngines::of(*webView).pages[0].text, "");
  FakeWebEngines::of(*webView).finish();
}

}  // namespace
}  // namespace valdren
