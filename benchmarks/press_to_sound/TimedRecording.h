// A recording of the sound server's output that tells when its samples were heard.
#pragma once

#include "tests/support/PrivateSoundServer.h"

struct pa_time_event;

namespace benchmarks {

/// Times are seconds on the monotonic clock; levels are 0 to 1.
class TimedRecording final : public quorbel_tests::MonitorRecording {
 public:
  TimedRecording();
  ~TimedRecording();

  static double now();

  /// When the first sample above `level` after `since` was played; below 0 when there is none yet.
  double firstSoundSince(double since, float level) const;

 private:
  struct Mark {
    double clock;     // when it was taken
    double position;  // in seconds from the recording's beginning: what was being played
  };

  void ask();
  void mark();
  double clockOf(std::size_t sample) const;
  std::size_t sampleAt(double clock) const;

  pa_time_event* timer_ = nullptr;
  std::vector<Mark> marks_;  // of the library's thread
};

}  // namespace benchmarks
