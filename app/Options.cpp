#include "app/Options.h"

#include <functional>
#include <map>
#include <string_view>

namespace platform = valdren::platform;

namespace quorbel {
namespace {

/// Sets an option's value; false when the value is not valid.
using Setter = std::function<bool(Options&, const std::string&)>;

struct Option {
  const char* expected;  // what the value may be, for the error message
  Setter set;
};

bool setIdiom(Options& options, const std::string& value) {
  if (value != "phone" && value != "tablet") return false;
  options.idiom =
      value == "phone" ? platform::InterfaceIdiom::Phone : platform::InterfaceIdiom::Tablet;
  return true;
}

bool setOrientation(Options& options, const std::string& value) {
  if (value != "portrait" && value != "landscape") return false;
  options.landscape = value == "landscape";
  return true;
}

bool setURL(std::optional<platform::URL>& target, const std::string& value) {
  auto url = platform::URL::parse(value);
  if (!url || url->host().empty()) return false;
  if (url->lowercaseScheme() != "http" && url->lowercaseScheme() != "https") return false;
  target = std::move(url);
  return true;
}

const std::map<std::string, Option, std::less<>>& optionsWithValue() {
  static const std::map<std::string, Option, std::less<>> all = {
      {"--idiom", {"phone or tablet", setIdiom}},
      {"--orientation", {"portrait or landscape", setOrientation}},
      {"--ad-server",
       {"an http or https URL",
        [](Options& options, const std::string& value) {
          return setURL(options.adServer, value);
        }}},
      {"--script-host",
       {"an http or https URL",
        [](Options& options, const std::string& value) {
          return setURL(options.scriptHost, value);
        }}},
  };
  return all;
}

std::optional<Command> commandNamed(std::string_view argument) {
  if (argument == "--help" || argument == "-h") return Command::Help;
  if (argument == "--version") return Command::Version;
  if (argument == "--print-request") return Command::PrintRequest;
  return std::nullopt;
}

}  // namespace

std::variant<Options, UsageError> parseOptions(int argc, const char* const* argv) {
  Options options;
  for (int place = 1; place < argc; ++place) {
    std::string argument = argv[place];
    if (const auto command = commandNamed(argument)) {
      options.command = *command;
      // These two win over all other options.
      if (*command == Command::Help || *command == Command::Version) return options;
      continue;
    }
    std::optional<std::string> value;
    if (const std::size_t equals = argument.find('=');
        argument.starts_with("--") && equals != std::string::npos) {
      value = argument.substr(equals + 1);
      argument.resize(equals);
    }
    const auto option = optionsWithValue().find(argument);
    if (option == optionsWithValue().end()) {
      return UsageError{"unknown option \"" + argument + "\""};
    }
    if (!value && place + 1 < argc) value = argv[++place];
    if (!value) return UsageError{argument + " needs " + option->second.expected};
    if (!option->second.set(options, *value)) {
      return UsageError{argument + " takes " + option->second.expected + ", not \"" + *value +
                        "\""};
    }
  }
  return options;
}

const char* const kHelp =
    "Usage: quorbel [OPTION]...\n"
    "A soundboard: fourteen buttons, fourteen sounds.\n"
    "\n"
    "  --idiom phone|tablet              the screen to show; otherwise the monitor's size decides\n"
    "  --orientation portrait|landscape  the window's shape at first\n"
    "  --ad-server URL                   fetch ads from there, not from the built-in ad network\n"
    "  --script-host URL                 fetch the ad engine script from there; either of these\n"
    "                                    two stands for both when the other is missing\n"
    "  --print-request                   say what an ad request would tell now, as JSON, and end\n"
    "  --help, --version                 say this, or the version, and end\n"
    "\n"
    "Keys: 1 to 9, 0, Q, W, E and R play; Escape stops.\n"
    "Exit status: 0 after an ordinary end, 1 on failure, 2 when the command line is wrong.\n";

}  // namespace quorbel
