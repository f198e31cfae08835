#include "ads/request/VADConfiguration.h"

#include <string>

#include "ads/telemetry/VADStatistics.h"
#include "platform/base/Log.h"

namespace valdren {
namespace {

platform::URL& adServer() {
  static platform::URL url = *platform::URL::parse("https://ads.valdren.example");
  return url;
}

platform::URL& scriptHost() {
  static platform::URL url = *platform::URL::parse("https://scripts.valdren.example");
  return url;
}

bool adNetworkIsSet = false;

}  // namespace

bool VADConfiguration::setAdNetwork(std::string_view text) {
  const auto url = platform::URL::parse(text);
  if (!url || !url->origin() || url->host().empty()) {
    platform::log("<Valdren> \"" + std::string(text) +
                  "\" is no address of an ad network, like \"https://ads.your.example\".");
    return false;
  }
  setAdServerBaseURL(*url);
  setScriptHostBaseURL(*url);
  return true;
}

bool VADConfiguration::isAdNetworkSet() {
  return adNetworkIsSet;
}

const platform::URL& VADConfiguration::adServerBaseURL() {
  return adServer();
}

void VADConfiguration::setAdServerBaseURL(const platform::URL& url) {
  adServer() = url;
  adNetworkIsSet = true;
  VADStatistics::setAdNetworkDomain(url.host());
}

const platform::URL& VADConfiguration::scriptHostBaseURL() {
  return scriptHost();
}

void VADConfiguration::setScriptHostBaseURL(const platform::URL& url) {
  scriptHost() = url;
}

}  // namespace valdren
