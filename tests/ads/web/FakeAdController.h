// A loader with the state and the pings that a test sets.
#pragma once

#include <string>
#include <vector>

#include "ads/api/VADDelegateManager.h"
#include "ads/request/VADRequestPrivate.h"
#include "ads/telemetry/VADTiming.h"
#include "ads/web/VADAdController.h"
#include "ads/web/VADAdEvents.h"
#include "ads/web/VADWebView.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

/// Records its events, each "state NUMBER" and "track URL" in `events`, which outlives it.
class FakeAdController final : public valdren::VADAdController {
 public:
  explicit FakeAdController(std::vector<std::string>& events) : events_(events) {}
  ~FakeAdController() { invalidateWeakReferences(); }

  valdren::VADState state() const override { return present; }
  void changeState(valdren::VADState state) override {
    present = state;
    events_.push_back("state " + std::to_string(state));
  }
  double timeLastLoaded() const override { return shownAt; }
  const std::shared_ptr<valdren::VADRequestPrivate>& request() const override { return request_; }
  const std::shared_ptr<valdren::VADAdEvents>& delegateManager() const override { return manager_; }
  platform::ViewController* rootViewController() const override { return root.get(); }
  const std::shared_ptr<valdren::VADWebView>& webView() const override { return webView_; }
  std::vector<platform::URL> pendingTrackingURLs() const override {
    return {*platform::URL::parse("http://p.test/")};
  }
  std::vector<platform::URL> pendingClickURLs() const override { return clickURLs; }
  int supportedOrientations() const override { return 3; }
  void trackURLs(const std::vector<platform::URL>& urls) override {
    for (const auto& url : urls) events_.push_back("track " + url.absoluteString());
  }

  valdren::VADState present = valdren::kVADStateShowingAd;
  double shownAt = valdren::VADTiming::counter();
  std::shared_ptr<platform::ViewController> root = std::make_shared<platform::ViewController>();
  std::vector<platform::URL> clickURLs;

 private:
  std::vector<std::string>& events_;
  std::shared_ptr<valdren::VADRequestPrivate> request_ =
      std::make_shared<valdren::VADRequestPrivate>();
  std::shared_ptr<valdren::VADAdEvents> manager_ = std::make_shared<valdren::VADDelegateManager>();
  std::shared_ptr<valdren::VADWebView> webView_ = std::make_shared<valdren::VADWebView>();
};

}  // namespace quorbel_tests
