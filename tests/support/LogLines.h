// What the program has to say, kept for a test to read.
#pragma once

#include <string>
#include <vector>

namespace quorbel_tests {

/// Keeps the lines of the levels message and warning, in place of showing them, from its
/// construction to its destruction. Does not nest.
class LogLines {
 public:
  LogLines();
  ~LogLines();
  LogLines(const LogLines&) = delete;
  LogLines& operator=(const LogLines&) = delete;

  const std::vector<std::string>& lines() const { return lines_; }
  /// The lines since the last time; forgets them.
  std::vector<std::string> take();

 private:
  std::vector<std::string> lines_;
  unsigned handler_;
};

}  // namespace quorbel_tests
