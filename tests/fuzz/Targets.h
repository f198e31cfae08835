// What strangers can have parsed, each as an operation on bytes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quorbel_tests {

/// Ends the program when a promise about the parsed is broken.
struct FuzzTarget {
  /// Also the name of the folder of its corpus.
  std::string name;
  void (*run)(std::string_view input);
};

const std::vector<FuzzTarget>& fuzzTargets();

}  // namespace quorbel_tests
