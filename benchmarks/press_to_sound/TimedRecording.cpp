#include "benchmarks/press_to_sound/TimedRecording.h"

#include <pulse/pulseaudio.h>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace benchmarks {
namespace {

constexpr pa_usec_t kBetweenMarks = 20 * PA_USEC_PER_MSEC;

}  // namespace

TimedRecording::TimedRecording() {
  locked([this] {
    pa_stream_set_latency_update_callback(
        stream_, [](pa_stream*, void* self) { static_cast<TimedRecording*>(self)->mark(); }, this);
    timer_ = pa_context_rttime_new(
        context_, pa_rtclock_now(),
        [](pa_mainloop_api*, pa_time_event*, const timeval*, void* self) {
          static_cast<TimedRecording*>(self)->ask();
        },
        this);
  });
}

TimedRecording::~TimedRecording() {
  locked([this] {
    pa_threaded_mainloop_get_api(loop_)->time_free(timer_);
    pa_stream_set_latency_update_callback(stream_, nullptr, nullptr);
  });
}

double TimedRecording::now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// The library's estimate of the stream's clock takes seconds to settle, so this asks the server.
void TimedRecording::ask() {
  pa_context_rttime_restart(context_, timer_, pa_rtclock_now() + kBetweenMarks);
  if (pa_operation* const asked = pa_stream_update_timing_info(stream_, nullptr, nullptr)) {
    pa_operation_unref(asked);
  }
}

void TimedRecording::mark() {
  const pa_timing_info* const timing = pa_stream_get_timing_info(stream_);
  if (!timing || timing->write_index_corrupt) return;
  // Recorded audio that was not sent yet is older; audio mixed ahead is newer.
  const double sent = double(timing->write_index) / sizeof(float) / kRate;
  const double ahead = (double(timing->sink_usec) - double(timing->source_usec)) / 1e6;
  marks_.push_back({now() - double(timing->transport_usec) / 1e6, sent - ahead});
}

/// The clock and the recording are sampled together; the median of many marks ignores late ones.
double TimedRecording::clockOf(std::size_t sample) const {
  const double position = double(sample) / kRate;
  std::vector<double> differences;
  for (const Mark& mark : marks_) {
    if (std::abs(mark.position - position) < 0.5) differences.push_back(mark.clock - mark.position);
  }
  if (differences.empty()) return marks_.empty() ? 0 : marks_.back().clock;
  const auto middle = differences.begin() + std::ptrdiff_t(differences.size() / 2);
  std::nth_element(differences.begin(), middle, differences.end());
  return position + *middle;
}

std::size_t TimedRecording::sampleAt(double clock) const {
  if (marks_.empty()) return samples_.size();
  const auto after = std::partition_point(marks_.begin(), marks_.end(),
                                          [&](const Mark& mark) { return mark.clock < clock; });
  const Mark& mark = after == marks_.end() ? marks_.back() : *after;
  const double position = std::max(0.0, mark.position + clock - mark.clock);
  return std::min(samples_.size(), std::size_t(position * kRate));
}

double TimedRecording::firstSoundSince(double since, float level) const {
  double found = -1;
  locked([&] {
    const auto first =
        std::find_if(samples_.begin() + std::ptrdiff_t(sampleAt(since)), samples_.end(),
                     [level](float sample) { return std::abs(sample) > level; });
    if (first != samples_.end()) found = clockOf(std::size_t(first - samples_.begin()));
  });
  return found;
}

}  // namespace benchmarks
