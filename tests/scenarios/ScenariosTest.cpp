// A visible banner in the real web engine, with the sandbox: all scenarios of its ad server and
// script, and the whole road of one ad.
#include <gmock/gmock.h>

#include <filesystem>

#include "ads/api/VADBannerView.h"
#include "ads/loading/VADObjectPrivate.h"
#include "ads/request/VADConfiguration.h"
#include "ads/telemetry/VADStatistics.h"
#include "ads/web/VADWebView.h"
#include "platform/base/Json.h"
#include "platform/storage/Folders.h"
#include "platform/ui/Window.h"
#include "sandbox/Sandbox.h"
#include "tests/support/Fakes.h"
#include "tests/support/LogLines.h"
#include "tests/support/Loop.h"
#include "tests/support/PublisherRecord.h"

namespace {

using namespace valdren;
using quorbel_tests::runUntil;

constexpr double kPatience = 30;  // seconds; every scenario takes less than a third of it

/// Its name; "ad", an error's code, or empty when the request stays under way; the state at the
/// end.
struct Scenario {
  const char* name;
  std::string outcome;
  VADState state;
};

class ScenariosTest : public ::testing::Test {
 protected:
  ScenariosTest() {
    VADStatistics::releaseSharedStatistics();
    forgetCopies();
    publisher.onEvent = [this](const std::string& event) {
      if (event == "received") outcome += "ad ";
      if (event.starts_with("failed ")) outcome += event.substr(sizeof "failed") + " ";
    };
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
    banner->setAdUnitID("real </script><b>unit</b>");
    banner->setRootViewController(screen.get());
    banner->setDelegate(&publisher);
    screen->view()->addSubview(banner);
  }
  VADState state() const {
    return VADPrivateUtilities::privateObjectForKey<VADObjectPrivate>(banner.get())->state();
  }
  bool waitFor(const std::string& end) {
    return runUntil([&] { return outcome.ends_with(end); }, kPatience);
  }
  std::string evaluate(const std::string& script) {
    std::optional<std::string> result;
    banner->webView()->stringByEvaluatingJavaScriptFromString(
        script, [&](std::string text) { result = std::move(text); });
    return runUntil([&] { return result.has_value(); }) ? *result : "nothing";
  }
  /// The requests of this kind that the network got.
  std::vector<platform::Dictionary> requests(const std::string& kind) const {
    std::vector<platform::Dictionary> found;
    const auto log = platform::parseJson(network->log());
    for (const auto& request : *log->dictionary()->find("requests")->array()) {
      if (*request.dictionary()->text("kind") == kind) found.push_back(*request.dictionary());
    }
    return found;
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
    outcome.clear();
    ASSERT_TRUE(network->setScenario(scenario.name));
    banner->loadRequest(nullptr);
    const std::string expected = scenario.outcome.empty() ? "" : scenario.outcome + " ";
    if (!expected.empty()) runUntil([&] { return !outcome.empty(); }, kPatience);
    runUntil([&] { return state() == scenario.state; }, kPatience);
    quorbel_tests::runFor(0.3);
    EXPECT_EQ(outcome, expected);
    EXPECT_EQ(state(), scenario.state);

    outcome.clear();
    network->setScenario("fill");
    banner->loadRequest(nullptr);
    const bool accepts = scenario.state != kVADStateBuildingURL;
    if (accepts) runUntil([&] { return !outcome.empty(); }, kPatience);
    EXPECT_EQ(outcome, accepts ? "ad " : "");
  }

  quorbel_tests::FakeUserDefaults defaults;
  quorbel_tests::FakeApplication application;
  quorbel_tests::LogLines log;
  std::unique_ptr<sandbox::Sandbox> network = sandbox::Sandbox::start(0);
  /// "ad " or the error's code, each time.
  std::string outcome;
  quorbel_tests::PublisherRecord publisher;
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
  EXPECT_THAT(log.take(), testing::ElementsAre(
                              "<Valdren> Server rejected ad parameters.  Typically this is because "
                              "the ad unit ID is incorrect."));
}

TEST_F(ScenariosTest, ShowsWhateverCanBeShown) {
  for (const char* name : {"fill", "slow", "dribble", "large", "redirect-chain", "trackers-many",
                           "trackers-bad", "refresh-nonsense", "ad-self-click", "ad-flood",
                           "ad-nonsense", "script-tovask", "script-twice"}) {
    play({name, "ad", kVADStateShowingAd});
  }
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
  EXPECT_THAT(log.take(),
              testing::ElementsAre(R"(<Valdren> Invalid Request: {"reason":"sandbox"})",
                                   R"(<Valdren> Unable to serve: {"reason":"sandbox"})"));
}

TEST_F(ScenariosTest, TheRoadLeadsFromTheScriptToThePingsAndTheNextAd) {
  makeBanner();
  network->setScenario("redirect-chain");
  banner->loadRequest(nullptr);
  ASSERT_TRUE(waitFor("ad "));
  EXPECT_FALSE(banner->webView()->isHidden());
  EXPECT_TRUE(runUntil([&] { return requests("impression").size() == 4; }));
  const auto hops = requests("hop");
  ASSERT_FALSE(hops.empty());
  EXPECT_THAT(evaluate("document.baseURI"),
              testing::StartsWith(network->baseURL() + *hops.back().text("path")));

  network->setScenario("fill");
  banner->loadRequest(nullptr);
  ASSERT_TRUE(waitFor("ad ad "));
  EXPECT_EQ(requests("script").size(), 1u);
  std::int64_t number = 0;
  for (const auto& asked : requests("ad")) {
    const platform::Dictionary& parameters = *asked.find("parameters")->dictionary();
    EXPECT_EQ(*parameters.text("slotname"), "real </script><b>unit</b>");
    EXPECT_EQ(parameters.find("preqs")->integerValue(), ++number);
    EXPECT_EQ(parameters.contains("prl"), number == 2);
  }
  EXPECT_EQ(number, 2);
  EXPECT_THAT(log.lines(), testing::IsEmpty());
}

TEST_F(ScenariosTest, MessagesGoBothWays) {
  makeBanner();
  network->setScenario("fill");
  banner->loadRequest(nullptr);
  ASSERT_TRUE(waitFor("ad "));
  const std::string page = evaluate("document.baseURI");
  evaluate(
      "URVO_ReceiveMessage = (name, info) => { heard = name + JSON.stringify(info); };"
      "send = message => { location.href = 'gmsg://sdk/' + message; };"
      "send('canOpenURLs?urls=nonsense:1')");
  EXPECT_TRUE(runUntil([&] { return evaluate("heard") == R"(openableURLs{"nonsense:1":false})"; }));
  evaluate("send('httpTrack?u=' + encodeURIComponent('" + network->baseURL() + "/clk/t'))");
  EXPECT_TRUE(runUntil([&] { return requests("click").size() == 1; }));
  evaluate("send('log?string=from%20the%20page')");
  EXPECT_TRUE(runUntil([&] { return !log.lines().empty(); }));
  EXPECT_EQ(log.take(), std::vector<std::string>{"from the page"});
  evaluate("location.href = 'vantic://nonsense'");
  EXPECT_TRUE(runUntil([&] { return !log.lines().empty(); }));
  EXPECT_EQ(evaluate("document.baseURI"), page) << "the page is gone";
}

}  // namespace
