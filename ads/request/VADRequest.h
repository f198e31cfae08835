// What a publisher asks for: targeting hints, test settings, free-form parameters.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/base/Date.h"
#include "platform/base/Export.h"
#include "platform/base/Value.h"

namespace valdren {

class VADLocation;
class VADRequestPrivate;

/// Values outside these three are kept and sent as unknown.
enum VADGender : std::int32_t {
  kVADGenderUnknown = 0,
  kVADGenderMale = 1,
  kVADGenderFemale = 2,
};

/// The public face of a request. Every instance is a `VADRequestPrivate`. Texts that are not UTF-8
/// are repaired where they come in, so that one bad text never costs the whole request.
class VALDREN_EXPORT VADRequest {
 public:
  /// A new request with default values.
  static std::shared_ptr<VADRequest> request();
  virtual ~VADRequest() = default;

  /// "urvo-sdk-i-v4.1.1".
  static const std::string& sdkVersion();

  /// An equal, independent request.
  virtual std::shared_ptr<VADRequestPrivate> copy() const = 0;

  /// Identifiers of devices that are to get test ads; absent when never set.
  virtual const std::optional<std::vector<std::string>>& testDevices() const = 0;
  virtual void setTestDevices(std::optional<std::vector<std::string>> identifiers) = 0;

  /// Deprecated in favour of test devices: asks for test ads everywhere, and logs so. NO at first.
  virtual bool isTesting() const = 0;
  virtual void setTesting(bool testing) = 0;

  /// Sent along as they are, but for what JSON cannot hold; absent when never set.
  virtual const std::optional<platform::Dictionary>& additionalParameters() const = 0;
  virtual void setAdditionalParameters(std::optional<platform::Dictionary> parameters) = 0;

  /// A `VADGender`; unknown at first.
  virtual std::int32_t gender() const = 0;
  virtual void setGender(std::int32_t gender) = 0;

  /// Sent as its day in the device's time zone; absent when never set.
  virtual const std::optional<platform::Date>& birthday() const = 0;
  virtual void setBirthday(std::optional<platform::Date> birthday) = 0;
  /// A date of the Gregorian calendar in the device's time zone. Components beyond their range
  /// carry over into the next larger one; outside the years 1 to 9999 the birthday is unset.
  virtual void setBirthdayWithMonth(int month, int day, int year) = 0;

  /// What the person may be interested in; absent when never set.
  virtual const std::optional<std::vector<std::string>>& keywords() const = 0;
  virtual void setKeywords(std::optional<std::vector<std::string>> keywords) = 0;
  /// Appends a keyword; an empty one is ignored.
  virtual void addKeyword(const std::string& keyword) = 0;

  /// Degrees and metres. A latitude beyond 90, a longitude beyond 180 and a 0 for either leave the
  /// request without a location.
  virtual void setLocationWithLatitude(float latitude, float longitude, float accuracy) = 0;
  /// Free text; an empty one leaves the request without a location.
  virtual void setLocationWithDescription(const std::string& description) = 0;

  /// "VADRequest<ADDRESS>: " and a line for each option that is set.
  virtual std::string description() const = 0;
};

}  // namespace valdren
