// Collects the program's log lines.
#pragma once

#include <string>
#include <vector>

namespace quorbel_tests {

/// Collects lines of the levels message and warning while it exists, instead of printing them. Does
/// not nest.
class LogLines {
 public:
  LogLines();
  ~LogLines();
  LogLines(const LogLines&) = delete;
  LogLines& operator=(const LogLines&) = delete;

  const std::vector<std::string>& lines() const { return lines_; }
  /// Returns the lines since the last call and forgets them.
  std::vector<std::string> take();

 private:
  std::vector<std::string> lines_;
  unsigned handler_;
};

}  // namespace quorbel_tests
