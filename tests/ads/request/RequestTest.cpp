#include <gtest/gtest.h>

#include <cmath>
#include <ctime>

#include "ads/request/VADBirthday.h"
#include "ads/request/VADIdentifierUtilities.h"
#include "ads/request/VADNetworkChecker.h"
#include "ads/request/VADRequestPrivate.h"
#include "ads/signals/Signals.h"
#include "ads/support/VADMacros.h"
#include "ads/telemetry/VADStatistics.h"
#include "platform/base/Json.h"
#include "tests/support/FakeApplication.h"
#include "tests/support/FakeDevice.h"
#include "tests/support/FakeUserDefaults.h"
#include "tests/support/Fakes.h"
#include "tests/support/Printing.h"
#include "tests/support/Process.h"

namespace platform = valdren::platform;

namespace {

using platform::Array;
using platform::Dictionary;
using platform::Value;
using valdren::VADRequest;
using valdren::VADRequestPrivate;
using valdren::VADStatistics;

class Request : public testing::Test {
 protected:
  Request() { VADStatistics::releaseSharedStatistics(); }
  ~Request() override { VADStatistics::releaseSharedStatistics(); }

  Dictionary parameters() { return request_->parameters(); }
  std::string textOf(const char* key) {
    const Dictionary all = parameters();
    const Value* const value = all.find(key);
    return value ? value->description() : "(none)";
  }

  quorbel_tests::FakeClock clock_;
  quorbel_tests::FakeUserDefaults defaults_;
  quorbel_tests::FakeDevice device_;
  quorbel_tests::FakeScreen screen_;
  quorbel_tests::FakeAudioSession audio_;
  quorbel_tests::FakeApplication application_;
  valdren::VADIdentifierUtilities identity_;
  valdren::VADIdentifierUtilities::Replacement identityInForce_{identity_};
  std::shared_ptr<VADRequestPrivate> request_ =
      std::dynamic_pointer_cast<VADRequestPrivate>(VADRequest::request());
};

TEST_F(Request, CarriesWhatThePublisherSaid) {
  request_->setGender(valdren::kVADGenderFemale);
  request_->setBirthdayWithMonth(2, 29, 1984);
  request_->addKeyword("");
  EXPECT_EQ(textOf("kw"), "(none)");
  request_->addKeyword("music");
  request_->addKeyword("\xff");
  request_->setAdditionalParameters(Dictionary{{"color", "red"}});
  request_->setLocationWithDescription("Bern");
  request_->setCounter(7);
  VADStatistics::sharedStatistics().setAdRequestCount(3);
  const Dictionary all = parameters();
  EXPECT_EQ(*all.text("cust_gender"), "f");
  EXPECT_EQ(*all.text("cust_age"), "19840229");
  EXPECT_EQ(*all.find("kw"), Value(Array{"music", "\xef\xbf\xbd"}));
  EXPECT_EQ(*all.find("extras"), Value(Dictionary{{"color", "red"}}));
  EXPECT_TRUE(all.text("uule")->starts_with("a+"));
  EXPECT_EQ(*all.find("preqs"), Value(7)) << "the request's own count comes last";
  request_->setGender(1);
  EXPECT_EQ(textOf("cust_gender"), "m");
  for (const int gender : {0, 3, -1}) {
    request_->setGender(gender);
    EXPECT_EQ(textOf("cust_gender"), "(none)") << gender;
  }
  request_->setLocationWithLatitude(0, 1, 1);
  EXPECT_EQ(textOf("uule"), "(none)") << "a refused location must not leave the former one";
}

TEST_F(Request, TellsTheNetworkOnceItIsKnown) {
  auto& checker = valdren::VADNetworkChecker::sharedChecker();
  checker.setNetworkTypeFromFlags(platform::kReachabilityFlagsReachable);
  EXPECT_EQ(textOf("net"), "wi");
  checker.setNetworkTypeFromFlags(0);
  EXPECT_EQ(textOf("net"), "(none)");
}

TEST_F(Request, TestModeIsSentWithItsWarning) {
  request_->setTesting(true);
  testing::internal::CaptureStderr();
  EXPECT_EQ(textOf("testing"), "1");
  EXPECT_NE(
      testing::internal::GetCapturedStderr().find(
          "<Valdren> \"testing\" property has been deprecated.  Use \"testDevices\" instead."),
      std::string::npos);
}

TEST_F(Request, OnlyTheRawIdentifierNamesATestDevice) {
  request_->setTestDevices(std::vector<std::string>{identity_.deviceIdentifier(), "", "other"});
  EXPECT_EQ(textOf("adtest"), "(none)");
  request_->setTestDevices(std::vector<std::string>{"other", device_.identifier});
  const Dictionary all = parameters();
  EXPECT_EQ(*all.text("adtest"), "on");
  EXPECT_EQ(platform::writeJson(all)->find(device_.identifier), std::string::npos)
      << "the raw identifier leaves the process";
}

TEST_F(Request, BadExtrasDoNotCostTheRequest) {
  Value deep = Array{};
  for (int level = 0; level < 600; ++level) deep = Array{deep};
  request_->setAdditionalParameters(Dictionary{{"nan", std::nan("")},
                                               {"list", Array{1, HUGE_VAL, 2}},
                                               {"\xff", "\xfe"},
                                               {"deep", deep},
                                               {"good", "kept"}});
  const std::string json = valdren::VADMacros::jsonify(parameters());
  ASSERT_NE(json, "");
  const Dictionary sent = *valdren::VADMacros::readJson(json);
  const Dictionary& extras = *sent.find("extras")->dictionary();
  EXPECT_EQ(*extras.text("good"), "kept");
  EXPECT_EQ(*extras.find("list"), Value(Array{1, nullptr, 2}));
  EXPECT_FALSE(extras.contains("nan"));
  EXPECT_EQ(*extras.text("\xef\xbf\xbd"), "\xef\xbf\xbd");
}

TEST_F(Request, ACopyIsEqualAndIndependent) {
  request_->setTestDevices(std::vector<std::string>{"d"});
  request_->setTesting(true);
  request_->setAdditionalParameters(Dictionary{{"a", 1}});
  request_->setGender(2);
  request_->setBirthday(platform::Date(5));
  request_->addKeyword("k");
  request_->setLocationWithDescription("Bern");
  request_->setInterstitialAd(true);
  request_->setCounter(9);
  const auto copy = request_->copy();
  EXPECT_EQ(copy->testDevices(), request_->testDevices());
  EXPECT_TRUE(copy->isTesting());
  EXPECT_EQ(copy->additionalParameters(), request_->additionalParameters());
  EXPECT_EQ(copy->gender(), 2);
  EXPECT_EQ(copy->birthday(), request_->birthday());
  EXPECT_EQ(copy->keywords(), request_->keywords());
  EXPECT_TRUE(copy->location()->isEqual(*request_->location()));
  EXPECT_TRUE(copy->isInterstitialAd());
  EXPECT_EQ(copy->counter(), 0) << "the loader counts for each request";
  request_->addKeyword("later");
  request_->setLocationWithDescription("Basel");
  EXPECT_EQ(copy->keywords()->size(), 1u);
  EXPECT_EQ(copy->location()->description(), "Bern");
}

TEST_F(Request, KnowsItsTypesAndTheSystem) {
  const struct {
    const char* text;
    int type;
  } cases[] = {{"vantic", 4}, {"qorm", 5}, {"strevel", 1}, {"Vantic", 0}, {"", 0}, {"tovask", 0}};
  for (const auto& each : cases) {
    EXPECT_EQ(VADRequestPrivate::requestTypeFromString(each.text), each.type) << each.text;
  }
  device_.version = "3.1.2";
  EXPECT_TRUE(VADRequestPrivate::deviceAtLeastMinimumOSMajorVersion(3, 1));
  EXPECT_TRUE(VADRequestPrivate::deviceAtLeastMinimumOSMajorVersion(2, 9));
  EXPECT_FALSE(VADRequestPrivate::deviceAtLeastMinimumOSMajorVersion(3, 2));
  EXPECT_FALSE(VADRequestPrivate::deviceAtLeastMinimumOSMajorVersion(4, 0));
}

TEST(Birthday, IsADayInThisTimeZone) {
  for (const char* zone : {"UTC", "America/Sao_Paulo", "Pacific/Kiritimati", "Africa/Cairo"}) {
    const quorbel_tests::ScopedVariable variable("TZ", zone);
    tzset();
    const struct {
      int month, day, year;
      std::optional<std::string> text;
    } cases[] = {
        {2, 29, 1984, "19840229"},
        {10, 21, 2018, "20181021"},
        {1, 1, 1, "00010101"},
        {12, 31, 9999, "99991231"},
        {13, 1, 1999, "20000101"},
        {2, 30, 2001, "20010302"},
        {0, 1, 2001, "20001201"},
        {1, 0, 2001, "20001231"},
        {1, 1, 10000, std::nullopt},
        {1, 1, 0, std::nullopt},
        {1, 2147483647, 2147483647, std::nullopt},
        {-2147483647, -2147483647, -2147483647, std::nullopt},
    };
    for (const auto& each : cases) {
      const auto date = valdren::startOfDay(each.month, each.day, each.year);
      EXPECT_EQ(date.has_value(), each.text.has_value()) << zone;
      if (!date) continue;
      EXPECT_EQ(valdren::dayString(*date), each.text) << zone;
    }
    for (const double outside : {std::nan(""), HUGE_VAL, -1e18, 1e18}) {
      EXPECT_FALSE(valdren::dayString(platform::Date(outside)));
    }
  }
  tzset();
}

}  // namespace
