#include "tests/support/HttpClient.h"

#include <libsoup/soup.h>

#include "platform/base/GObjectPtr.h"
#include "platform/base/Json.h"

namespace platform = valdren::platform;

namespace quorbel_tests {
namespace {

using platform::GObjectPtr;

gboolean acceptAny(SoupMessage*, GTlsCertificate*, GTlsCertificateFlags, gpointer) {
  return TRUE;
}

/// False when the body is incomplete.
bool readInto(std::string& body, GInputStream* stream, std::size_t most) {
  char buffer[64 * 1024];
  while (body.size() < most) {
    const gssize count = g_input_stream_read(stream, buffer, sizeof buffer, nullptr, nullptr);
    if (count <= 0) return count == 0;
    body.append(buffer, static_cast<std::size_t>(count));
  }
  return true;
}

}  // namespace

std::string Reply::header(std::string_view name) const {
  for (const auto& [key, value] : headers) {
    if (key == name) return value;
  }
  return {};
}

Reply ask(const Wish& wish) {
  Reply reply;
  const GObjectPtr<SoupSession> session(
      soup_session_new_with_options("timeout", wish.patienceSeconds, nullptr));
  const GObjectPtr<SoupMessage> message(soup_message_new(wish.method.c_str(), wish.url.c_str()));
  if (!message) return reply;
  if (!wish.followsRedirects) soup_message_add_flags(message.get(), SOUP_MESSAGE_NO_REDIRECT);
  if (wish.acceptsAnyCertificate) {
    g_signal_connect(message.get(), "accept-certificate", G_CALLBACK(acceptAny), nullptr);
  }
  for (const auto& [name, value] : wish.headers) {
    soup_message_headers_replace(soup_message_get_request_headers(message.get()), name.c_str(),
                                 value.c_str());
  }
  const GObjectPtr<GInputStream> stream(
      soup_session_send(session.get(), message.get(), nullptr, nullptr));
  if (!stream || !readInto(reply.body, stream.get(), wish.mostBytes)) return reply;
  reply.status = static_cast<int>(soup_message_get_status(message.get()));
  soup_message_headers_foreach(
      soup_message_get_response_headers(message.get()),
      [](const char* name, const char* value, gpointer list) {
        static_cast<Headers*>(list)->emplace_back(name, value);
      },
      &reply.headers);
  return reply;
}

Reply get(const std::string& url) {
  return ask({.url = url});
}

platform::Dictionary object(const Reply& reply) {
  const auto value = platform::parseJson(reply.body);
  return value && value->dictionary() ? *value->dictionary() : platform::Dictionary();
}

}  // namespace quorbel_tests
