// A window with a host's screen, fakes for everything else, and a record of the screens' callbacks.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "ads/api/VADDelegateManager.h"
#include "ads/request/VADIdentifierUtilities.h"
#include "ads/screens/VADViewController.h"
#include "platform/ui/Window.h"
#include "tests/support/FakeMachine.h"
#include "tests/support/PublisherRecord.h"

namespace quorbel_tests {

class HostScreen final : public platform::ViewController {
 public:
  bool shouldAutorotateToInterfaceOrientation(platform::InterfaceOrientation) override {
    return true;
  }
};

/// The window is not visible, so that transitions end at once.
class ScreenTest : public ::testing::Test, protected FakeMachine {
 protected:
  using Events = std::vector<std::string>;

  ScreenTest() {
    manager->setInterstitialDelegate(&record);
    for (const auto& [notice, event] :
         {std::pair(valdren::kVADViewControllerWillPresentFullScreen, "posted present"),
          {valdren::kVADViewControllerDidRelinquishFullScreen, "posted relinquish"}}) {
      platform::NotificationCenter::defaultCenter().addObserver(
          record, notice,
          [this, told = event](const platform::Notification&) { record.add(told); });
    }
    window->setRootViewController(host);
  }
  ~ScreenTest() override {
    window->setRootViewController(nullptr);
    loop.advance(5);
  }

  static platform::URL url(const char* text) { return platform::URL::parse(text).value(); }
  valdren::VADStatistics& statistics() { return valdren::VADStatistics::sharedStatistics(); }

  valdren::VADIdentifierUtilities identity;
  valdren::VADIdentifierUtilities::Replacement identityReplacement{identity};
  /// What the publisher and the application are told.
  PublisherRecord record;
  std::shared_ptr<valdren::VADDelegateManager> manager =
      std::make_shared<valdren::VADDelegateManager>();
  std::shared_ptr<HostScreen> host = std::make_shared<HostScreen>();
  std::shared_ptr<platform::Window> window =
      std::make_shared<platform::Window>(platform::Size{320, 480});
};

}  // namespace quorbel_tests
