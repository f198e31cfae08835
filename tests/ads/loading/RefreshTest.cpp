// When a banner requests its next ad.
#include <gmock/gmock.h>

#include "tests/support/LoaderTest.h"

namespace {

using namespace valdren;

class RefreshTest : public quorbel_tests::LoaderTest {
 protected:
  void showAd(const std::string& rate) {
    bringTo(kVADStateShowingAd,
            rate.empty() ? platform::Headers{} : platform::Headers{{"X-Urvo-Refresh-Rate", rate}});
  }
  /// Checks that the banner requests an ad after `seconds`, and not half a second earlier.
  void expectRefreshAfter(double seconds) {
    loop.advance(seconds - 0.5);
    EXPECT_EQ(state(), kVADStateShowingAd) << "too early";
    loop.advance(1);
    EXPECT_EQ(state(), kVADStateBuildingURL) << "no refresh";
  }
  void expectNoRefresh() {
    loop.advance(50000);
    EXPECT_EQ(state(), kVADStateShowingAd);
  }
  static void post(const char* name) {
    platform::NotificationCenter::defaultCenter().postNotificationName(name, nullptr);
  }
};

TEST(VADReloadTimer, ReadsTheHeadersLeadingNumber) {
  const std::pair<const char*, double> cases[] = {
      {"30", 30},  {"0.5", 0.5}, {" 12 s", 12}, {"-3", -3}, {"0", 0},
      {"soon", 0}, {"", 0},      {"inf", 0},    {"nan", 0}, {"-infinity", 0},
  };
  for (const auto& [header, seconds] : cases) {
    EXPECT_EQ(VADReloadTimer::secondsFromHeader(header), seconds) << header;
  }
}

TEST_F(RefreshTest, FollowsTheHeaderAndKeepsItForAnswersWithoutOne) {
  showAd("");
  expectNoRefresh();
  makeBanner();
  showAd("30");
  expectRefreshAfter(30);
  EXPECT_FALSE(banner->hasAutoRefreshed());
  EXPECT_EQ(loader()->request()->counter(), 3);
  showNextAd();
  expectRefreshAfter(30);
  makeBanner();
  showAd("-1");
  loop.advance(0);
  EXPECT_EQ(state(), kVADStateBuildingURL);
}

TEST_F(RefreshTest, IsStoppedByZeroUntilTheApplicationReturns) {
  showAd("30");
  loop.advance(30);
  showNextAd({{"X-Urvo-Refresh-Rate", "none"}});
  expectNoRefresh();
  application.enterForeground();
  expectRefreshAfter(30);
}

TEST_F(RefreshTest, IsSetByFailedAndEmptyAnswersToo) {
  for (const int status : {500, 200}) {
    makeBanner();
    bringTo(kVADStateLoadingAd);
    fetches.last().answer(status, {{"X-Urvo-Refresh-Rate", "20"}}, " ");
    EXPECT_EQ(state(), kVADStateFailed);
    loop.advance(20);
    EXPECT_EQ(state(), kVADStateBuildingURL) << status;
  }
}

TEST_F(RefreshTest, StartsAnewAfterTheBackgroundAndAfterFullScreens) {
  const std::pair<std::function<void()>, std::function<void()>> interruptions[] = {
      {[this] { application.enterBackground(); }, [this] { application.enterForeground(); }},
      {[] { post(kVADViewControllerWillPresentFullScreen); },
       [] { post(kVADViewControllerDidRelinquishFullScreen); }},
  };
  for (const auto& [leave, comeBack] : interruptions) {
    makeBanner();
    showAd("30");
    loop.advance(20);
    leave();
    loop.advance(1000);
    EXPECT_EQ(state(), kVADStateShowingAd) << "refreshed while covered";
    comeBack();
    expectRefreshAfter(30);
  }
}

TEST_F(RefreshTest, AWebProcessIsReadyForATapWhileTheAdIsSeen) {
  showAd("");
  EXPECT_FALSE(engines.keepsNext) << "it delays the ad";
  loop.advance(1);
  EXPECT_TRUE(engines.keepsNext);
  application.enterBackground();
  EXPECT_FALSE(engines.keepsNext);
  application.enterForeground();
  loop.advance(1);
  EXPECT_TRUE(engines.keepsNext);
  application.post(platform::kApplicationDidReceiveMemoryWarning);
  EXPECT_FALSE(engines.keepsNext);
  post(kVADViewControllerDidRelinquishFullScreen);
  loop.advance(1);
  EXPECT_TRUE(engines.keepsNext) << "the page before has taken it";
  banner.reset();
  EXPECT_FALSE(engines.keepsNext);
}

TEST_F(RefreshTest, WatchesTheActiveStateOnSystemsWithoutBackground) {
  device.version = "3.2";
  makeBanner();
  showAd("30");
  application.post(platform::kApplicationDidEnterBackground);
  application.post(platform::kApplicationWillResignActive);
  application.post(platform::kApplicationWillEnterForeground);
  expectNoRefresh();
  application.post(platform::kApplicationDidBecomeActive);
  expectRefreshAfter(30);
}

TEST_F(RefreshTest, IsPutOffByItsIntervalAtABadTime) {
  bringTo(kVADStateRenderingAd, {{"X-Urvo-Refresh-Rate", "10"}});
  loop.advance(15);  // longer than the refresh interval
  EXPECT_EQ(state(), kVADStateRenderingAd);
  adPage().finish();
  expectRefreshAfter(5);
  showNextAd();
  application.post(platform::kApplicationDidFinishLaunching);
  application.state = platform::ApplicationState::Inactive;
  loop.advance(15);
  application.state = platform::ApplicationState::Active;
  expectRefreshAfter(5);
}

TEST_F(RefreshTest, OutlivesWhateverEndsARequest) {
  struct Case {
    const char* name;
    VADState state;
    std::function<void()> happens;
    VADState next;  // state 1 where the script is fetched again
  };
  const auto processEnds = [&] { adPage().client.engineProcessDidEnd({"fake", 1, "gone"}); };
  const Case cases[] = {
      {"the script never answers", kVADStateBuildingURL,
       [&] { loop.advance(VADAdURLBuilder::kBuildSeconds.count()); }, kVADStateLoadingScript},
      {"the script hangs", kVADStateBuildingURL, processEnds, kVADStateLoadingScript},
      {"a picture never comes", kVADStateRenderingAd,
       [&] { loop.advance(VADLoaderState::kShowSeconds.count()); }, kVADStateBuildingURL},
      {"the ad hangs at once", kVADStateRenderingAd, processEnds, kVADStateBuildingURL},
      {"the ad hangs later", kVADStateShowingAd, processEnds, kVADStateBuildingURL},
      {"no script", kVADStateBuildingURL,
       [&] {
         loop.advance(VADAdURLBuilder::kBuildSeconds.count());
         record.take();
         loop.advance(100);
         fetches.last().answer(404);
       },
       kVADStateLoadingScript},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.name);
    makeBanner();
    showAd("100");
    loop.advance(100);
    if (each.state >= kVADStateLoadingAd) scriptGivesURL();
    if (each.state >= kVADStateRenderingAd) answerAd();
    if (each.state >= kVADStateShowingAd) adPage().finish();
    ASSERT_EQ(state(), each.state);
    record.take();
    each.happens();
    EXPECT_FALSE(loader()->isMakingRequest());
    EXPECT_THAT(record.take(), testing::ElementsAre("failed 2"));
    EXPECT_FALSE(hasBuilderPage());
    for (int second = 0; second < 100 && !loader()->isMakingRequest(); ++second) loop.advance(1);
    EXPECT_EQ(state(), each.next);
    if (state() == kVADStateLoadingScript) answerScript();
    showNextAd();
    EXPECT_THAT(record.take(), testing::ElementsAre("received"));
  }
}

}  // namespace
