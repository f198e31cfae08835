#include "app/AdNetworkSetup.h"

#include "ads/request/VADConfiguration.h"
#include "sandbox/Sandbox.h"

namespace platform = valdren::platform;

namespace quorbel {
namespace {

/// An address without a server: requests fail at once and stay on this machine.
constexpr const char* kNowhere = "http://127.0.0.1:1";

}  // namespace

AdNetworkSetup::AdNetworkSetup(const Options& options) {
  std::optional<platform::URL> adServer = options.adServer;
  std::optional<platform::URL> scriptHost = options.scriptHost;
  if (!adServer && !scriptHost) {
    builtIn_ = sandbox::Sandbox::start(0);
    adServer = platform::URL::parse(builtIn_ ? builtIn_->baseURL() : kNowhere);
  }
  if (!adServer) adServer = scriptHost;
  if (!scriptHost) scriptHost = adServer;
  valdren::VADConfiguration::setAdServerBaseURL(*adServer);
  valdren::VADConfiguration::setScriptHostBaseURL(*scriptHost);
}

AdNetworkSetup::~AdNetworkSetup() = default;

}  // namespace quorbel
