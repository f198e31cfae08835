// A web server on the loopback interface, on its own thread.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "platform/base/Seconds.h"
#include "sandbox/Http.h"

typedef struct _GMainContext GMainContext;
typedef struct _GMainLoop GMainLoop;

namespace platform = valdren::platform;

namespace sandbox {

class HttpServer {
 public:
  /// Receives the plain port before the first request, and again with the secure port once there is
  /// one.
  using Listening = std::function<void(std::uint16_t plain, std::uint16_t secure)>;

  /// Null when it cannot listen on the port, with the reason in `failure`. Port 0 means any free
  /// one. Both functions are called on the server's thread, the handler for one request at a time.
  static std::unique_ptr<HttpServer> start(std::uint16_t port, Handler handler, Listening listening,
                                           std::string& failure);
  /// Ends every connection and waits for the thread.
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  std::uint16_t port() const { return port_; }
  /// The TLS port, which has a self-signed certificate and opens after the start; 0 when there is
  /// none. Waits at most `longest` for it.
  std::uint16_t securePort(platform::Seconds longest) const;

 private:
  HttpServer() = default;
  void run(std::uint16_t port, const Handler& handler, const Listening& listening);
  void report(std::uint16_t port, std::string failure);
  void reportSecure(std::uint16_t port);

  mutable std::mutex mutex_;
  mutable std::condition_variable changed_;
  bool ready_ = false;
  std::uint16_t port_ = 0;
  std::string failure_;
  std::optional<std::uint16_t> securePort_;

  GMainContext* context_ = nullptr;  // both owned by `run`
  GMainLoop* loop_ = nullptr;
  std::thread thread_;
};

}  // namespace sandbox
