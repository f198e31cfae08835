// The environment of the page benchmarks: toolkit, folders, main loop.
#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>

#include "tests/support/Loop.h"
#include "tests/support/Process.h"

namespace benchmarks {

/// Starts the toolkit; ends the program when there is no display.
class Toolkit {
 public:
  Toolkit();

 private:
  quorbel_tests::OwnFolders folders_;
};

/// Runs the main loop until `done` returns true; false after `seconds`. It adds no wake-ups.
inline bool runUntil(const std::function<bool()>& done, double seconds = 30) {
  return quorbel_tests::runUndisturbedUntil(done, seconds);
}
inline void runFor(double seconds) {
  runUntil([] { return false; }, seconds);
}

/// `valdren-sandbox` as a separate process.
class SandboxProcess {
 public:
  SandboxProcess();
  ~SandboxProcess();
  SandboxProcess(const SandboxProcess&) = delete;
  SandboxProcess& operator=(const SandboxProcess&) = delete;

  /// Empty when it could not be started.
  const std::string& baseURL() const { return base_; }
  /// Posts this query to its control page.
  void control(const std::string& query) const;
  int identifier() const;

 private:
  GSubprocess* process_ = nullptr;
  std::string base_;
};

/// Makes the client use this server for everything.
void useServer(const std::string& base);

}  // namespace benchmarks
