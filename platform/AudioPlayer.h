// Plays one clip.
#pragma once

#include <memory>
#include <string>

#include "platform/WeakPtr.h"

namespace platform {

class AudioPlayer;

/// Told about a player's end, when it wants to be.
class AudioPlayerDelegate : public virtual Trackable {
 public:
  virtual void audioPlayerDidFinishPlaying(AudioPlayer&, bool /*successfully*/) {}

 protected:
  ~AudioPlayerDelegate() = default;
};

/// A player is cheap to make: clips stay decoded in memory and the way to the sound server stays
/// open between players. Its sound stops when it is destroyed. Main thread only.
class AudioPlayer {
 public:
  virtual ~AudioPlayer() = default;

  /// A player for the clip, or null, with one log line, when there is no such file or it holds no
  /// sound that can be decoded.
  static std::unique_ptr<AudioPlayer> withContentsOfFile(const std::string& path);

  /// Not owned.
  virtual void setDelegate(WeakPtr<AudioPlayerDelegate> delegate) = 0;
  /// Starts from the beginning or where `stop` left off. False, with one log line, when the sound
  /// server cannot be reached; the next call tries again. Never waits for the server.
  virtual bool play() = 0;
  virtual void stop() = 0;
  virtual bool isPlaying() const = 0;
};

}  // namespace platform
