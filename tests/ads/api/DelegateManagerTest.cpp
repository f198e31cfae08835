#include "ads/api/VADDelegateManager.h"

#include <gtest/gtest.h>

#include "ads/api/VADBannerView.h"
#include "tests/support/Fakes.h"
#include "tests/support/PublisherRecord.h"

namespace platform = valdren::platform;

namespace {

using namespace valdren;
using quorbel_tests::PublisherRecord;

void raiseEverything(VADDelegateManager& manager) {
  manager.didReceiveAd();
  manager.didFailToReceiveAdWithError(VADRequestError(2, nullptr));
  manager.willPresentScreen();
  manager.willDismissScreen();
  manager.didDismissScreen();
  manager.willLeaveApplication();
}

constexpr const char* kEverything =
    "received;failed 2;will present;will dismiss;did dismiss;will leave;";

class DelegateManager : public testing::Test {
 protected:
  void SetUp() override {
    banner_ = std::make_shared<VADBannerView>();
    manager_ = std::make_shared<VADDelegateManager>();
    manager_->setAdView(banner_.get());
  }

  /// A delegate that writes what it hears after its name.
  std::unique_ptr<PublisherRecord> publisher(const std::string& name = "") {
    auto made = std::make_unique<PublisherRecord>();
    made->onEvent = [this, name](const std::string& event) { heard_ += name + event + ";"; };
    return made;
  }

  std::string heard_;
  std::shared_ptr<VADBannerView> banner_;
  std::shared_ptr<VADDelegateManager> manager_;
};

TEST_F(DelegateManager, ABannersDelegateHearsEverythingThatItWants) {
  const auto banner = publisher();
  manager_->setBannerDelegate(banner.get());
  raiseEverything(*manager_);
  EXPECT_EQ(heard_, kEverything);
  std::string oneByOne;
  for (const char* selector :
       {"adViewDidReceiveAd:", "adView:didFailToReceiveAdWithError:", "adViewWillPresentScreen:",
        "adViewWillDismissScreen:", "adViewDidDismissScreen:", "adViewWillLeaveApplication:"}) {
    heard_.clear();
    banner->only = selector;
    raiseEverything(*manager_);
    oneByOne += heard_;
  }
  EXPECT_EQ(oneByOne, kEverything);
}

TEST_F(DelegateManager, TellsTheBannersThenTheInternalThenThePublishersDelegate) {
  const auto banner = publisher("banner ");
  const auto internal = publisher("internal ");
  const auto interstitial = publisher("interstitial ");
  manager_->setBannerDelegate(banner.get());
  manager_->setInterstitialDelegate(interstitial.get());
  manager_->setSdkInterstitialDelegate(internal.get());
  int object = 0;
  auto* const sender = reinterpret_cast<VADInterstitial*>(&object);
  manager_->setInterstitial(sender);
  manager_->didReceiveAd();
  EXPECT_EQ(heard_, "banner received;internal received;interstitial received;");
  EXPECT_EQ(interstitial->sender, sender);
  manager_->setBannerDelegate(nullptr);
  manager_->setSdkInterstitialDelegate(nullptr);
  heard_.clear();
  raiseEverything(*manager_);
  EXPECT_EQ(heard_,
            "interstitial received;interstitial failed 2;interstitial will present;"
            "interstitial will dismiss;interstitial did dismiss;interstitial will leave;");
}

TEST_F(DelegateManager, ADelegateMayDestroyTheOthersItselfTheBannerAndTheManager) {
  for (const bool othersToo : {false, true}) {
    SetUp();
    heard_.clear();
    auto banner = publisher("banner ");
    auto interstitial = publisher("interstitial ");
    manager_->setBannerDelegate(banner.get());
    manager_->setInterstitialDelegate(interstitial.get());
    banner->onEvent = [&, hear = banner->onEvent](const std::string& event) {
      hear(event);
      if (othersToo) interstitial.reset();
      banner.reset();
      if (!othersToo) banner_.reset(), manager_.reset();
    };
    manager_->didReceiveAd();
    EXPECT_EQ(heard_, othersToo ? "banner received;" : "banner received;interstitial received;")
        << "the dispatch that was under way comes to its end";
    if (othersToo) raiseEverything(*manager_);
    EXPECT_EQ(heard_.find("will leave"), std::string::npos) << "a dead delegate was called";
  }
}

TEST_F(DelegateManager, OutlivesTheWaitOfAnotherThreadButADeadDelegateIsNotCalled) {
  const auto banner = publisher("banner ");
  auto interstitial = publisher("interstitial ");
  manager_->setBannerDelegate(banner.get());
  manager_->setInterstitialDelegate(interstitial.get());
  const std::weak_ptr<VADDelegateManager> manager = manager_;
  quorbel_tests::FakeRunLoop loop;
  loop.meanwhile = [&] {
    interstitial.reset();
    manager_.reset();
    EXPECT_FALSE(manager.expired()) << "gone before its event was delivered";
  };
  manager_->didReceiveAd();
  EXPECT_EQ(heard_, "banner received;");
  EXPECT_TRUE(manager.expired());
}

}  // namespace
