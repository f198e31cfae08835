// Replaces the sound library: silent players that record their calls.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/audio/AudioPlayer.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

class FakeAudioPlayer final : public platform::AudioPlayer {
 public:
  /// The calls of all players, as "new wikipedia.m4a", "play", "stop", "gone".
  static inline std::vector<std::string> events;
  /// The player that was made last; null when it is destroyed.
  static inline FakeAudioPlayer* latest = nullptr;
  /// While true, no file can be played.
  static inline bool broken = false;
  /// The callback that waits for sound; empty when there is none.
  static inline std::function<void()> soundAwaited;

  explicit FakeAudioPlayer(const std::string& name) {
    events.push_back("new " + name);
    latest = this;
  }
  ~FakeAudioPlayer() override {
    events.emplace_back("gone");
    if (latest == this) latest = nullptr;
  }

  void setDelegate(platform::WeakPtr<platform::AudioPlayerDelegate> wanted) override {
    delegate = wanted;
  }
  bool play() override {
    events.emplace_back("play");
    return playing = true;
  }
  void stop() override {
    events.emplace_back("stop");
    playing = false;
  }
  bool isPlaying() const override { return playing; }

  platform::WeakPtr<platform::AudioPlayerDelegate> delegate;
  bool playing = false;
};

}  // namespace quorbel_tests
