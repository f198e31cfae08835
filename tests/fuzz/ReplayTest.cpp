// The fuzzer's findings, and one valid example of each kind, through the same operations.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/fuzz/Targets.h"
#include "tests/support/Process.h"

namespace quorbel_tests {
namespace {

class Replay : public ::testing::TestWithParam<FuzzTarget> {};

TEST_P(Replay, KeepsItsPromises) {
  const std::filesystem::path corpus = std::string(FUZZ_CORPUS) + "/" + GetParam().name;
  ASSERT_FALSE(std::filesystem::is_empty(corpus));
  for (const auto& entry : std::filesystem::directory_iterator(corpus)) {
    SCOPED_TRACE(entry.path());
    const std::string input = readFile(entry.path());
    // Also truncated at many lengths.
    for (std::size_t length = 0; length <= input.size(); length += 1 + input.size() / 64) {
      GetParam().run(std::string_view(input).substr(0, length));
    }
    GetParam().run(input);
  }
}

INSTANTIATE_TEST_SUITE_P(All, Replay, ::testing::ValuesIn(fuzzTargets()),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace quorbel_tests
