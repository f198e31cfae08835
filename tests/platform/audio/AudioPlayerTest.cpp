// Players with a real sound server, checked by recordings of its output's monitor.
#include "platform/audio/AudioPlayer.h"

#include <glib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/audio/AudioOutput.h"
#include "platform/device/AudioSession.h"
#include "tests/platform/audio/AudioFiles.h"
#include "tests/support/Loop.h"
#include "tests/support/PrivateSoundServer.h"

namespace platform = valdren::platform;

namespace {

using platform::AudioPlayer;
using quorbel_tests::MonitorRecording;
using quorbel_tests::PrivateSoundServer;
using quorbel_tests::runFor;
using quorbel_tests::runUntil;
using quorbel_tests::toneFile;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr double kLow = 400;
constexpr double kHigh = 1500;

/// Collects warnings from all threads while it exists.
class Warnings {
 public:
  Warnings() {
    handler_ = g_log_set_handler(
        "Valdren", G_LOG_LEVEL_WARNING,
        [](const char*, GLogLevelFlags, const char* line, gpointer self) {
          auto& warnings = *static_cast<Warnings*>(self);
          const std::lock_guard lock(warnings.mutex_);
          warnings.lines_.emplace_back(line);
        },
        this);
  }
  ~Warnings() { g_log_remove_handler("Valdren", handler_); }
  Warnings(const Warnings&) = delete;
  Warnings& operator=(const Warnings&) = delete;

  std::vector<std::string> take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(lines_, {});
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> lines_;
  guint handler_;
};

struct Listener final : platform::AudioPlayerDelegate {
  void audioPlayerDidFinishPlaying(AudioPlayer&, bool successfully) override {
    ++told;
    well = successfully;
  }
  int told = 0;
  bool well = false;
};

/// The connection to the server lives as long as the program, and so does the server. Each test
/// starts with a running, silent server.
class AudioPlayerTest : public ::testing::Test {
 protected:
  static PrivateSoundServer& server() {
    static PrivateSoundServer running;
    return running;
  }

  void SetUp() override {
    if (!PrivateSoundServer::isInstalled()) {
      GTEST_SKIP() << "pulseaudio is not installed, so there is nothing to play into";
    }
    server().kill();
    ASSERT_TRUE(server().start());
    // Waits until the output has handled the restart.
    runFor(0.1);
    warnings_.take();
  }

  std::unique_ptr<AudioPlayer> play(double frequency, double seconds,
                                    platform::AudioPlayerDelegate* listener = nullptr) {
    const std::string name = std::to_string(frequency) + "-" + std::to_string(seconds) + ".wav";
    if (!std::filesystem::exists(folder_.path(name))) {
      folder_.write(name, toneFile(frequency, seconds));
    }
    auto player = AudioPlayer::withContentsOfFile(folder_.path(name));
    if (!player) return nullptr;
    (*player)->setDelegate(listener);
    (*player)->play();
    return std::move(*player);
  }

  /// Whether this tone and no other is heard soon.
  static bool hears(const MonitorRecording& recording, double frequency) {
    return runUntil([&] {
      const double other = frequency == kLow ? kHigh : kLow;
      return recording.toneInLast(0.1, frequency) > 0.4 && recording.toneInLast(0.1, other) < 0.02;
    });
  }
  static bool hearsNothing(const MonitorRecording& recording) {
    return runUntil([&] { return recording.peakOfLast(0.2) < 0.001F; });
  }

  quorbel_tests::TemporaryFolder folder_;
  Warnings warnings_;
};

TEST_F(AudioPlayerTest, AClipIsHeardOnceAndItsDelegateToldOfItsEnd) {
  const MonitorRecording recording;
  Listener listener;
  const auto player = play(kLow, 0.6, &listener);
  ASSERT_TRUE(player);
  EXPECT_TRUE(player->isPlaying());
  EXPECT_TRUE(hears(recording, kLow));
  EXPECT_EQ(listener.told, 0);
  EXPECT_TRUE(runUntil([&] { return listener.told > 0; }));
  EXPECT_TRUE(listener.well);
  EXPECT_FALSE(player->isPlaying());
  EXPECT_TRUE(hearsNothing(recording));
  EXPECT_EQ(listener.told, 1);
  EXPECT_TRUE(warnings_.take().empty());
}

TEST_F(AudioPlayerTest, ANewPlayerReplacesTheOneBefore) {
  const MonitorRecording recording;
  auto player = play(kLow, 5);
  EXPECT_TRUE(hears(recording, kLow));
  player.reset();
  player = play(kHigh, 5);
  EXPECT_TRUE(hears(recording, kHigh));
  // Again in the other order, without pauses.
  player.reset();
  player = play(kHigh, 6);
  player.reset();
  player = play(kLow, 6);
  EXPECT_TRUE(hears(recording, kLow));
}

TEST_F(AudioPlayerTest, StopSilencesAndPlayGoesOnFromThere) {
  const MonitorRecording recording;
  Listener listener;
  const auto player = play(kLow, 1.5, &listener);
  EXPECT_TRUE(hears(recording, kLow));
  player->stop();
  EXPECT_FALSE(player->isPlaying());
  EXPECT_TRUE(hearsNothing(recording));
  EXPECT_EQ(listener.told, 0);
  const double resumed = MonitorRecording::now();
  player->play();
  EXPECT_TRUE(hears(recording, kLow));
  EXPECT_TRUE(runUntil([&] { return listener.told == 1; }));
  EXPECT_TRUE(listener.well);
  EXPECT_LT(recording.longestGapSince(resumed + 0.1), 0.05);
}

TEST_F(AudioPlayerTest, ADelegateThatIsGoneIsNotTold) {
  const MonitorRecording recording;
  auto listener = std::make_unique<Listener>();
  const auto player = play(kLow, 0.3, listener.get());
  listener.reset();
  EXPECT_TRUE(runUntil([&] { return !player->isPlaying(); }));
  runFor(0.25);
}

TEST_F(AudioPlayerTest, ADelegateMayEndThePlayerThatTellsIt) {
  struct Owner final : platform::AudioPlayerDelegate {
    void audioPlayerDidFinishPlaying(AudioPlayer&, bool) override { player.reset(); }
    std::unique_ptr<AudioPlayer> player;
  } owner;
  const MonitorRecording recording;
  owner.player = play(kLow, 0.2, &owner);
  EXPECT_TRUE(runUntil([&] { return !owner.player; }));
}

TEST_F(AudioPlayerTest, WithoutAServerOneLineSaysSoAndAPressWorksWhenItIsBack) {
  server().kill();
  // The output may have lost a connection; that line does not belong to this press.
  auto first = play(kLow, 0.2);
  EXPECT_TRUE(runUntil([&] { return !first->isPlaying(); }));
  warnings_.take();

  Listener listener;
  const auto player = play(kLow, 1, &listener);
  EXPECT_TRUE(runUntil([&] { return listener.told == 1; }));
  EXPECT_FALSE(listener.well);
  EXPECT_THAT(warnings_.take(),
              ElementsAre(HasSubstr("No sound: the sound server cannot be reached")));

  int back = 0;
  AudioPlayer::awaitSound(listener, [&] { ++back; });
  runFor(0.3);
  EXPECT_EQ(back, 0);
  ASSERT_TRUE(server().start());
  EXPECT_TRUE(runUntil([&] { return back == 1; }));
  const MonitorRecording recording;
  const auto later = play(kHigh, 3);
  EXPECT_TRUE(hears(recording, kHigh));
  EXPECT_TRUE(warnings_.take().empty());
}

TEST_F(AudioPlayerTest, AServerThatDiesWhileItPlaysIsFoundAgain) {
  Listener listener;
  std::unique_ptr<AudioPlayer> player;
  {
    const MonitorRecording recording;
    player = play(kLow, 30, &listener);
    EXPECT_TRUE(hears(recording, kLow));
    server().kill();
    EXPECT_TRUE(runUntil([&] { return listener.told == 1; }));
    EXPECT_FALSE(listener.well);
    EXPECT_FALSE(player->isPlaying());
    EXPECT_THAT(warnings_.take(), ElementsAre(HasSubstr("cannot be reached")));
  }
  ASSERT_TRUE(server().start());
  const MonitorRecording recording;
  player = play(kHigh, 5);
  EXPECT_TRUE(hears(recording, kHigh));
}

TEST_F(AudioPlayerTest, AFrozenServerIsGivenUpAndFoundAgain) {
  Listener listener;
  std::unique_ptr<AudioPlayer> player;
  {
    const MonitorRecording recording;
    player = play(kLow, 30, &listener);
    EXPECT_TRUE(hears(recording, kLow));
    server().freeze(true);
    EXPECT_TRUE(runUntil([&] { return listener.told == 1; }, 30));
    EXPECT_THAT(warnings_.take(), ElementsAre(HasSubstr("does not answer")));
    // Presses during this time neither wait nor queue up.
    for (int press = 0; press < 20; ++press) player = play(kLow, 30);
    EXPECT_TRUE(player->isPlaying());
    EXPECT_TRUE(runUntil([&] { return !player->isPlaying(); }, 30));
    EXPECT_THAT(warnings_.take(), ElementsAre(HasSubstr("does not answer")));
    server().freeze(false);
  }
  const MonitorRecording recording;
  player = play(kHigh, 5);
  EXPECT_TRUE(hears(recording, kHigh));
}

TEST_F(AudioPlayerTest, ASuspendedOutputIsSaidAndWorksWhenItWakes) {
  MonitorRecording recording;
  recording.suspendOutput(true);
  runFor(0.2);
  Listener listener;
  auto player = play(kLow, 30, &listener);
  EXPECT_TRUE(runUntil([&] { return listener.told == 1; }, 30));
  EXPECT_FALSE(listener.well);
  EXPECT_THAT(warnings_.take(), ElementsAre(HasSubstr("has suspended its output")));
  recording.suspendOutput(false);
  player = play(kHigh, 30);
  EXPECT_TRUE(hears(recording, kHigh));
}

TEST_F(AudioPlayerTest, AMissingOrBrokenClipIsAnError) {
  const auto absent = AudioPlayer::withContentsOfFile(folder_.path("absent.m4a"));
  ASSERT_FALSE(absent);
  EXPECT_THAT(absent.error().message, HasSubstr("No such file"));
  EXPECT_FALSE(AudioPlayer::withContentsOfFile(folder_.write("broken.m4a", "no sound")));
}

TEST_F(AudioPlayerTest, TheRouteIsKnownAgainAfterTheServerWasLost) {
  auto& session = platform::AudioSession::standard();
  const auto first = session.initialize();
  EXPECT_TRUE(first || first.error().code == platform::AudioSession::kAlreadyInitialized);
  const auto second = session.initialize();
  ASSERT_FALSE(second);
  EXPECT_EQ(second.error().code, platform::AudioSession::kAlreadyInitialized);
  const auto route = [&] { return session.route().valueOr(std::nullopt); };
  // An output without ports has a route without a name.
  EXPECT_TRUE(runUntil([&] { return route() == ""; }));
  server().kill();
  EXPECT_TRUE(runUntil([&] { return !route(); }));
  ASSERT_TRUE(server().start());
  EXPECT_TRUE(runUntil([&] { return route() == ""; }));
}

}  // namespace
