// What the web view delegates of the browser and the web app count and time.
#include "ads/screens/VADBrowserController.h"
#include "ads/screens/VADWebAppViewController.h"
#include "ads/telemetry/VADTiming.h"
#include "tests/ads/screens/ScreenTest.h"
#include "tests/support/Taps.h"

namespace platform = valdren::platform;

namespace valdren {
namespace {

using platform::NavigationType;

class ScreenDelegatesTest : public quorbel_tests::ScreenTest {
 protected:
  template <class Screen>
  Screen& open() {
    const auto screen = Screen::create();
    screen->load(url("http://a.example/"));
    screen->presentFromViewController(host.get());
    return *screen;
  }
  bool isRunning(const char* name) {
    const auto timing = statistics().timingNamed(name);
    return timing && timing->isActive();
  }
  double seconds(const char* name) {
    const auto timing = statistics().timingNamed(name);
    return timing ? timing->elapsedMilliseconds() / 1000.0 : -1;
  }
};

TEST_F(ScreenDelegatesTest, TheBrowserCountsLinksAndForms) {
  const struct {
    const char* address;
    NavigationType type;
    bool loads;
    int plain, secure;
  } kCases[] = {
      {"http://b/", NavigationType::LinkClicked, true, 1, 0},
      {"https://b/", NavigationType::LinkClicked, true, 0, 1},
      {"HTTPS://b/", NavigationType::FormSubmitted, true, 0, 1},
      {"http://b/", NavigationType::FormSubmitted, true, 1, 0},
      {"http://b/", NavigationType::BackForward, true, 0, 0},
      {"http://b/", NavigationType::Reload, true, 0, 0},
      {"http://b/", NavigationType::FormResubmitted, true, 0, 0},
      {"https://b/", NavigationType::Other, true, 0, 0},
      {"file:///etc/passwd", NavigationType::LinkClicked, false, 0, 0},
      {"gmsg://x/log?string=1", NavigationType::LinkClicked, false, 0, 0},
      {"tel:1", NavigationType::LinkClicked, false, 0, 0},
  };
  open<VADBrowserController>();
  const auto number = [](const platform::Dictionary& parameters, const char* key) {
    const platform::Value* const value = parameters.find(key);
    return value ? value->description() : "0";
  };
  for (const auto& each : kCases) {
    statistics().resetPageNavigationCount();
    statistics().resetSSLPageNavigationCount();
    EXPECT_EQ(engines.last().navigate(each.address, each.type), each.loads) << each.address;
    const platform::Dictionary parameters = statistics().parameters();
    EXPECT_EQ(number(parameters, kVADParameterPriorLandingPageNavCount), std::to_string(each.plain))
        << each.address << int(each.type);
    EXPECT_EQ(number(parameters, kVADParameterPriorLandingPageSSLNavCount),
              std::to_string(each.secure))
        << each.address << int(each.type);
  }
}

TEST_F(ScreenDelegatesTest, BothTimeTheLoadAndTheVisitOfTheLandingPage) {
  for (const bool inBrowser : {true, false}) {
    statistics().removeTimingNamed(kVADParameterPriorLandingPageLoad);
    statistics().removeTimingNamed(kVADParameterPriorLandingPageDuration);
    VADViewController& screen =
        inBrowser ? static_cast<VADViewController&>(open<VADBrowserController>())
                  : static_cast<VADViewController&>(open<VADWebAppViewController>());
    quorbel_tests::FakeWebEngine& engine = engines.last();
    engine.start();
    loop.advance(1);
    engine.start();  // a frame, or the page after a redirect
    loop.advance(1);
    engine.finish();
    EXPECT_EQ(seconds(kVADParameterPriorLandingPageLoad), 2);
    EXPECT_FALSE(isRunning(kVADParameterPriorLandingPageLoad));
    loop.advance(3);
    engine.finish();
    EXPECT_EQ(seconds(kVADParameterPriorLandingPageLoad), 2) << "the visit goes on";
    EXPECT_TRUE(isRunning(kVADParameterPriorLandingPageDuration));
    engine.start();  // a page that the landing page leads to
    loop.advance(2);
    engine.finish();
    EXPECT_EQ(seconds(kVADParameterPriorLandingPageLoad), 2) << "only the landing page counts";
    EXPECT_FALSE(isRunning(kVADParameterPriorLandingPageLoad));
    loop.advance(1);
    statistics().urlForClick(url("http://b.example/"));
    loop.advance(2);
    screen.relinquishScreen();
    EXPECT_EQ(seconds(kVADParameterPriorClickLatency), 2);
    EXPECT_FALSE(isRunning(kVADParameterPriorClickLatency));
    EXPECT_EQ(seconds(kVADParameterPriorLandingPageDuration), 8);
    EXPECT_FALSE(isRunning(kVADParameterPriorLandingPageDuration));
    loop.advance(3);
  }
}

}  // namespace
}  // namespace valdren
