// Why something failed.
#pragma once

#include <string>

namespace valdren::platform {

struct Error {
  /// Whose `code` it is, such as `kURLErrorDomain`.
  std::string domain;
  int code = 0;
  /// For people, without a full stop.
  std::string message;
};

/// Errors of the operating system; their codes are those of errno.
inline constexpr const char* kPOSIXErrorDomain = "platform.posix";

}  // namespace valdren::platform
