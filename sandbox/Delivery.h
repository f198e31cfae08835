// Sends one answer, optionally late, in pieces, cut or never.
#pragma once

#include <libsoup/soup.h>

#include <functional>
#include <memory>

#include "platform/base/GObjectPtr.h"
#include "sandbox/Http.h"

namespace platform = valdren::platform;

namespace sandbox {

/// Sends an answer to a message, on the thread whose default context the server uses. Destroying it
/// stops its timers; the message itself ends with its connection.
class Delivery {
 public:
  Delivery(SoupServerMessage* message, Answer answer);
  ~Delivery();
  Delivery(const Delivery&) = delete;
  Delivery& operator=(const Delivery&) = delete;

  void start();

 private:
  using Step = void (Delivery::*)();

  void send();
  void sendWhole();
  void sendPart();
  void sendPiece();
  void cut();
  void after(platform::Seconds delay, Step step);
  static gboolean onTimer(gpointer self);
  static void onWroteChunk(SoupServerMessage* message, gpointer self);

  platform::GObjectPtr<SoupServerMessage> message_;
  Answer answer_;
  std::size_t sent_ = 0;
  gulong chunks_ = 0;
  platform::GSourcePtr timer_;
  Step next_ = nullptr;
};

}  // namespace sandbox
