#include "platform/device/AudioSession.h"

#include <pulse/pulseaudio.h>

#include <atomic>
#include <mutex>
#include <string_view>

namespace valdren::platform {
namespace {

bool mentions(std::string_view text, std::string_view word) {
  return text.find(word) != std::string_view::npos;
}

std::string routeNamed(const pa_sink_port_info& port) {
  if (port.type == PA_DEVICE_PORT_TYPE_HEADSET) return "Headset";
  if (port.type == PA_DEVICE_PORT_TYPE_HEADPHONES) return "Headphone";
  if (port.type == PA_DEVICE_PORT_TYPE_SPEAKER) return "Speaker";
  const std::string_view name = port.name ? port.name : "";
  if (mentions(name, "headset")) return "Headset";
  if (mentions(name, "headphone")) return "Headphone";
  if (mentions(name, "speaker")) return "Speaker";
  return std::string(name);
}

/// Stores the server's reports on its default output, on a thread of the library.
class PulseAudioSession final : public AudioSession {
 public:
  ~PulseAudioSession() override {
    if (!loop_) return;
    pa_threaded_mainloop_stop(loop_);
    disconnect();
    pa_threaded_mainloop_free(loop_);
  }

  Result<> initialize() override {
    if (loop_) return Error{kErrorDomain, kAlreadyInitialized, "it is initialized already"};
    loop_ = pa_threaded_mainloop_new();
    pa_threaded_mainloop_start(loop_);
    if (!reconnect()) return Error{kErrorDomain, kNoServer, "there is no sound server"};
    return {};
  }

  Result<std::optional<std::string>> route() override {
    if (loop_ && lost_) reconnect();
    const std::lock_guard lock(mutex_);
    return route_;
  }

 private:
  bool reconnect() {
    lost_ = false;
    pa_threaded_mainloop_lock(loop_);
    disconnect();
    context_ = pa_context_new(pa_threaded_mainloop_get_api(loop_), "Quorbel");
    pa_context_set_state_callback(context_, contextChanged, this);
    const bool started =
        pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) >= 0;
    if (!started) lost_ = true;
    pa_threaded_mainloop_unlock(loop_);
    return started;
  }

  void disconnect() {
    if (!context_) return;
    pa_context_set_state_callback(context_, nullptr, nullptr);
    pa_context_set_subscribe_callback(context_, nullptr, nullptr);
    pa_context_disconnect(context_);
    pa_context_unref(context_);
    context_ = nullptr;
  }

  static void contextChanged(pa_context* context, void* self) {
    auto& session = *static_cast<PulseAudioSession*>(self);
    const pa_context_state_t state = pa_context_get_state(context);
    if (state == PA_CONTEXT_READY) {
      pa_context_set_subscribe_callback(
          context,
          [](pa_context* changed, pa_subscription_event_type_t, std::uint32_t, void* self) {
            static_cast<PulseAudioSession*>(self)->ask(changed);
          },
          self);
      const auto watched =
          pa_subscription_mask_t(PA_SUBSCRIPTION_MASK_SINK | PA_SUBSCRIPTION_MASK_SERVER);
      release(pa_context_subscribe(context, watched, nullptr, nullptr));
      session.ask(context);
    } else if (!PA_CONTEXT_IS_GOOD(state)) {
      session.keep(std::nullopt);
      session.lost_ = true;
    }
  }

  void ask(pa_context* context) {
    release(pa_context_get_sink_info_by_name(
        context, "@DEFAULT_SINK@",
        [](pa_context*, const pa_sink_info* sink, int last, void* self) {
          auto& session = *static_cast<PulseAudioSession*>(self);
          if (last < 0) session.keep(std::nullopt);
          if (last || !sink) return;
          session.keep(sink->active_port ? routeNamed(*sink->active_port) : std::string());
        },
        this));
  }

  static void release(pa_operation* operation) {
    if (operation) pa_operation_unref(operation);
  }

  void keep(std::optional<std::string> route) {
    const std::lock_guard lock(mutex_);
    route_ = std::move(route);
  }

  pa_threaded_mainloop* loop_ = nullptr;
  pa_context* context_ = nullptr;
  /// The server was lost or could not be reached; the next call of `route` connects again.
  std::atomic<bool> lost_ = false;
  std::mutex mutex_;
  std::optional<std::string> route_;  // guarded by mutex_
};

}  // namespace

AudioSession& AudioSession::standard() {
  static PulseAudioSession session;
  return session;
}

}  // namespace valdren::platform
