#include "tests/app/FakeAudioPlayer.h"

#include <filesystem>

#include "platform/audio/ClipDecoder.h"

namespace quorbel_tests {
namespace {

FakeAudioPlayer* theLatest = nullptr;

}  // namespace

std::vector<std::string>& FakeAudioPlayer::events() {
  static std::vector<std::string> all;
  return all;
}

FakeAudioPlayer* FakeAudioPlayer::latest() {
  return theLatest;
}

bool& FakeAudioPlayer::broken() {
  static bool value = false;
  return value;
}

std::function<void()>& FakeAudioPlayer::soundAwaited() {
  static std::function<void()> value;
  return value;
}

FakeAudioPlayer::FakeAudioPlayer(const std::string& path) {
  events().push_back("new " + std::filesystem::path(path).filename().string());
  theLatest = this;
}

FakeAudioPlayer::~FakeAudioPlayer() {
  events().push_back("gone");
  if (theLatest == this) theLatest = nullptr;
}

bool FakeAudioPlayer::play() {
  events().push_back("play");
  return playing = true;
}

void FakeAudioPlayer::stop() {
  events().push_back("stop");
  playing = false;
}

}  // namespace quorbel_tests

namespace valdren::platform {

// In place of the sound library's own.
Result<std::unique_ptr<AudioPlayer>> AudioPlayer::withContentsOfFile(const std::string& path) {
  if (quorbel_tests::FakeAudioPlayer::broken()) return Error{kClipErrorDomain, 0, "it is broken"};
  return std::unique_ptr<AudioPlayer>(std::make_unique<quorbel_tests::FakeAudioPlayer>(path));
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the declaration is the platform's.
void AudioPlayer::prepare(std::vector<std::string>) {}

void AudioPlayer::awaitSound(const WeakTarget&, std::function<void()> back) {
  quorbel_tests::FakeAudioPlayer::soundAwaited() = std::move(back);
}

}  // namespace valdren::platform
