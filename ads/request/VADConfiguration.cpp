#include "ads/request/VADConfiguration.h"

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

}  // namespace

const platform::URL& VADConfiguration::adServerBaseURL() {
  return adServer();
}

void VADConfiguration::setAdServerBaseURL(const platform::URL& url) {
  adServer() = url;
}

const platform::URL& VADConfiguration::scriptHostBaseURL() {
  return scriptHost();
}

void VADConfiguration::setScriptHostBaseURL(const platform::URL& url) {
  scriptHost() = url;
}

}  // namespace valdren
