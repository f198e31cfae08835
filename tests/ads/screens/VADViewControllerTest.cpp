// How screens are presented and dismissed, by whomever and however often.
#include "ads/screens/VADViewController.h"

#include "ads/screens/VADViewControllerPrivate.h"
#include "tests/ads/screens/ScreenTest.h"

namespace valdren {
namespace {

class VADViewControllerTest : public quorbel_tests::ScreenTest {
 protected:
  std::shared_ptr<VADViewController> makeScreen() {
    auto screen = VADViewController::create();
    screen->setDelegateManager(manager);
    return screen;
  }
  /// The callbacks of a screen that came and went.
  const Events wholeLife{"posted present", "will present", "will dismiss", "posted relinquish",
                         "did dismiss"};

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
  using Style = platform::ModalPresentationStyle;
  // Whether the bar is hidden and the timer disabled, and how the bar changes.
  const std::tuple<bool, bool, Style, const char*, std::vector<bool>> cases[] = {
      {false, false, Style::FullScreen, "12", {true, false}},
      {true, true, Style::FullScreen, "12", {}},
      {false, true, Style::PageSheet, "12", {}},
      {false, false, Style::PageSheet, "3.1.3", {true, false}},
  };
  for (const auto& [barHidden, idleDisabled, style, version, barChanges] : cases) {
    device.version = version;
    application.setStatusBarHidden(barHidden);
    application.setIdleTimerDisabled(idleDisabled);
    application.statusBarChanges.clear();
    const auto screen = makeScreen();
    screen->setModalPresentationStyle(style);
    screen->presentFromViewController(host.get());
    EXPECT_TRUE(application.isIdleTimerDisabled());
    screen->relinquishScreen();
    EXPECT_EQ(application.statusBarChanges, barChanges) << version;
    EXPECT_EQ(application.isIdleTimerDisabled(), idleDisabled);
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

TEST_F(VADViewControllerTest, OnlyTheFirstOfManyScreensIsShownAndClosesOnce) {
  const auto unpresented = makeScreen();
  unpresented->relinquishScreen();
  EXPECT_EQ(record.take(), Events{});
  VADViewController& shown = present(*host);
  record.take();
  for (int i = 0; i < 1000; ++i) present(*host);
  shown.presentFromViewController(host.get());
  EXPECT_EQ(record.take(), Events{});
  EXPECT_EQ(window->topViewController(), &shown);
  EXPECT_EQ(application.statusBarChanges, std::vector<bool>{true});

  shown.relinquishScreen();
  record.take();
  shown.relinquishScreen();
  present(shown);
  loop.advance(1);
  EXPECT_EQ(record.take(), (Events{"did dismiss"})) << "nothing shows over a screen that goes";
  EXPECT_EQ(window->topViewController(), host.get());
}

TEST_F(VADViewControllerTest, ReopenedAtOnceTheNextOneIsWhole) {
  present(*host).relinquishScreen();
  VADViewController& next = present(*host);
  loop.advance(0);
  EXPECT_EQ(window->topViewController(), &next);
  EXPECT_TRUE(next.view()->isUserInteractionEnabled());
  EXPECT_TRUE(application.isStatusBarHidden());
}

TEST_F(VADViewControllerTest, TheEndOfTheFirstScreenEndsThoseOverIt) {
  const Events closed{"will dismiss", "posted relinquish", "posted relinquish", "posted relinquish",
                      "did dismiss"};
  const Events takenAway{"posted relinquish", "posted relinquish", "will dismiss",
                         "posted relinquish", "did dismiss"};
  for (const bool closes : {true, false}) {
    VADViewController& first = present(*host);
    VADViewController& second = present(first);
    const std::vector all{weak(first), weak(second), weak(present(second))};
    record.take();
    if (closes) {
      first.relinquishScreen();
    } else {
      host->dismissModalViewControllerAnimated(false);  // by the application
    }
    EXPECT_EQ(window->topViewController(), host.get());
    loop.advance(0);
    for (const auto& screen : all) EXPECT_FALSE(screen);
    EXPECT_EQ(record.take(), closes ? closed : takenAway);
    EXPECT_FALSE(application.isStatusBarHidden());
    EXPECT_FALSE(application.isIdleTimerDisabled());
  }
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

TEST_F(VADViewControllerTest, EndedWhileItComesItGoesAway) {
  window->makeKeyAndVisible();
  VADViewController& screen = present(*host);
  const auto closed = weak(screen);
  screen.relinquishScreen();
  window->finishTransition();
  EXPECT_EQ(window->topViewController(), host.get());
  EXPECT_FALSE(screen.view()->isUserInteractionEnabled());
  loop.advance(1);
  EXPECT_FALSE(closed);
  EXPECT_EQ(record.take(), wholeLife);

  // By a publisher who is told of it.
  record.onEvent = [this](const std::string& event) {
    if (event != "will present") return;
    window->setRootViewController(nullptr);
    host.reset();
  };
  const auto withoutHost = weak(present(*host));
  loop.advance(1);
  EXPECT_FALSE(withoutHost);
  EXPECT_EQ(record.take(), wholeLife);
  EXPECT_FALSE(application.isIdleTimerDisabled());
}

TEST_F(VADViewControllerTest, ComesUpOverTheWindowOfItsHostAmongSeveral) {
  const auto other = std::make_shared<platform::Window>(platform::Size{360, 640});
  other->setRootViewController(std::make_shared<platform::ViewController>());
  other->makeKeyAndVisible();
  const VADViewController& screen = present(*host);
  EXPECT_EQ(window->topViewController(), &screen);
  EXPECT_EQ(platform::Window::keyWindow(), window.get());
}

TEST_F(VADViewControllerTest, OneThatSendsThePersonAwaySaysSoWhenItGoesAndNotWhileCovered) {
  VADViewController& first = present(*host);
  VADPrivateUtilities::privateObjectForKey<VADViewControllerPrivate>(&first)->appClosing = true;
  VADViewController& nested = present(first);
  nested.relinquishScreen();
  EXPECT_EQ(record.take(),
            (Events{"posted present", "will present", "posted present", "posted relinquish"}));
  first.relinquishScreen();
  EXPECT_EQ(record.take(), (Events{"will dismiss", "will leave", "posted relinquish"}));
}

TEST_F(VADViewControllerTest, TurnsAsItsOrientationsAllow) {
  const std::tuple<const char*, int, bool, bool> cases[] = {{"any", 1, true, true},
                                                            {"portrait", 2, true, false},
                                                            {"landscape", 3, false, true},
                                                            {"Portrait", 0, true, true}};
  const auto screen = makeScreen();
  EXPECT_EQ(screen->supportedOrientations(), 1);
  for (const auto& [text, code, portrait, landscape] : cases) {
    screen->settingsChanged(
        {"settings", screen->view().get(), platform::Dictionary{{"supportedorientations", text}}});
    EXPECT_EQ(screen->supportedOrientations(), code) << text;
    using enum platform::InterfaceOrientation;
    for (const auto& [orientation, turns] : {std::pair(Portrait, portrait),
                                             {PortraitUpsideDown, portrait},
                                             {LandscapeLeft, landscape},
                                             {LandscapeRight, landscape}}) {
      EXPECT_EQ(screen->shouldAutorotateToInterfaceOrientation(orientation), turns) << text;
    }
  }
  screen->settingsChanged({"settings", nullptr, std::nullopt});
  EXPECT_EQ(screen->supportedOrientations(), 0);
}

}  // namespace
}  // namespace valdren
