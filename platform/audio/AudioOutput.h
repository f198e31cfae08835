// The process's connection to the sound server, kept open between clips.
#pragma once

#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/audio/Voice.h"

namespace valdren::platform {

class SoundServer;

/// Mixes voices into one stream. Called on the main thread; a background thread talks to the
/// server, so that no call waits for it. Without a server, or when it is lost, one log line says
/// so, the voices end, and the next voice tries to connect again.
class AudioOutput {
 public:
  static AudioOutput& shared();
  AudioOutput();
  ~AudioOutput();
  AudioOutput(const AudioOutput&) = delete;
  AudioOutput& operator=(const AudioOutput&) = delete;

  /// Connects before the first sound.
  void prepare();
  /// Whether a voice that starts now would be heard.
  bool isAudible() const;
  /// Plays the clip from `startFrame` on.
  std::shared_ptr<Voice> start(std::shared_ptr<const DecodedClip> clip, std::size_t startFrame);
  /// Stops the voice.
  void stop(Voice& voice);

 private:
  void run();

  std::mutex mutex_;
  std::vector<std::shared_ptr<Voice>> incoming_;  // guarded by mutex_
  bool connectWanted_ = false;                    // guarded by mutex_
  bool changed_ = false;                          // guarded by mutex_
  bool ending_ = false;                           // guarded by mutex_
  // used by the thread only, except `wake` and `isAudible`
  const std::unique_ptr<SoundServer> server_;
  std::thread thread_;
};

}  // namespace valdren::platform
