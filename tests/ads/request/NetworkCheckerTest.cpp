#include "ads/request/VADNetworkChecker.h"

#include <gtest/gtest.h>

namespace platform = valdren::platform;

namespace {

using platform::kReachabilityFlagsIsWWAN;
using platform::kReachabilityFlagsReachable;
using valdren::VADNetworkChecker;

/// A reachability service that records its calls.
class FakeReachability final : public platform::Reachability {
 public:
  std::unique_ptr<platform::ReachabilityTarget> createWithName(const std::string& host) override {
    calls += "create;";
    this->host = host;
    if (fails) return nullptr;
    return std::make_unique<Target>(*this);
  }

  bool fails = false;
  std::string host;
  std::string calls;
  platform::ReachabilityTarget::Callback callback;

 private:
  class Target final : public platform::ReachabilityTarget {
   public:
    explicit Target(FakeReachability& owner) : owner_(owner) {}
    ~Target() override {
      owner_.calls += "release;";
      owner_.callback = nullptr;
    }
    void scheduleOnMainRunLoop() override { owner_.calls += "schedule;"; }
    void setCallback(Callback callback) override {
      owner_.calls += "callback;";
      owner_.callback = std::move(callback);
    }

   private:
    FakeReachability& owner_;
  };

  Replacement replacement_{*this};
};

TEST(NetworkChecker, TellsTheTypeFromTheFlagsLastReported) {
  FakeReachability service;
  VADNetworkChecker checker;
  checker.setEnabled(true);
  EXPECT_EQ(service.calls, "create;schedule;callback;");
  EXPECT_FALSE(service.host.empty());
  EXPECT_EQ(checker.networkType(), 0u);
  EXPECT_FALSE(checker.networkTypeString());

  const struct {
    std::uint32_t flags;
    std::uint32_t type;
    std::optional<std::string> text;
  } cases[] = {
      {kReachabilityFlagsReachable, 2, "wi"},
      {kReachabilityFlagsReachable | kReachabilityFlagsIsWWAN, 3, "ed"},
      {kReachabilityFlagsIsWWAN, 1, std::nullopt},
      {kReachabilityFlagsReachable | 0x4 | 0x20, 2, "wi"},
      {0, 1, std::nullopt},
  };
  std::uint32_t changes = 0;
  for (const auto& each : cases) {
    service.callback(each.flags);
    EXPECT_EQ(checker.networkType(), each.type);
    EXPECT_EQ(checker.networkTypeString(), each.text);
    EXPECT_EQ(checker.changeCount(), ++changes);
  }
}

TEST(NetworkChecker, StartsAndStopsOnce) {
  FakeReachability service;
  VADNetworkChecker checker;
  checker.stopNetworkChecking();
  checker.setEnabled(false);
  EXPECT_EQ(service.calls, "");

  checker.setEnabled(true);
  service.callback(kReachabilityFlagsReachable);
  checker.setEnabled(true);
  EXPECT_EQ(checker.networkType(), 2u) << "enabling an enabled checker forgot the type";
  checker.startNetworkChecking();
  EXPECT_EQ(checker.networkType(), 0u);
  EXPECT_EQ(service.calls, "create;schedule;callback;") << "a second target was made";

  service.callback(kReachabilityFlagsReachable);
  checker.setEnabled(false);
  EXPECT_FALSE(checker.isEnabled());
  EXPECT_EQ(checker.networkType(), 0u);
  EXPECT_EQ(checker.changeCount(), 2u);
  EXPECT_EQ(service.calls, "create;schedule;callback;release;");
  { VADNetworkChecker().setEnabled(true); }
  EXPECT_TRUE(service.calls.ends_with("release;")) << "it goes on watching without a checker";
}

TEST(NetworkChecker, StaysDisabledWhenTheHostCannotBeWatched) {
  FakeReachability service;
  service.fails = true;
  VADNetworkChecker checker;
  checker.setEnabled(true);
  EXPECT_FALSE(checker.isEnabled());
  EXPECT_FALSE(checker.networkTypeString());
  service.fails = false;
  checker.setEnabled(true);
  EXPECT_TRUE(checker.isEnabled());
}

}  // namespace
