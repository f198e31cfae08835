// A banner with fakes for network, pages, clock, machine and saved state.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "ads/api/VADBannerView.h"
#include "ads/loading/VADLaunchObserver.h"
#include "ads/loading/VADObjectPrivate.h"
#include "ads/request/VADConfiguration.h"
#include "ads/support/VADPrivateUtilities.h"
#include "ads/web/VADWebView.h"
#include "platform/storage/Folders.h"
#include "tests/support/FakeMachine.h"
#include "tests/support/LogLines.h"
#include "tests/support/PublisherRecord.h"

namespace quorbel_tests {

/// Needs a display.
class LoaderTest : public ::testing::Test, protected FakeMachine {
 protected:
  using Events = std::vector<std::string>;
  static constexpr const char* kScript = "function URVO_buildAdURL(p) { p.done = true; }";
  static constexpr const char* kAd = "<p>An ad</p>";
  static constexpr const char* kAdURL = "http://ads.test/ad?id=1";

  LoaderTest() {
    // Named, so that nothing is said of its lack.
    using valdren::VADConfiguration;
    VADConfiguration::setAdServerBaseURL(VADConfiguration::adServerBaseURL());
    valdren::VADLaunchObserver::shared().reset();
    clearCaches();
    makeBanner();
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

  /// From the script's page to the ad's.
  void showNextAd(const platform::Headers& headers = {}) {
    scriptGivesURL();
    answerAd(headers);
    adPage().finish();
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

  LogLines log;
  std::shared_ptr<platform::ViewController> screen = std::make_shared<platform::ViewController>();
  PublisherRecord record;
  std::shared_ptr<valdren::VADBannerView> banner;
};

}  // namespace quorbel_tests
