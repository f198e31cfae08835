#include "ads/loading/VADObjectPrivate.h"

#include <gmock/gmock.h>

#include "ads/support/VADMacros.h"
#include "tests/support/LoaderTest.h"

namespace {

using namespace valdren;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class VADObjectPrivateTest : public quorbel_tests::LoaderTest {
 protected:
  /// The script's parameters, read back from the page that calls it.
  platform::Dictionary parametersGiven() const {
    const std::string& page = builderPage().pages.at(0).text;
    const std::string call = "<script>URVO_buildAdURL(";
    const std::size_t start = page.rfind(call) + call.size();
    const std::size_t end = page.find(");</script>", start);
    return VADMacros::readJson(page.substr(start, end - start)).value_or(platform::Dictionary());
  }
};

TEST_F(VADObjectPrivateTest, BringsAnAdFromTheScriptToThePings) {
  EXPECT_EQ(state(), kVADStateIdle);
  EXPECT_TRUE(loader()->webView()->isHidden());
  load();
  EXPECT_EQ(state(), kVADStateLoadingScript);
  EXPECT_EQ(fetches.last().url(), VADAdEngineScript::jsBuildAdURL().absoluteString());
  answerScript();

  EXPECT_EQ(state(), kVADStateBuildingURL);
  ASSERT_TRUE(hasBuilderPage());
  EXPECT_TRUE(builderPage().host.isHidden());
  EXPECT_EQ(builderPage().related, &adPage());
  const quorbel_tests::FakeWebEngine::HTML page = builderPage().pages.at(0);
  EXPECT_EQ(page.baseURL->absoluteString(), "https://ads.valdren.example");
  EXPECT_THAT(page.text, StartsWith(std::string("<html><head><script>") + kScript +
                                    "</script><script>URVO_buildAdURL({"));
  EXPECT_THAT(page.text, testing::EndsWith("});</script></head><body></body></html>"));
  const platform::Dictionary parameters = parametersGiven();
  EXPECT_EQ(*parameters.text("slotname"), "unit");
  EXPECT_EQ(parameters.find("preqs")->integerValue(), 1);
  EXPECT_EQ(parameters.find("ad_frame")->description(), R"({"x":0,"y":410,"w":320,"h":50})");
  EXPECT_EQ(parameters.find("ad_bounds")->description(), R"({"x":0,"y":0,"w":320,"h":50})");
  EXPECT_FALSE(parameters.contains("format"));
  scriptSays("loadAdURL?type=tovask&url=http%3A%2F%2Fads.test%2Fad%3Fid%3D1");

  EXPECT_EQ(state(), kVADStateLoadingAd);
  EXPECT_FALSE(hasBuilderPage()) << "the script's page outlived its answer";
  const std::string signals = loader()->request()->spamSignals().begin()->key;
  EXPECT_THAT(fetches.last().url(), StartsWith(kAdURL + ("&" + signals + "=")));
  EXPECT_THAT(fetches.last().url(), testing::EndsWith("&seq_num=1"));
  answerAd({{"X-Urvo-Tracking-Urls", "http://p.test/1 http://p.test/2"}}, "  <p>An ad</p>\n ");

  EXPECT_EQ(state(), kVADStateRenderingAd);
  EXPECT_EQ(adPage().pages.at(0).text, kAd);
  EXPECT_EQ(adPage().pages.at(0).baseURL, loader()->adHTMLBaseURL());
  EXPECT_THAT(record.take(), IsEmpty());
  const std::size_t before = fetches.count();
  loader()->webView()->setTouched(true);
  adPage().finish();

  EXPECT_EQ(state(), kVADStateShowingAd);
  EXPECT_FALSE(loader()->webView()->touched()) << "nobody has touched the new ad";
  EXPECT_FALSE(loader()->webView()->isHidden());
  EXPECT_THAT(record.take(), ElementsAre("received"));
  ASSERT_EQ(fetches.count(), before + 2);
  EXPECT_EQ(fetches.fetch(before).url(), "http://p.test/1");
  EXPECT_EQ(fetches.fetch(before + 1).url(), "http://p.test/2");
  EXPECT_THAT(log.take(), IsEmpty()) << "nothing but the documented lines is logged";

  adPage().fail();
  adPage().finish();
  EXPECT_EQ(state(), kVADStateShowingAd) << "a part of the page that fails costs the ad";
  EXPECT_THAT(record.take(), IsEmpty());
}

TEST_F(VADObjectPrivateTest, TellsTheWindowThatThePersonSees) {
  bringTo(kVADStateShowingAd);
  for (const bool processEnds : {false, true}) {
    makeBanner();  // the cached script is still fresh
    display.settlesIn = 0.5;
    load();
    EXPECT_EQ(state(), kVADStateBuildingURL);
    loop.advance(0.4);
    EXPECT_FALSE(hasBuilderPage());
    display.frame = {0, 20, 1024, 748};
    banner->setFrame({0, 698, 320, 50});
    if (processEnds) loader()->webProcessDidEnd();
    loop.advance(0.1);
    ASSERT_EQ(hasBuilderPage(), !processEnds);
    if (processEnds) continue;
    EXPECT_EQ(*parametersGiven().text("u_h"), "768");
    EXPECT_EQ(parametersGiven().find("ad_frame")->description(),
              R"({"x":0,"y":698,"w":320,"h":50})");
  }
}

TEST_F(VADObjectPrivateTest, TimesTheRequestUntilTheAdShows) {
  bringTo(kVADStateRenderingAd);
  clock.advance(0.25);
  adPage().finish();
  auto& statistics = VADStatistics::sharedStatistics();
  EXPECT_EQ(statistics.timingNamed(kVADParameterPriorRequestLatency)->elapsedMilliseconds(), 250u);
  EXPECT_TRUE(statistics.timingNamed(kVADParameterPriorPreClickLatency)->isActive());
  const double first = statistics.timingNamed(kVADParameterTimeSinceFirstRequest)->startSeconds();
  clock.advance(5);
  load();
  EXPECT_EQ(statistics.timingNamed(kVADParameterTimeSinceFirstRequest)->startSeconds(), first);
}

TEST_F(VADObjectPrivateTest, FailsWithoutAnAddressThatCanBeFetched) {
  for (const char* const address : {"", "%5Bhttp%3A%2F%2F", "foo%3Abar"}) {
    SCOPED_TRACE(address);
    makeBanner();
    bringTo(kVADStateBuildingURL);
    fetches.refuses = true;
    scriptSays(std::string("loadAdURL?url=") + address);
    fetches.refuses = false;
    EXPECT_EQ(state(), kVADStateFailed);
    EXPECT_THAT(record.take(), ElementsAre("failed 2"));
    EXPECT_FALSE(hasBuilderPage());
  }
}

TEST_F(VADObjectPrivateTest, HearsOnlyItsOwnScriptAndOnlyOnce) {
  bringTo(kVADStateBuildingURL);
  adPage().navigate("gmsg://sdk/loadAdURL?url=http%3A%2F%2Fforged.test%2F");
  loop.advance(0);
  EXPECT_EQ(state(), kVADStateBuildingURL) << "the ad's own page answered for the script";
  builderPage().navigate("gmsg://sdk/loadAdURL?url=http%3A%2F%2Fads.test%2F1");
  builderPage().navigate("gmsg://sdk/loadAdURL?url=http%3A%2F%2Fads.test%2F2");
  builderPage().navigate("gmsg://sdk/invalidRequest");
  loop.advance(0);
  EXPECT_EQ(state(), kVADStateLoadingAd);
  EXPECT_THAT(fetches.last().url(), StartsWith("http://ads.test/1"));
  EXPECT_THAT(record.take(), IsEmpty());
}

TEST_F(VADObjectPrivateTest, ReportsAScriptThatCannotBeHadAndMayBeAskedAgainFromTheReport) {
  load();
  fetches.last().answer(404);
  EXPECT_EQ(state(), kVADStateScriptFailed);
  EXPECT_THAT(record.take(), ElementsAre("failed 2"));
  load();
  EXPECT_EQ(state(), kVADStateLoadingScript) << "the next load must ask again";
  fetches.last().answer(200, {}, "");
  EXPECT_EQ(state(), kVADStateScriptFailed);
  EXPECT_THAT(record.take(), ElementsAre("failed 2")) << "an empty script is none";
  load();
  EXPECT_FALSE(fetches.last().request().headers.contains("If-Modified-Since"))
      << "the server would say that nothing has changed";
  record.onEvent = [this](const std::string&) {
    record.onEvent = nullptr;
    load();
  };
  fetches.last().answer(500);
  EXPECT_TRUE(fetches.last().isUnderWay());
  answerScript();
  EXPECT_EQ(state(), kVADStateBuildingURL);
}

TEST_F(VADObjectPrivateTest, AsksForTheScriptOnceADay) {
  bringTo(kVADStateLoadingScript);
  EXPECT_EQ(
      *defaults.written().at("valdren_stats_VADObjectPrivate").dictionary()->find("expireDate"),
      platform::Value(platform::Date::now().after(platform::Seconds(86400))));
  answerScript();
  showNextAd();
  clock.advance(86400);
  makeBanner();
  const std::size_t before = fetches.count();
  load();
  EXPECT_EQ(state(), kVADStateBuildingURL);
  EXPECT_EQ(fetches.count(), before);
  clock.advance(1);
  makeBanner();
  load();
  EXPECT_EQ(state(), kVADStateLoadingScript);
  EXPECT_TRUE(fetches.last().request().headers.contains("If-Modified-Since"));
  fetches.last().respond(503);
  EXPECT_EQ(state(), kVADStateBuildingURL) << "an older script is better than none";
  EXPECT_THAT(builderPage().pages.at(0).text, HasSubstr(kScript));
  clock.advance(VADAdURLBuilder::kBuildSeconds.count() + 1);
  makeBanner();
  load();
  EXPECT_EQ(state(), kVADStateLoadingScript) << "it is kept although it has never answered";
}

TEST_F(VADObjectPrivateTest, AsksForTheScriptWhenWhatWasKeptIsDamaged) {
  bringTo(kVADStateShowingAd);
  const auto keep = [this](platform::Value date) {
    defaults.setObject("valdren_stats_VADObjectPrivate",
                       platform::Dictionary{{"expireDate", std::move(date)}});
  };
  const std::function<void()> damages[] = {
      [] { clearCaches(); },
      [&] { keep("tomorrow"); },
      // As after the clock was set back.
      [&] { keep(platform::Date::now().after(platform::Seconds(86401))); },
  };
  for (const auto& damage : damages) {
    makeBanner();
    damage();
    load();
    EXPECT_EQ(state(), kVADStateLoadingScript);
    answerScript();
    EXPECT_EQ(state(), kVADStateBuildingURL);
  }
}

TEST_F(VADObjectPrivateTest, TakesOneRequestAtATime) {
  for (const VADState busy :
       {kVADStateLoadingScript, kVADStateBuildingURL, kVADStateLoadingAd, kVADStateRenderingAd}) {
    SCOPED_TRACE(busy);
    clearCaches();
    makeBanner();
    bringTo(busy);
    const std::size_t before = fetches.count();
    const int engineCount = engines.made();
    load();
    EXPECT_EQ(state(), busy);
    EXPECT_EQ(fetches.count(), before);
    EXPECT_EQ(engines.made(), engineCount);
    EXPECT_EQ(loader()->request()->counter(), VADStatistics::sharedStatistics().adRequestCount());
  }
}

TEST_F(VADObjectPrivateTest, LoadsInTheBackgroundOnlyWhileLaunchingAndNeverOnSystemsThatAreTooOld) {
  application.state = platform::ApplicationState::Background;
  bringTo(kVADStateLoadingScript);
  makeBanner();
  application.post(platform::kApplicationDidFinishLaunching);
  EXPECT_TRUE(VADObjectPrivate::didAppFinishLaunching());
  for (const auto inactive :
       {platform::ApplicationState::Background, platform::ApplicationState::Inactive}) {
    application.state = inactive;
    load();
    EXPECT_EQ(state(), kVADStateIdle);
  }
  application.state = platform::ApplicationState::Active;
  device.version = "2.9.9";
  load();
  EXPECT_THAT(record.take(), ElementsAre("failed 4"));
  EXPECT_EQ(VADStatistics::sharedStatistics().adRequestCount(), 1);
  device.version = "3.0";
  load();
  EXPECT_EQ(state(), kVADStateLoadingScript);
}

TEST_F(VADObjectPrivateTest, CopiesTheRequestAndMarksInterstitials) {
  const auto request = VADRequest::request();
  request->addKeyword("before");
  loader()->loadInterstitialRequest(request);
  request->addKeyword("after");
  answerScript();
  const platform::Dictionary parameters = parametersGiven();
  EXPECT_EQ(parameters.find("kw")->description(), R"(["before"])");
  EXPECT_EQ(*parameters.text("format"), "interstitial_mb");
  EXPECT_FALSE(parameters.contains("ad_frame"));
  EXPECT_FALSE(std::dynamic_pointer_cast<VADRequestPrivate>(request)->isInterstitialAd());
}

TEST_F(VADObjectPrivateTest, LetsNoTextBreakOutOfTheScript) {
  const std::string hostile = "</script><script>alert(1)</script><!--\xE2\x80\xA8\xE2\x80\xA9";
  banner->setAdUnitID(hostile);
  bringTo(kVADStateBuildingURL);
  EXPECT_EQ(*parametersGiven().text("slotname"), hostile) << "the value itself must not change";
  const std::string page = builderPage().pages.at(0).text;
  for (const char* way : {"alert(1)</script>", "<!--", "\xE2\x80\xA8", "\xE2\x80\xA9"}) {
    EXPECT_THAT(page, testing::Not(HasSubstr(way)));
  }
}

TEST_F(VADObjectPrivateTest, ClearsTrackersAwayAfterTheirOutcome) {
  bringTo(kVADStateShowingAd,
          {{"X-Urvo-Tracking-Urls", "http://p.test/1 http://p.test/2 http://p.test/3"}});
  const std::size_t first = fetches.count() - 3;
  EXPECT_EQ(loader()->pendingTrackers().size(), 3u);
  fetches.fetch(first).answer(200);
  fetches.fetch(first + 1).fail({"test", 1, "cut"});
  EXPECT_EQ(loader()->pendingTrackers().size(), 3u)
      << "a tracker went away inside its own callback";
  loop.advance(0);
  EXPECT_EQ(loader()->pendingTrackers().size(), 1u);
  // A page that opens many destinations sends the click pings each time.
  loader()->trackURLs(std::vector(5000, *platform::URL::parse("http://p.test/click")));
  EXPECT_EQ(loader()->pendingTrackers().size(), 1000u) << "pings without end";
  EXPECT_EQ(application.runningTasks(), 1000u);
  application.expireBackgroundTasks();
  loader()->trackURLs({*platform::URL::parse("http://p.test/later")});
  EXPECT_EQ(application.runningTasks(), 1u) << "pings that the system ended keep others back";
  EXPECT_EQ(loader()->pendingTrackers().size(), 1u);
}

}  // namespace
