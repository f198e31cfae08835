// The command line.
#pragma once

#include <optional>
#include <string>
#include <variant>

#include "platform/base/URL.h"
#include "platform/device/Device.h"

namespace platform = valdren::platform;

namespace quorbel {

enum class Command { Run, PrintRequest, Help, Version };

struct Options {
  Command command = Command::Run;
  std::optional<platform::InterfaceIdiom> idiom;
  std::optional<bool> landscape;
  std::optional<platform::URL> adServer;
  std::optional<platform::URL> scriptHost;
};

/// An error on the command line, in one sentence.
struct UsageError {
  std::string message;
};

std::variant<Options, UsageError> parseOptions(int argc, const char* const* argv);

/// The text of `--help`.
std::string helpText();

}  // namespace quorbel
