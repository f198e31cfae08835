#include <gtest/gtest.h>

#include <cmath>
#include <ctime>

#include "ads/request/VADBirthday.h"
#include "ads/request/VADIdentifierUtilities.h"
#include "ads/request/VADNetworkChecker.h"
#include "ads/request/VADRequestError.h"
#include "ads/request/VADRequestPrivate.h"
#include "ads/support/VADMacros.h"
#include "ads/telemetry/VADStatistics.h"
#include "platform/base/Json.h"
#include "tests/support/FakeMachine.h"
#include "tests/support/LogLines.h"
#include "tests/support/Printing.h"
#include "tests/support/Process.h"

namespace {

using platform::Array;
using platform::Dictionary;
using platform::Value;
using valdren::VADRequestError;
using valdren::VADRequestPrivate;
using valdren::VADStatistics;

class Request : public testing::Test, protected quorbel_tests::FakeMachine {
 protected:
  Dictionary parameters() { return request_->parameters(); }
  std::string textOf(const char* key) {
    const Dictionary all = parameters();
    const Value* const value = all.find(key);
    return value ? value->description() : "(none)";
  }

  valdren::VADIdentifierUtilities identity_;
  valdren::VADIdentifierUtilities::Replacement identityInForce_{identity_};
  std::shared_ptr<VADRequestPrivate> request_ =
      std::dynamic_pointer_cast<VADRequestPrivate>(valdren::VADRequest::request());
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
  valdren::VADNetworkChecker::sharedChecker().setNetworkTypeFromFlags(
      platform::kReachabilityFlagsReachable);
  const Dictionary all = parameters();
  EXPECT_EQ(*all.text("net"), "wi");
  EXPECT_EQ(*all.text("cust_gender"), "f");
  EXPECT_EQ(*all.text("cust_age"), "19840229");
  EXPECT_EQ(*all.find("kw"), Value(Array{"music", "\xef\xbf\xbd"}));
  EXPECT_EQ(*all.find("extras"), Value(Dictionary{{"color", "red"}}));
  EXPECT_TRUE(all.text("uule")->starts_with("a+"));
  EXPECT_EQ(*all.find("preqs"), Value(7)) << "the request's own count comes last";
  valdren::VADNetworkChecker::sharedChecker().setNetworkTypeFromFlags(0);
  EXPECT_EQ(textOf("net"), "(none)");
  request_->setGender(1);
  EXPECT_EQ(textOf("cust_gender"), "m");
  for (const int gender : {0, 3, -1}) {
    request_->setGender(gender);
    EXPECT_EQ(textOf("cust_gender"), "(none)") << gender;
  }
  request_->setLocationWithLatitude(0, 1, 1);
  EXPECT_EQ(textOf("uule"), "(none)") << "a refused location must not leave the former one";
}

TEST_F(Request, TestModeIsSentWithItsWarning) {
  request_->setTesting(true);
  quorbel_tests::LogLines log;
  EXPECT_EQ(textOf("testing"), "1");
  EXPECT_EQ(log.take(),
            std::vector<std::string>{"<Valdren> \"testing\" property has been deprecated.  Use "
                                     "\"testDevices\" instead."});
}

TEST_F(Request, OnlyTheRawIdentifierNamesATestDevice) {
  request_->setTestDevices(std::vector<std::string>{identity_.deviceIdentifier(), "", "other"});
  EXPECT_EQ(textOf("adtest"), "(none)");
  request_->setTestDevices(std::vector<std::string>{"other", device.identifier});
  const Dictionary all = parameters();
  EXPECT_EQ(*all.text("adtest"), "on");
  EXPECT_EQ(platform::writeJson(all)->find(device.identifier), std::string::npos)
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
  request_->setTestDevices(std::vector<std::string>{device.identifier});
  request_->setTesting(true);
  request_->setAdditionalParameters(Dictionary{{"a", 1}});
  request_->setGender(2);
  request_->setBirthday(platform::Date(5));
  request_->addKeyword("k");
  request_->setLocationWithDescription("Bern");
  request_->setInterstitialAd(true);
  const Dictionary sent = parameters();
  request_->setCounter(9);
  const auto copy = request_->copy();
  EXPECT_EQ(copy->parameters(), sent);
  EXPECT_TRUE(copy->isInterstitialAd());
  EXPECT_EQ(copy->counter(), 0) << "the loader counts for each request";
  request_->addKeyword("later");
  request_->setLocationWithDescription("Basel");
  EXPECT_EQ(copy->parameters(), sent);
}

TEST_F(Request, KnowsItsTypes) {
  const std::pair<const char*, int> cases[] = {{"vantic", 4}, {"qorm", 5}, {"strevel", 1},
                                               {"Vantic", 0}, {"", 0},     {"tovask", 0}};
  for (const auto& [text, type] : cases) {
    EXPECT_EQ(VADRequestPrivate::requestTypeFromString(text), type) << text;
  }
}

TEST_F(Request, AnErrorSaysWhatItsCodeMeansAndWhatWasSentIfThatWasInvalid) {
  device.version = "2.2.1";
  const std::string invalid =
      "Request Error: Invalid ad request parameter(s).  Check the Xcode console for details.";
  const std::pair<std::int32_t, std::string> cases[] = {
      {0, invalid},
      {4, "Request Error: This device's OS is 2.2.1.  It is below the minimum of 3.0."},
      {7, invalid},
      {-1, invalid},
  };
  for (const auto& [code, message] : cases) {
    const auto error = VADRequestError::errorWithCode(code, code ? request_.get() : nullptr);
    EXPECT_EQ(error.domain(), "com.valdren.ads");
    EXPECT_EQ(error.code(), code);
    EXPECT_EQ(error.localizedDescription(), message);
    EXPECT_EQ(error.userInfo(),
              (Dictionary{{valdren::kVADLocalizedDescriptionKey, message},
                          {valdren::kVADLocalizedFailureReasonErrorKey, message}}));
  }
  request_->addKeyword("k");
  const auto error = VADRequestError::errorWithCode(0, request_.get());
  EXPECT_TRUE(error.userInfo().contains("kw"));
  EXPECT_TRUE(error.userInfo().contains("isu"));
  EXPECT_EQ(error.localizedDescription(), invalid);
}

TEST(Birthday, IsADayInThisTimeZone) {
  for (const char* zone : {"UTC", "America/Sao_Paulo", "Pacific/Kiritimati", "Africa/Cairo"}) {
    const quorbel_tests::ScopedVariable variable("TZ", zone);
    tzset();
    const std::tuple<int, int, int, std::optional<std::string>> cases[] = {
        {2, 29, 1984, "19840229"},
        {10, 21, 2018, "20181021"},
        {1, 1, 1, "00010101"},
        {12, 31, 9999, "99991231"},
        {13, 1, 1999, "20000101"},
        {2, 30, 2001, "20010302"},
        {0, 1, 2001, "20001201"},
        {1, 0, 2001, "20001231"},
        {-10, 701, 0, "00010101"},
        {1, 1, 10000, std::nullopt},
        {1, 1, 0, std::nullopt},
        {1, 2147483647, 2147483647, std::nullopt},
        {-2147483647, -2147483647, -2147483647, std::nullopt},
    };
    for (const auto& [month, day, year, text] : cases) {
      const auto date = valdren::startOfDay(month, day, year);
      EXPECT_EQ(date ? valdren::dayString(*date) : std::nullopt, text) << zone;
    }
    for (const double outside : {std::nan(""), HUGE_VAL, -1e18, 1e18}) {
      EXPECT_FALSE(valdren::dayString(platform::Date(outside)));
    }
  }
  tzset();
}

}  // namespace
