// A visible banner in the real web engine, with an ad network on loopback.
#include <gmock/gmock.h>

#include <filesystem>

#include "ads/api/VADBannerView.h"
#include "ads/request/VADConfiguration.h"
#include "ads/request/VADRequestError.h"
#include "ads/support/VADMacros.h"
#include "ads/support/VADNetworkUtilities.h"
#include "ads/telemetry/VADStatistics.h"
#include "ads/web/VADWebView.h"
#include "platform/storage/Folders.h"
#include "platform/ui/Window.h"
#include "tests/support/FakeApplication.h"
#include "tests/support/FakeUserDefaults.h"
#include "tests/support/LogLines.h"
#include "tests/support/Loop.h"
#include "tests/support/LoopbackServer.h"

namespace platform = valdren::platform;

namespace {

using namespace valdren;
using quorbel_tests::LoopbackRequest;
using quorbel_tests::LoopbackResponse;
using quorbel_tests::runUntil;

/// Answers like the ad engine script: the ad's address with the parameters in its query.
constexpr const char* kScript = R"(
function URVO_buildAdURL(parameters) {
  location.href = 'gmsg://sdk/loadAdURL?url=' + encodeURIComponent(
      'AD_SERVER/ad?json=' + encodeURIComponent(JSON.stringify(parameters)));
})";

class Publisher final : public VADBannerViewDelegate {
 public:
  ~Publisher() { invalidateWeakReferences(); }
  void adViewDidReceiveAd(VADBannerView&) override { ++received; }
  void adViewDidFailToReceiveAdWithError(VADBannerView&, const VADRequestError& error) override {
    errors.push_back(error.code());
  }
  int received = 0;
  std::vector<int> errors;
};

class RoadOfOneAdTest : public ::testing::Test {
 protected:
  RoadOfOneAdTest() {
    std::error_code ignored;
    std::filesystem::remove_all(platform::cachesFolder().value(), ignored);
    VADStatistics::releaseSharedStatistics();
    VADConfiguration::setAdServerBaseURL(network.url("/"));
    VADConfiguration::setScriptHostBaseURL(network.url(""));
    serveScript(kScript);
    network.answer("/ping", 200);

    screen->setInitialFrame({0, 0, 320, 480});
    window->setRootViewController(screen);
    banner->setAdUnitID("real </script><b>unit</b>");
    banner->setRootViewController(screen.get());
    banner->setDelegate(&publisher);
    screen->view()->addSubview(banner);
    window->makeKeyAndVisible();
  }
  ~RoadOfOneAdTest() override {
    banner.reset();
    VADStatistics::releaseSharedStatistics();
  }

  void serveScript(std::string script) {
    const std::string place = "AD_SERVER";
    const std::size_t found = script.find(place);
    if (found != std::string::npos) script.replace(found, place.size(), network.address(""));
    network.answer("/urvo/sdk-core-v40.js", 200, {{"Content-Type", "text/javascript"}}, script);
  }
  std::string evaluate(const std::string& script) {
    std::optional<std::string> result;
    banner->webView()->stringByEvaluatingJavaScriptFromString(
        script, [&](std::string text) { result = std::move(text); });
    return runUntil([&] { return result.has_value(); }) ? *result : "nothing";
  }

  quorbel_tests::FakeUserDefaults defaults;
  quorbel_tests::FakeApplication application;
  quorbel_tests::LoopbackServer network;
  quorbel_tests::LogLines log;
  Publisher publisher;
  std::shared_ptr<platform::ViewController> screen = std::make_shared<platform::ViewController>();
  std::shared_ptr<platform::Window> window =
      std::make_shared<platform::Window>(platform::Size{320, 480});
  std::shared_ptr<VADBannerView> banner =
      std::make_shared<VADBannerView>(platform::Rect{0, 430, 320, 50});
};

TEST_F(RoadOfOneAdTest, LeadsFromTheScriptToThePing) {
  network.answer(
      "/ad", 302,
      {{"Location", "/shown"}, {"X-Urvo-Tracking-Urls", network.address("/ping?hop=1")}});
  network.answer("/shown", 200,
                 {{"Content-Type", "text/html"},
                  {"X-Urvo-Tracking-Urls", network.address("/ping?hop=2")},
                  {"X-Urvo-Refresh-Rate", "0.2"}},
                 "<html><body><p id='ad'>An ad</p></body></html>");
  banner->loadRequest(nullptr);
  ASSERT_TRUE(runUntil([&] { return publisher.received == 1; }));
  EXPECT_FALSE(banner->webView()->isHidden());
  EXPECT_EQ(evaluate("document.getElementById('ad').textContent"), "An ad");
  EXPECT_EQ(evaluate("document.baseURI"), network.address("/shown"));
  EXPECT_TRUE(runUntil([&] { return network.requests("/ping").size() == 2; }));

  ASSERT_TRUE(runUntil([&] { return publisher.received == 2; })) << "no refresh";
  EXPECT_EQ(network.requests("/urvo/sdk-core-v40.js").size(), 1u);
  const std::vector<LoopbackRequest> asked = network.requests("/ad");
  for (std::size_t number = 0; number < 2; ++number) {
    const auto query = platform::URL::parse(network.address(asked.at(number).target))->query();
    const auto json = VADNetworkUtilities::dictionaryFromQueryString(query);
    const auto parameters = VADMacros::readJson(*json.text("json"));
    ASSERT_TRUE(parameters);
    EXPECT_EQ(*parameters->text("slotname"), "real </script><b>unit</b>");
    EXPECT_EQ(parameters->find("preqs")->integerValue(), std::int64_t(number) + 1);
    EXPECT_EQ(parameters->contains("prl"), number == 1);
  }
  EXPECT_EQ(asked.at(0).headers.at("User-Agent"), *VADNetworkUtilities::userAgentString());
  EXPECT_TRUE(publisher.errors.empty());
  EXPECT_TRUE(log.lines().empty()) << log.lines().front();
}

TEST_F(RoadOfOneAdTest, CarriesMessagesBothWays) {
  network.answer("/ad", 200, {}, R"(<html><body><script>
      function URVO_ReceiveMessage(name, info) { window.heard = name + JSON.stringify(info); }
      function send(message) { location.href = 'gmsg://sdk/' + message; }
      </script></body></html>)");
  banner->loadRequest(nullptr);
  ASSERT_TRUE(runUntil([&] { return publisher.received == 1; }));
  evaluate("send('canOpenURLs?urls=nonsense:1')");
  EXPECT_TRUE(
      runUntil([&] { return evaluate("window.heard") == R"(openableURLs{"nonsense:1":false})"; }));
  evaluate("send('httpTrack?u=' + encodeURIComponent('" + network.address("/ping?x=1") + "'))");
  EXPECT_TRUE(runUntil([&] { return network.requests("/ping").size() == 1; }));
  evaluate("send('log?string=from%20the%20page')");
  EXPECT_TRUE(runUntil([&] { return !log.lines().empty(); }));
  EXPECT_EQ(log.take(), std::vector<std::string>{"from the page"});
  evaluate("location.href = 'vantic://nonsense'");
  EXPECT_TRUE(runUntil([&] { return !log.lines().empty(); }));
  EXPECT_EQ(evaluate("document.baseURI").find(network.address("/ad")), 0u)
      << "the page is still there";
}

TEST_F(RoadOfOneAdTest, EndsWhereverTheBannerIsRemoved) {
  network.answer("/ad", 200, {{"X-Urvo-Tracking-Urls", network.address("/ping")}}, "<p>An ad</p>");
  for (const double seconds : {0.0, 0.01, 0.05, 0.1, 0.2, 0.4}) {
    auto shortLived = std::make_shared<VADBannerView>(platform::Rect{0, 0, 320, 50});
    shortLived->setRootViewController(screen.get());
    screen->view()->addSubview(shortLived);
    shortLived->loadRequest(nullptr);
    if (seconds > 0) quorbel_tests::runFor(seconds);
    shortLived->removeFromSuperview();
    shortLived.reset();
    quorbel_tests::runFor(0.02);
  }
  banner->loadRequest(nullptr);
  EXPECT_TRUE(runUntil([&] { return publisher.received == 1; }));
}

}  // namespace
