#include "ads/loading/VADRequestPrivate.h"

namespace valdren {

std::shared_ptr<VADRequest> VADRequest::request() {
  return std::make_shared<VADRequestPrivate>();
}

const std::string& VADRequest::sdkVersion() {
  static const std::string version = "urvo-sdk-i-v4.1.1";
  return version;
}

std::shared_ptr<VADRequestPrivate> VADRequestPrivate::initWithRequest(const VADRequest& request) {
  auto made = std::make_shared<VADRequestPrivate>();
  made->testDevices_ = request.testDevices();
  made->testing_ = request.isTesting();
  made->additionalParameters_ = request.additionalParameters();
  made->gender_ = request.gender();
  made->birthday_ = request.birthday();
  made->keywords_ = request.keywords();
  if (const auto* const source = dynamic_cast<const VADRequestPrivate*>(&request)) {
    made->location_ = source->location_;
    made->interstitialAd_ = source->interstitialAd_;
  }
  return made;
}

}  // namespace valdren
