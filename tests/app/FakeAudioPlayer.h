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
  /// The calls of all players since the last `forget`, as "new wikipedia.m4a", "play", "stop",
  /// "gone".
  static std::vector<std::string>& events();
  /// The player that was made last; null when it is destroyed.
  static FakeAudioPlayer* latest();
  /// While true, no file can be played.
  static bool& broken();

  /// The callback that waits for sound; empty when there is none.
  static std::function<void()>& soundAwaited();

  explicit FakeAudioPlayer(const std::string& path);
  ~FakeAudioPlayer() override;

  void setDelegate(platform::WeakPtr<platform::AudioPlayerDelegate> wanted) override {
    delegate = wanted;
  }
  bool play() override;
  void stop() override;
  bool isPlaying() const override { return playing; }

  platform::WeakPtr<platform::AudioPlayerDelegate> delegate;
  bool playing = false;
};

}  // namespace quorbel_tests
