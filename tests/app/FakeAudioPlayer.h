// Stands in for the sound library: players that make no noise and remember what was asked of them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/audio/AudioPlayer.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

class FakeAudioPlayer final : public platform::AudioPlayer {
 public:
  /// What happened to all players since the last `forget`, as "new wikipedia.m4a", "play", "stop",
  /// "gone".
  static std::vector<std::string>& events();
  /// The player that was made last and still lives; null when it is gone.
  static FakeAudioPlayer* latest();
  /// While true, files hold nothing that can be played.
  static bool& broken();

  /// What is to be called when sound is back; empty when nobody waits for it.
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
