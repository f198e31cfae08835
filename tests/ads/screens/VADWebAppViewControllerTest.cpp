// The web app screen: loading, messages to its page, and its delayed end.
#include "ads/screens/VADWebAppViewController.h"

#include <gmock/gmock.h>

#include "ads/screens/VADBrowserController.h"
#include "ads/screens/VADScreenOpener.h"
#include "ads/screens/VADWebAppViewControllerPrivate.h"
#include "tests/ads/screens/ScreenTest.h"
#include "tests/support/Taps.h"

namespace valdren {
namespace {

using quorbel_tests::FakeWebEngine;
using ::testing::HasSubstr;

class VADWebAppViewControllerTest : public quorbel_tests::ScreenTest {
 protected:
  VADWebAppViewController& open() {
    const auto webApp = VADWebAppViewController::create();
    webApp->setDelegateManager(manager);
    webApp->load(url("http://app.example/"));
    webApp->presentFromViewController(host.get());
    return *webApp;
  }
  static VADWebAppViewControllerPrivate& varsOf(VADWebAppViewController& webApp) {
    return static_cast<VADWebAppViewControllerPrivate&>(
        *VADPrivateUtilities::privateObjectForKey<VADViewControllerPrivate>(
            static_cast<VADViewController*>(&webApp)));
  }
  static int count(const FakeWebEngine& engine, const std::string& event) {
    return static_cast<int>(std::ranges::count_if(engine.scripts, [&](const auto& script) {
      return script.starts_with("URVO_ReceiveMessage('" + event + "'");
    }));
  }
};

TEST_F(VADWebAppViewControllerTest, LoadsWhatWaitsAndTheURLBeforeTheText) {
  for (const bool hasURL : {true, false}) {
    const auto webApp = VADWebAppViewController::create();
    webApp->loadHTML("<p>text</p>", url("http://base.example/"));
    if (hasURL) webApp->load(url("http://app.example/"));
    webApp->load(std::nullopt);
    webApp->loadHTML(std::nullopt, std::nullopt);
    webApp->presentFromViewController(host.get());
    FakeWebEngine& engine = engines.last();
    webApp->viewWillAppear(false);
    EXPECT_EQ(engine.requests.size() + 2 * engine.pages.size(), hasURL ? 1u : 2u);
    EXPECT_EQ(engine.url, url(hasURL ? "http://app.example/" : "http://base.example/"));
    if (!hasURL) {
      EXPECT_EQ(engine.pages.at(0).text, "<p>text</p>");
    }
    webApp->loadHTML("<p>now</p>", std::nullopt);
    EXPECT_EQ(engine.pages.back().text, "<p>now</p>");
    webApp->relinquishScreen();
    loop.advance(3);
  }
  EXPECT_EQ(engines.made(), 2);
}

TEST_F(VADWebAppViewControllerTest, ShowsAPageACloseButtonAndASpinnerUntilTheFirstLoad) {
  VADWebAppViewController& webApp = open();
  VADWebAppViewControllerPrivate& vars = varsOf(webApp);
  EXPECT_EQ(webApp.webView()->frame(), webApp.view()->bounds());
  EXPECT_EQ(webApp.view()->subviews().back(), vars.closeButton) << "under the page";
  ASSERT_NE(vars.loadingSpinner, nullptr);
  const auto spinner = vars.loadingSpinner;
  EXPECT_TRUE(spinner->isAnimating());

  engines.last().fail();
  EXPECT_EQ(spinner->superview(), webApp.webView().get());
  engines.last().finish();
  EXPECT_EQ(spinner->superview(), nullptr);
  EXPECT_EQ(vars.loadingSpinner, nullptr);
  engines.last().finish();

  EXPECT_TRUE(quorbel_tests::press(*vars.closeButton));
  EXPECT_EQ(window->topViewController(), host.get());
}

TEST_F(VADWebAppViewControllerTest, ThePageIsToldOnceThatItIsShown) {
  for (const bool loadedFirst : {false, true}) {
    const auto webApp = VADWebAppViewController::create();
    if (!loadedFirst) webApp->load(url("http://app.example/"));
    webApp->presentFromViewController(host.get());
    FakeWebEngine& engine = engines.last();
    EXPECT_EQ(count(engine, "onshow"), loadedFirst ? 1 : 0);
    engine.finish();
    EXPECT_EQ(count(engine, "onshow"), 1);
    engine.finish();
    webApp->viewDidAppear(false);
    EXPECT_EQ(count(engine, "onshow"), 1);
    EXPECT_THAT(engine.scripts,
                ::testing::Contains(HasSubstr("\"version\":\"urvo-sdk-i-v4.1.1\"")));
    webApp->relinquishScreen();
    loop.advance(3);
  }
}

TEST_F(VADWebAppViewControllerTest, ThePageIsToldThatItIsHiddenOrTurnedUntilItGoes) {
  VADWebAppViewController& webApp = open();
  FakeWebEngine& engine = engines.last();
  engine.finish();
  const auto nested = VADViewController::create();
  nested->presentFromViewController(&webApp);
  EXPECT_EQ(engine.scripts.back(), "URVO_ReceiveMessage('onhide');");
  nested->relinquishScreen();
  webApp.relinquishScreen();
  EXPECT_EQ(count(engine, "onhide"), 2);
  engine.scripts.clear();
  webApp.didRotateFromInterfaceOrientation(platform::InterfaceOrientation::LandscapeRight);
  EXPECT_THAT(engine.scripts, ::testing::ElementsAre(HasSubstr("return 0;")));
  EXPECT_TRUE(engine.pages.empty()) << "emptied before it was told";
}

TEST_F(VADWebAppViewControllerTest, ThePageOutlivesItsScreenByTwoSeconds) {
  open().relinquishScreen();
  loop.advance(0);
  ASSERT_EQ(engines.engines().size(), 1u);
  FakeWebEngine& engine = engines.last();
  record.take();
  loop.advance(1.9);
  // The page still sends messages, but its screen is gone.
  for (const char* message : {"gmsg://x/close", "gmsg://x/open?a=browser&u=http%3A%2F%2Fb%2F",
                              "gmsg://x/open?a=webapp&html=x", "mailto:a@b"}) {
    EXPECT_FALSE(engine.navigate(message)) << message;
  }
  engine.finish();
  EXPECT_EQ(count(engine, "onshow"), 0);
  EXPECT_EQ(record.take(), Events{});
  EXPECT_EQ(engines.made(), 1);
  loop.advance(0.2);
  EXPECT_TRUE(engines.engines().empty());
  EXPECT_EQ(loop.pendingCount(), 0u);
}

TEST_F(VADWebAppViewControllerTest, ItAndTheBrowserTimeTheLoadAndTheVisitOfTheLandingPage) {
  const auto isRunning = [&](const char* name) {
    return statistics().timingNamed(name)->isActive();
  };
  const auto seconds = [&](const char* name) {
    return statistics().timingNamed(name)->elapsedMilliseconds() / 1000.0;
  };
  const auto browser = VADBrowserController::create();
  for (const bool inBrowser : {true, false}) {
    statistics().removeTimingNamed(kVADParameterPriorLandingPageLoad);
    statistics().removeTimingNamed(kVADParameterPriorLandingPageDuration);
    if (inBrowser) browser->load(url("http://app.example/"));
    if (inBrowser) browser->presentFromViewController(host.get());
    VADViewController& screen = inBrowser ? static_cast<VADViewController&>(*browser) : open();
    FakeWebEngine& engine = engines.last();
    engine.start();
    loop.advance(1);
    engine.start();  // a frame, or the page after a redirect
    loop.advance(1);
    engine.finish();
    EXPECT_EQ(seconds(kVADParameterPriorLandingPageLoad), 2);
    EXPECT_FALSE(isRunning(kVADParameterPriorLandingPageLoad));
    loop.advance(3);
    engine.finish();
    EXPECT_EQ(seconds(kVADParameterPriorLandingPageLoad), 2) << "the visit goes on";
    EXPECT_TRUE(isRunning(kVADParameterPriorLandingPageDuration));
    engine.start();  // a page that the landing page leads to
    loop.advance(2);
    engine.finish();
    EXPECT_EQ(seconds(kVADParameterPriorLandingPageLoad), 2) << "only the landing page counts";
    EXPECT_FALSE(isRunning(kVADParameterPriorLandingPageLoad));
    loop.advance(1);
    statistics().urlForClick(url("http://b.example/"));
    loop.advance(2);
    screen.relinquishScreen();
    EXPECT_EQ(seconds(kVADParameterPriorClickLatency), 2);
    EXPECT_FALSE(isRunning(kVADParameterPriorClickLatency));
    EXPECT_EQ(seconds(kVADParameterPriorLandingPageDuration), 8);
    EXPECT_FALSE(isRunning(kVADParameterPriorLandingPageDuration));
    loop.advance(3);
  }
}

TEST_F(VADWebAppViewControllerTest, APageThatTheAdGaveReachesItUntilItShowsAnother) {
  const auto show = [](FakeWebEngine& engine, const char* address) {
    engine.start();
    engine.url = url(address);
    engine.finish();
  };
  const auto opener = std::make_shared<VADWebView>();
  const auto delegate = std::make_shared<VADWebViewDelegate>(openerWithScreens());
  opener->setDelegate(delegate.get());
  delegate->setViewController(host.get());
  FakeWebEngine& below = quorbel_tests::FakeWebEngines::of(*opener);
  show(below, "http://ads.test/ad");
  below.navigate("gmsg://x/open?a=webapp&html=x");
  ASSERT_NE(window->topViewController(), host.get());
  FakeWebEngine& page = engines.last();
  page.finish();
  const auto reaches = [&] {
    below.scripts.clear();
    page.navigate("gmsg://x/evalInOpener?js=f()");
    loop.advance(0);
    return below.scripts == Events{"f()"};
  };
  EXPECT_TRUE(reaches());
  show(below, "http://bank.test/");
  EXPECT_FALSE(reaches());
  show(below, "http://ads.test/ad");
  show(page, "http://other.test/");
  show(page, "about:blank");
  EXPECT_FALSE(reaches()) << "a blank page that was not given";
}

}  // namespace
}  // namespace valdren
