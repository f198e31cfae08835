// What a request can fail with.
#pragma once

#include <cstdint>

namespace valdren {

inline constexpr const char* kVADErrorDomain = "com.valdren.ads";

enum VADErrorCode : std::int32_t {
  kVADErrorInvalidRequest = 0,
  kVADErrorNoFill = 1,
  kVADErrorNetworkError = 2,
  kVADErrorServerError = 3,
  kVADErrorOSVersionTooLow = 4,
  /// Never raised here; for publishers' own use.
  kVADErrorTimeout = 5,
};

}  // namespace valdren
