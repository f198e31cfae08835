// A real HTTP server on a free loopback port, which answers as a test says, well or badly.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/net/URLConnection.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

struct LoopbackRequest {
  std::string method;
  /// As in the request line, query included.
  std::string target;
  /// Without the query.
  std::string path;
  platform::Headers headers;
  std::string body;
  /// Which of the server's connections it came on; the first is 1.
  int connection = 0;
};

struct LoopbackResponse {
  int status = 200;
  std::vector<std::pair<std::string, std::string>> headers = {};
  std::string body = {};
  /// Seconds before the first byte.
  double delay = 0;
  /// Sent as it stands in place of status, headers and body.
  std::string raw = {};
  /// What follows the body (or `raw`).
  enum class Ending {
    Complete,  ///< the connection stays open for the next request; after `raw` it is closed
    Cut,       ///< the connection is closed, with half of the body sent (or all of `raw`)
    Hang,      ///< nothing more is sent; the connection stays open
    Endless,   ///< the body (or `tail`) over and over again, with no length announced
    Drip,      ///< the same, with 50 milliseconds between two
  } ending = Ending::Complete;
  /// What `Endless` and `Drip` repeat; empty stands for the body.
  std::string tail = {};
};

/// Serves each connection in a thread of its own from construction to destruction. A path without
/// an answer gets 404.
class LoopbackServer {
 public:
  using Handler = std::function<LoopbackResponse(const LoopbackRequest&)>;

  enum class Security {
    Plain,
    SelfSigned,  ///< TLS with a certificate that nobody has signed but itself
  };

  explicit LoopbackServer(Security security = Security::Plain);
  ~LoopbackServer();
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;

  /// What a path (without query) answers from now on. Handlers run in the connection's thread.
  void answer(const std::string& path, LoopbackResponse response);
  void answer(const std::string& path, Handler handler);
  /// The same with status, headers and body.
  void answer(const std::string& path, int status,
              std::vector<std::pair<std::string, std::string>> headers = {}, std::string body = "");
  /// Answers with a redirect.
  void redirect(const std::string& path, const std::string& location, int status = 302);

  int port() const;
  /// The address of a path, "http://127.0.0.1:port/path".
  std::string address(std::string_view path) const;
  platform::URL url(std::string_view path) const;

  /// Everything that was asked, in order; the requests of one path.
  std::vector<LoopbackRequest> requests() const;
  std::vector<LoopbackRequest> requests(std::string_view path) const;
  /// How many connections were ever opened; how many are open now.
  int connectionCount() const;
  int openConnectionCount() const;

 private:
  class Listener;
  std::unique_ptr<Listener> listener_;
};

}  // namespace quorbel_tests
