// The parsers of untrusted input, each as an operation on bytes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quorbel_tests {

/// Aborts the program when a guarantee about the result is broken.
struct FuzzTarget {
  /// Also the name of the folder of its corpus.
  std::string name;
  void (*run)(std::string_view input);
};

const std::vector<FuzzTarget>& fuzzTargets();

}  // namespace quorbel_tests
