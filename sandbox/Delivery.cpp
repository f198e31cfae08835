#include "sandbox/Delivery.h"

#include <algorithm>
#include <utility>

namespace platform = valdren::platform;

namespace sandbox {
namespace {

constexpr platform::Seconds kLongestHang{120};
constexpr platform::Seconds kDribblePause{0.3};
constexpr std::size_t kDribblePieces = 20;
constexpr std::size_t kEndlessPiece = 64 * 1024;
/// An endless body is cut after this size.
constexpr std::size_t kEndlessBytes = std::size_t{1} << 30;

std::string repeatedTo(const std::string& text, std::size_t size) {
  std::string result;
  while (result.size() < size) result += text.empty() ? std::string(" ") : text;
  return result;
}

}  // namespace

Delivery::Delivery(SoupServerMessage* message, Answer answer)
    : message_(platform::shareGObject(message)), answer_(std::move(answer)) {}

Delivery::~Delivery() {
  if (chunks_) g_signal_handler_disconnect(message_.get(), chunks_);
}

void Delivery::start() {
  if (answer_.ending == Ending::Hang) {
    soup_server_message_pause(message_.get());
    after(kLongestHang, &Delivery::cut);
  } else if (answer_.delay.count() > 0) {
    soup_server_message_pause(message_.get());
    after(answer_.delay, &Delivery::send);
  } else {
    send();
  }
}

void Delivery::send() {
  if (answer_.ending == Ending::CutBeforeHeaders) {
    soup_server_message_pause(message_.get());
    cut();
    return;
  }
  SoupMessageHeaders* headers = soup_server_message_get_response_headers(message_.get());
  soup_server_message_set_status(message_.get(), static_cast<guint>(answer_.status), nullptr);
  for (const auto& [name, value] : answer_.headers) {
    soup_message_headers_append(headers, name.c_str(), value.c_str());
  }
  if (!answer_.contentType.empty()) {
    soup_message_headers_replace(headers, "Content-Type", answer_.contentType.c_str());
  }
  answer_.ending == Ending::Whole ? sendWhole() : sendPart();
  if (answer_.delay.count() > 0) soup_server_message_unpause(message_.get());
}

void Delivery::sendWhole() {
  if (answer_.body.empty()) return;
  soup_message_body_append(soup_server_message_get_response_body(message_.get()), SOUP_MEMORY_COPY,
                           answer_.body.data(), answer_.body.size());
}

void Delivery::sendPart() {
  SoupMessageHeaders* headers = soup_server_message_get_response_headers(message_.get());
  soup_message_body_set_accumulate(soup_server_message_get_response_body(message_.get()), FALSE);
  if (answer_.ending == Ending::Endless) {
    answer_.body = repeatedTo(answer_.body, kEndlessPiece);
    soup_message_headers_set_encoding(headers, SOUP_ENCODING_CHUNKED);
  } else {
    soup_message_headers_set_encoding(headers, SOUP_ENCODING_CONTENT_LENGTH);
    soup_message_headers_set_content_length(headers, static_cast<goffset>(answer_.body.size()));
  }
  chunks_ = g_signal_connect(message_.get(), "wrote-chunk", G_CALLBACK(onWroteChunk), this);
  sendPiece();
}

void Delivery::sendPiece() {
  SoupMessageBody* body = soup_server_message_get_response_body(message_.get());
  const bool endless = answer_.ending == Ending::Endless;
  const std::size_t parts = answer_.ending == Ending::Dribble ? kDribblePieces : 2;
  const std::size_t piece = endless ? answer_.body.size() : answer_.body.size() / parts + 1;
  const std::size_t from = endless ? 0 : std::min(sent_, answer_.body.size());
  const std::size_t size = std::min(piece, answer_.body.size() - from);
  soup_message_body_append(body, SOUP_MEMORY_COPY, answer_.body.data() + from, size);
  sent_ += size;
  soup_server_message_unpause(message_.get());
}

void Delivery::onWroteChunk(SoupServerMessage*, gpointer data) {
  auto* self = static_cast<Delivery*>(data);
  switch (self->answer_.ending) {
    case Ending::Dribble:
      if (self->sent_ < self->answer_.body.size()) self->after(kDribblePause, &Delivery::sendPiece);
      break;
    case Ending::Endless:
      self->after(platform::Seconds(0),
                  self->sent_ < kEndlessBytes ? &Delivery::sendPiece : &Delivery::cut);
      break;
    default: self->after(kDribblePause, &Delivery::cut);
  }
}

void Delivery::cut() {
  // The server sees the closed connection and drops it.
  if (GSocket* socket = soup_server_message_get_socket(message_.get())) {
    g_socket_shutdown(socket, TRUE, TRUE, nullptr);
  }
  soup_server_message_unpause(message_.get());
}

void Delivery::after(platform::Seconds delay, Step step) {
  next_ = step;
  timer_.reset(g_timeout_source_new(static_cast<guint>(delay.count() * 1000)));
  g_source_set_callback(timer_.get(), onTimer, this, nullptr);
  g_source_attach(timer_.get(), g_main_context_get_thread_default());
}

gboolean Delivery::onTimer(gpointer data) {
  auto* self = static_cast<Delivery*>(data);
  // The step may destroy the message and this object, or set another timer.
  const platform::GSourcePtr fired = std::move(self->timer_);
  (self->*self->next_)();
  return G_SOURCE_REMOVE;
}

}  // namespace sandbox
