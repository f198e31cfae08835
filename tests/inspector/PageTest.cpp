// Ads and landing pages as shown in a real engine.
#include <gtest/gtest.h>

#include <algorithm>

#include "sandbox/Ads.h"
#include "sandbox/Sandbox.h"
#include "tests/inspector/Browser.h"
#include "tests/support/Loop.h"

namespace {

using namespace inspector_tests;
using sandbox::Sandbox;

/// Finds faults of the page's texts: too small, cut off, or too little contrast.
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

class Page : public ::testing::Test {
 protected:
  void SetUp() override {
    sandbox_ = Sandbox::start(0);
    ASSERT_TRUE(sandbox_);
  }
  bool waitForMessage(const Browser& browser, const std::string& name) {
    return quorbel_tests::runUntil([&] {
      return std::any_of(browser.messages().begin(), browser.messages().end(),
                         [&](const std::string& each) { return each.starts_with(name); });
    });
  }

  std::unique_ptr<Sandbox> sandbox_;
};

TEST_F(Page, EveryAdFitsItsFiftyPointsInLightAndDark) {
  Browser browser(320, 50);
  for (const bool dark : {false, true}) {
    browser.setDark(dark);
    for (const sandbox::Ad& ad : sandbox::ads()) {
      ASSERT_TRUE(browser.load(sandbox_->baseURL() + "/preview/" + std::string(ad.name)));
      EXPECT_EQ(browser.evaluate(kFaults), "") << ad.name;
      EXPECT_EQ(browser.evaluate("document.documentElement.scrollHeight <= 50"), "true") << ad.name;
    }
  }
}

TEST_F(Page, LandingPagesFitANarrowScreen) {
  Browser browser(320, 480);
  for (const char* name : {"plain", "webapp", "video", "failing"}) {
    ASSERT_TRUE(browser.load(sandbox_->baseURL() + "/land/" + name));
    EXPECT_EQ(browser.evaluate(kFaults), "") << name;
  }
}

TEST_F(Page, AnAdOpensThenHasTheClickPinged) {
  Browser browser(320, 50);
  ASSERT_TRUE(browser.load(sandbox_->baseURL() + "/preview/webapp"));
  browser.evaluate("document.querySelector('a').click()");
  ASSERT_TRUE(waitForMessage(browser, "gmsg://urvo/click?u="));
  ASSERT_EQ(browser.messages().size(), 2U);
  EXPECT_TRUE(browser.messages()[0].starts_with("gmsg://urvo/open?a=webapp"))
      << "a ping that comes first belongs to no click: " << browser.messages()[0];
}

TEST_F(Page, TheConsoleSendsEveryMessageAndShowsReplies) {
  Browser browser(320, 50);
  ASSERT_TRUE(browser.load(sandbox_->baseURL() + "/preview/console"));
  const int count = std::stoi(browser.evaluate("messages.length"));
  for (int each = 0; each < count; ++each) {
    browser.evaluate("button.click(); document.getElementById('after').click()");
  }
  quorbel_tests::runUntil([&] { return browser.messages().size() >= std::size_t(count); });
  for (const char* name : {"log", "vibrate", "touch", "click", "httpTrack", "canOpenURLs",
                           "evalInOpener", "settings", "close", "open", "hello"}) {
    EXPECT_TRUE(waitForMessage(browser, std::string("gmsg://urvo/") + name)) << name;
  }
  browser.evaluate("URVO_ReceiveMessage('openableURLs', {\"tel:1\": true})");
  EXPECT_EQ(browser.evaluate("document.querySelector('output').textContent"),
            "openableURLs {\"tel:1\":true}");
}

TEST_F(Page, TheWebAppShowsWhatItIsTold) {
  Browser browser(360, 640);
  ASSERT_TRUE(browser.load(sandbox_->baseURL() + "/land/webapp?t=t1&depth=3"));
  browser.evaluate(
      "URVO_ReceiveMessage('onshow', {\"version\": \"v1\"}); URVO_ReceiveMessage('onhide');"
      "URVO_ReceiveMessage('openableURLs', {\"tel:1\": true, \"x:\": false});"
      "window.__defineGetter__('orientation', function () { return 90; }); "
      "window.onorientationchange();");
  EXPECT_EQ(browser.evaluate("document.getElementById('onshow').textContent"),
            "{\"version\":\"v1\"}");
  EXPECT_EQ(browser.evaluate("document.getElementById('onhide').textContent"), "yes");
  EXPECT_EQ(browser.evaluate("document.getElementById('openable').textContent"),
            "tel:1 yes, x: no");
  EXPECT_EQ(browser.evaluate("document.getElementById('orientation').textContent"), "90\xC2\xB0");
  browser.evaluate("document.getElementById('nest').click()");
  ASSERT_TRUE(waitForMessage(browser, "gmsg://urvo/open?a=webapp"));
  EXPECT_NE(browser.messages().back().find("depth%3D4"), std::string::npos);
  browser.evaluate("document.querySelector('[data-orientations=landscape]').click()");
  EXPECT_TRUE(waitForMessage(browser, "gmsg://urvo/settings?supportedOrientations=landscape"));
  browser.evaluate("document.getElementById('close').click()");
  EXPECT_TRUE(waitForMessage(browser, "gmsg://urvo/close"));
}

}  // namespace
