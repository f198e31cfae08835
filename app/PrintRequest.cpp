#include "app/PrintRequest.h"

#include <cstdio>

#include "ads/loading/VADObjectPrivate.h"
#include "ads/request/VADNetworkChecker.h"
#include "ads/request/VADRequestParameters.h"
#include "ads/support/VADPrivateUtilities.h"
#include "ads/telemetry/VADStatistics.h"
#include "app/SoundScreen.h"
#include "platform/base/Json.h"
#include "platform/base/RunLoop.h"
#include "platform/device/AudioSession.h"
#include "platform/storage/Bundle.h"
#include "platform/storage/FileUserDefaults.h"

namespace platform = valdren::platform;

namespace quorbel {
namespace {

using platform::ApplicationDescription;
using valdren::VADObjectPrivate;

/// The longest waits for the network and the sound server without a window, in seconds.
constexpr platform::Seconds kNetworkPatience{1};
constexpr platform::Seconds kSoundPatience{0.3};

/// Returns the exit status.
int print(const platform::Dictionary& parameters) {
  const std::optional<std::string> json = platform::writeIndentedJson(parameters);
  if (json && std::fputs(json->c_str(), stdout) >= 0 && std::fflush(stdout) == 0) return 0;
  std::fputs("Quorbel: the request cannot be written.\n", stderr);
  return 1;
}

void printRequestOf(valdren::VADBannerView& banner) {
  const auto loader = valdren::VADPrivateUtilities::privateObjectForKey<VADObjectPrivate>(&banner);
  loader->tellRequest(SoundScreen::makeRequest(), [](const platform::Dictionary& parameters) {
    platform::terminateApplication(print(parameters));
  });
}

/// The normal application, except that its banner prints its request.
ApplicationDescription printing(ApplicationDescription description) {
  for (auto& [name, makeScreen] : description.screens) {
    makeScreen = [make = makeScreen] {
      auto made = make();
      if (auto* const sounds = dynamic_cast<SoundScreen*>(made.get())) {
        sounds->setBannerTask(printRequestOf);
      }
      return made;
    };
  }
  description.alone = true;
  return description;
}

int printWithoutWindow() {
  const auto request = SoundScreen::makeRequest()->copy();
  valdren::VADRequestParameters::begin(*request);
  const auto& checker = valdren::VADNetworkChecker::sharedChecker();
  auto& session = platform::AudioSession::shared();
  platform::RunLoop::turnUntil([&] { return checker.changeCount() > 0; }, kNetworkPatience);
  platform::RunLoop::turnUntil([&] { return session.route().valueOr(std::nullopt).has_value(); },
                               kSoundPatience);
  return print(valdren::VADRequestParameters::of(*request, {kAdUnitID, std::nullopt}));
}

}  // namespace

int printRequest(const ApplicationDescription& description) {
  platform::Bundle::main().setIdentifier(description.identifier);
  platform::Bundle::main().setVersion(description.version);
  // The request's changes to counters stay in this process.
  platform::FileUserDefaults kept(platform::FileUserDefaults::standardFolder(),
                                  platform::FileUserDefaults::Access::ReadOnly);
  const platform::UserDefaults::Replacement replacement(kept);
  const int status = platform::hasDisplay() ? platform::applicationMain(printing(description))
                                            : printWithoutWindow();
  valdren::VADStatistics::releaseSharedStatistics();
  return status;
}

}  // namespace quorbel
