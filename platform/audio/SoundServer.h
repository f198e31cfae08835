// The connection to the sound server and the one stream that the voices are mixed into.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/audio/Voice.h"

struct pa_context;
struct pa_mainloop;
struct pa_stream;

namespace valdren::platform {

/// Keeps a quarter of a second of sound at the server, so that a busy machine does not make it
/// stutter, and yet is heard at once: while nothing plays the stream stands still, and when
/// something changes, what the server holds but has not played is mixed and written again.
///
/// Belongs to one thread; only `wake` and `isAudible` may be called on any. Whatever goes wrong is
/// said in one log line, ends the voices, and is tried anew at the next `connect`.
class SoundServer {
 public:
  SoundServer();
  ~SoundServer();
  SoundServer(const SoundServer&) = delete;
  SoundServer& operator=(const SoundServer&) = delete;

  /// Begins to connect unless that is under way or done.
  void connect();
  /// Takes in new voices and what has been asked of the present ones.
  void update(std::vector<std::shared_ptr<Voice>> incoming);
  /// Waits for the server, for `wake` or for what is due next, and does it.
  void turn();
  /// Makes `turn` return.
  void wake();
  /// Whether a voice that begins now would be heard. False before the voices end that were lost.
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

  /// The stream has been written up to here.
  StreamFrame written_ = 0;
  /// Whether the stream stands still at `written_`. If not, it set off from `startedFrame_` at
  /// `startedAt_`, at the earliest.
  bool standing_ = true;
  StreamFrame startedFrame_ = 0;
  Microseconds startedAt_ = 0;

  /// When the server last took sound from us or was first asked to; when a voice last sounded.
  Microseconds movedAt_ = 0;
  Microseconds silentSince_ = 0;
  bool resting_ = false;

  std::atomic<bool> audible_ = false;
  /// Whether the log knows that the server is away. It is told of every press, not of every try.
  bool said_ = false;
};

}  // namespace valdren::platform
