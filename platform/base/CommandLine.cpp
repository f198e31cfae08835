#include "platform/base/CommandLine.h"

#include <glibmm/optioncontext.h>
#include <glibmm/optionentry.h>
#include <glibmm/optiongroup.h>

#include <algorithm>

namespace valdren::platform {
namespace {

/// The toolkit's description of a command line.
class Context {
 public:
  Context(const std::string& summary, const std::vector<CommandLineOption>& options,
          const std::string& remarks)
      : group_("", "") {
    context_.set_help_enabled(false);
    context_.set_summary(summary);
    context_.set_description(remarks);
    for (const CommandLineOption& option : options) {
      Glib::OptionEntry entry;
      entry.set_long_name(option.name);
      entry.set_description(option.meaning);
      if (option.letter) entry.set_short_name(option.letter);
      if (!option.value.empty()) entry.set_arg_description(option.value);
      if (option.value.empty()) entry.set_flags(Glib::OptionEntry::Flags::NO_ARG);
      // Values are taken as they are typed, whatever the locale's encoding.
      group_.add_entry_filename(
          entry, [option](const Glib::ustring&, const std::string& value, bool) {
            if (option.set(value)) return true;
            throw Glib::OptionError(
                Glib::OptionError::BAD_VALUE,
                "--" + option.name + " takes " + option.value + ", not \"" + value + "\"");
          });
    }
    context_.set_main_group(group_);
  }

  Glib::OptionContext& operator*() { return context_; }

 private:
  Glib::OptionContext context_;
  Glib::OptionGroup group_;
};

}  // namespace

CommandLine::CommandLine(std::string program, std::string summary,
                         std::vector<CommandLineOption> options, std::string remarks)
    : program_(std::move(program)),
      summary_(std::move(summary)),
      options_(std::move(options)),
      remarks_(std::move(remarks)) {}

Result<void> CommandLine::parse(int argc, const char* const* argv) const {
  // The parser takes away what it knows.
  std::vector<char*> words(static_cast<std::size_t>(argc) + 1);
  std::transform(argv, argv + argc, words.begin(),
                 [](const char* word) { return const_cast<char*>(word); });
  char** rest = words.data();
  try {
    (*Context(summary_, options_, remarks_)).parse(argc, rest);
  } catch (const Glib::Error& error) {
    return Error{"platform.commandline", error.code(), error.what()};
  }
  if (argc <= 1) return {};
  return Error{"platform.commandline", Glib::OptionError::UNKNOWN_OPTION,
               std::string("Unknown argument \"") + rest[1] + "\""};
}

std::string CommandLine::help() const {
  if (!g_get_prgname()) g_set_prgname(program_.c_str());
  return (*Context(summary_, options_, remarks_)).get_help();
}

}  // namespace valdren::platform
