#include "platform/audio/AudioOutput.h"

#include <pulse/pulseaudio.h>

#include <algorithm>
#include <string>

#include "platform/Log.h"

namespace platform {
namespace {

/// How much sound lies ready at the server, and how often it asks for more. Short enough for a
/// press to be heard at once; the server's own mixing comes on top.
constexpr pa_usec_t kBuffered = 8000;
constexpr pa_usec_t kRequested = 2000;

/// For so long after the last sound the stream goes on with silence; then it rests, so that neither
/// the processor nor the sound card is kept awake.
constexpr pa_usec_t kRestAfter = 20 * PA_USEC_PER_SEC;

constexpr pa_sample_spec kForm{PA_SAMPLE_FLOAT32NE, kSampleRate, kChannels};

}  // namespace

/// The connection and its stream. Lives on the output's thread alone.
class AudioOutput::Server {
 public:
  Server() : loop_(pa_mainloop_new()) {}

  ~Server() {
    disconnect();
    pa_mainloop_free(loop_);
  }

  /// May be called on any thread: makes `turn` return.
  void wake() { pa_mainloop_wakeup(loop_); }

  void turn() { pa_mainloop_iterate(loop_, 1, nullptr); }

  void connect() {
    if (context_ && PA_CONTEXT_IS_GOOD(pa_context_get_state(context_))) return;
    disconnect();
    context_ = pa_context_new(pa_mainloop_get_api(loop_), "Quorbel");
    pa_context_set_state_callback(context_, contextChanged, this);
    if (pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) fail();
  }

  void add(std::shared_ptr<Voice> voice) {
    voices_.push_back(std::move(voice));
    if (stream_ && resting_) rest(false);
  }

 private:
  static void contextChanged(pa_context* context, void* self) {
    auto& server = *static_cast<Server*>(self);
    const pa_context_state_t state = pa_context_get_state(context);
    if (state == PA_CONTEXT_READY) server.openStream();
    if (state == PA_CONTEXT_FAILED) server.fail();
  }

  static void streamChanged(pa_stream* stream, void* self) {
    if (pa_stream_get_state(stream) == PA_STREAM_FAILED) static_cast<Server*>(self)->fail();
  }

  static void wanted(pa_stream*, std::size_t bytes, void* self) {
    static_cast<Server*>(self)->write(bytes);
  }

  void openStream() {
    pa_proplist* const properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_MEDIA_ROLE, "game");
    stream_ = pa_stream_new_with_proplist(context_, "Soundboard", &kForm, nullptr, properties);
    pa_proplist_free(properties);
    pa_stream_set_state_callback(stream_, streamChanged, this);
    pa_stream_set_write_callback(stream_, wanted, this);
    pa_buffer_attr buffer;
    buffer.maxlength = std::uint32_t(-1);
    buffer.tlength = std::uint32_t(pa_usec_to_bytes(kBuffered, &kForm));
    buffer.minreq = std::uint32_t(pa_usec_to_bytes(kRequested, &kForm));
    buffer.prebuf = 0;  // plays on, with silence, through any gap
    buffer.fragsize = std::uint32_t(-1);
    resting_ = false;
    silentSince_ = pa_rtclock_now();
    const auto flags = pa_stream_flags_t(PA_STREAM_ADJUST_LATENCY | PA_STREAM_AUTO_TIMING_UPDATE);
    if (pa_stream_connect_playback(stream_, nullptr, &buffer, flags, nullptr, nullptr) < 0) fail();
  }

  void write(std::size_t bytes) {
    while (bytes > 0) {
      void* memory = nullptr;
      std::size_t size = bytes;
      if (pa_stream_begin_write(stream_, &memory, &size) < 0 || !memory) return;
      size -= size % pa_frame_size(&kForm);
      if (size == 0) {
        pa_stream_cancel_write(stream_);
        return;
      }
      fill(static_cast<float*>(memory), size / pa_frame_size(&kForm));
      pa_stream_write(stream_, memory, size, nullptr, 0, PA_SEEK_RELATIVE);
      bytes -= std::min(bytes, size);
    }
  }

  void fill(float* target, std::size_t frames) {
    std::fill(target, target + frames * kChannels, 0.0F);
    for (const auto& voice : voices_) mix(*voice, target, frames);
    std::erase_if(voices_, [](const auto& voice) { return voice->ended.load(); });
    for (std::size_t sample = 0; sample < frames * kChannels; ++sample) {
      target[sample] = std::clamp(target[sample], -1.0F, 1.0F);
    }
    const pa_usec_t now = pa_rtclock_now();
    if (!voices_.empty()) silentSince_ = now;
    if (now - silentSince_ > kRestAfter) rest(true);
  }

  void rest(bool resting) {
    resting_ = resting;
    silentSince_ = pa_rtclock_now();
    if (pa_operation* const operation =
            pa_stream_cork(stream_, resting ? 1 : 0, nullptr, nullptr)) {
      pa_operation_unref(operation);
    }
  }

  /// The server is out of reach, or was lost.
  void fail() {
    if (!context_) return;
    const std::string reason = pa_strerror(pa_context_errno(context_));
    disconnect();
    for (const auto& voice : voices_) voice->ended = true;
    voices_.clear();
    logWarning("No sound: the sound server cannot be reached (" + reason +
               "). The next press tries again.");
  }

  void disconnect() {
    if (stream_) {
      pa_stream_set_state_callback(stream_, nullptr, nullptr);
      pa_stream_set_write_callback(stream_, nullptr, nullptr);
      pa_stream_disconnect(stream_);
      pa_stream_unref(stream_);
      stream_ = nullptr;
    }
    if (context_) {
      pa_context_set_state_callback(context_, nullptr, nullptr);
      pa_context_disconnect(context_);
      pa_context_unref(context_);
      context_ = nullptr;
    }
  }

  pa_mainloop* const loop_;
  pa_context* context_ = nullptr;
  pa_stream* stream_ = nullptr;
  std::vector<std::shared_ptr<Voice>> voices_;
  bool resting_ = false;
  pa_usec_t silentSince_ = 0;
};

AudioOutput& AudioOutput::shared() {
  static AudioOutput output;
  return output;
}

AudioOutput::AudioOutput() : server_(std::make_unique<Server>()), thread_([this] { run(); }) {}

AudioOutput::~AudioOutput() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  wake();
  thread_.join();
}

void AudioOutput::wake() {
  server_->wake();
}

void AudioOutput::prepare() {
  {
    const std::lock_guard lock(mutex_);
    connectWanted_ = true;
  }
  wake();
}

std::shared_ptr<Voice> AudioOutput::start(std::shared_ptr<const DecodedClip> clip,
                                          std::size_t startFrame) {
  auto voice = std::make_shared<Voice>(std::move(clip), startFrame);
  {
    const std::lock_guard lock(mutex_);
    incoming_.push_back(voice);
    connectWanted_ = true;
  }
  wake();
  return voice;
}

void AudioOutput::run() {
  while (true) {
    std::vector<std::shared_ptr<Voice>> incoming;
    bool connectWanted = false;
    {
      const std::lock_guard lock(mutex_);
      if (ending_) return;
      incoming.swap(incoming_);
      std::swap(connectWanted, connectWanted_);
    }
    for (auto& voice : incoming) server_->add(std::move(voice));
    if (connectWanted) server_->connect();
    server_->turn();
  }
}

}  // namespace platform
