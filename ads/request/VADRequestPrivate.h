// A request as the loader keeps it: the publisher's options and the parameters made of them.
#pragma once

#include <string_view>

#include "ads/request/VADLocation.h"
#include "ads/request/VADRequest.h"

namespace valdren {

class VADRequestPrivate final : public VADRequest {
 public:
  VADRequestPrivate() = default;
  /// A request with the options of another one, interstitial or not.
  static std::shared_ptr<VADRequestPrivate> initWithRequest(const VADRequest& request);

  std::shared_ptr<VADRequestPrivate> copy() const override { return initWithRequest(*this); }

  const std::optional<std::vector<std::string>>& testDevices() const override {
    return testDevices_;
  }
  void setTestDevices(std::optional<std::vector<std::string>> identifiers) override;
  bool isTesting() const override { return testing_; }
  void setTesting(bool testing) override { testing_ = testing; }
  const std::optional<platform::Dictionary>& additionalParameters() const override {
    return additionalParameters_;
  }
  void setAdditionalParameters(std::optional<platform::Dictionary> parameters) override;
  std::int32_t gender() const override { return gender_; }
  void setGender(std::int32_t gender) override { gender_ = gender; }
  const std::optional<platform::Date>& birthday() const override { return birthday_; }
  void setBirthday(std::optional<platform::Date> birthday) override { birthday_ = birthday; }
  void setBirthdayWithMonth(int month, int day, int year) override;
  const std::optional<std::vector<std::string>>& keywords() const override { return keywords_; }
  void setKeywords(std::optional<std::vector<std::string>> keywords) override;
  void addKeyword(const std::string& keyword) override;
  void setLocationWithLatitude(float latitude, float longitude, float accuracy) override;
  void setLocationWithDescription(const std::string& description) override;
  std::string description() const override;

  /// The location; null when none was set or it was refused.
  const std::shared_ptr<VADLocation>& location() const { return location_; }
  void setLocation(std::shared_ptr<VADLocation> location) { location_ = std::move(location); }
  bool isInterstitialAd() const { return interstitialAd_; }
  void setInterstitialAd(bool interstitial) { interstitialAd_ = interstitial; }
  /// How many requests this process and its predecessors have made, this one included.
  std::int32_t counter() const { return counter_; }
  void setCounter(std::int32_t counter) { counter_ = counter; }

  /// "m" or "f"; none when unknown.
  std::optional<std::string> genderString() const;
  /// The birthday as "yyyyMMdd" in the device's time zone; none when unset.
  std::optional<std::string> birthdayString() const;

  /// 4 for "vantic", 5 for "qorm", 1 for "strevel", else 0.
  static int requestTypeFromString(std::string_view type);
  static bool deviceAtLeastMinimumOSMajorVersion(int major, int minorVersion);

  /// What an ad request carries, without what its banner adds.
  platform::Dictionary parameters() const;
  /// The device signals, one pair for the ad URL's query; empty when there are none.
  platform::Dictionary spamSignals() const;

 private:
  bool isForTestDevice() const;
  void putTestSettings(platform::Dictionary& parameters) const;
  void putTargeting(platform::Dictionary& parameters) const;

  std::optional<std::vector<std::string>> testDevices_;
  bool testing_ = false;
  std::optional<platform::Dictionary> additionalParameters_;
  std::int32_t gender_ = kVADGenderUnknown;
  std::optional<platform::Date> birthday_;
  std::shared_ptr<VADLocation> location_;
  std::optional<std::vector<std::string>> keywords_;
  bool interstitialAd_ = false;
  std::int32_t counter_ = 0;
};

}  // namespace valdren
