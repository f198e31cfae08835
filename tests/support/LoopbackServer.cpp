#include "tests/support/LoopbackServer.h"

#include <gio/gio.h>

#include <atomic>
#include <list>
#include <map>
#include <mutex>
#include <stdexcept>
#include <thread>

#include "platform/base/GObjectPtr.h"
#include "platform/base/Text.h"
#include "sandbox/Certificate.h"

namespace platform = valdren::platform;

namespace quorbel_tests {
namespace {

using platform::GObjectPtr;

constexpr std::size_t kLongestHead = 4 * 1024 * 1024;

/// One blocking connection.
class Stream {
 public:
  Stream(GIOStream* stream, GCancellable* cancellable) : stream_(stream), stop_(cancellable) {}

  bool write(std::string_view data) {
    GOutputStream* const output = g_io_stream_get_output_stream(stream_);
    return g_output_stream_write_all(output, data.data(), data.size(), nullptr, stop_, nullptr);
  }

  /// The text up to and including the mark; none when the client closes first.
  std::optional<std::string> readUpTo(std::string_view mark) {
    std::size_t found;
    while ((found = buffer_.find(mark)) == std::string::npos) {
      if (buffer_.size() > kLongestHead || !readMore()) return std::nullopt;
    }
    return take(found + mark.size());
  }

  std::optional<std::string> readBytes(std::size_t count) {
    while (buffer_.size() < count) {
      if (!readMore()) return std::nullopt;
    }
    return take(count);
  }

  /// Waits until the client closes or the server is stopped.
  void waitForEnd() {
    while (readMore()) buffer_.clear();
  }

  /// False when the server is stopped first.
  bool pause(double seconds) const {
    GPollFD descriptor{};
    if (!g_cancellable_make_pollfd(stop_, &descriptor)) return false;
    const int woken = g_poll(&descriptor, 1, static_cast<int>(seconds * 1000));
    g_cancellable_release_fd(stop_);
    return woken == 0;
  }

 private:
  bool readMore() {
    char bytes[16 * 1024];
    GInputStream* const input = g_io_stream_get_input_stream(stream_);
    const gssize count = g_input_stream_read(input, bytes, sizeof bytes, stop_, nullptr);
    if (count > 0) buffer_.append(bytes, static_cast<std::size_t>(count));
    return count > 0;
  }

  std::string take(std::size_t count) {
    std::string taken = buffer_.substr(0, count);
    buffer_.erase(0, count);
    return taken;
  }

  GIOStream* stream_;
  GCancellable* stop_;
  std::string buffer_;
};

LoopbackRequest parseHead(std::string_view head) {
  LoopbackRequest request;
  const auto line = [&] {
    const std::size_t end = head.find("\r\n");
    const std::string_view text = head.substr(0, end);
    head.remove_prefix(std::min(head.size(), end + 2));
    return text;
  };
  const std::string_view first = line();
  const std::size_t blank = first.find(' ');
  request.method = first.substr(0, blank);
  request.target = first.substr(blank + 1, first.rfind(' ') - blank - 1);
  request.path = request.target.substr(0, request.target.find('?'));
  while (!head.empty()) {
    const std::string_view header = line();
    const std::size_t colon = header.find(':');
    if (colon == std::string_view::npos) continue;
    request.headers[std::string(header.substr(0, colon))] =
        platform::trimmed(header.substr(colon + 1));
  }
  return request;
}

bool isUnbounded(const LoopbackResponse& response) {
  using Ending = LoopbackResponse::Ending;
  return response.ending == Ending::Endless || response.ending == Ending::Drip;
}

std::string headText(const LoopbackResponse& response) {
  std::string head = "HTTP/1.1 " + std::to_string(response.status) + " Answer\r\n";
  bool hasLength = isUnbounded(response) || response.status == 304 || response.status == 204;
  for (const auto& [name, value] : response.headers) {
    head.append(name).append(": ").append(value).append("\r\n");
    hasLength = hasLength || platform::lowercase(name) == "content-length" ||
                platform::lowercase(name) == "transfer-encoding";
  }
  if (!hasLength) head += "Content-Length: " + std::to_string(response.body.size()) + "\r\n";
  return head + "\r\n";
}

/// Sends the response. True when the connection can serve another request.
bool send(Stream& stream, const LoopbackResponse& response) {
  using Ending = LoopbackResponse::Ending;
  if (response.delay > 0 && !stream.pause(response.delay)) return false;
  const std::string body = response.ending == Ending::Cut
                               ? response.body.substr(0, response.body.size() / 2)
                               : response.body;
  const bool isRaw = !response.raw.empty();
  if (!stream.write(isRaw ? response.raw : headText(response) + body)) return false;
  const std::string& tail = response.tail.empty() ? response.body : response.tail;
  switch (response.ending) {
    case Ending::Complete: return !isRaw;
    case Ending::Cut: return false;
    case Ending::Hang: stream.waitForEnd(); return false;
    case Ending::Endless:
      while (stream.write(tail)) continue;
      return false;
    case Ending::Drip:
      while (stream.pause(0.05) && stream.write(tail)) continue;
      return false;
  }
  return false;
}

}  // namespace

class LoopbackServer::Listener {
 public:
  explicit Listener(Security security) {
    if (security == Security::SelfSigned) certificate_ = sandbox::selfSignedCertificate();
    GObjectPtr<GInetAddress> loopback(g_inet_address_new_loopback(G_SOCKET_FAMILY_IPV4));
    GObjectPtr<GSocketAddress> any(g_inet_socket_address_new(loopback.get(), 0));
    GSocketAddress* bound = nullptr;
    if (!g_socket_listener_add_address(listener_.get(), any.get(), G_SOCKET_TYPE_STREAM,
                                       G_SOCKET_PROTOCOL_TCP, nullptr, &bound, nullptr)) {
      throw std::runtime_error("no loopback port is free");
    }
    port_ = g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(bound));
    g_object_unref(bound);
    acceptor_ = std::thread([this] { acceptAll(); });
  }

  ~Listener() {
    g_cancellable_cancel(stop_.get());
    acceptor_.join();
    for (std::thread& thread : threads_) thread.join();
  }

  void answer(const std::string& path, Handler handler) {
    const std::lock_guard lock(mutex_);
    handlers_[path] = std::move(handler);
  }

  std::vector<LoopbackRequest> requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
  }

  int port() const { return port_; }
  bool isSecure() const { return certificate_ != nullptr; }
  int connectionCount() const { return connections_; }
  int openConnectionCount() const { return open_; }

 private:
  void acceptAll() {
    while (GSocketConnection* connection =
               g_socket_listener_accept(listener_.get(), nullptr, stop_.get(), nullptr)) {
      g_tcp_connection_set_graceful_disconnect(G_TCP_CONNECTION(connection), FALSE);
      g_socket_set_option(g_socket_connection_get_socket(connection), 6 /* TCP */, 1 /* no delay */,
                          1, nullptr);
      ++open_;
      threads_.emplace_back([this, connection, number = ++connections_] {
        serve(GObjectPtr<GSocketConnection>(connection), number);
        --open_;
      });
    }
  }

  void serve(GObjectPtr<GSocketConnection> connection, int number) {
    GObjectPtr<GIOStream> secured;
    if (certificate_) {
      secured.reset(
          g_tls_server_connection_new(G_IO_STREAM(connection.get()), certificate_.get(), nullptr));
    }
    GIOStream* const io = secured ? secured.get() : G_IO_STREAM(connection.get());
    Stream stream(io, stop_.get());
    while (auto head = stream.readUpTo("\r\n\r\n")) {
      LoopbackRequest request = parseHead(*head);
      request.connection = number;
      const auto length = request.headers.find("Content-Length");
      if (length != request.headers.end()) {
        auto body = stream.readBytes(std::stoul(length->second));
        if (!body) break;
        request.body = std::move(*body);
      }
      if (!send(stream, responseTo(request))) break;
    }
    g_io_stream_close(io, nullptr, nullptr);
  }

  LoopbackResponse responseTo(const LoopbackRequest& request) {
    Handler handler;
    {
      const std::lock_guard lock(mutex_);
      requests_.push_back(request);
      const auto found = handlers_.find(request.path);
      if (found != handlers_.end()) handler = found->second;
    }
    return handler ? handler(request) : LoopbackResponse{.status = 404};
  }

  GObjectPtr<GCancellable> stop_{g_cancellable_new()};
  GObjectPtr<GSocketListener> listener_{g_socket_listener_new()};
  GObjectPtr<GTlsCertificate> certificate_;
  int port_ = 0;
  mutable std::mutex mutex_;
  std::map<std::string, Handler> handlers_;
  std::vector<LoopbackRequest> requests_;
  std::atomic<int> connections_ = 0;
  std::atomic<int> open_ = 0;
  std::list<std::thread> threads_;
  std::thread acceptor_;
};

LoopbackServer::LoopbackServer(Security security)
    : listener_(std::make_unique<Listener>(security)) {}

LoopbackServer::~LoopbackServer() = default;

void LoopbackServer::answer(const std::string& path, LoopbackResponse response) {
  answer(path, [response = std::move(response)](const LoopbackRequest&) { return response; });
}

void LoopbackServer::answer(const std::string& path, Handler handler) {
  listener_->answer(path, std::move(handler));
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

int LoopbackServer::port() const {
  return listener_->port();
}

std::string LoopbackServer::address(std::string_view path) const {
  return std::string(listener_->isSecure() ? "https" : "http") +
         "://127.0.0.1:" + std::to_string(port()) + std::string(path);
}

platform::URL LoopbackServer::url(std::string_view path) const {
  return *platform::URL::parse(address(path));
}

std::vector<LoopbackRequest> LoopbackServer::requests() const {
  return listener_->requests();
}

std::vector<LoopbackRequest> LoopbackServer::requests(std::string_view path) const {
  std::vector<LoopbackRequest> requests = listener_->requests();
  std::erase_if(requests, [&](const LoopbackRequest& request) { return request.path != path; });
  return requests;
}

int LoopbackServer::connectionCount() const {
  return listener_->connectionCount();
}

int LoopbackServer::openConnectionCount() const {
  return listener_->openConnectionCount();
}

}  // namespace quorbel_tests
