// The in-app browser: loading, toolbar and end.
#include "ads/screens/VADBrowserController.h"

#include "ads/screens/VADBrowserControllerPrivate.h"
#include "ads/screens/VADIntrinsicImages.h"
#include "tests/ads/screens/ScreenTest.h"
#include "tests/support/Taps.h"

namespace valdren {
namespace {

using quorbel_tests::FakeWebEngine;

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
  } kStates[] = {{false, false, true}, {true, false, false}, {false, true, true}};
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
  }
}

TEST_F(VADBrowserControllerTest, ItemsHaveTheirNamesAndDoTheirWork) {
  VADBrowserController& browser = open();
  const auto vars = varsOf(browser);
  FakeWebEngine& engine = engines.last();
  engine.back = engine.forward = true;
  engine.loading = false;
  browser.refreshToolbar();
  std::string labels;
  for (const auto& item : browser.toolbar()->items()) labels += item->accessibilityLabel() + ";";
  EXPECT_EQ(labels, "Back;;Forward;;Reload;;View in Safari;;Done;");
  EXPECT_TRUE(quorbel_tests::press(*vars->backButton->button()));
  EXPECT_TRUE(quorbel_tests::press(*vars->forwardButton->button()));
  EXPECT_TRUE(quorbel_tests::press(*vars->reloadButton->button()));
  EXPECT_EQ(engine.backs, 1);
  EXPECT_EQ(engine.forwards, 1);
  EXPECT_EQ(engine.reloads, 1);
  // The way back leads through the pages and then out.
  engine.back = true;
  EXPECT_TRUE(browser.backPressed());
  EXPECT_EQ(engine.backs, 2);
  engine.back = false;
  EXPECT_EQ(window->topViewController(), &browser);
  EXPECT_TRUE(browser.backPressed());
  EXPECT_EQ(window->topViewController(), host.get());
  EXPECT_TRUE(quorbel_tests::press(*varsOf(open())->doneButton->button()));
  EXPECT_EQ(window->topViewController(), host.get());
}

TEST_F(VADBrowserControllerTest, TheBarIsAsHighAsTheDeviceWantsAndTurnsWithThePage) {
  using platform::InterfaceIdiom;
  using platform::InterfaceOrientation;
  const std::pair<InterfaceIdiom, double> kCases[] = {{InterfaceIdiom::Phone, 30},
                                                      {InterfaceIdiom::Tablet, 44}};
  for (const auto& [idiom, lying] : kCases) {
    device.idiom = idiom;
    VADIdentifierUtilities fresh;
    VADIdentifierUtilities::Replacement replacement(fresh);
    VADBrowserController& browser = open();
    for (const auto& [orientation, height] : {std::pair(InterfaceOrientation::Portrait, 44.0),
                                              {InterfaceOrientation::LandscapeLeft, lying},
                                              {InterfaceOrientation::Portrait, 44.0}}) {
      application.orientation = orientation;
      engines.last().scripts.clear();
      browser.didRotateFromInterfaceOrientation(InterfaceOrientation::Portrait);
      EXPECT_EQ(engines.last().scripts.size(), 1u) << "the page does not know";
      for (const platform::Size size : {browser.view()->bounds().size(), {700, 900}, {280, 200}}) {
        browser.view()->setFrame({0, 0, size.width, size.height});
        const double top = size.height - height;
        EXPECT_EQ(browser.webView()->frame(), (platform::Rect{0, 0, size.width, top}));
        EXPECT_EQ(browser.toolbar()->frame(), (platform::Rect{0, top, size.width, height}));
      }
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
  using enum platform::Symbol;
  // The address, whether it came safely and is still coming, and what is said of it.
  const std::tuple<const char*, bool, bool, const char*, const char*, platform::Symbol> cases[] = {
      {"https://shop.example/", true, false, "shop.example", "Sale", Secure},
      {"http://shop.example/", false, false, "shop.example", "Sale", NotSecure},
      {"https://shop.example/", true, true, "shop.example", "", None},
      {"about:blank", false, false, "", "", None},
  };
  engine.pageTitle = "Sale";
  for (const auto& [address, secure, loading, shown, detail, symbol] : cases) {
    engine.url = url(address);
    engine.secure = secure;
    engine.loading = loading;
    browser.refreshToolbar();
    EXPECT_EQ(vars->prompt->text(), shown);
    EXPECT_EQ(vars->prompt->detail(), detail) << address;
    EXPECT_EQ(vars->prompt->symbol(), symbol) << address;
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
  for (const auto& [loaded, version, closes] :
       {std::tuple(false, "12", true), {true, "12", false}, {false, "3.2", false}}) {
    device.version = version;
    VADBrowserController& browser = open();
    if (loaded) engines.last().finish();
    application.enterForeground();
    EXPECT_EQ(window->topViewController(), &browser);
    loop.advance(0);
    EXPECT_EQ(window->topViewController() == host.get(), closes) << version;
    if (!closes) browser.relinquishScreen();
    loop.advance(1);
  }
}

TEST_F(VADBrowserControllerTest, CountsLinksAndForms) {
  using enum platform::NavigationType;
  const char* const plain = kVADParameterPriorLandingPageNavCount;
  const char* const secure = kVADParameterPriorLandingPageSSLNavCount;
  const std::tuple<const char*, platform::NavigationType, const char*> cases[] = {
      {"http://b/", LinkClicked, plain},
      {"https://b/", LinkClicked, secure},
      {"http://b/", FormSubmitted, plain},
      {"HTTPS://b/", FormSubmitted, secure},
      {"http://b/", BackForward, nullptr},
      {"http://b/", Reload, nullptr},
      {"http://b/", FormResubmitted, nullptr},
      {"https://b/", Other, nullptr},
      {"file:///etc/passwd", LinkClicked, nullptr},
      {"tel:1", LinkClicked, nullptr},
  };
  open();
  for (const auto& [address, type, counter] : cases) {
    engines.last().navigate(address, type);
    const platform::Dictionary parameters = statistics().parameters();
    for (const char* const key : {plain, secure}) {
      EXPECT_EQ(parameters.contains(key), counter == key) << address << int(type);
    }
  }
}

TEST_F(VADBrowserControllerTest, EndsItsPageWithItself) {
  const std::shared_ptr<VADWebView> webView = open().webView();
  ASSERT_NE(webView->delegate(), nullptr);
  dynamic_cast<VADBrowserController&>(*window->topViewController()).relinquishScreen();
  loop.advance(0);
  EXPECT_EQ(webView->delegate(), nullptr);
  EXPECT_EQ(quorbel_tests::FakeWebEngines::of(*webView).pages.at(0).text, "");
}

}  // namespace
}  // namespace valdren
