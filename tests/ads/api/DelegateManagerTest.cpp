#include "ads/api/VADDelegateManager.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "ads/api/VADBannerView.h"
#include "platform/application/ApplicationMain.h"
#include "platform/base/RunLoop.h"
#include "tests/support/Loop.h"

namespace platform = valdren::platform;

namespace {

using namespace valdren;
using quorbel_tests::runUntil;

/// Records the calls and runs `meanwhile` in one of them.
class Publisher final : public VADBannerViewDelegate, public VADInterstitialDelegate {
 public:
  explicit Publisher(std::string* heard, std::string name = "")
      : heard_(heard), name_(std::move(name)) {}

  std::function<void()> meanwhile;
  /// The only selector that it responds to; empty for all.
  std::string only;
  VADInterstitial* interstitial = nullptr;

  void adViewDidReceiveAd(VADBannerView&) override { note("didReceiveAd"); }
  void adViewDidFailToReceiveAdWithError(VADBannerView&, const VADRequestError& error) override {
    note("didFail" + std::to_string(error.code()));
  }
  void adViewWillPresentScreen(VADBannerView&) override { note("willPresent"); }
  void adViewWillDismissScreen(VADBannerView&) override { note("willDismiss"); }
  void adViewDidDismissScreen(VADBannerView&) override { note("didDismiss"); }
  void adViewWillLeaveApplication(VADBannerView&) override { note("willLeave"); }

  void interstitialDidReceiveAd(VADInterstitial* sender) override { note("didReceiveAd", sender); }
  void interstitialDidFailToReceiveAdWithError(VADInterstitial* sender,
                                               const VADRequestError& error) override {
    note("didFail" + std::to_string(error.code()), sender);
  }
  void interstitialWillPresentScreen(VADInterstitial* sender) override {
    note("willPresent", sender);
  }
  void interstitialWillDismissScreen(VADInterstitial* sender) override {
    note("willDismiss", sender);
  }
  void interstitialDidDismissScreen(VADInterstitial* sender) override {
    note("didDismiss", sender);
  }
  void interstitialWillLeaveApplication(VADInterstitial* sender) override {
    note("willLeave", sender);
  }

  bool respondsToSelector(std::string_view selector) const override {
    return only.empty() || selector == only;
  }

 private:
  void note(const std::string& what, VADInterstitial* sender = nullptr) {
    interstitial = sender;
    *heard_ += name_ + what + (platform::RunLoop::shared().isMainThread() ? ";" : " elsewhere;");
    if (meanwhile) std::exchange(meanwhile, nullptr)();
  }

  std::string* heard_;
  std::string name_;
};

/// Acts like the main thread's loop for another thread, with work that runs before the task.
class BusyRunLoop final : public platform::RunLoop {
 public:
  explicit BusyRunLoop(Task meanwhile) : meanwhile_(std::move(meanwhile)) {}
  bool isMainThread() const override { return true; }
  void performOnMainThreadAndWait(const Task& task) override {
    meanwhile_();
    task();
  }

 private:
  SourceID addSource(platform::Seconds, Task) override { return 1; }
  void removeSource(SourceID) override {}

  Task meanwhile_;
  platform::RunLoop::Replacement replacement_{*this};
};

void raiseEverything(VADDelegateManager& manager) {
  manager.didReceiveAd();
  manager.didFailToReceiveAdWithError(VADRequestError(2, nullptr));
  manager.willPresentScreen();
  manager.willDismissScreen();
  manager.didDismissScreen();
  manager.willLeaveApplication();
}

constexpr const char* kEverything =
    "didReceiveAd;didFail2;willPresent;willDismiss;didDismiss;willLeave;";

class DelegateManager : public testing::Test {
 protected:
  void SetUp() override {
    if (!platform::hasDisplay()) GTEST_SKIP() << "views need a display";
    banner_ = std::make_shared<VADBannerView>();
    manager_->setAdView(banner_.get());
  }

  std::string heard_;
  std::shared_ptr<VADBannerView> banner_;
  std::shared_ptr<VADDelegateManager> manager_ = std::make_shared<VADDelegateManager>();
};

TEST_F(DelegateManager, ABannersDelegateHearsEverything) {
  Publisher publisher(&heard_);
  manager_->setBannerDelegate(&publisher);
  raiseEverything(*manager_);
  EXPECT_EQ(heard_, kEverything);
}

TEST_F(DelegateManager, ADelegateHearsOnlyWhatItWants) {
  Publisher publisher(&heard_);
  publisher.only = "adViewDidReceiveAd:";
  manager_->setBannerDelegate(&publisher);
  raiseEverything(*manager_);
  EXPECT_EQ(heard_, "didReceiveAd;");
  for (const char* selector :
       {"adViewDidReceiveAd:", "adView:didFailToReceiveAdWithError:", "adViewWillPresentScreen:",
        "adViewWillDismissScreen:", "adViewDidDismissScreen:", "adViewWillLeaveApplication:"}) {
    heard_.clear();
    publisher.only = selector;
    raiseEverything(*manager_);
    EXPECT_EQ(std::count(heard_.begin(), heard_.end(), ';'), 1) << selector;
  }
}

TEST_F(DelegateManager, TellsTheBannersThenTheInternalThenThePublishersDelegate) {
  Publisher banner(&heard_, "banner ");
  Publisher internal(&heard_, "internal ");
  Publisher interstitial(&heard_, "interstitial ");
  manager_->setBannerDelegate(&banner);
  manager_->setInterstitialDelegate(&interstitial);
  manager_->setSdkInterstitialDelegate(&internal);
  int object = 0;
  auto* const sender = reinterpret_cast<VADInterstitial*>(&object);
  manager_->setInterstitial(sender);
  manager_->didReceiveAd();
  EXPECT_EQ(heard_, "banner didReceiveAd;internal didReceiveAd;interstitial didReceiveAd;");
  EXPECT_EQ(interstitial.interstitial, sender);
  manager_->setBannerDelegate(nullptr);
  manager_->setSdkInterstitialDelegate(nullptr);
  heard_.clear();
  raiseEverything(*manager_);
  EXPECT_EQ(heard_,
            "interstitial didReceiveAd;interstitial didFail2;interstitial willPresent;"
            "interstitial willDismiss;interstitial didDismiss;interstitial willLeave;");
}

TEST_F(DelegateManager, ADeadDelegateIsNotCalled) {
  auto publisher = std::make_unique<Publisher>(&heard_);
  manager_->setBannerDelegate(publisher.get());
  manager_->setInterstitialDelegate(publisher.get());
  publisher.reset();
  raiseEverything(*manager_);
  EXPECT_EQ(heard_, "");
  EXPECT_FALSE(manager_->bannerDelegate());
}

TEST_F(DelegateManager, ADelegateMayDestroyTheNextOneOrItself) {
  auto banner = std::make_unique<Publisher>(&heard_, "banner ");
  auto interstitial = std::make_unique<Publisher>(&heard_, "interstitial ");
  manager_->setBannerDelegate(banner.get());
  manager_->setInterstitialDelegate(interstitial.get());
  banner->meanwhile = [&] {
    interstitial.reset();
    banner.reset();
  };
  raiseEverything(*manager_);
  EXPECT_EQ(heard_, "banner didReceiveAd;");
}

TEST_F(DelegateManager, ADelegateMayDestroyTheBannerAndTheManager) {
  Publisher banner(&heard_, "banner ");
  Publisher interstitial(&heard_, "interstitial ");
  manager_->setBannerDelegate(&banner);
  manager_->setInterstitialDelegate(&interstitial);
  banner.meanwhile = [&] {
    banner_.reset();
    manager_.reset();
  };
  manager_->didReceiveAd();
  EXPECT_FALSE(manager_);
  EXPECT_EQ(heard_, "banner didReceiveAd;interstitial didReceiveAd;")
      << "the dispatch that was under way comes to its end";
}

TEST_F(DelegateManager, AnErrorFromAnotherThreadIsDeliveredHereBeforeItsCallReturns) {
  Publisher publisher(&heard_);
  manager_->setBannerDelegate(&publisher);
  std::atomic<bool> raising = false;
  std::atomic<bool> returned = false;
  std::string heardWhenItReturned;
  std::thread other([&] {
    raising = true;
    manager_->didFailToReceiveAdWithError(VADRequestError(3, nullptr));
    heardWhenItReturned = heard_;
    returned = true;
  });
  while (!raising) std::this_thread::yield();
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_FALSE(returned) << "the main thread has not had its turn yet";
  EXPECT_TRUE(runUntil([&] { return returned.load(); }));
  other.join();
  EXPECT_EQ(heardWhenItReturned, "didFail3;");
}

TEST_F(DelegateManager, OutlivesTheWaitOfAnotherThreadButADeadDelegateIsNotCalled) {
  Publisher publisher(&heard_, "banner ");
  auto interstitial = std::make_unique<Publisher>(&heard_, "interstitial ");
  manager_->setBannerDelegate(&publisher);
  manager_->setInterstitialDelegate(interstitial.get());
  const std::weak_ptr<VADDelegateManager> manager = manager_;
  const BusyRunLoop loop([&] {
    interstitial.reset();
    manager_.reset();
    ASSERT_FALSE(manager.expired()) << "gone before its event was delivered";
  });
  manager_->didReceiveAd();
  EXPECT_EQ(heard_, "banner didReceiveAd;");
  EXPECT_TRUE(manager.expired());
}

}  // namespace
