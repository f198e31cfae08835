#include "ads/request/VADRequestError.h"

#include <utility>

#include "ads/request/VADIdentifierUtilities.h"
#include "ads/request/VADRequest.h"
#include "ads/request/VADRequestPrivate.h"

namespace valdren {
namespace {

constexpr int kMinimumMajor = 3;
constexpr int kMinimumMinor = 0;

std::string versionTooLow() {
  int major = 0;
  int minor = 0;
  int bugFix = 0;
  VADIdentifierUtilities::getOSMajor(&major, &minor, &bugFix);
  return "This device's OS is " + std::to_string(major) + "." + std::to_string(minor) + "." +
         std::to_string(bugFix) + ".  It is below the minimum of " + std::to_string(kMinimumMajor) +
         "." + std::to_string(kMinimumMinor) + ".";
}

std::string messageFor(std::int32_t code) {
  switch (code) {
    case kVADErrorNoFill: return "No ad to show.";
    case kVADErrorNetworkError: return "A network error occurred.";
    case kVADErrorServerError: return "Server error processing the request.";
    case kVADErrorOSVersionTooLow: return versionTooLow();
    case kVADErrorTimeout:
      return "The Valdren Ad request was unable to be fulfilled before a timeout occurred.";
    default: return "Invalid ad request parameter(s).  Check the Xcode console for details.";
  }
}

}  // namespace

struct VADRequestError::Members {
  std::int32_t code;
  platform::Dictionary userInfo;
};

VADRequestError VADRequestError::errorWithCode(std::int32_t code, const VADRequest* request) {
  return VADRequestError(code, request);
}

VADRequestError::VADRequestError(std::int32_t code, const VADRequest* request) {
  platform::Dictionary userInfo;
  const std::string message = localizedStringForErrorCode(code);
  userInfo.set(kVADLocalizedDescriptionKey, message);
  userInfo.set(kVADLocalizedFailureReasonErrorKey, message);
  const auto* const sent = dynamic_cast<const VADRequestPrivate*>(request);
  if (code == kVADErrorInvalidRequest && sent) userInfo.merge(sent->parameters());
  members_ = std::make_shared<const Members>(Members{code, std::move(userInfo)});
}

std::string VADRequestError::domain() const {
  return kVADErrorDomain;
}

std::int32_t VADRequestError::code() const {
  return members_->code;
}

const platform::Dictionary& VADRequestError::userInfo() const {
  return members_->userInfo;
}

std::string VADRequestError::localizedStringForErrorCode(std::int32_t code) {
  return "Request Error: " + messageFor(code);
}

const std::string& VADRequestError::localizedDescription() const {
  return *members_->userInfo.text(kVADLocalizedDescriptionKey);
}

}  // namespace valdren
