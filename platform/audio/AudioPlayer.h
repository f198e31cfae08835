// Plays one clip.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/base/WeakPtr.h"

namespace valdren::platform {

class AudioPlayer;

/// Told about a player's end, when it wants to be.
class AudioPlayerDelegate : public virtual Trackable {
 public:
  /// The clip was heard to its end, or the sound server was lost (`successfully` false).
  virtual void audioPlayerDidFinishPlaying(AudioPlayer&, bool /*successfully*/) {}

 protected:
  ~AudioPlayerDelegate() = default;
};

/// A player is cheap to make: clips stay decoded in memory and the way to the sound server stays
/// open between players. Its sound stops when it is destroyed. Main thread only.
class AudioPlayer {
 public:
  virtual ~AudioPlayer() = default;

  /// A player for the clip (at most its first minute), or null, with one log line, when there is no
  /// such file or it holds no sound that can be decoded.
  static std::unique_ptr<AudioPlayer> withContentsOfFile(const std::string& path);

  /// Decodes the clips and connects to the sound server ahead of the first press, without waiting
  /// for either.
  static void prepare(std::vector<std::string> paths);

  /// Looks for a sound server that was lost, about every two seconds, and calls `back` once when
  /// sound can be heard again. Ends early when the target is gone, or its delayed calls are
  /// dropped.
  static void awaitSound(const Trackable& target, std::function<void()> back);

  /// Not owned.
  virtual void setDelegate(WeakPtr<AudioPlayerDelegate> delegate) = 0;
  /// Starts from the beginning, or where `stop` left off. True when the clip is on its way. Never
  /// waits for the sound server: when that turns out to be out of reach, one log line says so and
  /// `isPlaying` becomes false.
  virtual bool play() = 0;
  /// Silences the clip at once, without a click.
  virtual void stop() = 0;
  virtual bool isPlaying() const = 0;
};

}  // namespace valdren::platform
