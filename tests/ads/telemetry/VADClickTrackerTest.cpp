#include "ads/telemetry/VADClickTracker.h"

#include <gmock/gmock.h>

#include "tests/support/FakeMachine.h"

namespace valdren {
namespace {

using platform::URL;
using ::testing::ElementsAre;

const URL kPing = *URL::parse("http://ads.valdren.example/img/ticket");

class Owner : public VADClickTrackerDelegate {
 public:
  std::vector<std::string> outcomes;
  std::function<void(VADClickTracker&)> onOutcome;

  void trackerDidRedirect(VADClickTracker& tracker, const URL& url) override {
    note("ended at " + url.absoluteString(), tracker);
  }
  void trackerDidFailWithError(VADClickTracker& tracker,
                               const std::optional<platform::Error>& failure) override {
    note(failure ? "failed " + std::to_string(failure->code) : "failed", tracker);
  }

 private:
  void note(const std::string& outcome, VADClickTracker& tracker) {
    outcomes.push_back(outcome);
    if (onOutcome) onOutcome(tracker);
  }
};

class VADClickTrackerTest : public ::testing::Test, protected quorbel_tests::FakeMachine {
 protected:
  VADClickTrackerTest() { tracker->setDelegate(&owner); }

  Owner owner;
  std::shared_ptr<VADClickTracker> tracker = std::make_shared<VADClickTracker>();
};

TEST_F(VADClickTrackerTest, EachEndHasItsOutcomeUntilWhichABackgroundTaskHoldsThePing) {
  const std::string success = "ended at http://b.example/";
  const std::pair<int, std::string> cases[] = {
      {200, success}, {304, success}, {204, "failed"}, {404, "failed"}};
  auto& statistics = VADStatistics::sharedStatistics();
  for (const auto& [status, outcome] : cases) {
    statistics.startTimingNamed(kVADParameterPriorClickLatency);
    owner.outcomes.clear();
    tracker->trackURL(kPing);
    EXPECT_EQ(fetches.last().url(), kPing.absoluteString());
    EXPECT_EQ(application.runningTasks(), 1u);
    EXPECT_FALSE(tracker->hasTracked() || VADClickTracker::activeTrackings());
    fetches.last().redirect("http://b.example/");
    EXPECT_EQ(tracker->trackingURL(), *URL::parse("http://b.example/"));
    fetches.last().answer(status);
    EXPECT_THAT(owner.outcomes, ElementsAre(outcome)) << status;
    EXPECT_TRUE(tracker->hasTracked());
    EXPECT_EQ(application.runningTasks(), 0u);
    const auto click = statistics.timingNamed(kVADParameterPriorClickLatency);
    const platform::Value* const ticket =
        click->valueForKey(kVADParameterPriorImpressionTicketString);
    EXPECT_EQ(ticket && *ticket == platform::Value("/ticket"), outcome == success) << status;
    statistics.removeTimingNamed(kVADParameterPriorClickLatency);
  }
  owner.outcomes.clear();
  tracker->trackURL(kPing);
  fetches.last().fail({"net", -1005, "gone"});
  // What is no web address ends the ping, which has done its work.
  tracker->trackURL(kPing);
  fetches.last().redirect("itms://store.example/app");
  EXPECT_TRUE(fetches.last().isCancelled());
  EXPECT_THAT(owner.outcomes, ElementsAre("failed -1005", "ended at itms://store.example/app"));
  EXPECT_EQ(application.runningTasks(), 0u);
}

TEST_F(VADClickTrackerTest, APingIsDroppedByTheNextOneAndByExpiryButNotByItsOwnersEnd) {
  tracker->trackURL(kPing);
  tracker->trackURL(*URL::parse("http://second.example/"));
  EXPECT_TRUE(fetches.fetch(0).isCancelled());
  EXPECT_EQ(application.runningTasks(), 1u);
  application.expireBackgroundTasks();
  EXPECT_TRUE(fetches.last().isCancelled());
  EXPECT_FALSE(tracker->trackingURL());
  EXPECT_THAT(owner.outcomes, testing::IsEmpty());

  tracker->trackURL(kPing);
  const std::weak_ptr<VADClickTracker> gone = tracker;
  tracker.reset();
  EXPECT_FALSE(gone.expired());
  fetches.last().answer(200);
  EXPECT_THAT(owner.outcomes, ElementsAre("ended at " + kPing.absoluteString()));
  EXPECT_TRUE(gone.expired());
}

TEST_F(VADClickTrackerTest, ResetDropsThePingAndItsFile) {
  tracker->trackURL(kPing);
  fetches.last().answer(200, {}, "pixel");
  const auto file = VADCachedFile::initWithDelegate(nullptr, kPing);
  EXPECT_TRUE(file->hasContent());
  tracker->reset();
  EXPECT_FALSE(file->hasContent());
  EXPECT_FALSE(tracker->hasTracked());
}

TEST_F(VADClickTrackerTest, TheOwnerMayLetGoOrTrackAgainInTheOutcome) {
  owner.onOutcome = [&](VADClickTracker&) { tracker.reset(); };
  for (const int status : {200, 404, 0}) {
    tracker = std::make_shared<VADClickTracker>();
    tracker->setDelegate(&owner);
    fetches.refuses = status == 0;  // fails at once
    tracker->trackURL(kPing);
    if (status) fetches.last().answer(status);
    EXPECT_FALSE(tracker);
    EXPECT_EQ(application.runningTasks(), 0u);
  }
  fetches.refuses = false;
  tracker = std::make_shared<VADClickTracker>();
  tracker->setDelegate(&owner);
  owner.onOutcome = [&](VADClickTracker& told) {
    owner.onOutcome = nullptr;
    told.trackURL(*URL::parse("http://second.example/"));
  };
  application.grantsBackgroundTasks = false;
  tracker->trackURL(kPing);
  EXPECT_TRUE(VADClickTracker::activeTrackings());
  fetches.last().answer(200);
  EXPECT_TRUE(fetches.last().isUnderWay());
  EXPECT_FALSE(tracker->hasTracked());
  fetches.last().answer(404);
  EXPECT_FALSE(VADClickTracker::activeTrackings());
}

}  // namespace
}  // namespace valdren
