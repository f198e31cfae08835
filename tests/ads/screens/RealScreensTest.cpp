// Screens in a visible window, with real pages from a real server.
#include "ads/screens/VADBrowserController.h"
#include "ads/screens/VADWebAppViewController.h"
#include "ads/web/VADWebView.h"
#include "platform/web/EngineCheck.h"
#include "tests/ads/screens/ScreenTest.h"
#include "tests/support/Loop.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/Taps.h"

namespace valdren {
namespace {

using quorbel_tests::runUntil;

constexpr double kPatience = 60;

constexpr const char* kPage = R"(<!DOCTYPE html><title>Summer sale</title><p>Half price<script>
window.URVO_ReceiveMessage = function (name, value) {
  new Image().src = '/told/' + name + (value && value.version ? '/' + value.version : '');
};
</script>)";

class RealScreensTest : public ::testing::Test {
 protected:
  RealScreensTest() {
    server.answer("/page", 200, {{"Content-Type", "text/html; charset=utf-8"}}, kPage);
    window->setRootViewController(host);
    window->makeKeyAndVisible();
    // As in the application, where a banner has asked before any screen opens. A page that exists
    // when its screen appears takes the keyboard's focus.
    platform::EngineCheck::shared().ask([] {});
    EXPECT_TRUE(
        runUntil([] { return platform::EngineCheck::shared().isUsable() == true; }, kPatience));
  }
  ~RealScreensTest() override {
    window->setRootViewController(nullptr);
    VADStatistics::releaseSharedStatistics();
  }

  VADBrowserController& openBrowser(platform::URL url) {
    const auto browser = VADBrowserController::create();
    browser->load(url, server.url("/banner"));
    browser->presentFromViewController(host.get());
    return *browser;
  }
  bool isTold(const std::string& what) {
    return runUntil([&] { return !server.requests("/told/" + what).empty(); }, kPatience);
  }
  bool isUp(const platform::ViewController& screen) {
    auto& view = const_cast<platform::ViewController&>(screen).view();
    return runUntil([&] { return view->isUserInteractionEnabled() && view->frame().y == 0; },
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
  VADIdentifierUtilities identity;
  VADIdentifierUtilities::Replacement replacement{identity};
  quorbel_tests::LoopbackServer server;
  std::shared_ptr<quorbel_tests::HostScreen> host = std::make_shared<quorbel_tests::HostScreen>();
  std::shared_ptr<platform::Window> window =
      std::make_shared<platform::Window>(platform::Size{320, 480});
};

TEST_F(RealScreensTest, APageOpensAnotherOverItAndIsToldThatItIsHidden) {
  const auto webApp = VADWebAppViewController::create();
  webApp->load(server.url("/page"));
  webApp->presentFromViewController(host.get());
  ASSERT_TRUE(isTold("onshow/urvo-sdk-i-v4.1.1"));
  ASSERT_TRUE(isUp(*webApp));
  EXPECT_TRUE(server.requests("/told/onhide").empty());
  evaluate(*webApp->webView(), "location = 'gmsg://x/open?a=browser&u=' + encodeURIComponent('" +
                                   server.address("/page") + "')");
  ASSERT_TRUE(runUntil([&] { return window->topViewController() != webApp.get(); }, kPatience));
  auto* const browser = dynamic_cast<VADBrowserController*>(window->topViewController());
  ASSERT_NE(browser, nullptr);
  EXPECT_TRUE(isTold("onhide"));
  ASSERT_TRUE(isUp(*browser));
  browser->relinquishScreen();
  EXPECT_TRUE(runUntil([&] { return window->topViewController() == webApp.get(); }, kPatience));
}

TEST_F(RealScreensTest, TurningTheWindowTurnsThePage) {
  VADBrowserController& browser = openBrowser(server.url("/page"));
  ASSERT_TRUE(isUp(browser));
  ASSERT_TRUE(runUntil([&] { return !browser.webView()->isLoading(); }, kPatience));
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
