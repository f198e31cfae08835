#include "ads/request/VADRequestPrivate.h"

#include <algorithm>
#include <cstdio>

#include "ads/protocol/Parameters.h"
#include "ads/protocol/Script.h"
#include "ads/request/VADBirthday.h"
#include "ads/request/VADIdentifierUtilities.h"
#include "ads/request/VADJsonSafe.h"
#include "ads/request/VADNetworkChecker.h"
#include "ads/signals/Signals.h"
#include "ads/telemetry/VADStatistics.h"
#include "platform/base/Log.h"
#include "platform/base/Text.h"
#include "platform/device/Device.h"

namespace valdren {
namespace {

platform::Array arrayOf(const std::vector<std::string>& texts) {
  return platform::Array(texts.begin(), texts.end());
}

/// The same memory's address as other log lines print it.
std::string addressOf(const void* object) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%p", object);
  return buffer;
}

}  // namespace

std::shared_ptr<VADRequest> VADRequest::request() {
  return std::make_shared<VADRequestPrivate>();
}

const std::string& VADRequest::sdkVersion() {
  static const std::string version = kVADClientVersion;
  return version;
}

std::shared_ptr<VADRequestPrivate> VADRequestPrivate::initWithRequest(const VADRequest& request) {
  auto made = std::make_shared<VADRequestPrivate>();
  made->testDevices_ = request.testDevices();
  made->testing_ = request.isTesting();
  made->additionalParameters_ = request.additionalParameters();
  made->gender_ = request.gender();
  made->birthday_ = request.birthday();
  made->keywords_ = request.keywords();
  if (const auto* const source = dynamic_cast<const VADRequestPrivate*>(&request)) {
    if (source->location_) made->location_ = source->location_->copy();
    made->interstitialAd_ = source->interstitialAd_;
  }
  return made;
}

void VADRequestPrivate::setTestDevices(std::optional<std::vector<std::string>> identifiers) {
  testDevices_ = std::move(identifiers);
}

void VADRequestPrivate::setAdditionalParameters(std::optional<platform::Dictionary> parameters) {
  additionalParameters_.reset();
  if (!parameters) return;
  additionalParameters_ = jsonSafe(*parameters);
  if (*additionalParameters_ == *parameters) return;
  platform::log(
      "<Valdren> \"additionalParameters\" holds what JSON cannot: texts that are not UTF-8 were "
      "repaired, other such values left out.");
}

void VADRequestPrivate::setBirthdayWithMonth(int month, int day, int year) {
  birthday_ = startOfDay(month, day, year);
}

void VADRequestPrivate::setKeywords(std::optional<std::vector<std::string>> keywords) {
  keywords_ = std::move(keywords);
  if (!keywords_) return;
  for (std::string& keyword : *keywords_) keyword = platform::repairedUTF8(keyword);
}

void VADRequestPrivate::addKeyword(const std::string& keyword) {
  if (keyword.empty()) return;
  if (!keywords_) keywords_.emplace();
  keywords_->push_back(platform::repairedUTF8(keyword));
}

void VADRequestPrivate::setLocationWithLatitude(float latitude, float longitude, float accuracy) {
  location_ = VADLocation::initWithLatitude(latitude, longitude, accuracy);
}

void VADRequestPrivate::setLocationWithDescription(const std::string& description) {
  location_ = VADLocation::initWithDescription(platform::repairedUTF8(description));
}

std::string VADRequestPrivate::description() const {
  std::string text = "VADRequest<" + addressOf(static_cast<const VADRequest*>(this)) + ">: ";
  if (gender_ == kVADGenderMale) text += "\ngender:Male";
  if (gender_ == kVADGenderFemale) text += "\ngender:Female";
  if (birthday_) text += "\nbirthday:" + describedInstant(*birthday_);
  if (location_) text += "\nlocation:" + location_->description();
  if (keywords_) text += "\nkeywords:" + platform::Value(arrayOf(*keywords_)).description();
  if (additionalParameters_) {
    text += "\nadditionalParameters:" + platform::Value(*additionalParameters_).description();
  }
  return text;
}

std::optional<std::string> VADRequestPrivate::genderString() const {
  switch (gender_) {
    case kVADGenderMale: return "m";
    case kVADGenderFemale: return "f";
    default: return std::nullopt;
  }
}

std::optional<std::string> VADRequestPrivate::birthdayString() const {
  return birthday_ ? dayString(*birthday_) : std::nullopt;
}

int VADRequestPrivate::requestTypeFromString(std::string_view type) {
  if (type == kVADAdTypeVantic) return 4;
  if (type == kVADAdTypeQorm) return 5;
  return type == kVADAdTypeStrevel ? 1 : 0;
}

bool VADRequestPrivate::deviceAtLeastMinimumOSMajorVersion(int major, int minorVersion) {
  int osMajor = 0;
  int osMinor = 0;
  VADIdentifierUtilities::getOSMajor(&osMajor, &osMinor, nullptr);
  return osMajor > major || (osMajor == major && osMinor >= minorVersion);
}

bool VADRequestPrivate::isForTestDevice() const {
  if (!testDevices_ || testDevices_->empty()) return false;
  const std::string device = platform::Device::shared().uniqueIdentifier();
  return std::find(testDevices_->begin(), testDevices_->end(), device) != testDevices_->end();
}

void VADRequestPrivate::putTestSettings(platform::Dictionary& parameters) const {
  if (testing_) {
    platform::log(
        "<Valdren> \"testing\" property has been deprecated.  Use \"testDevices\" instead.");
    parameters.set(kVADParameterTesting, "1");
  }
  if (isForTestDevice()) parameters.set(kVADParameterTestDevice, "on");
}

void VADRequestPrivate::putTargeting(platform::Dictionary& parameters) const {
  parameters.setIfPresent(kVADParameterExtras, additionalParameters_);
  parameters.setIfPresent(kVADParameterGender, genderString());
  parameters.setIfPresent(kVADParameterBirthday, birthdayString());
  if (keywords_) parameters.set(kVADParameterKeywords, arrayOf(*keywords_));
  if (location_) parameters.setIfPresent(kVADParameterLocation, location_->oolongRepresentation());
}

platform::Dictionary VADRequestPrivate::parameters() const {
  platform::Dictionary parameters = VADIdentifierUtilities::sharedInstance().parameters();
  parameters.set(kVADParameterVersion, sdkVersion());
  parameters.setIfPresent(kVADParameterNetwork,
                          VADNetworkChecker::sharedChecker().networkTypeString());
  putTestSettings(parameters);
  putTargeting(parameters);
  parameters.merge(VADStatistics::sharedStatistics().parameters());
  parameters.set(kVADParameterTotalAdRequests, counter_);
  return parameters;
}

platform::Dictionary VADRequestPrivate::spamSignals() const {
  std::string text;
  if (vad_gmrs(text) == 0) return {};
  const std::size_t separator = text.find('=');
  if (separator == std::string::npos) return {};
  const std::string rest = text.substr(separator + 1);
  const std::string value = rest.substr(0, rest.find('='));
  if (value.empty()) return {};
  return {{text.substr(0, separator), value}};
}

}  // namespace valdren
