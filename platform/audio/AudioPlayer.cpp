#include "platform/audio/AudioPlayer.h"

#include "platform/audio/AudioOutput.h"
#include "platform/audio/ClipCache.h"
#include "platform/base/MainThread.h"
#include "platform/base/RunLoop.h"

namespace valdren::platform {
namespace {

/// How often a player with a delegate checks whether its clip has ended, in seconds.
constexpr Seconds kWatchInterval{0.1};

/// The time between two checks for sound, in seconds, and the number of checks per attempt to
/// connect. A press connects too, so its sound and the change on screen stay close together.
constexpr Seconds kLookInterval{0.25};
constexpr int kLooksToATry = 8;

void lookForSound(const WeakTarget& target, std::function<void()> back, int look) {
  if (look % kLooksToATry == 0) AudioOutput::shared().prepare();
  RunLoop::shared().performAfterDelay(target, kLookInterval,
                                      [&target, back = std::move(back), look] {
                                        if (AudioOutput::shared().isAudible()) {
                                          back();
                                        } else {
                                          lookForSound(target, back, look + 1);
                                        }
                                      });
}

class ClipPlayer final : public AudioPlayer, public WeakTarget {
 public:
  explicit ClipPlayer(std::shared_ptr<const DecodedClip> clip) : clip_(std::move(clip)) {}
  ~ClipPlayer() override { stop(); }

  void setDelegate(WeakPtr<AudioPlayerDelegate> delegate) override {
    delegate_ = delegate;
    if (isPlaying()) follow();
  }

  bool play() override {
    assertMainThread();
    if (isPlaying()) return true;
    const bool atEnd = !voice_ || voice_->position >= clip_->frameCount();
    voice_ = AudioOutput::shared().start(clip_, atEnd ? 0 : voice_->position.load());
    follow();  // even if the voice has already failed: the delegate is told of that, too
    return true;
  }

  void stop() override {
    assertMainThread();
    if (isPlaying()) AudioOutput::shared().stop(*voice_);
    RunLoop::shared().cancelPerformRequests(*this);
  }

  bool isPlaying() const override { return voice_ && !voice_->stopping && !voice_->ended; }

 private:
  /// Watches the voice for the delegate, if there is one.
  void follow() {
    RunLoop::shared().cancelPerformRequests(*this);
    if (!delegate_) return;
    RunLoop::shared().performAfterDelay(*this, kWatchInterval, [this] {
      if (isPlaying()) {
        follow();
      } else if (AudioPlayerDelegate* const delegate = delegate_.get()) {
        delegate->audioPlayerDidFinishPlaying(*this, voice_->position >= clip_->frameCount());
      }
    });
  }

  std::shared_ptr<const DecodedClip> clip_;
  std::shared_ptr<Voice> voice_;
  WeakPtr<AudioPlayerDelegate> delegate_;
};

}  // namespace

Result<std::unique_ptr<AudioPlayer>> AudioPlayer::withContentsOfFile(const std::string& path) {
  assertMainThread();
  auto clip = ClipCache::shared().clip(path);
  if (!clip) return clip.error();
  return std::unique_ptr<AudioPlayer>(std::make_unique<ClipPlayer>(std::move(*clip)));
}

void AudioPlayer::prepare(std::vector<std::string> paths) {
  assertMainThread();
  AudioOutput::shared().prepare();
  ClipCache::shared().prepare(std::move(paths));
}

void AudioPlayer::awaitSound(const WeakTarget& target, std::function<void()> back) {
  assertMainThread();
  lookForSound(target, std::move(back), 0);
}

}  // namespace valdren::platform
