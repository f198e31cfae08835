#include "tests/support/PrivateSoundServer.h"

#include <pulse/pulseaudio.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <numbers>
#include <thread>

namespace quorbel_tests {
namespace {

constexpr const char* kVariable = "PULSE_SERVER";

void pause() {
  std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

void release(pa_operation* operation) {
  if (operation) pa_operation_unref(operation);
}

}  // namespace

PrivateSoundServer::PrivateSoundServer() {
  folder_ = (std::filesystem::temp_directory_path() / "quorbel-sound-XXXXXX").string();
  if (!mkdtemp(folder_.data())) std::abort();
  socket_ = folder_ + "/native";
  const char* const previous = std::getenv(kVariable);
  hadPrevious_ = previous != nullptr;
  if (previous) previous_ = previous;
  setenv(kVariable, ("unix:" + socket_).c_str(), 1);
}

PrivateSoundServer::~PrivateSoundServer() {
  kill();
  if (hadPrevious_) {
    setenv(kVariable, previous_.c_str(), 1);
  } else {
    unsetenv(kVariable);
  }
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

bool PrivateSoundServer::isInstalled() {
  return std::system("command -v pulseaudio >/dev/null 2>&1") == 0;
}

bool PrivateSoundServer::start() {
  const std::string protocol =
      "--load=module-native-protocol-unix auth-anonymous=1 socket=" + socket_;
  const pid_t parent = getpid();
  process_ = fork();
  if (process_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(1);
    setenv("HOME", folder_.c_str(), 1);
    setenv("PULSE_RUNTIME_PATH", folder_.c_str(), 1);
    unsetenv(kVariable);
    execlp("pulseaudio", "pulseaudio", "--daemonize=no", "--use-pid-file=no", "-n",
           "--exit-idle-time=-1", ("--log-target=file:" + folder_ + "/log").c_str(),
           protocol.c_str(), "--load=module-null-sink sink_name=nothing", nullptr);
    _exit(127);
  }
  for (int attempt = 0; attempt < 3000; ++attempt, pause()) {
    if (canBeReached()) return true;
    if (waitpid(process_, nullptr, WNOHANG) == process_) {
      process_ = -1;
      return false;
    }
  }
  return false;
}

bool PrivateSoundServer::canBeReached() const {
  const int probe = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  socket_.copy(address.sun_path, sizeof address.sun_path - 1);
  const bool reached =
      ::connect(probe, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  close(probe);
  return reached;
}

void PrivateSoundServer::kill() {
  if (process_ < 0) return;
  ::kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
  process_ = -1;
}

void PrivateSoundServer::freeze(bool frozen) const {
  ::kill(process_, frozen ? SIGSTOP : SIGCONT);
}

MonitorRecording::MonitorRecording() : loop_(pa_threaded_mainloop_new()) {
  pa_threaded_mainloop_start(loop_);
  connect();
  // The recording works once the first piece has arrived.
  for (int attempt = 0; attempt < 1000; ++attempt, pause()) {
    const std::lock_guard lock(mutex_);
    if (!marks_.empty()) return;
  }
}

MonitorRecording::~MonitorRecording() {
  pa_threaded_mainloop_stop(loop_);
  if (stream_) pa_stream_unref(stream_);
  if (context_) {
    pa_context_disconnect(context_);
    pa_context_unref(context_);
  }
  pa_threaded_mainloop_free(loop_);
}

double MonitorRecording::now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void MonitorRecording::connect() {
  pa_threaded_mainloop_lock(loop_);
  context_ = pa_context_new(pa_threaded_mainloop_get_api(loop_), "Recording");
  pa_context_set_state_callback(
      context_,
      [](pa_context* context, void* self) {
        if (pa_context_get_state(context) != PA_CONTEXT_READY) return;
        auto& recording = *static_cast<MonitorRecording*>(self);
        constexpr pa_sample_spec kForm{PA_SAMPLE_FLOAT32NE, kRate, 1};
        recording.stream_ = pa_stream_new(context, "Recording", &kForm, nullptr);
        pa_stream_set_read_callback(
            recording.stream_,
            [](pa_stream*, std::size_t, void* reader) {
              static_cast<MonitorRecording*>(reader)->read();
            },
            self);
        // Makes the server mix at most ten milliseconds at a time instead of seconds; otherwise
        // audio that it mixed ahead and replaced would be in the recording. Players may ask for
        // shorter steps.
        pa_buffer_attr buffer{};
        buffer.maxlength = std::uint32_t(-1);
        buffer.fragsize = std::uint32_t(pa_usec_to_bytes(10000, &kForm));
        pa_stream_connect_record(recording.stream_, "nothing.monitor", &buffer,
                                 PA_STREAM_ADJUST_LATENCY);
      },
      this);
  pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
  pa_threaded_mainloop_unlock(loop_);
}

void MonitorRecording::read() {
  const void* data = nullptr;
  std::size_t bytes = 0;
  const std::lock_guard lock(mutex_);
  while (pa_stream_readable_size(stream_) > 0 && pa_stream_peek(stream_, &data, &bytes) == 0) {
    const auto* const piece = static_cast<const float*>(data);
    const std::size_t count = bytes / sizeof(float);
    if (piece) {
      samples_.insert(samples_.end(), piece, piece + count);
    } else {
      samples_.resize(samples_.size() + count, 0.0F);  // a hole
    }
    if (bytes > 0) pa_stream_drop(stream_);
  }
  // The library's estimate of the stream's clock takes seconds to settle, so this asks the server.
  if (asking_) return;
  asking_ = true;
  release(pa_stream_update_timing_info(
      stream_,
      [](pa_stream*, int succeeded, void* self) {
        static_cast<MonitorRecording*>(self)->mark(succeeded != 0);
      },
      this));
}

void MonitorRecording::mark(bool answered) {
  const std::lock_guard lock(mutex_);
  asking_ = false;
  const pa_timing_info* const timing = pa_stream_get_timing_info(stream_);
  if (!answered || !timing || timing->write_index_corrupt) return;
  // Recorded audio that was not sent yet is older; audio mixed ahead is newer.
  const double sent = double(timing->write_index) / sizeof(float) / kRate;
  const double ahead = (double(timing->sink_usec) - double(timing->source_usec)) / 1e6;
  marks_.push_back({now() - double(timing->transport_usec) / 1e6, sent - ahead});
}

/// The clock and the recording are sampled together; the median of many marks ignores late ones.
double MonitorRecording::clockOf(std::size_t sample) const {
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

std::size_t MonitorRecording::sampleAt(double clock) const {
  if (marks_.empty()) return samples_.size();
  const auto after = std::partition_point(marks_.begin(), marks_.end(),
                                          [&](const Mark& mark) { return mark.clock < clock; });
  const Mark& mark = after == marks_.end() ? marks_.back() : *after;
  const double position = std::max(0.0, mark.position + clock - mark.clock);
  return std::min(samples_.size(), std::size_t(position * kRate));
}

double MonitorRecording::firstSoundSince(double since, float level) const {
  const std::lock_guard lock(mutex_);
  for (std::size_t sample = sampleAt(since); sample < samples_.size(); ++sample) {
    if (std::abs(samples_[sample]) > level) return clockOf(sample);
  }
  return -1;
}

double MonitorRecording::lastSound(float level) const {
  const std::lock_guard lock(mutex_);
  for (std::size_t sample = samples_.size(); sample-- > 0;) {
    if (std::abs(samples_[sample]) > level) return clockOf(sample);
  }
  return -1;
}

float MonitorRecording::peakOfLast(double seconds) const {
  const std::lock_guard lock(mutex_);
  const std::size_t count = std::min(samples_.size(), std::size_t(seconds * kRate));
  float peak = 0;
  for (std::size_t sample = samples_.size() - count; sample < samples_.size(); ++sample) {
    peak = std::max(peak, std::abs(samples_[sample]));
  }
  return peak;
}

double MonitorRecording::toneInLast(double seconds, double frequency) const {
  const std::lock_guard lock(mutex_);
  const std::size_t count = std::min(samples_.size(), std::size_t(seconds * kRate));
  if (count == 0) return 0;
  double sine = 0;
  double cosine = 0;
  for (std::size_t place = 0; place < count; ++place) {
    const double angle = 2 * std::numbers::pi * frequency * double(place) / kRate;
    const float sample = samples_[samples_.size() - count + place];
    sine += sample * std::sin(angle);
    cosine += sample * std::cos(angle);
  }
  return 2 * std::hypot(sine, cosine) / double(count);
}

double MonitorRecording::longestGapSince(double since, float level) const {
  const std::lock_guard lock(mutex_);
  std::size_t longest = 0;
  std::size_t last = 0;
  for (std::size_t sample = sampleAt(since); sample < samples_.size(); ++sample) {
    if (std::abs(samples_[sample]) <= level) continue;
    if (last > 0) longest = std::max(longest, sample - last);
    last = sample;
  }
  return double(longest) / kRate;
}

void MonitorRecording::suspendOutput(bool suspended) {
  pa_threaded_mainloop_lock(loop_);
  release(pa_context_suspend_sink_by_name(context_, "nothing", suspended, nullptr, nullptr));
  pa_threaded_mainloop_unlock(loop_);
}

}  // namespace quorbel_tests
