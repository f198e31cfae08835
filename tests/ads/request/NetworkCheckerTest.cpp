#include "ads/request/VADNetworkChecker.h"

#include <gtest/gtest.h>

namespace {

namespace platform = valdren::platform;
using platform::kReachabilityFlagsIsWWAN;
using platform::kReachabilityFlagsReachable;
using valdren::VADNetworkChecker;

/// Watches no host, or makes `targets` targets that report what a test gives to `callback`.
class FakeReachability final : public platform::Reachability {
 public:
  std::unique_ptr<platform::ReachabilityTarget> createWithName(const std::string& host) override {
    EXPECT_FALSE(host.empty());
    if (fails) return nullptr;
    ++targets;
    return std::make_unique<Target>(*this);
  }

  bool fails = false;
  int targets = 0;
  bool isScheduled = false;
  platform::ReachabilityTarget::Callback callback;

 private:
  struct Target final : platform::ReachabilityTarget {
    explicit Target(FakeReachability& owner) : owner(owner) {}
    ~Target() override { owner.callback = nullptr; }
    void scheduleOnMainRunLoop() override { owner.isScheduled = true; }
    void setCallback(Callback callback) override { owner.callback = std::move(callback); }
    FakeReachability& owner;
  };

  Replacement replacement_{*this};
};

TEST(NetworkChecker, TellsTheTypeFromTheFlagsLastReported) {
  FakeReachability service;
  VADNetworkChecker checker;
  checker.setEnabled(true);
  ASSERT_TRUE(service.isScheduled);
  EXPECT_EQ(checker.networkType(), 0u);
  EXPECT_FALSE(checker.networkTypeString());

  const std::tuple<std::uint32_t, std::uint32_t, std::optional<std::string>> cases[] = {
      {kReachabilityFlagsReachable, 2, "wi"},
      {kReachabilityFlagsReachable | kReachabilityFlagsIsWWAN, 3, "ed"},
      {kReachabilityFlagsIsWWAN, 1, std::nullopt},
      {kReachabilityFlagsReachable | 0x4 | 0x20, 2, "wi"},
      {0, 1, std::nullopt},
  };
  std::uint32_t changes = 0;
  for (const auto& [flags, type, text] : cases) {
    service.callback(flags);
    EXPECT_EQ(checker.networkType(), type);
    EXPECT_EQ(checker.networkTypeString(), text);
    EXPECT_EQ(checker.changeCount(), ++changes);
  }
}

TEST(NetworkChecker, WatchesOnceFromItsStartToItsEnd) {
  FakeReachability service;
  service.fails = true;
  {
    VADNetworkChecker checker;
    checker.setEnabled(true);
    EXPECT_FALSE(checker.isEnabled());
    service.fails = false;
    checker.setEnabled(true);
    service.callback(kReachabilityFlagsReachable);
    checker.setEnabled(true);
    EXPECT_EQ(checker.networkType(), 2u) << "enabling an enabled checker forgot the type";
    checker.setEnabled(false);
    EXPECT_EQ(checker.networkType(), 0u);
    EXPECT_FALSE(service.callback);
    checker.setEnabled(true);
  }
  EXPECT_EQ(service.targets, 2);
  EXPECT_FALSE(service.callback) << "it goes on watching without a checker";
}

}  // namespace
