// Why a request failed.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "ads/support/VADErrorCode.h"
#include "platform/base/Export.h"
#include "platform/base/Value.h"

namespace valdren {

class VADRequest;

inline constexpr const char* kVADLocalizedDescriptionKey = "NSLocalizedDescription";
inline constexpr const char* kVADLocalizedFailureReasonErrorKey = "NSLocalizedFailureReason";

class VALDREN_EXPORT VADRequestError {
 public:
  /// `request` may be null. For code 0 it is asked what it sends, and what it tells of earlier ads
  /// is then told.
  static VADRequestError errorWithCode(std::int32_t code, const VADRequest* request);
  VADRequestError(std::int32_t code, const VADRequest* request);

  /// "Request Error: " and the code's text; an unknown code reads like code 0.
  static std::string localizedStringForErrorCode(std::int32_t code);

  /// `kVADErrorDomain`.
  std::string domain() const;
  std::int32_t code() const;
  const std::string& localizedDescription() const;
  /// The message under both of its keys; for code 0 also what the request sent.
  const platform::Dictionary& userInfo() const;

 private:
  struct Members;
  std::shared_ptr<const Members> members_;
};

}  // namespace valdren
