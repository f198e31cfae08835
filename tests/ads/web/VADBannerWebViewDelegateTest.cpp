#include "ads/web/VADBannerWebViewDelegate.h"

#include <gmock/gmock.h>

#include "ads/telemetry/VADStatistics.h"
#include "ads/telemetry/VADTiming.h"
#include "ads/web/VADOpener.h"
#include "ads/web/VADWebView.h"
#include "tests/ads/web/FakeAdController.h"
#include "tests/ads/web/RecordingOpener.h"
#include "tests/support/FakeApplication.h"
#include "tests/support/FakeUserDefaults.h"
#include "tests/support/FakeWebEngine.h"
#include "tests/support/Fakes.h"

namespace platform = valdren::platform;

namespace {

using namespace valdren;
using platform::NavigationType;
using testing::ElementsAre;
using testing::IsEmpty;
using Events = std::vector<std::string>;

class VADBannerWebViewDelegateTest : public ::testing::Test {
 protected:
  VADBannerWebViewDelegateTest() {
    VADStatistics::releaseSharedStatistics();
    delegate = VADBannerWebViewDelegate::initWithObjectPrivate(
        *loader, std::make_unique<quorbel_tests::RecordingOpener>(events));
  }
  ~VADBannerWebViewDelegateTest() override {
    delegate.reset();
    VADStatistics::releaseSharedStatistics();
  }
  quorbel_tests::FakeWebEngine& page() {
    return quorbel_tests::FakeWebEngines::of(*loader->webView());
  }
  /// Makes the next navigation count as the user's click.
  void touchAndWait() {
    loader->webView()->setTouched(true);
    clock.advance(1);
  }
  bool click(const std::string& address) {
    return page().navigate(address, NavigationType::LinkClicked);
  }
  int clicks() const {
    return int(VADStatistics::sharedStatistics().timingNamed(kVADParameterPriorClickLatency) !=
               nullptr);
  }

  quorbel_tests::FakeWebEngines engines;  // outlives the views that wait in the loop
  quorbel_tests::FakeClock clock;
  quorbel_tests::FakeRunLoop loop{&clock};
  quorbel_tests::FakeUserDefaults defaults;
  quorbel_tests::FakeApplication application;
  Events events;
  std::shared_ptr<quorbel_tests::FakeAdController> loader =
      std::make_shared<quorbel_tests::FakeAdController>(events);
  std::shared_ptr<VADBannerWebViewDelegate> delegate;
};

TEST_F(VADBannerWebViewDelegateTest, TellsClicksFromThePagesOwnDoings) {
  struct Case {
    VADState state;
    double secondsShown;
    NavigationType type;
    bool touched;
    bool isClick;
  };
  const auto link = NavigationType::LinkClicked;
  const Case cases[] = {
      {kVADStateShowingAd, 1, link, true, true},
      {kVADStateShowingAd, 0.15, link, true, true},
      {kVADStateShowingAd, 0.1, link, true, false},
      {kVADStateShowingAd, 1, link, false, false},
      {kVADStateShowingAd, 1, NavigationType::FormSubmitted, true, true},
      {kVADStateShowingAd, 1, NavigationType::BackForward, true, false},
      {kVADStateShowingAd, 1, NavigationType::Reload, true, false},
      {kVADStateShowingAd, 1, NavigationType::FormResubmitted, true, true},
      {kVADStateShowingAd, 1, NavigationType::Other, true, true},
      {kVADStateRenderingAd, 1, link, true, false},
      {kVADStateBuildingURL, 1, link, true, false},
      {kVADStateFailed, 1, link, true, false},
  };
  for (const Case& each : cases) {
    loader->present = each.state;
    // From 0, so that 0.15 seconds are represented exactly.
    loader->shownAt = 0;
    clock.advance(each.secondsShown - VADTiming::counter());
    loader->webView()->setTouched(each.touched);
    EXPECT_EQ(delegate->isClick(each.type), each.isClick)
        << each.state << " " << each.secondsShown << " " << int(each.type) << " " << each.touched;
  }
}

TEST_F(VADBannerWebViewDelegateTest, LetsThePageNavigateUntilItIsTouched) {
  EXPECT_TRUE(click("http://land.test/"));
  loader->webView()->setTouched(true);
  clock.advance(0.1);
  EXPECT_TRUE(click("http://land.test/"));
  EXPECT_FALSE(click("tel:1"));
  EXPECT_THAT(events, ElementsAre("app tel:1"));
  EXPECT_EQ(clicks(), 0);
}

TEST_F(VADBannerWebViewDelegateTest, OpensClicksFullScreen) {
  page().url = platform::URL::parse("http://ads.test/ad");
  touchAndWait();
  EXPECT_FALSE(click("http://land.test/"));
  EXPECT_EQ(delegate->opener()->referringURL()->absoluteString(), "http://ads.test/ad");
  EXPECT_EQ(delegate->opener()->viewController(), loader->root.get());
  EXPECT_EQ(delegate->opener()->delegateManager(), loader->delegateManager());
  EXPECT_EQ(delegate->opener()->adController(), loader.get());
  EXPECT_EQ(clicks(), 1);
  loader->clickURLs = {*platform::URL::parse("http://c.test/")};
  EXPECT_FALSE(click("HTTPS://land.test/"));
  EXPECT_THAT(events, ElementsAre("browser http://land.test/ 3", "webapp HTTPS://land.test/ 3"));
}

TEST_F(VADBannerWebViewDelegateTest, TellsNobodyOfTheAdBefore) {
  page().url = platform::URL::parse("http://ads.test/ad");
  touchAndWait();
  EXPECT_FALSE(click("http://land.test/"));
  EXPECT_TRUE(delegate->opener()->referringURL());
  loader->present = kVADStateRenderingAd;
  page().finish();
  EXPECT_FALSE(delegate->opener()->referringURL());
}

TEST_F(VADBannerWebViewDelegateTest, OpensTheClickURLWithItsSignals) {
  touchAndWait();
  EXPECT_FALSE(click("http://land.test/?ai=abc"));
  ASSERT_EQ(events.size(), 1u);
  EXPECT_THAT(events[0], testing::StartsWith("browser http://land.test/?ai=abc&"));
}

TEST_F(VADBannerWebViewDelegateTest, LeavesClicksThatAreActedOnAndOpensNoPagelessOnes) {
  touchAndWait();
  EXPECT_FALSE(click("tel:1"));
  EXPECT_FALSE(click("gmsg://x/unknown"));
  EXPECT_THAT(events, ElementsAre("app tel:1"));
  EXPECT_FALSE(click("about:blank")) << "a click never navigates the banner";
  EXPECT_EQ(events.size(), 1u);
}

TEST_F(VADBannerWebViewDelegateTest, LetsGoOfTheWebViewAtItsEnd) {
  EXPECT_EQ(loader->webView()->delegate(), delegate.get());
  const std::shared_ptr<VADWebView> view = loader->webView();
  loader.reset();
  EXPECT_TRUE(view->delegate());
  auto& orphan = quorbel_tests::FakeWebEngines::of(*view);
  EXPECT_TRUE(orphan.navigate("http://land.test/")) << "without a loader it is like any other";
  orphan.finish();
  orphan.fail();
  delegate.reset();
  EXPECT_EQ(view->delegate(), nullptr);
}

}  // namespace
