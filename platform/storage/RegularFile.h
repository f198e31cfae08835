// Reading files that may turn out to be anything.
#pragma once

#include <cstddef>
#include <string>

namespace valdren::platform {

struct FileContent {
  /// Unusable is what is no regular file, or is too large. Absent is also what cannot be opened.
  enum class State { Read, Absent, Unusable };

  State state = State::Absent;
  std::string bytes;  // empty unless it was read
};

/// Reads a regular file of at most so many bytes. Links are followed. Nothing else is read, and
/// nothing is waited for: neither a FIFO's writer nor a device.
FileContent readRegularFile(const std::string& path, std::size_t mostBytes);

}  // namespace valdren::platform
