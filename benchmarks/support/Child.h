// Starts and ends a program that is measured.
#pragma once

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/Process.h"

namespace benchmarks {

/// Starts the program at the path that is the first word, without a shell. Ends this program when
/// it cannot be started.
inline pid_t startProgram(std::vector<std::string> command) {
  std::vector<char*> arguments;
  for (std::string& each : command) arguments.push_back(each.data());
  arguments.push_back(nullptr);
  pid_t program = 0;
  if (posix_spawn(&program, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0) {
    std::fprintf(stderr, "%s cannot be started.\n", arguments[0]);
    std::exit(1);
  }
  return program;
}

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
