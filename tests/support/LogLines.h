// Collects the program's log lines.
#pragma once

#include <mutex>
#include <string>
#include <vector>

namespace quorbel_tests {

/// Collects lines of the levels message and warning from all threads while it exists, instead of
/// printing them. Does not nest.
class LogLines {
 public:
  LogLines();
  ~LogLines();

  std::vector<std::string> lines() const;
  /// Returns the lines since the last call and forgets them.
  std::vector<std::string> take();

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
  unsigned handler_;
};

}  // namespace quorbel_tests
