#include "platform/audio/SoundServer.h"

#include <pulse/pulseaudio.h>

#include <algorithm>

#include "platform/base/Log.h"

namespace valdren::platform {
namespace {

/// The amount of sound buffered at the server, which bridges times when this machine is busy, and
/// the size of the server's requests, which is also how far it mixes ahead.
constexpr pa_usec_t kBuffered = 250 * PA_USEC_PER_MSEC;
constexpr pa_usec_t kPiece = 10 * PA_USEC_PER_MSEC;

/// A change takes time to arrive: frames that play sooner than this cannot be replaced.
constexpr StreamFrame kTooLate = kSampleRate * 2 / 1000;

/// After this time without sound the stream is paused, so that the processor and the sound card can
/// sleep.
constexpr pa_usec_t kRestAfter = 20 * PA_USEC_PER_SEC;

/// A server that takes no sound for this long is given up. Some wireless outputs take a second to
/// wake.
constexpr pa_usec_t kPatience = 3 * PA_USEC_PER_SEC;

constexpr pa_sample_spec kForm{PA_SAMPLE_FLOAT32NE, kSampleRate, kChannels};
constexpr StreamFrame kFrameBytes = sizeof(float) * kChannels;

void release(pa_operation* operation) {
  if (operation) pa_operation_unref(operation);
}

}  // namespace

SoundServer::SoundServer() : loop_(pa_mainloop_new()) {}

SoundServer::~SoundServer() {
  disconnect();
  pa_mainloop_free(loop_);
}

void SoundServer::wake() {
  pa_mainloop_wakeup(loop_);
}

void SoundServer::turn() {
  if (pa_mainloop_prepare(loop_, patience()) < 0 || pa_mainloop_poll(loop_) < 0) return;
  pa_mainloop_dispatch(loop_);
  audible_ = isReady() && !isSuspended();
  if (audible_) said_ = false;
  follow();
}

void SoundServer::connect() {
  if (context_ && PA_CONTEXT_IS_GOOD(pa_context_get_state(context_))) return;
  disconnect();
  context_ = pa_context_new(pa_mainloop_get_api(loop_), "Quorbel");
  const auto changed = [](pa_context* context, void* self) {
    const pa_context_state_t state = pa_context_get_state(context);
    if (state == PA_CONTEXT_READY) static_cast<SoundServer*>(self)->openStream();
    if (state == PA_CONTEXT_FAILED) static_cast<SoundServer*>(self)->fail();
  };
  pa_context_set_state_callback(context_, changed, this);
  if (pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) fail();
}

void SoundServer::openStream() {
  pa_proplist* const properties = pa_proplist_new();
  pa_proplist_sets(properties, PA_PROP_MEDIA_ROLE, "game");
  stream_ = pa_stream_new_with_proplist(context_, "Soundboard", &kForm, nullptr, properties);
  pa_proplist_free(properties);
  if (!stream_) {
    fail();
    return;
  }
  const auto changed = [](pa_stream*, void* self) {
    static_cast<SoundServer*>(self)->streamChanged();
  };
  const auto wanted = [](pa_stream*, std::size_t, void* self) {
    static_cast<SoundServer*>(self)->writeWanted();
  };
  const auto dry = [](pa_stream*, void* self) { static_cast<SoundServer*>(self)->ranDry(); };
  pa_stream_set_state_callback(stream_, changed, this);
  pa_stream_set_write_callback(stream_, wanted, this);
  pa_stream_set_underflow_callback(stream_, dry, this);
  pa_buffer_attr buffer;
  buffer.maxlength = std::uint32_t(-1);
  buffer.tlength = std::uint32_t(pa_usec_to_bytes(kBuffered, &kForm));
  buffer.minreq = std::uint32_t(pa_usec_to_bytes(kPiece, &kForm));
  buffer.prebuf = kFrameBytes;  // pauses when empty and resumes with the next frame
  buffer.fragsize = std::uint32_t(-1);
  if (pa_stream_connect_playback(stream_, nullptr, &buffer, PA_STREAM_EARLY_REQUESTS, nullptr,
                                 nullptr) < 0) {
    fail();
  }
}

void SoundServer::streamChanged() {
  const pa_stream_state_t state = pa_stream_get_state(stream_);
  if (state == PA_STREAM_FAILED) fail();
  if (state != PA_STREAM_READY) return;
  written_ = 0;
  standing_ = true;
  resting_ = false;
  movedAt_ = silentSince_ = pa_rtclock_now();
  for (const auto& voice : voices_) voice->begin = 0;
  update({});
}

bool SoundServer::isSuspended() const {
  return pa_stream_is_suspended(stream_) == 1;
}

bool SoundServer::isReady() const {
  return stream_ && pa_stream_get_state(stream_) == PA_STREAM_READY;
}

/// The frames heard by now, at most: the latency inside the server is not counted.
StreamFrame SoundServer::played(Microseconds now) const {
  if (standing_) return written_;
  const auto passed = StreamFrame((now - startedAt_) * kSampleRate / PA_USEC_PER_SEC);
  return std::min(written_, startedFrame_ + passed);
}

/// The frame at which the last voice ends.
StreamFrame SoundServer::lastFrame() const {
  StreamFrame last = 0;
  for (const auto& voice : voices_) last = std::max(last, voice->end());
  return last;
}

void SoundServer::update(std::vector<std::shared_ptr<Voice>> incoming) {
  const Microseconds now = pa_rtclock_now();
  if (voices_.empty()) movedAt_ = now;
  const bool standing = played(now) == written_;
  const StreamFrame change = std::min(written_, played(now) + (standing ? 0 : kTooLate));
  for (const auto& voice : voices_) {
    if (voice->stopping && voice->fade == kNoFrame) voice->fade = std::max(change, voice->begin);
  }
  for (auto& voice : incoming) {
    voice->begin = change;
    if (!voice->stopping) voices_.push_back(std::move(voice));
  }
  if (!isReady()) {
    std::erase_if(voices_, [](const auto& voice) { return voice->stopping.load(); });
    return;
  }
  if (resting_ && !voices_.empty()) rest(false);
  const StreamFrame before = written_;
  written_ = change;
  write(before, change < before);
  writeWanted();
}

/// Writes from `written_` up to `until`; with `again`, over frames that were written before.
void SoundServer::write(StreamFrame until, bool again) {
  if (until <= written_) return;
  const auto frames = static_cast<std::size_t>(until - written_);
  mixed_.assign(frames * kChannels, 0.0F);
  for (const auto& voice : voices_) mix(*voice, written_, mixed_.data(), frames);
  for (float& sample : mixed_) sample = std::clamp(sample, -1.0F, 1.0F);
  const Microseconds now = pa_rtclock_now();
  if (!again && played(now) == written_) {
    standing_ = false;
    startedFrame_ = written_;
    startedAt_ = now;
  }
  pa_stream_write(stream_, mixed_.data(), mixed_.size() * sizeof(float), nullptr,
                  again ? written_ * kFrameBytes : 0, again ? PA_SEEK_ABSOLUTE : PA_SEEK_RELATIVE);
  written_ = until;
}

/// Writes the voices' frames, as far as the server has asked for them.
void SoundServer::writeWanted() {
  if (!isReady()) return;
  const std::size_t bytes = pa_stream_writable_size(stream_);
  if (bytes == 0 || bytes == std::size_t(-1)) return;
  movedAt_ = pa_rtclock_now();
  write(std::min(lastFrame(), written_ + StreamFrame(bytes) / kFrameBytes), false);
}

void SoundServer::ranDry() {
  // The notice may be older than the last write.
  if (pa_stream_get_underflow_index(stream_) < written_ * kFrameBytes) return;
  standing_ = true;
  writeWanted();
}

/// Ends the voices that were heard completely, and gives a stuck server up.
void SoundServer::follow() {
  const Microseconds now = pa_rtclock_now();
  const StreamFrame heard = played(now);
  if (isReady()) {
    if (!voices_.empty()) silentSince_ = now;
    for (const auto& voice : voices_) {
      voice->position =
          voice->from +
          static_cast<std::size_t>(std::clamp(heard, voice->begin, voice->end()) - voice->begin);
      if (heard >= voice->end()) voice->ended = true;
    }
    std::erase_if(voices_, [](const auto& voice) { return voice->ended.load(); });
    if (voices_.empty() && !resting_ && now - silentSince_ >= kRestAfter) rest(true);
  }
  if (voices_.empty() || now - movedAt_ < kPatience) return;
  if (isReady() && written_ >= lastFrame()) return;
  const bool suspended = isReady() && isSuspended();
  disconnect();
  endVoices(suspended ? "the sound server has suspended its output"
                      : "the sound server does not answer");
}

/// How long `turn` may wait, in microseconds; without limit below 0.
int SoundServer::patience() const {
  const Microseconds now = pa_rtclock_now();
  if (voices_.empty()) {
    if (!isReady() || resting_) return -1;
    return int(silentSince_ + kRestAfter - std::min(now, silentSince_ + kRestAfter));
  }
  // Until the next voice ends. The server wakes this thread before a voice is completely written.
  StreamFrame next = StreamFrame(kPatience / 4 * kSampleRate / PA_USEC_PER_SEC);
  if (isReady()) {
    for (const auto& voice : voices_) {
      if (voice->end() <= written_) next = std::min(next, voice->end() - played(now));
    }
  }
  return int((std::max<StreamFrame>(next, 0) + 1) * StreamFrame(PA_USEC_PER_SEC) / kSampleRate);
}

void SoundServer::rest(bool resting) {
  resting_ = resting;
  release(pa_stream_cork(stream_, resting ? 1 : 0, nullptr, nullptr));
}

void SoundServer::endVoices(const std::string& reason) {
  const bool missed = !voices_.empty();
  for (const auto& voice : voices_) voice->ended = true;
  voices_.clear();
  if (missed || !said_) logWarning("No sound: " + reason + ". The next press tries again.");
  said_ = true;
}

/// The server cannot be reached, or was lost.
void SoundServer::fail() {
  if (!context_) return;
  const std::string reason = pa_strerror(pa_context_errno(context_));
  disconnect();
  endVoices("the sound server cannot be reached (" + reason + ")");
}

void SoundServer::disconnect() {
  audible_ = false;
  if (stream_) {
    pa_stream_set_state_callback(stream_, nullptr, nullptr);
    pa_stream_set_write_callback(stream_, nullptr, nullptr);
    pa_stream_set_underflow_callback(stream_, nullptr, nullptr);
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

}  // namespace valdren::platform
