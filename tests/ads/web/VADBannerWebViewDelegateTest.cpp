#include "ads/web/VADBannerWebViewDelegate.h"

#include <gmock/gmock.h>

#include "tests/ads/web/FakeAdController.h"
#include "tests/ads/web/RecordingOpener.h"
#include "tests/support/FakeMachine.h"

namespace {

using namespace valdren;
using platform::NavigationType;
using testing::ElementsAre;
using Events = std::vector<std::string>;

class VADBannerWebViewDelegateTest : public ::testing::Test, protected quorbel_tests::FakeMachine {
 protected:
  VADBannerWebViewDelegateTest() {
    delegate = VADBannerWebViewDelegate::initWithObjectPrivate(
        *loader, std::make_unique<quorbel_tests::RecordingOpener>(events));
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

  Events events;
  std::shared_ptr<quorbel_tests::FakeAdController> loader =
      std::make_shared<quorbel_tests::FakeAdController>(events);
  std::shared_ptr<VADBannerWebViewDelegate> delegate;
};

TEST_F(VADBannerWebViewDelegateTest, ATouchOfThePageIsRememberedAndNothingElse) {
  VADWebView& view = *loader->webView();
  view.setFrame({0, 0, 320, 50});
  for (const auto& [type, touches] : {std::pair(platform::EventType::Motion, false),
                                      {platform::EventType::RemoteControl, false},
                                      {platform::EventType::Touches, true},
                                      {platform::EventType::Motion, true}}) {
    EXPECT_EQ(view.hitTest({10, 10}, type), &view);
    EXPECT_EQ(view.touched(), touches);
  }
  view.setTouched(false);
  EXPECT_FALSE(view.touched());
}

TEST_F(VADBannerWebViewDelegateTest, TellsClicksFromThePagesOwnDoings) {
  const auto link = NavigationType::LinkClicked;
  const std::tuple<VADState, double, NavigationType, bool, bool> cases[] = {
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
  for (const auto& [state, secondsShown, type, touched, isClick] : cases) {
    loader->present = state;
    // From 0, so that 0.15 seconds are represented exactly.
    loader->shownAt = 0;
    clock.advance(secondsShown - VADTiming::counter());
    loader->webView()->setTouched(touched);
    EXPECT_EQ(delegate->isClick(type), isClick)
        << state << " " << secondsShown << " " << int(type) << " " << touched;
  }
}

TEST_F(VADBannerWebViewDelegateTest, OpensClicksFullScreen) {
  page().url = platform::URL::parse("http://ads.test/ad");
  EXPECT_TRUE(click("http://land.test/")) << "the untouched page navigates";
  EXPECT_FALSE(VADStatistics::sharedStatistics().isTimingClick());
  touchAndWait();
  EXPECT_FALSE(click("http://land.test/"));
  EXPECT_EQ(delegate->opener()->referringURL()->absoluteString(), "http://ads.test/ad");
  EXPECT_EQ(delegate->opener()->viewController(), loader->root.get());
  EXPECT_EQ(delegate->opener()->delegateManager(), loader->delegateManager());
  EXPECT_EQ(delegate->opener()->adController(), loader.get());
  EXPECT_TRUE(VADStatistics::sharedStatistics().isTimingClick());
  loader->clickURLs = {*platform::URL::parse("http://c.test/")};
  EXPECT_FALSE(click("HTTPS://land.test/"));
  EXPECT_FALSE(click("http://land.test/?ai=abc"));
  EXPECT_THAT(events, ElementsAre("browser http://land.test/ 3", "webapp HTTPS://land.test/ 3",
                                  testing::StartsWith("webapp http://land.test/?ai=abc&")));
  for (const char* const actedOn : {"tel:1", "gmsg://x/unknown", "about:blank"}) {
    EXPECT_FALSE(click(actedOn)) << "a click never navigates the banner";
  }
  EXPECT_EQ(events.back(), "app tel:1");
  EXPECT_EQ(events.size(), 4u);
  loader->present = kVADStateRenderingAd;
  page().finish();
  EXPECT_FALSE(delegate->opener()->referringURL()) << "the next ad does not know the one before";
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
