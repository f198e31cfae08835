// Runs other programs and makes temporary folders, for tests.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorbel_tests {

struct Finished {
  /// The exit status; 128 plus the signal's number after a signal; -1 when it cannot be run.
  int status = -1;
  std::string output;
  std::string errors;
};

/// Runs a shell command with this standard input and waits for its end.
Finished run(const std::string& command, std::string_view input = {});

/// A new empty folder, removed with its content at the end.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::string& path() const { return path_; }
  /// The path of a file in it.
  std::string file(std::string_view name) const { return path_ + "/" + std::string(name); }

 private:
  std::string path_;
};

/// Empty folders for what this process, and those that it starts, keep, in place of the person's
/// own. They vanish with it.
class OwnFolders {
 public:
  OwnFolders();

 private:
  TemporaryFolder folder_;
};

/// The process, this one when it is 0, and all that it has started, by their numbers, and what they
/// have started.
std::vector<int> processFamily(int oldest = 0);
/// The first 15 letters of the program's name; empty when it has ended.
std::string nameOfProcess(int process);

std::string readFile(const std::string& path);
/// Makes the file and its folders.
void writeFile(const std::string& path, std::string_view content);

/// Sets or removes an environment variable while it exists.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value);
  ~ScopedVariable();
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> former_;
};

}  // namespace quorbel_tests
