#include "benchmarks/support/HttpClient.h"

#include <libsoup/soup.h>

#include "platform/base/GObjectPtr.h"

namespace benchmarks {
namespace {

using valdren::platform::GObjectPtr;

std::string answer(const char* method, const std::string& url) {
  const GObjectPtr<SoupSession> session(soup_session_new());
  const GObjectPtr<SoupMessage> message(soup_message_new(method, url.c_str()));
  if (!message) return {};
  GBytes* const body = soup_session_send_and_read(session.get(), message.get(), nullptr, nullptr);
  if (!body) return {};
  gsize size = 0;
  const auto* const bytes = static_cast<const char*>(g_bytes_get_data(body, &size));
  std::string text(bytes ? bytes : "", size);
  g_bytes_unref(body);
  return text;
}

}  // namespace

std::string get(const std::string& url) {
  return answer("GET", url);
}

std::string post(const std::string& url) {
  return answer("POST", url);
}

}  // namespace benchmarks
