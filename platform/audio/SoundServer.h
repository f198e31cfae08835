// The connection to the sound server and the one stream that the voices are mixed into.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/audio/Voice.h"

struct pa_context;
struct pa_mainloop;
struct pa_stream;

namespace valdren::platform {

/// Keeps a quarter of a second of sound at the server, so that a busy machine does not interrupt
/// it. A new voice is still heard at once: the stream is paused while nothing plays, and a change
/// replaces the frames that the server holds but has not played.
///
/// Belongs to one thread; only `wake` and `isAudible` may be called on any thread. A failure is
/// logged in one line and ends the voices; the next `connect` tries again.
class SoundServer {
 public:
  SoundServer();
  ~SoundServer();
  SoundServer(const SoundServer&) = delete;
  SoundServer& operator=(const SoundServer&) = delete;

  /// Starts to connect unless that is under way or done.
  void connect();
  /// Adds the new voices and applies the requests made to the present ones.
  void update(std::vector<std::shared_ptr<Voice>> incoming);
  /// Waits for the server, for `wake` or for the next due time, and handles the event.
  void turn();
  /// Makes `turn` return.
  void wake();
  /// Whether a voice that starts now would be heard. Becomes false before lost voices end.
  bool isAudible() const { return audible_; }

 private:
  using Microseconds = std::uint64_t;  // on the library's clock

  void openStream();
  void streamChanged();
  bool isReady() const;

  StreamFrame played(Microseconds now) const;
  StreamFrame lastFrame() const;
  void write(StreamFrame until, bool again);
  void writeWanted();
  void ranDry();
  void follow();
  int patience() const;
  void rest(bool resting);

  void endVoices(const std::string& reason);
  void fail();
  void disconnect();
  bool isSuspended() const;

  pa_mainloop* const loop_;
  pa_context* context_ = nullptr;
  pa_stream* stream_ = nullptr;
  std::vector<std::shared_ptr<Voice>> voices_;
  std::vector<float> mixed_;

  /// The number of frames written to the stream.
  StreamFrame written_ = 0;
  /// Whether the stream is paused at `written_`. If not, it started from `startedFrame_` at
  /// `startedAt_` at the earliest.
  bool standing_ = true;
  StreamFrame startedFrame_ = 0;
  Microseconds startedAt_ = 0;

  /// When the server last took sound or was first asked to; when a voice last sounded.
  Microseconds movedAt_ = 0;
  Microseconds silentSince_ = 0;
  bool resting_ = false;

  std::atomic<bool> audible_ = false;
  /// Whether the server's absence has been logged. Each press is logged, but not each automatic
  /// attempt.
  bool said_ = false;
};

}  // namespace valdren::platform
