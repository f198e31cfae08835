// Reads files whose kind and size are unknown.
#pragma once

#include <cstddef>
#include <string>

namespace valdren::platform {

struct FileContent {
  /// Unusable means not a regular file, or too large. Absent includes files that cannot be opened.
  enum class State { Read, Absent, Unusable };

  State state = State::Absent;
  std::string bytes;  // empty unless it was read
};

/// Reads a regular file of at most `mostBytes` bytes. Links are followed. Never blocks on other
/// kinds of file, such as FIFOs and devices.
FileContent readRegularFile(const std::string& path, std::size_t mostBytes);

}  // namespace valdren::platform
