#include "tests/app/FakeAudioPlayer.h"

#include <filesystem>

#include "platform/audio/ClipDecoder.h"

namespace valdren::platform {

using quorbel_tests::FakeAudioPlayer;

// In place of the sound library's own.
Result<std::unique_ptr<AudioPlayer>> AudioPlayer::withContentsOfFile(const std::string& path) {
  if (FakeAudioPlayer::broken) return Error{kClipErrorDomain, 0, "it is broken"};
  return std::unique_ptr<AudioPlayer>(
      std::make_unique<FakeAudioPlayer>(std::filesystem::path(path).filename().string()));
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the declaration is the platform's.
void AudioPlayer::prepare(std::vector<std::string>) {}

void AudioPlayer::awaitSound(const WeakTarget&, std::function<void()> back) {
  FakeAudioPlayer::soundAwaited = std::move(back);
}

}  // namespace valdren::platform
