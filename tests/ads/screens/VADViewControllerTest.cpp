// How screens are presented and dismissed, by whomever and however often.
#include "ads/screens/VADViewController.h"

#include "platform/base/RunLoop.h"
#include "tests/ads/screens/ScreenTest.h"

namespace platform = valdren::platform;

namespace valdren {
namespace {

using platform::InterfaceOrientation;

class VADViewControllerTest : public quorbel_tests::ScreenTest {
 protected:
  std::shared_ptr<VADViewController> makeScreen() {
    auto screen = VADViewController::create();
    screen->setDelegateManager(manager);
    return screen;
  }
  /// Presents a screen that nobody else holds.
  VADViewController& present(platform::ViewController& over) {
    const auto screen = makeScreen();
    screen->presentFromViewController(&over);
    return *screen;
  }
  platform::WeakPtr<platform::ViewController> weak(platform::ViewController& screen) {
    return &screen;
  }
};

TEST_F(VADViewControllerTest, AnnouncesTheFullScreenPeriodFromItsBeginToItsEnd) {
  VADViewController& screen = present(*host);
  const auto weakScreen = weak(screen);
  EXPECT_EQ(record.take(), (Events{"posted present", "will present"}));
  EXPECT_TRUE(screen.view()->isUserInteractionEnabled());
  EXPECT_TRUE(application.isStatusBarHidden());
  EXPECT_TRUE(application.isIdleTimerDisabled());

  screen.relinquishScreen();
  EXPECT_EQ(record.take(), (Events{"will dismiss", "posted relinquish"}));
  EXPECT_FALSE(application.isStatusBarHidden());
  EXPECT_FALSE(application.isIdleTimerDisabled());
  EXPECT_FALSE(screen.view()->isUserInteractionEnabled());
  ASSERT_TRUE(weakScreen) << "a message of the page may still be at work";
  loop.advance(0);
  EXPECT_FALSE(weakScreen);
  EXPECT_EQ(record.take(), (Events{"did dismiss"}));
}

TEST_F(VADViewControllerTest, PutsBackWhatItFound) {
  const struct {
    bool barHidden;
    bool idleDisabled;
    platform::ModalPresentationStyle style;
    const char* version;
    std::vector<bool> barChanges;
  } kCases[] = {
      {false, false, platform::ModalPresentationStyle::FullScreen, "12", {true, false}},
      {true, true, platform::ModalPresentationStyle::FullScreen, "12", {}},
      {false, true, platform::ModalPresentationStyle::PageSheet, "12", {}},
      {false, false, platform::ModalPresentationStyle::PageSheet, "3.1.3", {true, false}},
  };
  for (const auto& each : kCases) {
    device.version = each.version;
    application.setStatusBarHidden(each.barHidden);
    application.setIdleTimerDisabled(each.idleDisabled);
    application.statusBarChanges.clear();
    const auto screen = makeScreen();
    screen->setModalPresentationStyle(each.style);
    screen->presentFromViewController(host.get());
    EXPECT_TRUE(application.isIdleTimerDisabled());
    screen->relinquishScreen();
    EXPECT_EQ(application.statusBarChanges, each.barChanges) << each.version;
    EXPECT_EQ(application.isIdleTimerDisabled(), each.idleDisabled);
  }
}

TEST_F(VADViewControllerTest, ANestedScreenOnlyPostsWhateverStillRisesWhenItCloses) {
  window->makeKeyAndVisible();
  for (const auto& [firstIsUp, nestedIsUp] :
       {std::pair(true, true), {true, false}, {false, false}}) {
    SCOPED_TRACE(testing::Message() << firstIsUp << nestedIsUp);
    VADViewController& first = present(*host);
    if (firstIsUp) window->finishTransition();
    record.take();
    application.statusBarChanges.clear();
    VADViewController& nested = present(first);
    if (nestedIsUp) window->finishTransition();
    EXPECT_FALSE(nested.isFirstVADViewController());
    EXPECT_EQ(record.take(), (Events{"posted present"}));
    EXPECT_TRUE(nested.cancelPressed());
    window->finishTransition();
    loop.advance(0);
    EXPECT_EQ(record.take(), (Events{"posted relinquish"}));
    EXPECT_TRUE(application.statusBarChanges.empty());
    ASSERT_EQ(window->topViewController(), &first);
    EXPECT_TRUE(first.isFirstVADViewController());
    EXPECT_TRUE(first.view()->isUserInteractionEnabled());
    EXPECT_TRUE(first.cancelPressed());
    window->finishTransition();
    loop.advance(0);
    EXPECT_EQ(record.take(), (Events{"will dismiss", "posted relinquish", "did dismiss"}));
    EXPECT_EQ(window->topViewController(), host.get());
  }
}

TEST_F(VADViewControllerTest, OnlyTheFirstOfManyScreensIsShown) {
  VADViewController& shown = present(*host);
  record.take();
  for (int i = 0; i < 1000; ++i) present(*host);
  EXPECT_EQ(record.take(), Events{});
  EXPECT_EQ(window->topViewController(), &shown);
  EXPECT_EQ(application.statusBarChanges, std::vector<bool>{true});

  shown.presentFromViewController(host.get());
  EXPECT_EQ(record.take(), Events{}) << "presented twice";
}

TEST_F(VADViewControllerTest, RelinquishingASecondTimeOrUnpresentedDoesNothing) {
  const auto unpresented = makeScreen();
  unpresented->relinquishScreen();
  EXPECT_EQ(record.take(), Events{});

  VADViewController& screen = present(*host);
  screen.relinquishScreen();
  record.take();
  screen.relinquishScreen();
  loop.advance(1);
  EXPECT_EQ(record.take(), (Events{"did dismiss"}));
}

TEST_F(VADViewControllerTest, ReopenedAtOnceTheNextOneIsWhole) {
  for (int i = 0; i < 20; ++i) {
    VADViewController& screen = present(*host);
    EXPECT_EQ(window->topViewController(), &screen);
    screen.relinquishScreen();
  }
  VADViewController& last = present(*host);
  loop.advance(0);
  EXPECT_EQ(window->topViewController(), &last);
  EXPECT_TRUE(last.view()->isUserInteractionEnabled());
  EXPECT_TRUE(application.isStatusBarHidden());
  last.relinquishScreen();
  EXPECT_FALSE(application.isStatusBarHidden());
}

TEST_F(VADViewControllerTest, ClosingTheFirstScreenEndsThoseOverIt) {
  VADViewController& first = present(*host);
  VADViewController& second = present(first);
  VADViewController& third = present(second);
  const std::vector<platform::WeakPtr<platform::ViewController>> all = {weak(first), weak(second),
                                                                        weak(third)};
  record.take();
  first.relinquishScreen();
  EXPECT_EQ(window->topViewController(), host.get());
  loop.advance(0);
  for (const auto& screen : all) EXPECT_FALSE(screen);
  EXPECT_EQ(record.take(), (Events{"will dismiss", "posted relinquish", "posted relinquish",
                                   "posted relinquish", "did dismiss"}));
}

TEST_F(VADViewControllerTest, ScreensThatTheApplicationTakesAwayEndAsIfClosed) {
  VADViewController& first = present(*host);
  VADViewController& second = present(first);
  const auto weakFirst = weak(first);
  const auto weakSecond = weak(second);
  record.take();
  host->dismissModalViewControllerAnimated(false);
  loop.advance(0);
  EXPECT_FALSE(weakFirst);
  EXPECT_FALSE(weakSecond);
  EXPECT_FALSE(application.isStatusBarHidden());
  EXPECT_FALSE(application.isIdleTimerDisabled());
  EXPECT_EQ(record.take(),
            (Events{"posted relinquish", "will dismiss", "posted relinquish", "did dismiss"}));
}

TEST_F(VADViewControllerTest, NestsTenDeepButNotWithoutEnd) {
  platform::ViewController* top = host.get();
  for (int i = 0; i < 100; ++i) {
    present(*top);
    top = window->topViewController();
  }
  int depth = 0;
  for (const auto* each = top; each != host.get(); each = each->presentingViewController()) ++depth;
  EXPECT_EQ(depth, 16);
  for (int i = 0; i < depth; ++i) {
    dynamic_cast<VADViewController&>(*window->topViewController()).relinquishScreen();
  }
  EXPECT_EQ(window->topViewController(), host.get());
}

TEST_F(VADViewControllerTest, ShowsNothingOverAScreenOnItsWayOut) {
  VADViewController& first = present(*host);
  first.relinquishScreen();
  record.take();
  present(first);
  EXPECT_EQ(record.take(), Events{});
  EXPECT_EQ(window->topViewController(), host.get());
}

TEST_F(VADViewControllerTest, WithoutAHostOrAWindowNothingIsShown) {
  const auto screen = makeScreen();
  screen->presentFromViewController(nullptr);
  quorbel_tests::HostScreen elsewhere;
  screen->presentFromViewController(&elsewhere);
  EXPECT_EQ(record.take(), Events{});
  EXPECT_TRUE(screen->view()->isUserInteractionEnabled());
  screen->presentFromViewController(host.get());
  EXPECT_EQ(window->topViewController(), screen.get());
}

TEST_F(VADViewControllerTest, APublisherMayTakeItsScreenAwayWhenToldOfTheAd) {
  record.onWillPresent = [this] {
    window->setRootViewController(nullptr);
    host.reset();
  };
  const auto weakScreen = weak(present(*host));
  loop.advance(1);
  EXPECT_FALSE(weakScreen);
  EXPECT_EQ(record.take(), (Events{"posted present", "will present", "will dismiss",
                                   "posted relinquish", "did dismiss"}));
  EXPECT_FALSE(application.isIdleTimerDisabled());
}

TEST_F(VADViewControllerTest, ClosedWhileItRisesItGoesAway) {
  window->makeKeyAndVisible();
  VADViewController& screen = present(*host);
  const auto weakScreen = weak(screen);
  screen.relinquishScreen();
  window->finishTransition();
  EXPECT_EQ(window->topViewController(), host.get());
  EXPECT_FALSE(screen.view()->isUserInteractionEnabled());
  loop.advance(1);
  EXPECT_FALSE(weakScreen);
  EXPECT_EQ(record.take(), (Events{"posted present", "will present", "will dismiss",
                                   "posted relinquish", "did dismiss"}));
}

TEST_F(VADViewControllerTest, ComesUpOverTheWindowOfItsHostAmongSeveral) {
  const auto other = std::make_shared<platform::Window>(platform::Size{360, 640});
  other->setRootViewController(std::make_shared<platform::ViewController>());
  other->makeKeyAndVisible();
  const VADViewController& screen = present(*host);
  EXPECT_EQ(window->topViewController(), &screen);
  EXPECT_EQ(platform::Window::keyWindow(), window.get());
}

TEST_F(VADViewControllerTest, EscapeAndTheWayBackCloseIt) {
  for (bool (VADViewController::*pressed)() :
       {&VADViewController::cancelPressed, &VADViewController::backPressed}) {
    VADViewController& screen = present(*host);
    EXPECT_TRUE((screen.*pressed)());
    EXPECT_EQ(window->topViewController(), host.get());
  }
}

TEST_F(VADViewControllerTest, TurnsAsItsOrientationsAllow) {
  const struct {
    const char* text;
    int code;
    bool portrait;
    bool landscape;
  } kCases[] = {
      {"any", 1, true, true}, {"portrait", 2, true, false}, {"landscape", 3, false, true},
      {"", 0, true, true},    {"Portrait", 0, true, true},  {"both", 0, true, true},
  };
  const auto screen = makeScreen();
  EXPECT_EQ(screen->supportedOrientations(), 1);
  for (const auto& each : kCases) {
    platform::Dictionary settings{{"supportedorientations", each.text}};
    screen->settingsChanged({"settings", screen->view().get(), settings});
    EXPECT_EQ(screen->supportedOrientations(), each.code) << each.text;
    const auto turns = [&](InterfaceOrientation orientation) {
      return screen->shouldAutorotateToInterfaceOrientation(orientation);
    };
    EXPECT_EQ(turns(InterfaceOrientation::Portrait), each.portrait) << each.text;
    EXPECT_EQ(turns(InterfaceOrientation::PortraitUpsideDown), each.portrait) << each.text;
    EXPECT_EQ(turns(InterfaceOrientation::LandscapeLeft), each.landscape) << each.text;
    EXPECT_EQ(turns(InterfaceOrientation::LandscapeRight), each.landscape) << each.text;
  }
  screen->settingsChanged({"settings", nullptr, std::nullopt});
  EXPECT_EQ(screen->supportedOrientations(), 0);
}

}  // namespace
}  // namespace valdren
