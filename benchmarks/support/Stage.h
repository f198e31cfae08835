// The environment of the page benchmarks: toolkit, folders, main loop.
#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>
#include <vector>

namespace benchmarks {

/// Empty folders for the files of this process and its children, removed at the end.
class Folders {
 public:
  Folders();
  ~Folders();
  Folders(const Folders&) = delete;
  Folders& operator=(const Folders&) = delete;

 private:
  std::string folder_;
};

/// Starts the toolkit; ends the program when there is no display.
class Stage {
 public:
  Stage();

 private:
  Folders folders_;
};

/// Runs the main loop until `done` returns true; false after `seconds`. It adds no wake-ups of its
/// own.
bool runUntil(const std::function<bool()>& done, double seconds = 30);
void runFor(double seconds);

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

/// Runs a program and returns its output; it uses the environment's display.
std::string outputOf(const std::vector<std::string>& command);

}  // namespace benchmarks
