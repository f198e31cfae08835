// Plays one clip.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/base/Result.h"
#include "platform/base/WeakPtr.h"

namespace valdren::platform {

class AudioPlayer;

/// Told when a player ends.
class AudioPlayerDelegate : public virtual WeakTarget {
 public:
  /// The clip was heard to its end, or the sound server was lost (`successfully` false).
  virtual void audioPlayerDidFinishPlaying(AudioPlayer&, bool /*successfully*/) {}

 protected:
  ~AudioPlayerDelegate() = default;
};

/// Making a player is cheap: decoded clips stay in memory, and the connection to the sound server
/// stays open between players. Destroying it stops its sound. Main thread only.
class AudioPlayer {
 public:
  virtual ~AudioPlayer() = default;

  /// A player for the clip (at most its first minute), never null. An error when the file is
  /// missing or holds no sound that can be decoded.
  static Result<std::unique_ptr<AudioPlayer>> withContentsOfFile(const std::string& path);

  /// Decodes the clips and connects to the sound server before the first press, without waiting for
  /// either.
  static void prepare(std::vector<std::string> paths);

  /// Looks for a lost sound server, about every two seconds, and calls `back` once when sound can
  /// be heard again. Ends early when the target is destroyed or its delayed calls are cancelled.
  static void awaitSound(const WeakTarget& target, std::function<void()> back);

  /// Not owned.
  virtual void setDelegate(WeakPtr<AudioPlayerDelegate> delegate) = 0;
  /// Starts from the beginning, or where `stop` left off. True when the clip was handed to the
  /// output. Never waits for the sound server: when that cannot be reached, one log line says so
  /// and `isPlaying` becomes false.
  virtual bool play() = 0;
  /// Stops the clip at once, faded so that there is no click.
  virtual void stop() = 0;
  virtual bool isPlaying() const = 0;
};

}  // namespace valdren::platform
