// Screens in a visible window, with real pages from a real server.
#include <gtest/gtest.h>

#include "ads/request/VADIdentifierUtilities.h"
#include "ads/screens/VADBrowserController.h"
#include "ads/screens/VADWebAppViewController.h"
#include "ads/telemetry/VADStatistics.h"
#include "ads/web/VADOpener.h"
#include "ads/web/VADWebView.h"
#include "platform/ui/Window.h"
#include "platform/web/EngineCheck.h"
#include "tests/support/FakeDevice.h"
#include "tests/support/FakeUserDefaults.h"
#include "tests/support/Loop.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/Taps.h"

namespace valdren {
namespace {

using quorbel_tests::runUntil;

constexpr double kPatience = 60;

constexpr const char* kPage = R"(<!DOCTYPE html><title>Summer sale</title>
<meta name="viewport" content="width=device-width">
<body style="margin:0;font:16px sans-serif;background:#fdf6e3">
<div style="background:#cb4b16;color:white;padding:48px 16px 24px"><h1>Summer sale</h1>Half price</div>
<p style="padding:16px">Everything must go. <a href="/next">More</a></p>
<script>
window.URVO_ReceiveMessage = function (name, value) {
  new Image().src = '/told/' + name + (value && value.version ? '/' + value.version : '');
};
</script>)";

class Host final : public platform::ViewController {
 public:
  bool shouldAutorotateToInterfaceOrientation(platform::InterfaceOrientation) override {
    return true;
  }
};

class RealScreensTest : public ::testing::Test {
 protected:
  RealScreensTest() {
    for (const char* path : {"/page", "/next"}) {
      server.answer(path, 200, {{"Content-Type", "text/html; charset=utf-8"}}, kPage);
    }
  }
  ~RealScreensTest() override {
    window->setRootViewController(nullptr);
    VADStatistics::releaseSharedStatistics();
  }

  void show(platform::InterfaceIdiom idiom, platform::Size size) {
    device.idiom = idiom;
    replacement.reset();
    identity = std::make_unique<VADIdentifierUtilities>();
    replacement = std::make_unique<VADIdentifierUtilities::Replacement>(*identity);
    window = std::make_shared<platform::Window>(size);
    window->setTitle("Host");
    host->view()->setBackgroundColor({0.2, 0.4, 0.6, 1});
    window->setRootViewController(host);
    window->makeKeyAndVisible();
    // As in the application, where a banner has asked before any screen opens. A page that exists
    // when its screen appears takes the keyboard's focus.
    platform::EngineCheck::shared().ask([] {});
    ASSERT_TRUE(
        runUntil([] { return platform::EngineCheck::shared().isUsable() == true; }, kPatience));
    ASSERT_TRUE(runUntil([&] { return window->contentBounds().width == size.width; }, kPatience));
  }
  VADBrowserController& openBrowser(platform::URL url) {
    const auto browser = VADBrowserController::create();
    browser->load(url, server.url("/banner"));
    browser->presentFromViewController(host.get());
    return *browser;
  }
  VADWebAppViewController& openWebApp() {
    const auto webApp = VADWebAppViewController::create();
    webApp->load(server.url("/page"));
    webApp->presentFromViewController(host.get());
    return *webApp;
  }
  bool isTold(const std::string& what) {
    return runUntil([&] { return !server.requests("/told/" + what).empty(); }, kPatience);
  }
  bool isUp(const platform::ViewController& screen) {
    auto& view = const_cast<platform::ViewController&>(screen).view();
    return runUntil([&] { return view->isUserInteractionEnabled() && view->frame().y == 0; },
                    kPatience);
  }
  static bool isLoaded(const VADBrowserController& browser) {
    return runUntil([&] { return browser.webView() && !browser.webView()->isLoading(); },
                    kPatience);
  }
  static std::string evaluate(platform::WebView& view, const std::string& script) {
    std::string result;
    bool done = false;
    view.stringByEvaluatingJavaScriptFromString(script, [&](const std::string& text) {
      result = text;
      done = true;
    });
    runUntil([&] { return done; }, kPatience);
    return result;
  }

  quorbel_tests::FakeUserDefaults defaults;
  quorbel_tests::FakeDevice device;
  quorbel_tests::LoopbackServer server;
  std::unique_ptr<VADIdentifierUtilities> identity;
  std::unique_ptr<VADIdentifierUtilities::Replacement> replacement;
  std::shared_ptr<Host> host = std::make_shared<Host>();
  std::shared_ptr<platform::Window> window;
};

TEST_F(RealScreensTest, BackAndForwardFollowThePages) {
  show(platform::InterfaceIdiom::Phone, {320, 480});
  VADBrowserController& browser = openBrowser(server.url("/page"));
  ASSERT_TRUE(isLoaded(browser));
  const auto item = [&](int index) { return browser.toolbar()->items().at(index); };
  EXPECT_FALSE(item(0)->isEnabled());
  evaluate(*browser.webView(), "document.querySelector('a').click()");
  ASSERT_TRUE(runUntil([&] { return item(0)->isEnabled(); }, kPatience));
  ASSERT_TRUE(isLoaded(browser));
  EXPECT_TRUE(browser.backPressed());
  EXPECT_TRUE(runUntil([&] { return item(2)->isEnabled(); }, kPatience));
  EXPECT_FALSE(item(0)->isEnabled());
}

TEST_F(RealScreensTest, ABrowserWhosePageNeverAnswersCanBeClosed) {
  server.answer("/slow", {.raw = "HTTP/1.1 200 OK\r\n",
                          .ending = quorbel_tests::LoopbackResponse::Ending::Hang});
  show(platform::InterfaceIdiom::Phone, {320, 480});
  VADBrowserController& browser = openBrowser(server.url("/slow"));
  ASSERT_TRUE(isUp(browser));
  ASSERT_TRUE(runUntil([&] { return !server.requests("/slow").empty(); }, kPatience));
  EXPECT_TRUE(quorbel_tests::press(*browser.toolbar()->items().back()->button()));
  EXPECT_EQ(window->topViewController(), host.get());
}

TEST_F(RealScreensTest, AWebAppIsToldThatItIsShownAndHidden) {
  show(platform::InterfaceIdiom::Phone, {320, 480});
  VADWebAppViewController& webApp = openWebApp();
  ASSERT_TRUE(isTold("onshow/urvo-sdk-i-v4.1.1"));
  ASSERT_TRUE(isUp(webApp));
  EXPECT_TRUE(server.requests("/told/onhide").empty());
  evaluate(*webApp.webView(), "location = 'gmsg://x/close'");
  EXPECT_TRUE(isTold("onhide"));
  EXPECT_EQ(window->topViewController(), host.get());
}

TEST_F(RealScreensTest, APageOpensAnotherOverItAndItsMessagesReachTheOpener) {
  show(platform::InterfaceIdiom::Tablet, {768, 900});
  VADWebAppViewController& webApp = openWebApp();
  ASSERT_TRUE(isTold("onshow/urvo-sdk-i-v4.1.1"));
  ASSERT_TRUE(isUp(webApp));
  evaluate(*webApp.webView(),
           "location = 'gmsg://x/open?a=browser&u=" + std::string("http%3A%2F%2F127.0.0.1%3A") +
               std::to_string(server.port()) + "%2Fnext'");
  ASSERT_TRUE(runUntil([&] { return window->topViewController() != &webApp; }, kPatience));
  auto* const browser = dynamic_cast<VADBrowserController*>(window->topViewController());
  ASSERT_NE(browser, nullptr);
  EXPECT_FALSE(browser->isFirstVADViewController());
  EXPECT_TRUE(isTold("onhide"));
  ASSERT_TRUE(isUp(*browser));
  browser->relinquishScreen();
  EXPECT_TRUE(runUntil([&] { return window->topViewController() == &webApp; }, kPatience));
}

TEST_F(RealScreensTest, TurningTheWindowTurnsThePage) {
  show(platform::InterfaceIdiom::Phone, {320, 480});
  VADBrowserController& browser = openBrowser(server.url("/page"));
  ASSERT_TRUE(isUp(browser));
  ASSERT_TRUE(isLoaded(browser));
  EXPECT_EQ(evaluate(*browser.webView(), "window.orientation"), "0");
  window->resize({480, 320});
  ASSERT_TRUE(runUntil([&] { return browser.toolbar()->frame().height == 30; }, kPatience));
  EXPECT_TRUE(runUntil([&] { return evaluate(*browser.webView(), "window.orientation") == "90"; },
                       kPatience));
  EXPECT_EQ(browser.toolbar()->frame().y, window->contentBounds().height - 30);
  window->resize({320, 480});
  EXPECT_TRUE(runUntil([&] { return browser.toolbar()->frame().height == 44; }, kPatience));
}

}  // namespace
}  // namespace valdren
