#include "tests/support/PrivateSoundServer.h"

#include <gio/gio.h>
#include <gio/gunixsocketaddress.h>
#include <pulse/pulseaudio.h>
#include <signal.h>
#include <sys/prctl.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/base/GObjectPtr.h"
#include "tests/support/Loop.h"

namespace quorbel_tests {

using valdren::platform::GObjectPtr;

PrivateSoundServer::~PrivateSoundServer() {
  kill();
}

bool PrivateSoundServer::start() {
  const GObjectPtr<GSubprocessLauncher> launcher(
      g_subprocess_launcher_new(G_SUBPROCESS_FLAGS_NONE));
  g_subprocess_launcher_setenv(launcher.get(), "HOME", folder_.path().c_str(), TRUE);
  g_subprocess_launcher_setenv(launcher.get(), "PULSE_RUNTIME_PATH", folder_.path().c_str(), TRUE);
  g_subprocess_launcher_unsetenv(launcher.get(), "PULSE_SERVER");
  g_subprocess_launcher_set_child_setup(
      launcher.get(), [](gpointer) { prctl(PR_SET_PDEATHSIG, SIGKILL); }, nullptr, nullptr);
  const std::string log = "--log-target=file:" + folder_.file("log");
  const std::string protocol =
      "--load=module-native-protocol-unix auth-anonymous=1 socket=" + socket_;
  GSubprocess* const process = g_subprocess_launcher_spawn(
      launcher.get(), nullptr, "pulseaudio", "--daemonize=no", "--use-pid-file=no", "-n",
      "--exit-idle-time=-1", log.c_str(), protocol.c_str(),
      "--load=module-null-sink sink_name=nothing", nullptr);
  if (process) process_.reset(process, g_object_unref);
  return process && runUntil([this] { return canBeReached(); });
}

bool PrivateSoundServer::canBeReached() const {
  const GObjectPtr<GSocketAddress> address(g_unix_socket_address_new(socket_.c_str()));
  const GObjectPtr<GSocketClient> client(g_socket_client_new());
  return GObjectPtr<GSocketConnection>(g_socket_client_connect(
             client.get(), G_SOCKET_CONNECTABLE(address.get()), nullptr, nullptr)) != nullptr;
}

void PrivateSoundServer::kill() {
  if (!process_) return;
  g_subprocess_force_exit(process_.get());
  g_subprocess_wait(process_.get(), nullptr, nullptr);
  process_.reset();
}

void PrivateSoundServer::freeze(bool frozen) const {
  g_subprocess_send_signal(process_.get(), frozen ? SIGSTOP : SIGCONT);
}

MonitorRecording::MonitorRecording() : loop_(pa_threaded_mainloop_new()) {
  pa_threaded_mainloop_start(loop_);
  locked([this] { connect(); });
  runUntil([this] { return sampleCount() > 0; });
}

MonitorRecording::~MonitorRecording() {
  pa_threaded_mainloop_stop(loop_);
  if (stream_) pa_stream_unref(stream_);
  pa_context_disconnect(context_);
  pa_context_unref(context_);
  pa_threaded_mainloop_free(loop_);
}

void MonitorRecording::locked(const std::function<void()>& work) const {
  pa_threaded_mainloop_lock(loop_);
  work();
  pa_threaded_mainloop_unlock(loop_);
}

void MonitorRecording::connect() {
  const auto connected = [](pa_context* context, void* self) {
    if (pa_context_get_state(context) != PA_CONTEXT_READY) return;
    auto& recording = *static_cast<MonitorRecording*>(self);
    constexpr pa_sample_spec kForm{PA_SAMPLE_FLOAT32NE, kRate, 1};
    recording.stream_ = pa_stream_new(context, "Recording", &kForm, nullptr);
    const auto heard = [](pa_stream*, std::size_t, void* reader) {
      static_cast<MonitorRecording*>(reader)->read();
    };
    pa_stream_set_read_callback(recording.stream_, heard, self);
    // Makes the server mix at most ten milliseconds at a time instead of seconds; otherwise audio
    // that it mixed ahead and replaced would be in the recording. Players may ask for shorter
    // steps.
    pa_buffer_attr buffer{};
    buffer.maxlength = std::uint32_t(-1);
    buffer.fragsize = std::uint32_t(pa_usec_to_bytes(10000, &kForm));
    pa_stream_connect_record(recording.stream_, "nothing.monitor", &buffer,
                             PA_STREAM_ADJUST_LATENCY);
  };
  context_ = pa_context_new(pa_threaded_mainloop_get_api(loop_), "Recording");
  pa_context_set_state_callback(context_, connected, this);
  pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
}

void MonitorRecording::read() {
  const void* data = nullptr;
  std::size_t bytes = 0;
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
}

std::size_t MonitorRecording::sampleCount() const {
  std::size_t count = 0;
  locked([&] { count = samples_.size(); });
  return count;
}

std::size_t MonitorRecording::firstOfLast(double seconds) const {
  return samples_.size() - std::min(samples_.size(), std::size_t(seconds * kRate));
}

float MonitorRecording::peakOfLast(double seconds) const {
  float peak = 0;
  locked([&] {
    for (std::size_t sample = firstOfLast(seconds); sample < samples_.size(); ++sample) {
      peak = std::max(peak, std::abs(samples_[sample]));
    }
  });
  return peak;
}

double MonitorRecording::toneInLast(double seconds, double frequency) const {
  double sine = 0;
  double cosine = 0;
  std::size_t count = 0;
  locked([&] {
    for (std::size_t sample = firstOfLast(seconds); sample < samples_.size(); ++sample, ++count) {
      const double angle = 2 * std::numbers::pi * frequency * double(count) / kRate;
      sine += samples_[sample] * std::sin(angle);
      cosine += samples_[sample] * std::cos(angle);
    }
  });
  return count ? 2 * std::hypot(sine, cosine) / double(count) : 0;
}

double MonitorRecording::longestGapSince(std::size_t sample, float level) const {
  std::size_t longest = 0;
  locked([&] {
    for (std::size_t last = 0; sample < samples_.size(); ++sample) {
      if (std::abs(samples_[sample]) <= level) continue;
      if (last > 0) longest = std::max(longest, sample - last);
      last = sample;
    }
  });
  return double(longest) / kRate;
}

void MonitorRecording::suspendOutput(bool suspended) {
  locked([&] {
    pa_operation_unref(
        pa_context_suspend_sink_by_name(context_, "nothing", suspended, nullptr, nullptr));
  });
}

}  // namespace quorbel_tests
