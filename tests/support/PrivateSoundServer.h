// A private sound server that plays into nothing, and a recording of its output.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/Process.h"

typedef struct _GSubprocess GSubprocess;
struct pa_context;
struct pa_stream;
struct pa_threaded_mainloop;

namespace quorbel_tests {

/// A pulseaudio process that ends with this object and with the test program. PULSE_SERVER names it
/// while it exists. Its folder and socket stay the same across restarts.
class PrivateSoundServer {
 public:
  ~PrivateSoundServer();

  /// Starts it and waits until it can be reached; false after half a minute.
  bool start();
  /// Kills it, like a crash, and waits until it has ended.
  void kill();
  /// Stops the process, or continues it.
  void freeze(bool frozen) const;

 private:
  bool canBeReached() const;

  const TemporaryFolder folder_;
  const std::string socket_ = folder_.file("native");
  const ScopedVariable variable_{"PULSE_SERVER", ("unix:" + socket_).c_str()};
  std::shared_ptr<GSubprocess> process_;
};

/// Records the monitor of the server's output. Levels are 0 to 1.
class MonitorRecording {
 public:
  MonitorRecording();
  ~MonitorRecording();
  MonitorRecording(const MonitorRecording&) = delete;
  MonitorRecording& operator=(const MonitorRecording&) = delete;

  static constexpr int kRate = 48000;

  /// The loudest sample of the last `seconds`.
  float peakOfLast(double seconds) const;
  /// The amplitude of the tone in the last `seconds`.
  double toneInLast(double seconds, double frequency) const;
  /// How many samples there are, and the longest time below `level` between two samples above it,
  /// in seconds, from this sample on.
  std::size_t sampleCount() const;
  double longestGapSince(std::size_t sample, float level = 0.01F) const;

  /// Suspends the server's output, as a user or power saving does, or resumes it.
  void suspendOutput(bool suspended);

 protected:
  void locked(const std::function<void()>& work) const;

  pa_threaded_mainloop* loop_;
  pa_context* context_ = nullptr;
  pa_stream* stream_ = nullptr;
  std::vector<float> samples_;  // of the library's thread, like all of these

 private:
  void connect();
  void read();
  std::size_t firstOfLast(double seconds) const;
};

}  // namespace quorbel_tests
