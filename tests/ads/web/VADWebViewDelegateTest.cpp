#include "ads/web/VADWebViewDelegate.h"

#include <gmock/gmock.h>

#include "ads/support/VADNetworkUtilities.h"
#include "ads/support/VADNotification.h"
#include "ads/web/VADNotificationCenter.h"
#include "ads/web/VADScreen.h"
#include "ads/web/VADWebView.h"
#include "platform/device/SystemSound.h"
#include "tests/ads/web/RecordingOpener.h"
#include "tests/support/FakeMachine.h"
#include "tests/support/LogLines.h"

namespace {

using namespace valdren;
using platform::NavigationType;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

using Events = std::vector<std::string>;

class TestedDelegate final : public VADWebViewDelegate {
 public:
  explicit TestedDelegate(std::unique_ptr<VADOpener> opener)
      : VADWebViewDelegate(std::move(opener)) {}
  int firstPages = 0;

 private:
  void loadedFirstPage(platform::WebView&) override { ++firstPages; }
};

class ClosableScreen final : public platform::ViewController, public VADScreen {
 public:
  void presentFromViewController(platform::ViewController*) override {}
  void relinquishScreen() override { ++relinquished; }
  int relinquished = 0;
};

class FakeSystemSound final : public platform::SystemSound {
 public:
  void play(std::uint32_t sound) override { played.push_back(sound); }
  std::vector<std::uint32_t> played;

 private:
  platform::SystemSound::Replacement replacement_{*this};
};

class VADWebViewDelegateTest : public ::testing::Test,
                               protected quorbel_tests::FakeMachine,
                               public platform::WeakTarget {
 protected:
  VADWebViewDelegateTest() {
    view->setDelegate(delegate.get());
    platform::NotificationCenter::defaultCenter().addObserver(
        *this, VADWebViewDelegateDidReceiveWebAction, [this](const auto& notification) {
          EXPECT_EQ(notification.object, static_cast<platform::WebView*>(view.get()));
          actions.push_back(platform::Value(*notification.userInfo).description());
        });
  }
  ~VADWebViewDelegateTest() override { invalidateWeakReferences(); }

  void observe(const char* message) {
    VADNotificationCenter::defaultCenter().addObserver(
        *this, message,
        [this](const auto& notification) {
          forwarded.push_back(notification.name + " " +
                              platform::Value(*notification.userInfo).description());
        },
        static_cast<platform::WebView*>(view.get()));
  }
  bool navigate(const std::string& address, NavigationType type = NavigationType::Other) {
    return page().navigate(address, type);
  }
  quorbel_tests::FakeWebEngine& page() { return quorbel_tests::FakeWebEngines::of(*view); }

  quorbel_tests::LogLines log;
  FakeSystemSound sounds;
  Events opened;
  std::vector<std::string> actions;
  std::vector<std::string> forwarded;
  std::shared_ptr<VADWebView> view = std::make_shared<VADWebView>(platform::Rect{0, 0, 320, 50});
  std::shared_ptr<TestedDelegate> delegate =
      std::make_shared<TestedDelegate>(std::make_unique<quorbel_tests::RecordingOpener>(opened));
};

TEST_F(VADWebViewDelegateTest, SendsEachAddressWhereItBelongs) {
  const auto link = NavigationType::LinkClicked;
  const auto other = NavigationType::Other;
  const std::tuple<const char*, NavigationType, bool, bool, std::string> cases[] = {
      {"http://host.test/", other, true, false, ""},
      {"http://host.test/p", other, true, true, ""},
      {"http://host.test/", link, true, true, ""},
      {"about:blank", other, true, false, ""},
      {"file:///etc/passwd", link, false, true, ""},
      {"FILE:///etc/passwd", other, false, true, ""},
      {"mailto:a@b.test?subject=x", link, false, true, "mail mailto:a@b.test?subject=x"},
      {"itms://store.test/1", link, false, true, "app itms://store.test/1"},
      {"tel:1", other, false, false, "app tel:1"},
      {"javascript:alert(1)", link, false, true, "app javascript:alert(1)"},
      {"data:text/html,x", other, false, false, "app data:text/html,x"},
      {"gmsgx:///click", other, false, true, "app gmsgx:///click"},
      {"VANTIC://log", other, false, false, "app VANTIC://log"},
      {"GMSG://x/click?u=http%3A%2F%2Fa%2F", link, false, true,
       "app GMSG://x/click?u=http%3A%2F%2Fa%2F"},
  };
  for (const auto& [address, type, loads, posts, opens] : cases) {
    SCOPED_TRACE(address);
    opened.clear();
    actions.clear();
    EXPECT_EQ(navigate(address, type), loads);
    EXPECT_EQ(opened, opens.empty() ? Events{} : Events{opens});
    EXPECT_EQ(actions.size(), posts ? 1u : 0u);
  }
  EXPECT_EQ(actions, Events{R"({"u":"GMSG://x/click?u=http%3A%2F%2Fa%2F"})"});
  for (const char* const agent : {"Agent/1", ""}) {
    page().agent = agent;
    navigate("http://a.test/");
    EXPECT_EQ(VADNetworkUtilities::userAgentString(), "Agent/1");
  }
}

TEST_F(VADWebViewDelegateTest, ActsOnEachMessageAndLoadsNone) {
  const auto screen = std::make_shared<ClosableScreen>();
  delegate->setViewController(screen.get());
  EXPECT_FALSE(navigate("gmsg://x/close"));
  EXPECT_FALSE(navigate("vantic://closecanvas?x=1"));
  EXPECT_EQ(screen->relinquished, 2);
  EXPECT_EQ(delegate->opener()->viewController(), screen.get());
  platform::ViewController plain;
  delegate->setViewController(&plain);
  EXPECT_FALSE(navigate("gmsg://x/close"));

  EXPECT_FALSE(navigate("gmsg://x/log?string=one%0Atwo"));
  EXPECT_FALSE(navigate("vantic://log?string=three"));
  EXPECT_FALSE(navigate("gmsg://x/log"));
  EXPECT_THAT(log.take(), ElementsAre("one\\ntwo", "three", "(null)"));

  EXPECT_FALSE(navigate("gmsg://x/open?a=app&u=tel%3A1"));
  EXPECT_FALSE(navigate("vantic://launch?url=http%3A%2F%2Fa"));
  EXPECT_THAT(opened, ElementsAre("app tel:1", "browser http://a 1"));

  EXPECT_FALSE(navigate("gmsg://x/vibrate"));
  EXPECT_THAT(sounds.played, ElementsAre(4095u));
  EXPECT_FALSE(navigate("gmsg://x/touch?tx=1"));
  EXPECT_THAT(actions, testing::Contains(R"({"u":"gmsg://x/vibrate","a":"vibrate"})"));
  EXPECT_EQ(actions.size(), 10u);

  for (const char* none : {"vantic://other", "vantic://Log", "vantic:log", "gmsg://x"}) {
    EXPECT_FALSE(navigate(none));
  }
  EXPECT_EQ(log.take().size(), 4u);
  EXPECT_EQ(actions.size(), 10u);
  EXPECT_EQ(fetches.count(), 0u);
}

TEST_F(VADWebViewDelegateTest, FiresPingsOneAtATime) {
  EXPECT_FALSE(navigate("gmsg://x/httpTrack?u=http%3A%2F%2Fa%2Fb%3Fai%3D1"));
  EXPECT_EQ(fetches.last().url(), "http://a/b?ai=1");
  EXPECT_FALSE(navigate("gmsg://x/click?u=http%3A%2F%2Fa%2Fb%3Fai%3D1"));
  EXPECT_TRUE(fetches.fetch(0).isCancelled());
  EXPECT_THAT(fetches.last().url(), StartsWith("http://a/b?ai=1&"));
  EXPECT_FALSE(navigate("gmsg://x/click?u=http%3A%2F%2Fa%2Fb"));
  EXPECT_EQ(fetches.last().url(), "http://a/b") << "signals without an \"ai\" value";
  const std::size_t before = fetches.count();
  for (const char* const message :
       {"httpTrack", "click", "click?u=", "httpTrack?u=http%3A%2F%2F%5B"}) {
    EXPECT_FALSE(navigate(std::string("gmsg://x/") + message));
  }
  EXPECT_EQ(fetches.count(), before);
  for (int times = 0; times < 500; ++times) navigate("gmsg://x/httpTrack?u=http%3A%2F%2Fa%2F");
  EXPECT_EQ(application.runningTasks(), 1u);
  view->setDelegate(nullptr);
  delegate.reset();
  EXPECT_TRUE(fetches.last().isCancelled());
  EXPECT_EQ(application.runningTasks(), 0u);
}

TEST_F(VADWebViewDelegateTest, ForwardsUnknownMessagesOnTheNextTurn) {
  for (const char* const name : {"CLICK", "settings", "click/", ""}) observe(name);
  EXPECT_FALSE(navigate("gmsg://x/CLICK?U=1&v=a%20b"));
  EXPECT_FALSE(navigate("gmsg://x/settings"));
  EXPECT_FALSE(navigate("gmsg://x/click/?u=http%3A%2F%2Fa%2F"));
  EXPECT_FALSE(navigate("gmsg://x/"));
  EXPECT_THAT(forwarded, IsEmpty()) << "forwarded before the decision was made";
  loop.advance(0);
  EXPECT_THAT(forwarded, ElementsAre(R"(CLICK {"u":"1","v":"a b"})", "settings {}",
                                     R"(click/ {"u":"http://a/"})", " {}"));
  EXPECT_EQ(fetches.count(), 0u);
  for (int turn = 0; turn < 2; ++turn) {
    forwarded.clear();
    for (int times = 0; times < 1000; ++times) navigate("gmsg://x/settings");
    loop.advance(0);
    EXPECT_EQ(forwarded.size(), 256u) << "of each turn, the next one starts from nothing";
  }
}

TEST_F(VADWebViewDelegateTest, AnswersWhichAddressesTheSystemOpens) {
  application.openableSchemes = {"tel"};
  EXPECT_FALSE(navigate("gmsg://x/canOpenURLs?urls=tel:1,sms:2,no%20url"));
  EXPECT_THAT(
      page().scripts,
      ElementsAre(
          R"(URVO_ReceiveMessage('openableURLs', {"tel:1":true,"sms:2":false,"no url":false});)"));
  page().scripts.clear();
  EXPECT_FALSE(navigate("gmsg://x/canOpenURLs"));
  EXPECT_THAT(page().scripts, ElementsAre("URVO_ReceiveMessage('openableURLs', {});"));
  page().scripts.clear();
  std::string many = "gmsg://x/canOpenURLs?urls=";
  for (int number = 0; number < 20000; ++number) many += std::to_string(number) + ":x,";
  EXPECT_FALSE(navigate(many));
  EXPECT_LT(page().scripts.at(0).size(), 5000u) << "a page may not keep the system busy";
}

TEST_F(VADWebViewDelegateTest, EvaluatesInAnOpenerOfItsOwnOriginAndDropsTheResult) {
  EXPECT_FALSE(navigate("gmsg://x/evalInOpener?js=1"));
  EXPECT_EQ(loop.pendingCount(), 0u);
  const auto opener = std::make_shared<VADWebView>();
  auto& below = quorbel_tests::FakeWebEngines::of(*opener);
  delegate->setOpeningWebView(opener.get());
  const char* const ad = "http://ads.test/ad?id=1";
  // Who asks, whom, who is there when it runs, and whether it does.
  const std::tuple<const char*, const char*, const char*, bool> cases[] = {
      {"http://ads.test/land#top", ad, ad, true},
      {"HTTP://Ads.test:80/", ad, ad, true},
      {"http://ads.test:8080/", ad, ad, false},
      {"https://ads.test/", ad, ad, false},
      {"http://shop.ads.test/", ad, ad, false},
      {"http://ads.test@shop.test/", ad, ad, false},
      {"about:blank", ad, ad, false},
      {"about:blank", "about:blank", "about:blank", false},
      {"http://ads.test/", ad, "http://other.test/", false},
      {"http://ads.test/", ad, nullptr, false},
      {nullptr, ad, ad, false},
  };
  const auto shown = [](const char* address) {
    return address ? platform::URL::parse(address) : std::nullopt;
  };
  page().url = platform::URL::parse(ad);  // a navigation away from the page that asks
  for (const auto& [asking, asked, askedWhenItRuns, runs] : cases) {
    SCOPED_TRACE(asking ? asking : "no page");
    page().shown = shown(asking);
    below.shown = shown(asked);
    EXPECT_FALSE(navigate("gmsg://x/evalInOpener?js=f(%22x%22)&webView=1"));
    EXPECT_THAT(below.scripts, IsEmpty());
    below.shown = shown(askedWhenItRuns);
    loop.advance(0);
    EXPECT_EQ(std::exchange(below.scripts, {}), runs ? Events{"f(\"x\")"} : Events{});
    EXPECT_THAT(page().scripts, IsEmpty());
  }
  below.shown = page().shown = platform::URL::parse(ad);
  navigate("gmsg://x/evalInOpener?js=late");
  delegate->setOpeningWebView(nullptr);
  loop.advance(0);
  EXPECT_THAT(below.scripts, IsEmpty());
}

TEST_F(VADWebViewDelegateTest, TellsThePageTheOrientation) {
  using platform::InterfaceOrientation;
  const std::pair<InterfaceOrientation, const char*> cases[] = {
      {InterfaceOrientation::Portrait, "0"},
      {InterfaceOrientation::PortraitUpsideDown, "180"},
      {InterfaceOrientation::LandscapeRight, "90"},
      {InterfaceOrientation::LandscapeLeft, "-90"},
      {InterfaceOrientation::Unknown, nullptr},
      {InterfaceOrientation(7), nullptr}};
  for (const auto& [orientation, angle] : cases) {
    page().scripts.clear();
    application.orientation = orientation;
    page().finish();
    const std::string script =
        "window.__defineGetter__('orientation',function(){return %;});"
        "window.onorientationchange();";
    Events expected;
    if (angle) expected = {std::string(script).replace(script.find('%'), 1, angle)};
    EXPECT_EQ(page().scripts, expected);
  }
  EXPECT_EQ(delegate->firstPages, 1) << "the first page comes once";
  EXPECT_TRUE(delegate->hasLoadedAtLeastOnce());
}

}  // namespace
