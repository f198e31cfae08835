#include "tests/support/LoopbackServer.h"

#include <libsoup/soup.h>

#include <algorithm>
#include <stdexcept>
#include <thread>

#include "sandbox/Certificate.h"

namespace platform = valdren::platform;

namespace quorbel_tests {
namespace {

using Ending = LoopbackResponse::Ending;

std::string headText(const LoopbackResponse& response) {
  std::string head = "HTTP/1.1 " + std::to_string(response.status) + " Answer\r\n";
  for (const auto& [name, value] : response.headers) {
    head.append(name).append(": ").append(value).append("\r\n");
  }
  const bool hasLength = response.ending != Ending::Endless && response.ending != Ending::Drip;
  if (hasLength) head += "Content-Length: " + std::to_string(response.body.size()) + "\r\n";
  return head + "\r\n";
}

/// Waits; false when it is stopped before.
bool wait(double seconds, GCancellable* stop) {
  GPollFD stopped;
  g_cancellable_make_pollfd(stop, &stopped);
  g_poll(&stopped, 1, static_cast<int>(seconds * 1000));
  g_cancellable_release_fd(stop);
  return !g_cancellable_is_cancelled(stop);
}

/// Writes an answer's bytes, on a thread of its own, to a connection that the server gives away.
void sendFaulty(SoupServerMessage* message, const LoopbackResponse& response,
                std::shared_ptr<GCancellable> stop) {
  std::shared_ptr<GIOStream> stream(soup_server_message_steal_connection(message), g_object_unref);
  std::thread([stop = std::move(stop), stream = std::move(stream), response] {
    const auto write = [&](const std::string& text) {
      return g_output_stream_write_all(g_io_stream_get_output_stream(stream.get()), text.data(),
                                       text.size(), nullptr, stop.get(), nullptr);
    };
    const auto& [status, headers, body, delay, raw, ending, tail] = response;
    const std::size_t sent = ending == Ending::Cut ? body.size() / 2 : body.size();
    bool goesOn = wait(delay, stop.get()) &&
                  write(raw.empty() ? headText(response) + body.substr(0, sent) : raw);
    while (goesOn && (ending == Ending::Endless || ending == Ending::Drip)) {
      goesOn = (ending == Ending::Endless || wait(0.05, stop.get())) &&
               write(tail.empty() ? body : tail);
    }
    if (goesOn && ending == Ending::Hang) {
      g_input_stream_skip(g_io_stream_get_input_stream(stream.get()), 1, stop.get(), nullptr);
    }
    g_io_stream_close(stream.get(), nullptr, nullptr);
  }).detach();
}

void sendWhole(SoupServerMessage* message, const LoopbackResponse& response) {
  soup_server_message_set_status(message, static_cast<guint>(response.status), nullptr);
  SoupMessageHeaders* const headers = soup_server_message_get_response_headers(message);
  for (const auto& [name, value] : response.headers) {
    soup_message_headers_append(headers, name.c_str(), value.c_str());
  }
  soup_message_body_append(soup_server_message_get_response_body(message), SOUP_MEMORY_COPY,
                           response.body.data(), response.body.size());
}

LoopbackRequest requestOf(SoupServerMessage* message) {
  GUri* const url = soup_server_message_get_uri(message);
  const char* const query = g_uri_get_query(url);
  LoopbackRequest request;
  request.path = g_uri_get_path(url);
  request.target = request.path;
  if (query) request.target.append("?").append(query);
  soup_message_headers_foreach(
      soup_server_message_get_request_headers(message),
      [](const char* name, const char* value, gpointer headers) {
        (*static_cast<platform::Headers*>(headers))[name] = value;
      },
      &request.headers);
  return request;
}

}  // namespace

LoopbackServer::LoopbackServer(Security security)
    : isSecure_(security == Security::SelfSigned),
      server_(soup_server_new(nullptr, nullptr), g_object_unref),
      stop_(g_cancellable_new(), g_object_unref) {
  int options = SOUP_SERVER_LISTEN_IPV4_ONLY;
  if (isSecure_) {
    options |= SOUP_SERVER_LISTEN_HTTPS;
    soup_server_set_tls_certificate(server_.get(), sandbox::selfSignedCertificate().get());
  }
  const auto called = [](SoupServer*, SoupServerMessage* message, const char*, GHashTable*,
                         gpointer self) { static_cast<LoopbackServer*>(self)->serve(message); };
  soup_server_add_handler(server_.get(), nullptr, called, this, nullptr);
  if (!soup_server_listen_local(server_.get(), 0, SoupServerListenOptions(options), nullptr)) {
    throw std::runtime_error("no loopback port is free");
  }
  GSList* const addresses = soup_server_get_uris(server_.get());
  port_ = g_uri_get_port(static_cast<GUri*>(addresses->data));
  g_slist_free_full(addresses, reinterpret_cast<GDestroyNotify>(g_uri_unref));
}

LoopbackServer::~LoopbackServer() {
  g_cancellable_cancel(stop_.get());
  while (unfinishedCount() > 0) std::this_thread::yield();
  soup_server_disconnect(server_.get());
}

void LoopbackServer::serve(SoupServerMessage* message) {
  requests_.push_back(requestOf(message));
  clients_.insert(g_inet_socket_address_get_port(
      G_INET_SOCKET_ADDRESS(soup_server_message_get_remote_address(message))));
  const auto found = handlers_.find(requests_.back().path);
  const LoopbackResponse response =
      found == handlers_.end() ? LoopbackResponse{.status = 404} : found->second(requests_.back());
  const bool isWhole =
      response.ending == Ending::Complete && response.raw.empty() && response.delay == 0;
  isWhole ? sendWhole(message, response) : sendFaulty(message, response, stop_);
}

void LoopbackServer::answer(const std::string& path, LoopbackResponse response) {
  answer(path, [response = std::move(response)](const LoopbackRequest&) { return response; });
}

void LoopbackServer::answer(const std::string& path, Handler handler) {
  handlers_[path] = std::move(handler);
}

void LoopbackServer::answer(const std::string& path, int status,
                            std::vector<std::pair<std::string, std::string>> headers,
                            std::string body) {
  answer(path, LoopbackResponse{
                   .status = status, .headers = std::move(headers), .body = std::move(body)});
}

void LoopbackServer::redirect(const std::string& path, const std::string& location, int status) {
  answer(path, status, {{"Location", location}});
}

std::string LoopbackServer::address(std::string_view path) const {
  return std::string(isSecure_ ? "https" : "http") + "://127.0.0.1:" + std::to_string(port_) +
         std::string(path);
}

platform::URL LoopbackServer::url(std::string_view path) const {
  return *platform::URL::parse(address(path));
}

std::vector<LoopbackRequest> LoopbackServer::requests(std::string_view path) const {
  std::vector<LoopbackRequest> requests = requests_;
  std::erase_if(requests, [&](const LoopbackRequest& request) { return request.path != path; });
  return requests;
}

}  // namespace quorbel_tests
