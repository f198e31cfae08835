#include "ads/telemetry/VADStatistics.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "ads/signals/EncryptedSignals.h"
#include "tests/support/Fakes.h"
#include "tests/support/Printing.h"

namespace {

using platform::Dictionary;
using platform::URL;
using platform::Value;
using valdren::VADStatistics;
using valdren::VADStatisticsCore;

TEST(StatisticsCore, StoresOnlyValuesOfTheRightKind) {
  quorbel_tests::FakeUserDefaults defaults;
  VADStatisticsCore core("test");
  const Dictionary right{{"a", platform::Array{1}},
                         {"d", platform::Date(5)},
                         {"n", 1.5},
                         {"o", Dictionary{{"k", 1}}},
                         {"s", "s"}};
  for (const auto& [key, value] : right) {
    core.setArray(value, "a");
    core.setDate(value, "d");
    core.setNumber(value, "n");
    core.setDictionary(value, "o");
    core.setString(value, "s");
  }
  core.setNumber(std::nullopt, "n");
  EXPECT_EQ(core.numberForKey("s"), Value("s")) << "reading does not ask for the kind";
  core.savePersistentStatistics();
  EXPECT_EQ(*defaults.written().find("valdren_stats_test")->second.dictionary(), right);
}

TEST(StatisticsCore, LoadsWhatItSavedWhenItWent) {
  quorbel_tests::FakeUserDefaults defaults;
  {
    VADStatisticsCore core("test");
    EXPECT_EQ(core.addValue(3, "n"), 3);
    EXPECT_EQ(core.addValue(-5, "n"), -2);
  }
  EXPECT_EQ(VADStatisticsCore("test").numberForKey("n"), Value(-2));
  defaults.setObject("valdren_stats_test", "no dictionary");
  EXPECT_FALSE(VADStatisticsCore("test").numberForKey("n"));
}

class Statistics : public testing::Test {
 protected:
  quorbel_tests::FakeClock clock_;
  quorbel_tests::FakeApplication application_;
  quorbel_tests::FakeUserDefaults defaults_;
  VADStatistics statistics_;

  Dictionary parametersWithoutSession() {
    Dictionary parameters = statistics_.parameters();
    EXPECT_EQ(parameters.find("session_id")->integerValue(), statistics_.sessionId());
    parameters.remove("session_id");
    return parameters;
  }
  std::string told() { return Value(parametersWithoutSession()).description(); }
  URL click(const char* url) { return statistics_.urlForClick(*URL::parse(url)); }
};

TEST_F(Statistics, CountersAndFlagsTravelOnce) {
  statistics_.setAdRequestCount(41);
  statistics_.incrementAdRequestCount();
  for (int time = 0; time < 3; ++time) statistics_.incrementClickCount();
  statistics_.incrementPageNavigationCount();
  statistics_.incrementSSLPageNavigationCount();
  statistics_.incrementSSLPageNavigationCount();
  statistics_.setClickBackgroundedApp();
  statistics_.setBreakOutToSafari();
  statistics_.setAppOpenInterstitialTimeOut();
  statistics_.setAppOpenInterstitialNoFill();
  EXPECT_EQ(told(),
            R"({"preqs":42,"pcbo":1,"aoi_timedout":1,"aoi_nofill":1,"pclb":1,"plpnc":1,"plpsnc":2,)"
            R"("pcc":3})");
  EXPECT_EQ(told(), R"({"preqs":42})");
  statistics_.synchronize();
  EXPECT_EQ(*defaults_.written().find("valdren_stats_shared")->second.dictionary(),
            (Dictionary{{"preqs", 42}, {"pcc", 0}, {"plpnc", 0}, {"plpsnc", 0}}))
      << "flags are removed, counters set to 0";
  EXPECT_TRUE(defaults_.written().contains("valdren_timing_shared"));
}

TEST_F(Statistics, WhatChangesIsKeptAtOnceAndWhatTravelledWithTheNextChange) {
  const auto kept = [&](const char* key) {
    const Dictionary& store = *defaults_.written().at("valdren_stats_shared").dictionary();
    return store.contains(key) ? store.find(key)->description() : "(none)";
  };
  statistics_.incrementAdRequestCount();
  statistics_.incrementClickCount();
  statistics_.setBreakOutToSafari();
  EXPECT_EQ(kept("preqs") + kept("pcc") + kept("pcbo"), "111") << "a kill would cost them";
  statistics_.parameters();
  EXPECT_EQ(kept("pcc") + kept("pcbo"), "11") << "the request may never leave";
  statistics_.startTimingNamed("pcl");
  application_.post(platform::kApplicationWillTerminate);
  EXPECT_EQ(kept("preqs") + kept("pcc") + kept("pcbo"), "10(none)");
  EXPECT_TRUE(defaults_.written().at("valdren_timing_shared").dictionary()->contains("pcl"));
}

TEST_F(Statistics, AClickIsTimedAndTravelsWithWhatItLedTo) {
  statistics_.startTimingNamed("prl");
  clock_.advance(0.25);
  statistics_.endTimingNamed("prl");
  statistics_.startTimingNamed("ppcl");
  clock_.advance(4);
  EXPECT_FALSE(statistics_.isTimingClick());
  click("http://h/c?x=1");
  EXPECT_TRUE(statistics_.isTimingClick());
  statistics_.startTimingNamed("plpl");
  clock_.advance(0.5);
  statistics_.endTimingNamed("plpl");
  statistics_.startTimingNamed("plpd");
  clock_.advance(6);
  statistics_.endTimingNamed("plpd");
  statistics_.endTimingNamed("pcl");
  EXPECT_FALSE(statistics_.isTimingClick());
  clock_.advance(60);
  EXPECT_EQ(
      told(),
      R"({"prl":"250","pcl":"6500","ppcl":"4000","pcrl":"0","plpl":"500","plpd":"6000","pcc":1})");
  EXPECT_EQ(told(), "{}");
}

TEST_F(Statistics, WithoutAClickOnlyRequestsAndTheSessionTravel) {
  statistics_.startTimingNamed("ppcl");
  clock_.advance(1);
  statistics_.endTimingNamed("ppcl");
  EXPECT_TRUE(parametersWithoutSession().empty()) << "what came before a click that never came";
  EXPECT_EQ(statistics_.incrementAdRequestCount(), 1);
  statistics_.startTimingNamed("ptime");
  clock_.advance(2);
  EXPECT_EQ(told(), R"({"ptime":"2000","preqs":1})");
  EXPECT_NE(VADStatistics().sessionId(), statistics_.sessionId()) << "of the run before";
}

TEST_F(Statistics, AClickThatLeftTheApplicationTakesUntilThisRequest) {
  click("http://h/");
  clock_.advance(0.25);
  statistics_.endTimingNamed("pcl");
  statistics_.setClickBackgroundedApp();
  clock_.advance(90);
  EXPECT_EQ(told(), R"({"pcl":90250,"pcrl":"0","pclb":1,"pcc":1})");

  // The clock may be set back in the meantime.
  click("http://h/");
  statistics_.setClickBackgroundedApp();
  clock_.setNow(clock_.now().secondsSince1970() - 2);
  EXPECT_EQ(parametersWithoutSession().find("pcl")->integerValue(), 2000);

  statistics_.setClickBackgroundedApp();
  EXPECT_EQ(told(), R"({"pclb":1})") << "there was no click";
}

TEST_F(Statistics, ClicksOnMessagesAndOnNothingAreNoClicks) {
  for (const char* url : {"gmsg:///click", "vantic://launch", "about:blank"}) {
    EXPECT_EQ(click(url).absoluteString(), url);
  }
  EXPECT_FALSE(statistics_.isTimingClick());
  EXPECT_TRUE(parametersWithoutSession().empty());
  EXPECT_EQ(click("http://h/c?AI=x").absoluteString(), "http://h/c?AI=x");
  EXPECT_EQ(click("http://h/c?ai=").absoluteString(), "http://h/c?ai=");
  EXPECT_EQ(parametersWithoutSession().find("pcc")->integerValue(), 2);
}

TEST_F(Statistics, AClickWithAnAdIdentifierCarriesSignals) {
  const std::string prefix = "http://h/c?ai=a%2Db&z=1&cs=";
  const std::string result = click("http://h/c?ai=a%2Db&z=1").absoluteString();
  ASSERT_TRUE(result.starts_with(prefix)) << result;
  const auto signals = valdren::decryptSignals(result.substr(prefix.size()));
  ASSERT_TRUE(signals);
  EXPECT_EQ(*signals->text("ai"), "a%2Db");
  EXPECT_EQ(*parametersWithoutSession().text("pai"), "a%2Db");
}

TEST_F(Statistics, TheTicketOfAPingComesFromTheOwnHostsAlone) {
  VADStatistics::setAdNetworkDomain("Ads.Example");
  const auto ticketOf = [&](const char* url) {
    click("http://h/");
    statistics_.addClickTrackingURL(*URL::parse(url));
    const Dictionary parameters = parametersWithoutSession();
    return parameters.contains("pit") ? *parameters.text("pit") : "(none)";
  };
  EXPECT_EQ(ticketOf("http://t.ads.example/pcs/ticket?q"), "/ticket");
  EXPECT_EQ(ticketOf("http://ADS.example/abcd"), "d");
  for (const char* other : {"http://ads.example/abc", "http://badads.example/abcdef",
                            "http://ads.example.org/abcdef", "http:/abcdefgh"}) {
    EXPECT_EQ(ticketOf(other), "(none)") << other;
  }
  statistics_.addClickTrackingURL(*URL::parse("http://ads.example/pcs/late"));
  EXPECT_FALSE(parametersWithoutSession().contains("pit")) << "no click is known any more";
  VADStatistics::setAdNetworkDomain("ads.valdren.example");
}

TEST(SharedStatisticsDeathTest, AreHarmlessWhileTheProcessEnds) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        VADStatistics::releaseSharedStatistics();
        VADStatistics::sharedStatistics().incrementClickCount();
        std::exit(0);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
