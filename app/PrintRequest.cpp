#include "app/PrintRequest.h"

#include <cstdio>

#include "ads/loading/VADObjectPrivate.h"
#include "ads/support/VADNetworkChecker.h"
#include "ads/telemetry/VADStatistics.h"
#include "app/SoundScreen.h"
#include "platform/AudioSession.h"
#include "platform/Bundle.h"
#include "platform/FileUserDefaults.h"
#include "platform/Json.h"
#include "platform/RunLoop.h"

namespace quorbel {
namespace {

using valdren::VADObjectPrivate;
using valdren::VADRequestPrivate;
using valdren::VADStatistics;

/// How long the network and the sound server may take to answer, in seconds.
constexpr double kNetworkPatience = 1;
constexpr double kSoundPatience = 0.3;

/// Both answer only once they are asked for, which in the application is long before a request.
void waitForAnswers() {
  const auto& checker = valdren::VADNetworkChecker::sharedChecker();
  platform::AudioSession& session = platform::AudioSession::shared();
  session.initialize();
  platform::RunLoop::turnUntil([&] { return checker.changeCount() > 0; }, kNetworkPatience);
  platform::RunLoop::turnUntil([&] { return session.route().name.has_value(); }, kSoundPatience);
}

/// As the banner does when a request begins.
std::shared_ptr<VADRequestPrivate> beginRequest() {
  auto request = SoundScreen::makeRequest()->copy();
  VADStatistics& statistics = VADStatistics::sharedStatistics();
  const char* const sinceFirst = valdren::kVADParameterTimeSinceFirstRequest;
  if (!statistics.timingNamed(sinceFirst)) statistics.startTimingNamed(sinceFirst);
  request->setCounter(statistics.incrementAdRequestCount());
  return request;
}

}  // namespace

int printRequest(const platform::ApplicationDescription& description) {
  platform::Bundle::main().setIdentifier(description.identifier);
  platform::Bundle::main().setVersion(description.version);
  // What the request counts and clears stays in this process.
  platform::FileUserDefaults kept(platform::FileUserDefaults::standardFolder(),
                                  platform::FileUserDefaults::Access::ReadOnly);
  const platform::UserDefaults::Replacement replacement(kept);

  const std::shared_ptr<platform::Window> window = platform::makeHiddenWindow(description);
  waitForAnswers();
  platform::Dictionary parameters = beginRequest()->parameters();
  VADObjectPrivate::putSlot(parameters, kAdUnitID);
  if (window) {
    const platform::Rect frame = SoundScreen::bannerFrame(window->contentBounds().size());
    VADObjectPrivate::putPlace(parameters, frame, {0, 0, frame.width, frame.height});
  }
  const std::optional<std::string> json = platform::writeIndentedJson(parameters);
  VADStatistics::releaseSharedStatistics();
  if (json && std::fputs(json->c_str(), stdout) >= 0 && std::fflush(stdout) == 0) return 0;
  std::fprintf(stderr, "%s: the request cannot be written.\n", description.name.c_str());
  return 1;
}

}  // namespace quorbel
