// Runs libFuzzer's inputs through the target that QUORBEL_FUZZ_TARGET names.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "tests/fuzz/Targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static void (*const run)(std::string_view) = [] {
    const char* const name = std::getenv("QUORBEL_FUZZ_TARGET");
    for (const auto& target : quorbel_tests::fuzzTargets()) {
      if (name && target.name == name) return target.run;
    }
    std::fputs("There is no such target.\n", stderr);
    std::exit(2);
  }();
  run({reinterpret_cast<const char*>(data), size});
  return 0;
}
