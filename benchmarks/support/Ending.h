// The end of a program that was measured.
#pragma once

#include <signal.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "tests/support/Process.h"

namespace benchmarks {

/// Ends a child and waits until all that it started has ended, so that the next program has the
/// machine for itself.
inline void endWithFamily(pid_t program) {
  const auto family = quorbel_tests::processFamily(program);
  kill(program, SIGTERM);
  waitpid(program, nullptr, 0);
  const auto runs = [](int member) { return !quorbel_tests::nameOfProcess(member).empty(); };
  while (std::any_of(family.begin(), family.end(), runs)) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
}

}  // namespace benchmarks
