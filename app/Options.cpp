#include "app/Options.h"

#include "platform/base/CommandLine.h"

namespace platform = valdren::platform;

namespace quorbel {
namespace {

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

platform::CommandLine commandLine(Options& options) {
  const auto command = [&options](Command command) {
    return [&options, command](const std::string&) {
      options.command = command;
      return true;
    };
  };
  return {
      "quorbel",
      "A soundboard: fourteen buttons, fourteen sounds.",
      {
          {"idiom", "phone or tablet", "The screen to show; otherwise the monitor's size decides",
           [&](const std::string& value) { return setIdiom(options, value); }},
          {"orientation", "portrait or landscape", "The window's shape at first",
           [&](const std::string& value) { return setOrientation(options, value); }},
          {"ad-server", "an http or https URL",
           "Fetch ads from there, not from the built-in ad network",
           [&](const std::string& value) { return setURL(options.adServer, value); }},
          {"script-host", "an http or https URL",
           "Fetch the ad engine script from there; either of these two stands for both when the "
           "other is missing",
           [&](const std::string& value) { return setURL(options.scriptHost, value); }},
          {"print-request", "", "Say what an ad request would tell now, as JSON, and end",
           command(Command::PrintRequest)},
          {"version", "", "Say the version and end", command(Command::Version)},
          {"help", "", "Say this and end", command(Command::Help), 'h'},
      },
      "Keys: 1 to 9, 0, Q, W, E and R play; Escape stops.\n"
      "Exit status: 0 after an ordinary end, 1 on failure, 2 when the command line is wrong."};
}

}  // namespace

std::variant<Options, UsageError> parseOptions(int argc, const char* const* argv) {
  Options options;
  const auto parsed = commandLine(options).parse(argc, argv);
  // These two win over whatever follows them.
  const bool ends = options.command == Command::Help || options.command == Command::Version;
  if (!parsed && !ends) return UsageError{parsed.error().message};
  return options;
}

std::string helpText() {
  Options options;
  return commandLine(options).help();
}

}  // namespace quorbel
