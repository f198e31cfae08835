// Reads files whose kind and size are unknown.
#pragma once

#include <cstddef>
#include <string>

#include "platform/base/Result.h"

namespace valdren::platform {

/// The domain of the errors of `readRegularFile`; its codes follow.
inline constexpr const char* kFileErrorDomain = "platform.file";
enum FileErrorCode : int {
  /// Includes files that cannot be opened or read.
  kFileErrorAbsent = 1,
  /// Not a regular file, or too large.
  kFileErrorUnusable = 2,
};

/// The bytes of a regular file of at most `mostBytes` bytes. Links are followed. Never blocks on
/// other kinds of file, such as FIFOs and devices.
Result<std::string> readRegularFile(const std::string& path, std::size_t mostBytes);

}  // namespace valdren::platform
