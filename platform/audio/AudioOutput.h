// The one way to the sound server, kept open between clips.
#pragma once

#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/audio/Voice.h"

namespace valdren::platform {

class SoundServer;

/// Mixes voices into one stream. Called on the main thread; the server is spoken to on a thread of
/// the output's own, so that no call ever waits for it. Without a server, or when it goes away, one
/// log line says so, the voices end, and the next voice tries to reach it anew.
class AudioOutput {
 public:
  static AudioOutput& shared();
  AudioOutput();
  ~AudioOutput();
  AudioOutput(const AudioOutput&) = delete;
  AudioOutput& operator=(const AudioOutput&) = delete;

  /// Connects ahead of the first sound.
  void prepare();
  /// Whether what is started now would be heard.
  bool isAudible() const;
  /// Lets the clip be heard from `startFrame` on.
  std::shared_ptr<Voice> start(std::shared_ptr<const DecodedClip> clip, std::size_t startFrame);
  /// Silences the voice.
  void stop(Voice& voice);

 private:
  void run();

  std::mutex mutex_;
  std::vector<std::shared_ptr<Voice>> incoming_;  // guarded by mutex_
  bool connectWanted_ = false;                    // guarded by mutex_
  bool changed_ = false;                          // guarded by mutex_
  bool ending_ = false;                           // guarded by mutex_
  const std::unique_ptr<SoundServer> server_;     // of the thread, but for `wake` and `isAudible`
  std::thread thread_;
};

}  // namespace valdren::platform
