// Entry point of the soundboard.
#include <algorithm>
#include <cstdio>
#include <iterator>
#include <memory>

#include "app/AdNetwork.h"
#include "app/Options.h"
#include "app/PrintRequest.h"
#include "app/Tour.h"
#include "app/quorbelAppDelegate.h"
#include "app/quorbelViewController.h"
#include "app/quorbeliPad.h"
#include "platform/application/ApplicationMain.h"
#include "platform/storage/Bundle.h"

namespace platform = valdren::platform;

namespace quorbel {
namespace {

constexpr const char* kIdentifier = "com.valdren.quorbel";

platform::ApplicationDescription describe(const Options& options) {
  platform::ApplicationDescription description;
  description.identifier = kIdentifier;
  description.name = "Quorbel";
  description.version = QUORBEL_VERSION;
  description.resourceBase = "/com/valdren/quorbel";
  description.makeDelegate = [] { return std::make_unique<quorbelAppDelegate>(); };
  description.screens = {
      {"quorbelViewController", [] { return std::make_shared<quorbelViewController>(); }},
      {"quorbeliPad", [] { return std::make_shared<quorbeliPad>(); }},
  };
  description.idiom = options.idiom;
  description.landscape = options.landscape;
  return description;
}

/// Has the clips decoded and the way to the sound server opened before the first press.
void prepareSounds() {
  std::vector<std::string> paths;
  for (const Sound& sound : sounds()) {
    if (auto path = platform::Bundle::main().pathForResource(sound.resource, kClipType)) {
      paths.push_back(*std::move(path));
    }
  }
  platform::AudioPlayer::prepare(std::move(paths));
}

int runTour(platform::ApplicationDescription description, const std::string& folder,
            const std::unique_ptr<AdNetwork>& network) {
  std::unique_ptr<Tour> tour;
  description.alone = true;
  description.started = [&] {
    std::vector<TourStep> steps = soundboardSteps();
    std::ranges::move(adSteps(network->builtIn()), std::back_inserter(steps));
    tour = std::make_unique<Tour>(folder, std::move(steps), [](int failed) {
      platform::terminateApplication(failed == 0 ? 0 : 1);
    });
    if (!tour->begin()) platform::terminateApplication(1);
  };
  return platform::applicationMain(description);
}

int run(const Options& options) {
  std::unique_ptr<AdNetwork> network;
  platform::ApplicationDescription description = describe(options);
  description.starting = [&] {
    prepareSounds();
    network = std::make_unique<AdNetwork>(options);
  };
  platform::Bundle::main().setIdentifier(description.identifier);
  if (options.command == Command::Tour) {
    return runTour(description, options.tourFolder, network);
  }
  return platform::applicationMain(description);
}

}  // namespace
}  // namespace quorbel

int main(int argc, char** argv) {
  using namespace quorbel;
  const auto parsed = parseOptions(argc, argv);
  if (const auto* const error = std::get_if<UsageError>(&parsed)) {
    std::fprintf(stderr, "quorbel: %s. Try \"quorbel --help\".\n", error->message.c_str());
    return 2;
  }
  const Options& options = std::get<Options>(parsed);
  switch (options.command) {
    case Command::Help: std::fputs(kHelp, stdout); return 0;
    case Command::Version: std::puts("quorbel " QUORBEL_VERSION); return 0;
    case Command::PrintRequest: return printRequest(describe(options));
    default: return run(options);
  }
}
