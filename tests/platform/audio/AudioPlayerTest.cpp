// Players with a real sound server, checked by recordings of its output's monitor.
#include "platform/audio/AudioPlayer.h"

#include <dlfcn.h>
#include <glib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pulse/pulseaudio.h>

#include <atomic>
#include <filesystem>
#include <string>

#include "platform/audio/AudioOutput.h"
#include "platform/device/AudioSession.h"
#include "tests/platform/audio/AudioFiles.h"
#include "tests/support/LogLines.h"
#include "tests/support/Loop.h"
#include "tests/support/PrivateSoundServer.h"
#include "tests/support/Process.h"

namespace platform = valdren::platform;

namespace {

std::atomic<pa_usec_t> clockIsAhead = 0;
std::atomic<bool> rests = false;
/// Told in place of what the server tells about its output's port.
std::atomic<pa_sink_port_info*> toldPort = nullptr;

}  // namespace

/// Replaces the library's function, so that silence can last.
extern "C" pa_usec_t pa_rtclock_now() {
  return static_cast<pa_usec_t>(g_get_monotonic_time()) + clockIsAhead;
}

/// Replaces the library's function, since an output that plays into nothing has no port.
extern "C" pa_operation* pa_context_get_sink_info_by_name(pa_context* context, const char* name,
                                                          pa_sink_info_cb_t told, void* data) {
  using Function = decltype(&pa_context_get_sink_info_by_name);
  static const auto ask =
      reinterpret_cast<Function>(dlsym(RTLD_NEXT, "pa_context_get_sink_info_by_name"));
  if (!toldPort) return ask(context, name, told, data);
  pa_sink_info sink{};
  sink.active_port = toldPort;
  told(context, &sink, 0, data);
  return nullptr;
}

/// Replaces the library's function to see whether the output rests.
extern "C" pa_operation* pa_stream_cork(pa_stream* stream, int corks, pa_stream_success_cb_t told,
                                        void* data) {
  static const auto cork =
      reinterpret_cast<decltype(&pa_stream_cork)>(dlsym(RTLD_NEXT, "pa_stream_cork"));
  rests = corks;
  return cork(stream, corks, told, data);
}

namespace {

using platform::AudioPlayer;
using namespace quorbel_tests;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr double kLow = 400;
constexpr double kHigh = 1500;

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
    server().kill();
    ASSERT_TRUE(server().start()) << "is pulseaudio installed?";
    // Waits until the output has handled the restart.
    runFor(0.1);
    warnings_.take();
  }

  std::unique_ptr<AudioPlayer> play(double frequency, double seconds,
                                    platform::AudioPlayerDelegate* listener = nullptr) {
    const std::string name = std::to_string(frequency) + "-" + std::to_string(seconds) + ".wav";
    if (!std::filesystem::exists(folder_.file(name))) {
      writeFile(folder_.file(name), toneFile(frequency, seconds));
    }
    auto player = AudioPlayer::withContentsOfFile(folder_.file(name));
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

  TemporaryFolder folder_;
  LogLines warnings_;
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
  player.reset();
  player = play(kHigh, 6);
  player.reset();
  player = play(kLow, 6);
  EXPECT_TRUE(hears(recording, kLow)) << "without a pause between two";
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
  player->play();
  EXPECT_TRUE(hears(recording, kLow));
  const std::size_t resumed = recording.sampleCount();
  EXPECT_TRUE(runUntil([&] { return listener.told == 1; }));
  EXPECT_TRUE(listener.well);
  EXPECT_LT(recording.longestGapSince(resumed), 0.05);
}

TEST_F(AudioPlayerTest, ADelegateMayGoOrEndThePlayerThatTellsIt) {
  struct Owner final : platform::AudioPlayerDelegate {
    void audioPlayerDidFinishPlaying(AudioPlayer&, bool) override { player.reset(); }
    std::unique_ptr<AudioPlayer> player;
  } owner;
  auto gone = std::make_unique<Listener>();
  const auto untold = play(kLow, 0.2, gone.get());
  gone.reset();
  owner.player = play(kLow, 0.3, &owner);
  EXPECT_TRUE(runUntil([&] { return !owner.player; }));
  EXPECT_FALSE(untold->isPlaying());
}

TEST_F(AudioPlayerTest, APressAfterALongSilenceWakesTheStream) {
  const MonitorRecording recording;
  auto player = play(kLow, 0.2);
  EXPECT_TRUE(runUntil([&] { return !player->isPlaying(); }));
  clockIsAhead += 21 * G_USEC_PER_SEC;
  AudioPlayer::prepare({});  // has the output look at the clock
  EXPECT_TRUE(runUntil([&] { return rests.load(); }));
  player = play(kHigh, 5);
  EXPECT_TRUE(hears(recording, kHigh));
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

TEST_F(AudioPlayerTest, AServerThatStopsWhileItPlaysIsGivenUpAndFoundAgain) {
  for (const char* line : {"cannot be reached", "does not answer", "has suspended its output"}) {
    SCOPED_TRACE(line);
    const bool dies = line == std::string("cannot be reached");
    const bool freezes = line == std::string("does not answer");
    std::optional<MonitorRecording> recording(std::in_place);
    Listener listener;
    auto player = play(kLow, 30, &listener);
    EXPECT_TRUE(hears(*recording, kLow));
    dies ? server().kill() : freezes ? server().freeze(true) : recording->suspendOutput(true);
    EXPECT_TRUE(runUntil([&] { return listener.told == 1; }));
    EXPECT_FALSE(listener.well);
    EXPECT_FALSE(player->isPlaying());
    EXPECT_THAT(warnings_.take(), ElementsAre(HasSubstr(line)));
    if (dies) {
      ASSERT_TRUE(server().start());
      recording.emplace();
    } else {
      // Presses during this time neither wait nor queue up.
      for (int press = 0; press < 20; ++press) player = play(kLow, 30);
      EXPECT_TRUE(player->isPlaying());
      EXPECT_TRUE(runUntil([&] { return !player->isPlaying(); }));
      EXPECT_THAT(warnings_.take(), ElementsAre(HasSubstr(line)));
      freezes ? server().freeze(false) : recording->suspendOutput(false);
    }
    player = play(kHigh, 5);
    EXPECT_TRUE(hears(*recording, kHigh));
  }
}

TEST_F(AudioPlayerTest, TheRouteIsFollowedAndKnownAgainAfterTheServerWasLost) {
  auto& session = platform::AudioSession::standard();
  static_cast<void>(session.initialize());
  const auto route = [&] { return session.route().valueOr(std::nullopt); };
  // An output without ports has a route without a name.
  EXPECT_TRUE(runUntil([&] { return route() == ""; }));
  const struct {
    int type;
    const char* name;
    const char* route;
  } ports[] = {{PA_DEVICE_PORT_TYPE_HEADSET, "x", "Headset"},
               {PA_DEVICE_PORT_TYPE_HEADPHONES, "x", "Headphone"},
               {PA_DEVICE_PORT_TYPE_SPEAKER, "headphone", "Speaker"},
               {PA_DEVICE_PORT_TYPE_UNKNOWN, "[Out] headset", "Headset"},
               {PA_DEVICE_PORT_TYPE_UNKNOWN, "analog-output-headphones", "Headphone"},
               {PA_DEVICE_PORT_TYPE_HDMI, "hdmi-speaker", "Speaker"},
               {PA_DEVICE_PORT_TYPE_HDMI, "hdmi-output-0", "hdmi-output-0"}};
  {
    MonitorRecording recording;
    bool suspended = false;
    for (const auto& each : ports) {
      pa_sink_port_info port{};
      port.type = each.type;
      port.name = each.name;
      toldPort = &port;
      recording.suspendOutput(suspended = !suspended);  // a change of which the session is told
      EXPECT_TRUE(runUntil([&] { return route() == each.route; })) << each.route;
      toldPort = nullptr;
    }
  }
  server().kill();
  EXPECT_TRUE(runUntil([&] { return !route(); }));
  ASSERT_TRUE(server().start());
  EXPECT_TRUE(runUntil([&] { return route() == ""; }));
}

}  // namespace
