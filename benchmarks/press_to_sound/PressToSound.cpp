// The time from the press of a sound button to its first sample, and how long the main thread is
// blocked. Compares our player with a new GStreamer playbin and with decoding for each press. All
// use one private sound server, recorded from its output's monitor.
// benchmark_press_to_sound [CLIP [PRESSES]]
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <numbers>
#include <string>
#include <thread>

#ifdef HAVE_GSTREAMER
#include <gst/gst.h>
#endif

#include "benchmarks/Figures.h"
#include "benchmarks/press_to_sound/TimedRecording.h"
#include "platform/audio/AudioOutput.h"
#include "platform/audio/AudioPlayer.h"
#include "platform/audio/ClipDecoder.h"

namespace platform = valdren::platform;

namespace {

using benchmarks::TimedRecording;

/// Above an encoder's noise, below a clip's first millisecond.
constexpr float kHeard = 0.01F;

void wait(double seconds) {
  std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

/// One way to play: a press replaces the present sound, a release stops it.
struct Way {
  const char* name;
  std::function<void()> press;
  std::function<void()> release;
  std::function<void()> before = [] {};
  double pause = 0;  // before each press, in seconds
};

void measure(const Way& way, const TimedRecording& recording, int presses) {
  benchmarks::Figures heard;
  benchmarks::Figures blocked;
  int unheard = 0;
  // The first press fills the caches and is not counted.
  for (int press = -1; press < presses; ++press) {
    wait(0.3 + 0.001 * (std::rand() % 50));
    while (recording.peakOfLast(0.25) > kHeard / 2) wait(0.02);
    way.before();
    wait(way.pause);
    const double before = TimedRecording::now();
    way.press();
    const double after = TimedRecording::now();
    double first = -1;
    while (first < 0 && TimedRecording::now() < before + 3) {
      wait(0.05);
      first = recording.firstSoundSince(before, kHeard);
    }
    wait(0.1);  // the recording's clock needs time on both sides
    first = recording.firstSoundSince(before, kHeard);
    way.release();
    if (press < 0) continue;
    if (first < 0) {
      ++unheard;
      continue;
    }
    heard.add((first - before) * 1000);
    blocked.add((after - before) * 1000);
  }
  std::printf("%-34s %8.1f %8.1f %8.1f %12.2f %8d\n", way.name, heard.median(),
              heard.quantile(0.95), heard.quantile(1), blocked.quantile(1), unheard);
  std::fflush(stdout);
}

Way ourPlayer(const std::string& clip) {
  auto player = std::make_shared<std::unique_ptr<platform::AudioPlayer>>();
  return {"decoded in memory, one stream",
          [player, clip] {
            player->reset();
            *player = platform::AudioPlayer::withContentsOfFile(clip).valueOr(nullptr);
            if (*player) (*player)->play();
          },
          [player] { (*player)->stop(); }};
}

/// The same while a silent clip plays, so that the new clip's first sample can be recognised.
Way ourPlayerReplacing(const std::string& clip) {
  auto playing = std::make_shared<std::shared_ptr<platform::Voice>>();
  auto silence = std::make_shared<platform::DecodedClip>();
  silence->samples.resize(std::size_t{3} * platform::kSampleRate * platform::kChannels);
  Way way = ourPlayer(clip);
  way.name = "  while another clip plays";
  way.before = [playing, silence] {
    *playing = platform::AudioOutput::shared().start(silence, 0);
    wait(0.2 + 0.001 * (std::rand() % 50));
  };
  way.press = [playing, press = way.press] {
    platform::AudioOutput::shared().stop(**playing);
    press();
  };
  return way;
}

/// The same after a silence that has paused the stream.
Way ourPlayerRested(const std::string& clip) {
  Way way = ourPlayer(clip);
  way.name = "  after 21 seconds of silence";
  way.pause = 21;
  return way;
}

Way decodedAnew(const std::string& clip) {
  auto voice = std::make_shared<std::shared_ptr<platform::Voice>>();
  return {"decoded anew, one stream",
          [voice, clip] {
            if (*voice) platform::AudioOutput::shared().stop(**voice);
            if (auto decoded = platform::decodeClip(clip)) {
              *voice = platform::AudioOutput::shared().start(std::move(*decoded), 0);
            }
          },
          [voice] { platform::AudioOutput::shared().stop(**voice); }};
}

/// A continuous tone, to detect gaps.
void measureGaps(const TimedRecording& recording) {
  constexpr int kSeconds = 20;
  auto tone = std::make_shared<platform::DecodedClip>();
  for (std::uint32_t frame = 0; frame < kSeconds * platform::kSampleRate; ++frame) {
    const auto sample = float(0.5 * std::sin(2 * std::numbers::pi * 1000 * frame / 48000));
    tone->samples.insert(tone->samples.end(), platform::kChannels, sample);
  }
  const auto voice = platform::AudioOutput::shared().start(tone, 0);
  wait(0.5);
  const std::size_t since = recording.sampleCount();
  wait(kSeconds - 2);
  const double gap = recording.longestGapSince(since, 0.3F);
  platform::AudioOutput::shared().stop(*voice);
  std::printf("Longest gap in %d seconds of a steady tone: %.1f ms\n", kSeconds - 2,
              gap < 0.001 ? 0 : gap * 1000);
}

#ifdef HAVE_GSTREAMER
Way playbin(const std::string& clip) {
  auto* const uri = gst_filename_to_uri(clip.c_str(), nullptr);
  auto bin = std::shared_ptr<GstElement*>(new GstElement*(nullptr));
  const auto end = [bin] {
    if (!*bin) return;
    gst_element_set_state(*bin, GST_STATE_NULL);
    gst_object_unref(*bin);
    *bin = nullptr;
  };
  return {"GStreamer playbin made anew",
          [bin, end, address = std::string(uri)] {
            end();
            *bin = gst_element_factory_make("playbin", nullptr);
            GstElement* const sink = gst_element_factory_make("pulsesink", nullptr);
            g_object_set(*bin, "uri", address.c_str(), "audio-sink", sink, nullptr);
            gst_element_set_state(*bin, GST_STATE_PLAYING);
          },
          end};
}
#endif

}  // namespace

int main(int argc, char** argv) {
  const std::string clip = argc > 1 ? argv[1] : CLIP_FOLDER "/gresh-family.m4a";
  const int presses = argc > 2 ? std::atoi(argv[2]) : 30;
  static quorbel_tests::PrivateSoundServer server;  // outlives what connects to it
  if (!server.start()) {
    std::puts("pulseaudio is not installed, or does not start: nothing to measure.");
    return 0;
  }
  const TimedRecording recording;
  std::printf("%d presses each, milliseconds\n%-34s %8s %8s %8s %12s %8s\n", presses, "", "median",
              "p95", "worst", "main thread", "unheard");
  // First, while none of our players is connected.
#ifdef HAVE_GSTREAMER
  gst_init(&argc, &argv);
  measure(playbin(clip), recording, presses);
#else
  std::puts("GStreamer playbin made anew: not built (package libgstreamer1.0-dev)");
#endif
  platform::AudioPlayer::prepare({clip});
  measure(decodedAnew(clip), recording, presses);
  measure(ourPlayer(clip), recording, presses);
  measure(ourPlayerReplacing(clip), recording, presses);
  measure(ourPlayerRested(clip), recording, std::min(presses, 4));
  measureGaps(recording);
  return 0;
}
