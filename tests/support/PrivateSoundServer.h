// A private sound server that plays into nothing, and a recording of its output.
#pragma once

#include <sys/types.h>

#include <memory>
#include <mutex>
#include <string>
#include <vector>

struct pa_context;
struct pa_stream;
struct pa_threaded_mainloop;

namespace quorbel_tests {

/// A pulseaudio process that ends with this object and with the test program. PULSE_SERVER names it
/// while it exists. Its folder and socket stay the same across restarts.
class PrivateSoundServer {
 public:
  PrivateSoundServer();
  ~PrivateSoundServer();
  PrivateSoundServer(const PrivateSoundServer&) = delete;
  PrivateSoundServer& operator=(const PrivateSoundServer&) = delete;

  /// Whether the program is installed.
  static bool isInstalled();

  /// Starts it and waits until it can be reached; false after half a minute.
  bool start();
  /// Kills it, like a crash, and waits until it has ended.
  void kill();
  /// Stops the process, or continues it.
  void freeze(bool frozen) const;

 private:
  bool canBeReached() const;

  std::string folder_;
  std::string socket_;
  std::string previous_;  // PULSE_SERVER as it was
  bool hadPrevious_;
  pid_t process_ = -1;
};

/// Records the monitor of the server's output. Times are seconds on the monotonic clock; levels are
/// 0 to 1.
class MonitorRecording {
 public:
  MonitorRecording();
  ~MonitorRecording();
  MonitorRecording(const MonitorRecording&) = delete;
  MonitorRecording& operator=(const MonitorRecording&) = delete;

  static constexpr int kRate = 48000;
  static double now();

  /// When the first sample above `level` after `since` was played; below 0 when there is none yet.
  double firstSoundSince(double since, float level = 0.01F) const;
  /// When the last sample above `level` was played; below 0 when there is none.
  double lastSound(float level = 0.01F) const;
  /// The loudest sample of the last `seconds`.
  float peakOfLast(double seconds) const;
  /// The amplitude of the tone in the last `seconds`.
  double toneInLast(double seconds, double frequency) const;
  /// The longest time below `level` between two samples above it, in seconds, since `since`.
  double longestGapSince(double since, float level = 0.01F) const;

  /// Suspends the server's output, as a user or power saving does, or resumes it.
  void suspendOutput(bool suspended);

 private:
  struct Mark {
    double clock;     // when it was taken
    double position;  // in seconds from the recording's beginning: what was being played
  };

  void connect();
  void read();
  void mark(bool answered);
  double clockOf(std::size_t sample) const;
  std::size_t sampleAt(double clock) const;

  pa_threaded_mainloop* loop_;
  pa_context* context_ = nullptr;
  pa_stream* stream_ = nullptr;
  mutable std::mutex mutex_;
  std::vector<float> samples_;  // guarded by mutex_
  std::vector<Mark> marks_;     // guarded by mutex_
  bool asking_ = false;         // of the library's thread
};

}  // namespace quorbel_tests
