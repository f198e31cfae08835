#include "ads/api/VADRequestError.h"

#include "ads/api/VADRequest.h"

namespace valdren {
namespace {

std::string messageFor(std::int32_t code) {
  switch (code) {
    case kVADErrorNoFill: return "No ad to show.";
    case kVADErrorNetworkError: return "A network error occurred.";
    case kVADErrorServerError: return "Server error processing the request.";
    case kVADErrorTimeout:
      return "The Valdren Ad request was unable to be fulfilled before a timeout occurred.";
    default: return "Invalid ad request parameter(s).  Check the Xcode console for details.";
  }
}

}  // namespace

VADRequestError VADRequestError::errorWithCode(std::int32_t code, const VADRequest* request) {
  return VADRequestError(code, request);
}

VADRequestError::VADRequestError(std::int32_t code, const VADRequest*) : code_(code) {
  const std::string message = localizedStringForErrorCode(code);
  userInfo_.set(kVADLocalizedDescriptionKey, message);
  userInfo_.set(kVADLocalizedFailureReasonErrorKey, message);
}

std::string VADRequestError::localizedStringForErrorCode(std::int32_t code) {
  return "Request Error: " + messageFor(code);
}

const std::string& VADRequestError::localizedDescription() const {
  return *userInfo_.text(kVADLocalizedDescriptionKey);
}

}  // namespace valdren
