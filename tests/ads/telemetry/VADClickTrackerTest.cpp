#include "ads/telemetry/VADClickTracker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ads/telemetry/VADStatistics.h"
#include "tests/support/FakeApplication.h"
#include "tests/support/FakeURLLoading.h"
#include "tests/support/FakeUserDefaults.h"
#include "tests/support/Fakes.h"
#include "tests/support/Loop.h"
#include "tests/support/LoopbackServer.h"

namespace platform = valdren::platform;

namespace valdren {
namespace {

using platform::URL;
using quorbel_tests::FakeApplication;
using quorbel_tests::FakeURLLoading;
using quorbel_tests::LoopbackServer;
using quorbel_tests::runUntil;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const URL kPing = *URL::parse("http://ads.valdren.example/img/ticket");

class Owner : public VADClickTrackerDelegate {
 public:
  std::vector<std::string> outcomes;
  std::optional<platform::Error> error;
  std::function<void(VADClickTracker&)> onOutcome;

  void trackerDidRedirect(VADClickTracker& tracker, const URL& url) override {
    outcomes.push_back("ended at " + url.absoluteString());
    if (onOutcome) onOutcome(tracker);
  }
  void trackerDidFailWithError(VADClickTracker& tracker,
                               const std::optional<platform::Error>& failure) override {
    error = failure;
    outcomes.push_back("failed");
    if (onOutcome) onOutcome(tracker);
  }
};

class VADClickTrackerTest : public ::testing::Test {
 protected:
  VADClickTrackerTest() { tracker->setDelegate(&owner); }

  FakeApplication application;
  FakeURLLoading network;
  Owner owner;
  std::shared_ptr<VADClickTracker> tracker = std::make_shared<VADClickTracker>();
};

TEST_F(VADClickTrackerTest, APingIsHeldByABackgroundTaskUntilItsOutcome) {
  EXPECT_FALSE(tracker->trackingURL());
  tracker->trackURL(kPing);
  EXPECT_EQ(network.last().url(), kPing.absoluteString());
  EXPECT_EQ(application.runningTasks(), 1u);
  EXPECT_FALSE(tracker->hasTracked());
  EXPECT_FALSE(VADClickTracker::activeTrackings());
  network.last().redirect("http://b.example/");
  EXPECT_EQ(tracker->trackingURL(), *URL::parse("http://b.example/"));
  network.last().answer(200);
  EXPECT_THAT(owner.outcomes, ElementsAre("ended at http://b.example/"));
  EXPECT_TRUE(tracker->hasTracked());
  EXPECT_EQ(application.runningTasks(), 0u);
}

TEST_F(VADClickTrackerTest, EachEndHasItsOutcome) {
  const std::tuple<const char*, int, bool> cases[] = {
      {"ok", 200, true}, {"unchanged", 304, true}, {"nothing", 204, false}, {"gone", 404, false}};
  for (const auto& [name, status, succeeds] : cases) {
    owner.outcomes.clear();
    tracker->trackURL(kPing);
    network.last().answer(status);
    EXPECT_THAT(owner.outcomes,
                ElementsAre(succeeds ? "ended at " + kPing.absoluteString() : "failed"))
        << name;
    EXPECT_FALSE(owner.error);
  }
  tracker->trackURL(kPing);
  network.last().fail({"net", -1005, "gone"});
  EXPECT_EQ(owner.error->code, -1005);
  EXPECT_EQ(application.runningTasks(), 0u);
}

TEST_F(VADClickTrackerTest, ANonWebRedirectIsASuccessAndTheFailureAfterItIsNone) {
  tracker->trackURL(kPing);
  network.last().redirect("itms://store.example/app");
  EXPECT_THAT(owner.outcomes, ElementsAre("ended at itms://store.example/app"));
  EXPECT_TRUE(network.last().isCancelled());
  EXPECT_EQ(application.runningTasks(), 0u);
}

TEST_F(VADClickTrackerTest, ANewURLSilencesTheOneBefore) {
  tracker->trackURL(kPing);
  tracker->trackURL(*URL::parse("http://second.example/"));
  EXPECT_TRUE(network.fetch(0).isCancelled());
  EXPECT_EQ(application.runningTasks(), 1u);
  network.last().answer(200);
  EXPECT_THAT(owner.outcomes, ElementsAre("ended at http://second.example/"));
}

TEST_F(VADClickTrackerTest, TheBackgroundTaskKeepsAPingWhoseOwnerIsGone) {
  tracker->trackURL(kPing);
  const std::weak_ptr<VADClickTracker> gone = tracker;
  tracker.reset();
  EXPECT_FALSE(gone.expired());
  network.last().answer(200);
  EXPECT_THAT(owner.outcomes, ElementsAre("ended at " + kPing.absoluteString()));
  EXPECT_TRUE(gone.expired());
}

TEST_F(VADClickTrackerTest, ExpiryDropsThePingSilently) {
  tracker->trackURL(kPing);
  application.expireBackgroundTasks();
  EXPECT_TRUE(network.last().isCancelled());
  EXPECT_THAT(owner.outcomes, IsEmpty());
  EXPECT_FALSE(tracker->trackingURL());
  const std::weak_ptr<VADClickTracker> gone = tracker;
  tracker.reset();
  EXPECT_TRUE(gone.expired());
}

TEST_F(VADClickTrackerTest, ResetDropsThePingAndItsFile) {
  tracker->trackURL(kPing);
  network.last().answer(200, {}, "pixel");
  const auto file = VADCachedFile::initWithDelegate(nullptr, kPing);
  EXPECT_TRUE(file->hasContent());
  tracker->reset();
  EXPECT_FALSE(file->hasContent());
  EXPECT_FALSE(tracker->hasTracked());
}

TEST_F(VADClickTrackerTest, TheOwnerMayLetGoOrTrackAgainInTheOutcome) {
  for (const int status : {200, 404}) {
    owner.onOutcome = [&](VADClickTracker&) { tracker.reset(); };
    tracker = std::make_shared<VADClickTracker>();
    tracker->setDelegate(&owner);
    tracker->trackURL(kPing);
    network.last().answer(status);
    EXPECT_EQ(application.runningTasks(), 0u);
  }
  tracker = std::make_shared<VADClickTracker>();
  tracker->setDelegate(&owner);
  owner.onOutcome = [&](VADClickTracker& told) {
    owner.onOutcome = nullptr;
    told.trackURL(*URL::parse("http://second.example/"));
  };
  tracker->trackURL(kPing);
  network.last().answer(200);
  EXPECT_EQ(application.runningTasks(), 1u);
  EXPECT_TRUE(network.last().isUnderWay());
  EXPECT_FALSE(tracker->hasTracked());
}

TEST_F(VADClickTrackerTest, WhatCannotBeFetchedFailsAtOnce) {
  network.refuses = true;
  owner.onOutcome = [&](VADClickTracker&) { tracker.reset(); };
  tracker->trackURL(*URL::parse("ftp://host/"));
  EXPECT_THAT(owner.outcomes, ElementsAre("failed"));
  EXPECT_EQ(application.runningTasks(), 0u);
}

TEST_F(VADClickTrackerTest, ACompletedPingLeavesItsTicket) {
  quorbel_tests::FakeUserDefaults defaults;
  VADStatistics::releaseSharedStatistics();
  auto& statistics = VADStatistics::sharedStatistics();
  statistics.startTimingNamed(kVADParameterPriorClickLatency);
  tracker->trackURL(kPing);
  network.last().redirect("http://elsewhere.example/page");
  network.last().answer(200);
  const auto click = statistics.timingNamed(kVADParameterPriorClickLatency);
  const platform::Value* ticket = click->valueForKey(kVADParameterPriorImpressionTicketString);
  ASSERT_TRUE(ticket);
  EXPECT_EQ(*ticket, platform::Value("/ticket"));
  VADStatistics::releaseSharedStatistics();
}

TEST_F(VADClickTrackerTest, WithoutBackgroundTasksItIsActiveFromStartToOutcome) {
  application.grantsBackgroundTasks = false;
  EXPECT_FALSE(VADClickTracker::activeTrackings());
  tracker->trackURL(kPing);
  EXPECT_TRUE(VADClickTracker::activeTrackings());
  network.last().answer(404);
  EXPECT_FALSE(VADClickTracker::activeTrackings());
}

}  // namespace
}  // namespace valdren
