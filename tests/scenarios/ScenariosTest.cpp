// All scenarios of the sandbox's ad server and script, with a real banner.
#include <gmock/gmock.h>

#include <filesystem>

#include "ads/api/VADBannerView.h"
#include "ads/loading/VADObjectPrivate.h"
#include "ads/request/VADConfiguration.h"
#include "ads/request/VADRequestError.h"
#include "ads/support/VADPrivateUtilities.h"
#include "ads/telemetry/VADStatistics.h"
#include "platform/storage/Folders.h"
#include "platform/ui/Window.h"
#include "sandbox/Sandbox.h"
#include "tests/support/FakeApplication.h"
#include "tests/support/FakeUserDefaults.h"
#include "tests/support/LogLines.h"
#include "tests/support/Loop.h"

namespace platform = valdren::platform;

namespace {

using namespace valdren;
using quorbel_tests::runFor;
using quorbel_tests::runUntil;

constexpr double kPatience = 30;  // seconds; every scenario takes less than a third of it

class Publisher final : public VADBannerViewDelegate {
 public:
  ~Publisher() { invalidateWeakReferences(); }
  void adViewDidReceiveAd(VADBannerView&) override { outcome += "ad "; }
  void adViewDidFailToReceiveAdWithError(VADBannerView&, const VADRequestError& error) override {
    outcome += std::to_string(error.code()) + " ";
  }
  std::string outcome;
};

struct Scenario {
  const char* name;
  /// "ad", an error's code, or empty when the request stays under way.
  std::string outcome;
  VADState state;
};

class ScenariosTest : public ::testing::Test {
 protected:
  ScenariosTest() {
    VADStatistics::releaseSharedStatistics();
    network->setRefreshRate(platform::Seconds(0));
    const platform::URL base = *platform::URL::parse(network->baseURL());
    VADConfiguration::setAdServerBaseURL(base);
    VADConfiguration::setScriptHostBaseURL(base);
    screen->setInitialFrame({0, 0, 320, 480});
    window->setRootViewController(screen);
    window->makeKeyAndVisible();
  }
  ~ScenariosTest() override {
    banner.reset();
    VADStatistics::releaseSharedStatistics();
  }

  void makeBanner() {
    if (banner) banner->removeFromSuperview();
    banner = std::make_shared<VADBannerView>(platform::Rect{0, 430, 320, 50});
    banner->setAdUnitID("tested");
    banner->setRootViewController(screen.get());
    banner->setDelegate(&publisher);
    screen->view()->addSubview(banner);
  }
  VADState state() const {
    return VADPrivateUtilities::privateObjectForKey<VADObjectPrivate>(banner.get())->state();
  }
  static void forgetCopies() {
    std::error_code ignored;
    std::filesystem::remove_all(platform::cachesFolder().value(), ignored);
  }

  /// Runs the scenario with an empty banner. If a load is accepted afterwards, the next ad must be
  /// shown.
  void play(const Scenario& scenario) {
    SCOPED_TRACE(scenario.name);
    forgetCopies();
    makeBanner();
    publisher.outcome.clear();
    ASSERT_TRUE(network->setScenario(scenario.name));
    banner->loadRequest(nullptr);
    const std::string expected = scenario.outcome.empty() ? "" : scenario.outcome + " ";
    if (!expected.empty()) runUntil([&] { return !publisher.outcome.empty(); }, kPatience);
    runUntil([&] { return state() == scenario.state; }, kPatience);
    runFor(0.3);
    EXPECT_EQ(publisher.outcome, expected);
    EXPECT_EQ(state(), scenario.state);

    publisher.outcome.clear();
    network->setScenario("fill");
    banner->loadRequest(nullptr);
    const bool accepts = scenario.state != kVADStateBuildingURL;
    if (accepts) runUntil([&] { return !publisher.outcome.empty(); }, kPatience);
    EXPECT_EQ(publisher.outcome, accepts ? "ad " : "");
  }

  quorbel_tests::FakeUserDefaults defaults;
  quorbel_tests::FakeApplication application;
  quorbel_tests::LogLines log;
  std::unique_ptr<sandbox::Sandbox> network = sandbox::Sandbox::start(0);
  Publisher publisher;
  std::shared_ptr<platform::ViewController> screen = std::make_shared<platform::ViewController>();
  std::shared_ptr<platform::Window> window =
      std::make_shared<platform::Window>(platform::Size{320, 480});
  std::shared_ptr<VADBannerView> banner;
};

TEST_F(ScenariosTest, PlaysTheAdServersErrors) {
  const Scenario scenarios[] = {
      {"no-fill", "1", kVADStateFailed},
      {"status-204", "2", kVADStateFailed},
      {"status-399", "2", kVADStateFailed},
      {"status-400", "0", kVADStateFailed},
      {"status-401", "3", kVADStateFailed},
      {"status-500", "3", kVADStateFailed},
      {"cut", "2", kVADStateFailed},
      {"cut-body", "2", kVADStateFailed},
      {"endless", "2", kVADStateFailed},
      {"redirect-loop", "2", kVADStateFailed},
      {"redirect-store", "2", kVADStateFailed},
      {"latin-1", "1", kVADStateFailed},
      {"invalid-utf8", "1", kVADStateFailed},
  };
  for (const Scenario& each : scenarios) play(each);
  EXPECT_TRUE(application.openedURLs.empty());
}

TEST_F(ScenariosTest, ShowsWhateverCanBeShown) {
  const Scenario scenarios[] = {
      {"fill", "ad", kVADStateShowingAd},           {"slow", "ad", kVADStateShowingAd},
      {"dribble", "ad", kVADStateShowingAd},        {"large", "ad", kVADStateShowingAd},
      {"redirect-chain", "ad", kVADStateShowingAd}, {"trackers-many", "ad", kVADStateShowingAd},
      {"trackers-bad", "ad", kVADStateShowingAd},   {"refresh-nonsense", "ad", kVADStateShowingAd},
      {"ad-self-click", "ad", kVADStateShowingAd},  {"ad-flood", "ad", kVADStateShowingAd},
      {"ad-nonsense", "ad", kVADStateShowingAd},    {"script-tovask", "ad", kVADStateShowingAd},
      {"script-twice", "ad", kVADStateShowingAd},
  };
  for (const Scenario& each : scenarios) play(each);
}

TEST_F(ScenariosTest, PlaysTheScriptsErrors) {
  const Scenario scenarios[] = {
      {"script-invalid-request", "0", kVADStateBuildingURL},
      {"script-unable-to-serve", "0", kVADStateBuildingURL},
      {"script-errors", "0", kVADStateBuildingURL},
      {"script-no-url", "2", kVADStateFailed},
      {"script-throws", "", kVADStateBuildingURL},
      {"script-silent", "", kVADStateBuildingURL},
      {"script-garbage", "", kVADStateBuildingURL},
      {"script-404", "2", kVADStateScriptFailed},
      {"script-500", "2", kVADStateScriptFailed},
      {"script-cut", "2", kVADStateScriptFailed},
      {"script-empty", "2", kVADStateScriptFailed},
  };
  for (const Scenario& each : scenarios) play(each);
}

TEST_F(ScenariosTest, RefreshesUntilToldOtherwise) {
  forgetCopies();
  makeBanner();
  network->setScenario("refresh-fast");
  banner->loadRequest(nullptr);
  EXPECT_TRUE(runUntil([&] { return publisher.outcome == "ad ad ad "; }, kPatience));
  network->setScenario("status-500");
  EXPECT_TRUE(runUntil([&] { return publisher.outcome.ends_with("3 3 "); }, kPatience));
  network->setScenario("fill");
  EXPECT_TRUE(runUntil([&] { return publisher.outcome.ends_with("3 ad "); }, kPatience));
}

}  // namespace
