// A window with a host's screen, fakes for everything else, and a record of the screens' callbacks.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "ads/api/VADDelegateManager.h"
#include "ads/request/VADIdentifierUtilities.h"
#include "ads/screens/VADViewController.h"
#include "ads/telemetry/VADStatistics.h"
#include "platform/ui/Window.h"
#include "tests/support/FakeApplication.h"
#include "tests/support/FakeDevice.h"
#include "tests/support/FakeUserDefaults.h"
#include "tests/support/FakeWebEngine.h"
#include "tests/support/Fakes.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

/// Records, in order, the callbacks to the publisher and the application.
class ScreenRecord final : public valdren::VADInterstitialDelegate {
 public:
  ScreenRecord() {
    auto& center = platform::NotificationCenter::defaultCenter();
    center.addObserver(*this, valdren::kVADViewControllerWillPresentFullScreen,
                       [this](const platform::Notification&) { add("posted present"); });
    center.addObserver(*this, valdren::kVADViewControllerDidRelinquishFullScreen,
                       [this](const platform::Notification&) { add("posted relinquish"); });
  }
  ~ScreenRecord() { invalidateWeakReferences(); }

  void interstitialWillPresentScreen(valdren::VADInterstitial*) override {
    add("will present");
    if (onWillPresent) onWillPresent();
  }
  void interstitialWillDismissScreen(valdren::VADInterstitial*) override { add("will dismiss"); }
  void interstitialDidDismissScreen(valdren::VADInterstitial*) override { add("did dismiss"); }
  void interstitialWillLeaveApplication(valdren::VADInterstitial*) override { add("will leave"); }

  std::vector<std::string> take() { return std::exchange(events_, {}); }
  std::function<void()> onWillPresent;

 private:
  void add(const char* event) { events_.emplace_back(event); }
  std::vector<std::string> events_;
};

class HostScreen final : public platform::ViewController {
 public:
  bool shouldAutorotateToInterfaceOrientation(platform::InterfaceOrientation) override {
    return true;
  }
};

/// The window is not visible, so that transitions end at once.
class ScreenTest : public ::testing::Test {
 protected:
  using Events = std::vector<std::string>;

  ScreenTest() {
    manager->setInterstitialDelegate(&record);
    window->setRootViewController(host);
  }
  ~ScreenTest() override {
    window->setRootViewController(nullptr);
    loop.advance(5);
    valdren::VADStatistics::releaseSharedStatistics();
  }

  static platform::URL url(const char* text) { return platform::URL::parse(text).value(); }
  valdren::VADStatistics& statistics() { return valdren::VADStatistics::sharedStatistics(); }

  FakeClock clock;
  FakeRunLoop loop{&clock};
  FakeUserDefaults defaults;
  FakeApplication application;
  FakeDevice device;
  valdren::VADIdentifierUtilities identity;
  valdren::VADIdentifierUtilities::Replacement identityReplacement{identity};
  FakeWebEngines engines;
  ScreenRecord record;
  std::shared_ptr<valdren::VADDelegateManager> manager =
      std::make_shared<valdren::VADDelegateManager>();
  std::shared_ptr<HostScreen> host = std::make_shared<HostScreen>();
  std::shared_ptr<platform::Window> window =
      std::make_shared<platform::Window>(platform::Size{320, 480});
};

}  // namespace quorbel_tests
