// Entry point of the soundboard.
#include <cstdio>

#include "app/Options.h"
#include "app/PrintRequest.h"
#include "app/Soundboard.h"
#include "platform/base/Translation.h"

int main(int argc, char** argv) {
  using namespace quorbel;
  platform::setTranslations("quorbel");
  const auto parsed = parseOptions(argc, argv);
  if (const auto* const error = std::get_if<UsageError>(&parsed)) {
    std::fprintf(stderr, "quorbel: %s. Try \"quorbel --help\".\n", error->message.c_str());
    return 2;
  }
  const Options& options = std::get<Options>(parsed);
  switch (options.command) {
    case Command::Help: std::fputs(helpText().c_str(), stdout); return 0;
    case Command::Version: std::puts("quorbel " QUORBEL_VERSION); return 0;
    case Command::PrintRequest: return printRequest(describe(options));
    default: return runSoundboard(describe(options), options);
  }
}
