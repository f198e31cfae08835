#include <gtest/gtest.h>
#include <gtkmm/button.h>
#include <gtkmm/window.h>

#include "ads/request/VADConfiguration.h"
#include "app/quorbelViewController.h"
#include "app/quorbeliPad.h"
#include "platform/application/Appearance.h"
#include "platform/storage/Bundle.h"
#include "platform/ui/NativeView.h"
#include "platform/ui/NativeWindow.h"
#include "tests/app/FakeAudioPlayer.h"
#include "tests/support/FakeURLLoading.h"
#include "tests/support/FakeWebEngine.h"
#include "tests/support/Fakes.h"
#include "tests/support/Loop.h"
#include "tests/support/Pointer.h"
#include "tests/support/Process.h"
#include "tests/support/Taps.h"

namespace {

using platform::Rect;
using platform::Size;
using quorbel::sounds;
using quorbel::SoundScreen;
using quorbel_tests::FakeAudioPlayer;
using quorbel_tests::frameOf;
using quorbel_tests::press;
using quorbel_tests::runUntil;
using quorbel_tests::tooltipOf;
using Events = std::vector<std::string>;

constexpr const char* kResources = "/com/valdren/quorbel";

/// The idiom is the parameter.
class SoundScreenTest : public ::testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    platform::Bundle::main().setResourceFolder(QUORBEL_CLIPS);
    platform::InterfaceView::setResourceBase(kResources);
    static const bool styled = (platform::followAppearance(kResources), true);
    static_cast<void>(styled);
    FakeAudioPlayer::events.clear();
    FakeAudioPlayer::broken = false;
    FakeAudioPlayer::soundAwaited = nullptr;
    show({360, 640});
  }

  void TearDown() override {
    screen.reset();
    window.reset();
    platform::Bundle::main().setResourceFolder("");
    quorbel_tests::runFor(0.02);
  }

  void show(Size size) {
    if (isTablet()) screen = std::shared_ptr<SoundScreen>(new quorbel::quorbeliPad);
    if (!isTablet()) screen = std::shared_ptr<SoundScreen>(new quorbel::quorbelViewController);
    screen->setInterface(GetParam(), isTablet() ? "quorbeliPad" : "quorbelViewController");
    window = std::make_shared<platform::Window>(size);
    window->setRootViewController(screen);
    window->makeKeyAndVisible();
    ASSERT_TRUE(screen->controls());
    ASSERT_TRUE(runUntil([&] { return frameOf(*screen->controls(), "stop").width > 0; }));
  }

  static bool isTablet() { return GetParam() == "tablet"; }

  void expectNoTileUnderTheBanner() {
    Gtk::Widget& widget = screen->view()->native().widget();
    const double bottom = screen->view()->bounds().height;
    for (double x = 2; x < 320; x += 20) {
      for (double y = bottom - 48; y < bottom; y += 15) {
        for (Gtk::Widget* hit = widget.pick(x, y, Gtk::PickFlags::DEFAULT); hit && hit != &widget;
             hit = hit->get_parent()) {
          ASSERT_FALSE(dynamic_cast<Gtk::Button*>(hit)) << "a tile at " << x << ", " << y;
        }
      }
    }
  }

  Events takeEvents() { return std::exchange(FakeAudioPlayer::events, {}); }

  std::string playingTile() {
    std::string found;
    for (const std::string& control : screen->controls()->controls()) {
      if (screen->controls()->isSelected(control)) found += control;
    }
    return found;
  }

  quorbel_tests::FakeApplication application;
  quorbel_tests::FakeUserDefaults defaults;
  quorbel_tests::FakeURLLoading loading;
  quorbel_tests::FakeWebEngines engines;
  std::shared_ptr<SoundScreen> screen;
  std::shared_ptr<platform::Window> window;
};

INSTANTIATE_TEST_SUITE_P(Idioms, SoundScreenTest, ::testing::Values("phone", "tablet"),
                         [](const auto& idiom) { return idiom.param; });

TEST_P(SoundScreenTest, EveryTilePlaysItsOwnClipFromAPlayerMadeAnew) {
  ASSERT_EQ(screen->controls()->controls().size(), sounds().size() + 1);
  // The previous player is destroyed before the new one is made.
  Events gone;
  for (const auto& [action, clip] : sounds()) {
    ASSERT_TRUE(press(*screen->controls(), action)) << action;
    ASSERT_TRUE(runUntil([&] { return FakeAudioPlayer::events.size() >= gone.size() + 2; }));
    EXPECT_NE(std::string(clip).find(action), std::string::npos) << "another tile's clip";
    Events expected = std::exchange(gone, {"gone"});
    expected.insert(expected.end(), {std::string("new ") + clip + ".m4a", "play"});
    EXPECT_EQ(takeEvents(), expected) << action;
    EXPECT_EQ(FakeAudioPlayer::latest->delegate.get(), screen.get());
    EXPECT_EQ(playingTile(), action);
  }
}

TEST_P(SoundScreenTest, StopSilencesThePlayerAndKeepsIt) {
  screen->stop();
  EXPECT_EQ(takeEvents(), Events{}) << "nothing plays yet";
  screen->play("candy");
  takeEvents();
  ASSERT_TRUE(press(*screen->controls(), "stop"));
  ASSERT_TRUE(runUntil([&] { return !FakeAudioPlayer::events.empty(); }));
  EXPECT_EQ(takeEvents(), Events{"stop"});
  EXPECT_TRUE(screen->player());
  EXPECT_EQ(playingTile(), "");
}

TEST_P(SoundScreenTest, AClipThatEndsOrIsBrokenLeavesNoMark) {
  screen->play("candy");
  EXPECT_EQ(playingTile(), "candy");
  FakeAudioPlayer::latest->playing = false;
  EXPECT_TRUE(runUntil([&] { return playingTile().empty(); }));
  EXPECT_TRUE(screen->player());
  takeEvents();
  FakeAudioPlayer::broken = true;
  screen->play("babies");
  EXPECT_EQ(takeEvents(), Events{"gone"}) << "the one before goes on";
  EXPECT_EQ(screen->player(), nullptr);
  EXPECT_EQ(playingTile(), "");
  FakeAudioPlayer::broken = false;
  screen->stop();
  screen->play("babies");
  EXPECT_EQ(playingTile(), "babies");
}

TEST_P(SoundScreenTest, ALineSaysThatThereIsNoSoundUntilItIsBack) {
  // the second failure finds the notice already shown
  for (const bool heard : {true, false, false}) {
    screen->play("candy");
    FakeAudioPlayer& player = *FakeAudioPlayer::latest;
    player.playing = false;
    player.delegate->audioPlayerDidFinishPlaying(player, heard);
    EXPECT_EQ(screen->controls()->isHidden("silence"), heard);
    EXPECT_EQ(!FakeAudioPlayer::soundAwaited, heard);
  }
  FakeAudioPlayer::soundAwaited();
  EXPECT_TRUE(screen->controls()->isHidden("silence"));
}

TEST_P(SoundScreenTest, EveryTileSaysWhatItIsAndWhichKeyPressesIt) {
  const std::string keys = "1234567890QWER";
  std::set<std::string> titles;
  for (std::size_t place = 0; place < sounds().size(); ++place) {
    const std::string control = sounds()[place].action;
    EXPECT_EQ(screen->controls()->controls()[place], control) << "keys go by the order of tiles";
    titles.insert(screen->controls()->titleOfControl(control));
    const std::string tooltip = tooltipOf(*screen->controls(), control);
    EXPECT_TRUE(tooltip.ends_with(std::string("(key ") + keys[place] + ")")) << tooltip;
  }
  titles.insert(screen->controls()->titleOfControl("stop"));
  EXPECT_EQ(titles.size(), sounds().size() + 1) << "no two tiles have one title";
  EXPECT_FALSE(titles.contains(""));
  EXPECT_NE(tooltipOf(*screen->controls(), "stop").find("Escape"), std::string::npos);
}

TEST_P(SoundScreenTest, KeysPlayByWhatTheyPrintAndByTheirPlaceOnEveryKeyboard) {
  // The keyboard, the key's code, a key held with it, and what plays.
  const std::tuple<const char*, unsigned, const char*, const char*> keys[] = {
      {"us", 10, nullptr, "wikipedia"},
      {"us", 19, nullptr, "fear"},
      {"us", 87, "Num_Lock", "wikipedia"},
      {"us", 24, "Shift_L", "collar"},
      {"us", 27, nullptr, "arabs"},
      {"us", 27, "Control_L", ""},
      {"us", 38, nullptr, ""},
      {"fr", 11, nullptr, "family"},
      {"fr", 11, "Shift_L", "family"},
      {"fr", 38, nullptr, "collar"},
      {"fr", 24, nullptr, "collar"},
      {"ru", 25, nullptr, "candy"},
      {"ru", 26, nullptr, "babies"}};
  GtkWidget* const native = GTK_WIDGET(window->native().window().gobj());
  for (const auto& [keyboard, key, with, plays] : keys) {
    ASSERT_EQ(quorbel_tests::run(std::string("setxkbmap ") + keyboard).status, 0);
    screen->stop();
    quorbel_tests::typeKey(native, key, with);
    EXPECT_TRUE(runUntil([&, expected = plays] { return playingTile() == expected; }))
        << keyboard << " " << key << " plays " << playingTile();
  }
  EXPECT_EQ(quorbel_tests::run("setxkbmap us").status, 0);

  screen->stop();
  GtkWidget* const text = gtk_text_new();
  const auto field = std::make_shared<platform::View>(Rect{0, 0, 100, 30});
  field->native().setContent(Glib::wrap(text));
  screen->view()->addSubview(field);
  gtk_widget_grab_focus(text);
  quorbel_tests::typeKey(native, "1");
  EXPECT_TRUE(
      runUntil([&] { return gtk_editable_get_text(GTK_EDITABLE(text)) == std::string("1"); }));
  EXPECT_EQ(playingTile(), "") << "the key is for the field";
  field->removeFromSuperview();

  screen->presentModalViewController(std::make_shared<platform::ViewController>(), false);
  quorbel_tests::typeKey(native, "1");
  EXPECT_EQ(playingTile(), "") << "a page covers the tiles";
}

TEST_P(SoundScreenTest, TilesLieSideBySideAndStopAndBannerInSightInEveryWindowAndTextSize) {
  EXPECT_EQ(screen->banner().adUnitID(), "a19d27c3b40e6f5");
  EXPECT_EQ(screen->banner().rootViewController(), screen.get());
  const double lowest = isTablet() ? 700 : 300;  // of what need not be scrolled
  for (const int textPercent : {100, 150, 200, -200}) {
    // Below 0: with the notice that there is no sound.
    screen->controls()->setHidden("silence", textPercent > 0);
    g_object_set(gtk_settings_get_default(), "gtk-xft-dpi", 96 * 1024 * std::abs(textPercent) / 100,
                 nullptr);
    for (const Size size : {Size{360, 640}, {720, 360}, {320, 200}, {1024, 768}, {768, 1024}}) {
      SCOPED_TRACE(testing::Message() << size.width << " x " << size.height << ", " << textPercent);
      window->resize(size);
      const auto bounds = [&] { return screen->view()->bounds(); };
      ASSERT_TRUE(runUntil([&] {
        return window->size() == size && bounds() == window->contentBounds() &&
               screen->banner().frame() == Rect{0, bounds().height - 50, 320, 50};
      }));
      quorbel_tests::runFor(0.05);
      if (textPercent == 100) expectNoTileUnderTheBanner();
      std::vector<Rect> tiles;
      for (const std::string& control : screen->controls()->controls()) {
        tiles.push_back(frameOf(*screen->controls(), control));
        const Rect& tile = tiles.back();
        EXPECT_GE(tile.width, 72) << control;
        EXPECT_GE(tile.height, 44) << control;
        EXPECT_GE(tile.x, 0) << control;
        EXPECT_LE(tile.x + tile.width, size.width) << control;
      }
      const auto overlap = [](const Rect& a, const Rect& b) {
        return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height &&
               b.y < a.y + a.height;
      };
      const Rect stop = tiles.back();
      tiles.pop_back();  // the others may be scrolled out of sight
      EXPECT_GE(stop.y, 0);
      EXPECT_LE(stop.y + stop.height, bounds().height);
      EXPECT_FALSE(overlap(stop, screen->banner().frame()));
      for (std::size_t one = 0; one < tiles.size(); ++one) {
        for (std::size_t other = one + 1; other < tiles.size(); ++other) {
          EXPECT_FALSE(overlap(tiles[one], tiles[other])) << one << " over " << other;
        }
        EXPECT_TRUE(textPercent != 100 || size.height < lowest ||
                    tiles[one].y + tiles[one].height <= bounds().height - 50)
            << one << " is not in sight";
      }
    }
  }
  gtk_settings_reset_property(gtk_settings_get_default(), "gtk-xft-dpi");
}

TEST_P(SoundScreenTest, AsksForAnAdOnceItsViewIsLoadedAndTurnsOnATablet) {
  ASSERT_TRUE(runUntil([&] { return loading.count() > 0; }));
  EXPECT_TRUE(loading.fetch(0).url().starts_with(
      valdren::VADConfiguration::scriptHostBaseURL().absoluteString()))
      << loading.fetch(0).url();
  using enum platform::InterfaceOrientation;
  for (const auto orientation : {PortraitUpsideDown, LandscapeLeft, LandscapeRight}) {
    EXPECT_EQ(screen->shouldAutorotateToInterfaceOrientation(orientation), isTablet());
  }
  EXPECT_TRUE(screen->shouldAutorotateToInterfaceOrientation(Portrait));
}

TEST_P(SoundScreenTest, ATileThatOutlivesItsScreenDoesNothing) {
  EXPECT_FALSE(platform::InterfaceView::load("nothing", "quorbeliPad", {}, {}));
  EXPECT_FALSE(platform::InterfaceView::load(GetParam(), "somebodyElse", {}, {}));
  const std::shared_ptr<platform::View> view = screen->view();
  window->setRootViewController(nullptr);
  screen.reset();
  takeEvents();
  auto* const tiles = dynamic_cast<platform::InterfaceView*>(view.get());
  ASSERT_TRUE(tiles);
  press(*tiles, "candy");
  quorbel_tests::runFor(0.4);
  EXPECT_EQ(takeEvents(), Events{});
}

}  // namespace
