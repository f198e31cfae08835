// Ads, landing pages and the ad engine script in a real engine.
#include <gtest/gtest.h>

#include <algorithm>

#include "sandbox/Ads.h"
#include "sandbox/Sandbox.h"
#include "tests/support/Loop.h"
#include "tests/support/WebPage.h"

namespace platform = valdren::platform;

namespace {

using sandbox::Sandbox;

/// Finds faults of the page's texts: too small, cut off or outside.
constexpr const char* kFaults = R"((function () {
  var faults = [];
  if (document.documentElement.scrollWidth > innerWidth) faults.push('wider than the window');
  document.querySelectorAll('body *').forEach(function (element) {
    var own = Array.from(element.childNodes).some(function (node) {
      return node.nodeType === 3 && node.data.trim();
    });
    if (!own || /^(SCRIPT|STYLE|TITLE)$/i.test(element.tagName) || !element.getClientRects().length) return;
    var style = getComputedStyle(element), words = element.textContent.trim().slice(0, 30);
    if (parseFloat(style.fontSize) < 12) faults.push('small: ' + words);
    if (element.scrollWidth > element.clientWidth + 1 && style.display !== 'inline' && style.overflow === 'hidden') faults.push('cut: ' + words);
    var box = element.getBoundingClientRect();
    if (box.left < -1 || box.right > innerWidth + 1) faults.push('outside: ' + words);
  });
  return faults.join('; ');
})())";

class SandboxPage : public ::testing::Test {
 protected:
  void SetUp() override {
    sandbox_ = Sandbox::start(0);
    ASSERT_TRUE(sandbox_);
  }
  /// Opens a page of the sandbox.
  void open(platform::Size size, const std::string& path) {
    if (!page_) {
      page_ = std::make_unique<quorbel_tests::Page>(platform::Rect{0, 0, size.width, size.height});
      page_->show(size);
    }
    ASSERT_TRUE(page_->go(sandbox_->baseURL() + path));
  }
  std::string evaluate(const std::string& script) { return page_->evaluate(script); }
  std::string textOf(const std::string& id) {
    return evaluate("document.getElementById('" + id + "').textContent");
  }
  std::vector<std::string> messages() { return page_->delegate.addressesOf("gmsg"); }
  bool sends(const std::string& begin) {
    return quorbel_tests::runUntil([&] {
      const auto sent = messages();
      return std::any_of(sent.begin(), sent.end(),
                         [&](const std::string& each) { return each.starts_with(begin); });
    });
  }

  std::unique_ptr<Sandbox> sandbox_;
  std::unique_ptr<quorbel_tests::Page> page_;
};

TEST_F(SandboxPage, EveryAdFitsItsFiftyPointsAndLandingPagesANarrowScreen) {
  for (const sandbox::Ad& ad : sandbox::ads()) {
    open({320, 50}, "/preview/" + std::string(ad.name));
    EXPECT_EQ(evaluate(kFaults), "") << ad.name;
    EXPECT_EQ(evaluate("document.documentElement.scrollHeight <= 50"), "true") << ad.name;
  }
  page_.reset();
  for (const char* name : {"plain", "webapp", "video", "failing"}) {
    open({320, 480}, "/land/" + std::string(name));
    EXPECT_EQ(evaluate(kFaults), "") << name;
  }
}

TEST_F(SandboxPage, TheConsoleSendsEveryMessageAndShowsReplies) {
  open({320, 50}, "/preview/console");
  const int count = std::stoi(evaluate("messages.length"));
  for (int each = 0; each < count; ++each) {
    evaluate("button.click(); document.getElementById('after').click()");
  }
  for (const char* name : {"log", "vibrate", "touch", "click", "httpTrack", "canOpenURLs",
                           "evalInOpener", "settings", "close", "open", "hello"}) {
    EXPECT_TRUE(sends(std::string("gmsg://urvo/") + name)) << name;
  }
  evaluate("URVO_ReceiveMessage('openableURLs', {\"tel:1\": true})");
  EXPECT_EQ(evaluate("document.querySelector('output').textContent"),
            "openableURLs {\"tel:1\":true}");
}

TEST_F(SandboxPage, TheWebAppShowsWhatItIsTold) {
  open({360, 640}, "/land/webapp?t=t1&depth=3");
  evaluate(
      "URVO_ReceiveMessage('onshow', {\"version\": \"v1\"}); URVO_ReceiveMessage('onhide');"
      "URVO_ReceiveMessage('openableURLs', {\"tel:1\": true, \"x:\": false});"
      "window.__defineGetter__('orientation', function () { return 90; }); "
      "window.onorientationchange();");
  EXPECT_EQ(textOf("onshow"), "{\"version\":\"v1\"}");
  EXPECT_EQ(textOf("onhide"), "yes");
  EXPECT_EQ(textOf("openable"), "tel:1 yes, x: no");
  EXPECT_EQ(textOf("orientation"), "90\xC2\xB0");
  evaluate("document.getElementById('nest').click()");
  ASSERT_TRUE(sends("gmsg://urvo/open?a=webapp"));
  EXPECT_NE(messages().back().find("depth%3D4"), std::string::npos);
  evaluate("document.querySelector('[data-orientations=landscape]').click()");
  EXPECT_TRUE(sends("gmsg://urvo/settings?supportedOrientations=landscape"));
  evaluate("document.getElementById('close').click()");
  EXPECT_TRUE(sends("gmsg://urvo/close"));
}

}  // namespace
