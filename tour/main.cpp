// Walks through the soundboard:
//
//     quorbel-tour FOLDER [OPTION OF QUORBEL]...
//
// Leaves a numbered picture of each step and a report, "tour.txt", in the folder. Exit status: 0
// when every step was as it should be, 1 when one was not, 2 when the command line is wrong.
#include <algorithm>
#include <cstdio>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/Options.h"
#include "app/Soundboard.h"
#include "sandbox/Sandbox.h"
#include "tour/Tour.h"

namespace platform = valdren::platform;

namespace quorbel {
namespace {

int runTour(const std::string& folder, Options options) {
  std::unique_ptr<sandbox::Sandbox> network;
  if (!options.adServer && !options.scriptHost) {
    network = sandbox::Sandbox::start(0);
    if (network) options.adServer = platform::URL::parse(network->baseURL());
  }
  std::unique_ptr<Tour> tour;
  platform::ApplicationDescription description = describe(options);
  description.alone = true;
  description.started = [&] {
    std::vector<TourStep> steps = soundboardSteps();
    std::ranges::move(adSteps(network.get()), std::back_inserter(steps));
    tour = std::make_unique<Tour>(folder, std::move(steps), [](int failed) {
      platform::terminateApplication(failed == 0 ? 0 : 1);
    });
    if (!tour->begin()) platform::terminateApplication(1);
  };
  return runSoundboard(std::move(description), options);
}

}  // namespace
}  // namespace quorbel

int main(int argc, char** argv) {
  using namespace quorbel;
  const auto parsed = parseOptions(std::max(argc - 1, 0), argv + 1);
  const auto* const options = std::get_if<Options>(&parsed);
  if (argc < 2 || argv[1][0] == '-' || !options || options->command != Command::Run) {
    std::fputs("Usage: quorbel-tour FOLDER [OPTION OF QUORBEL]...\n", stderr);
    return 2;
  }
  return runTour(argv[1], *options);
}
