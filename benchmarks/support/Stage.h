// What the benchmarks of pages stand on: the toolkit, folders of their own, the main loop.
#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>
#include <vector>

namespace benchmarks {

/// Empty folders for what this process and those that it starts keep. They vanish with it.
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

/// Turns the main loop until `done` says yes; false when `seconds` pass first. Wakes up for nothing
/// of its own before that.
bool runUntil(const std::function<bool()>& done, double seconds = 30);
void runFor(double seconds);

/// `valdren-sandbox` in a process of its own.
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

/// Has the client ask this server for everything.
void useServer(const std::string& base);

/// Runs a program to its end and gives what it printed; the environment's display is used.
std::string outputOf(const std::vector<std::string>& command);

}  // namespace benchmarks
