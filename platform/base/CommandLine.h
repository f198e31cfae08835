// The command line of a program.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/base/Result.h"

namespace valdren::platform {

/// An option "--name", also "--name=value" or "--name value".
struct CommandLineOption {
  std::string name;
  /// What it takes, as the help shows it; empty for an option that takes nothing.
  std::string value;
  std::string meaning;
  /// Receives the value, or an empty text. False when the option does not take it.
  std::function<bool(const std::string&)> set;
  /// As "-h"; 0 for none.
  char letter = 0;
};

class CommandLine {
 public:
  /// The program's name, what it does, its options, and what else there is to say.
  CommandLine(std::string program, std::string summary, std::vector<CommandLineOption> options,
              std::string remarks = "");

  /// Calls `set` of each option in order. The error says in one sentence what is wrong, and the
  /// options before it have been set.
  Result<void> parse(int argc, const char* const* argv) const;

  /// The text of "--help".
  std::string help() const;

 private:
  std::string program_;
  std::string summary_;
  std::vector<CommandLineOption> options_;
  std::string remarks_;
};

}  // namespace valdren::platform
