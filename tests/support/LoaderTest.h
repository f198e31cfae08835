// A banner with fakes for network, pages, clock, machine and saved state.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ads/api/VADBannerView.h"
#include "ads/loading/VADLaunchObserver.h"
#include "ads/loading/VADObjectPrivate.h"
#include "ads/request/VADConfiguration.h"
#include "ads/request/VADRequestError.h"
#include "ads/support/VADPrivateUtilities.h"
#include "ads/telemetry/VADStatistics.h"
#include "ads/web/VADWebView.h"
#include "platform/storage/Folders.h"
#include "tests/support/FakeApplication.h"
#include "tests/support/FakeDevice.h"
#include "tests/support/FakeURLLoading.h"
#include "tests/support/FakeUserDefaults.h"
#include "tests/support/FakeWebEngine.h"
#include "tests/support/Fakes.h"
#include "tests/support/LogLines.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

/// Records the publisher's callbacks: "received", "failed 2" and so on.
class BannerRecord final : public valdren::VADBannerViewDelegate {
 public:
  ~BannerRecord() { invalidateWeakReferences(); }
  void adViewDidReceiveAd(valdren::VADBannerView&) override { add("received"); }
  void adViewDidFailToReceiveAdWithError(valdren::VADBannerView&,
                                         const valdren::VADRequestError& error) override {
    add("failed " + std::to_string(error.code()));
  }

  std::vector<std::string> take() { return std::exchange(events_, {}); }
  /// Called after each recorded event.
  std::function<void()> onEvent;

 private:
  void add(std::string event) {
    events_.push_back(std::move(event));
    if (const auto kept = onEvent) kept();
  }
  std::vector<std::string> events_;
};

/// Needs a display.
class LoaderTest : public ::testing::Test {
 protected:
  using Events = std::vector<std::string>;
  static constexpr const char* kScript = "function URVO_buildAdURL(p) { p.done = true; }";
  static constexpr const char* kAd = "<p>An ad</p>";
  static constexpr const char* kAdURL = "http://ads.test/ad?id=1";

  LoaderTest() {
    // Named, so that nothing is said of its lack.
    using valdren::VADConfiguration;
    VADConfiguration::setAdServerBaseURL(VADConfiguration::adServerBaseURL());
    valdren::VADStatistics::releaseSharedStatistics();
    valdren::VADLaunchObserver::shared().reset();
    clearCaches();
    makeBanner();
  }
  ~LoaderTest() override {
    banner.reset();
    valdren::VADStatistics::releaseSharedStatistics();
  }

  static void clearCaches() {
    std::error_code ignored;
    std::filesystem::remove_all(platform::cachesFolder().value(), ignored);
  }

  void makeBanner() {
    banner = std::make_shared<valdren::VADBannerView>(platform::Rect{0, 410, 320, 50});
    banner->setAdUnitID("unit");
    banner->setRootViewController(screen.get());
    banner->setDelegate(&record);
  }

  std::shared_ptr<valdren::VADObjectPrivate> loader() const {
    return valdren::VADPrivateUtilities::privateObjectForKey<valdren::VADObjectPrivate>(
        banner.get());
  }
  int state() const { return loader()->state(); }
  /// The ad's page, and the hidden page that runs the script while it exists.
  FakeWebEngine& adPage() const { return FakeWebEngines::of(*loader()->webView()); }
  bool hasBuilderPage() const { return engines.engines().size() > 1; }
  FakeWebEngine& builderPage() const { return engines.last(); }

  void load() { banner->loadRequest(nullptr); }
  void answerScript() { fetches.last().answer(200, {}, kScript); }
  /// The script's answer, such as "loadAdURL?url=http://ads.test/".
  void scriptSays(const std::string& message) {
    builderPage().navigate("gmsg://sdk/" + message);
    loop.advance(0);
  }
  void scriptGivesURL() { scriptSays("loadAdURL?url=http%3A%2F%2Fads.test%2Fad%3Fid%3D1"); }
  void answerAd(const platform::Headers& headers = {}, const std::string& body = kAd) {
    fetches.last().answer(200, headers, body);
  }

  /// Brings a banner without cached script from `load` to one of the states 1, 3, 4, 5 and 6.
  void bringTo(valdren::VADState wanted, const platform::Headers& headers = {}) {
    load();
    if (state() == valdren::kVADStateLoadingScript && wanted != valdren::kVADStateLoadingScript) {
      answerScript();
    }
    if (wanted >= valdren::kVADStateLoadingAd) scriptGivesURL();
    if (wanted >= valdren::kVADStateRenderingAd) answerAd(headers);
    if (wanted >= valdren::kVADStateShowingAd) adPage().finish();
    ASSERT_EQ(state(), wanted);
  }

  FakeWebEngines engines;  // outlives the views that wait in the loop
  FakeClock clock;
  FakeRunLoop loop{&clock};
  FakeUserDefaults defaults;
  FakeApplication application;
  FakeDevice device;
  FakeScreen display;
  FakeAudioSession audio;
  FakeURLLoading fetches;
  LogLines log;
  std::shared_ptr<platform::ViewController> screen = std::make_shared<platform::ViewController>();
  BannerRecord record;
  std::shared_ptr<valdren::VADBannerView> banner;
};

}  // namespace quorbel_tests
