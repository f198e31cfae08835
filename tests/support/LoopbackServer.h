// A real HTTP server on a free loopback port, with correct or faulty answers that a test sets.
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
  /// The number of the connection, from 1.
  int connection = 0;
};

struct LoopbackResponse {
  int status = 200;
  std::vector<std::pair<std::string, std::string>> headers = {};
  std::string body = {};
  /// The delay before the first byte, in seconds.
  double delay = 0;
  /// Sent unchanged, in place of status, headers and body.
  std::string raw = {};
  /// What happens after the body (or `raw`).
  enum class Ending {
    Complete,  ///< the connection stays open for the next request; after `raw` it is closed
    Cut,       ///< the connection is closed, with half of the body sent (or all of `raw`)
    Hang,      ///< nothing more is sent; the connection stays open
    Endless,   ///< the body (or `tail`) over and over again, with no length announced
    Drip,      ///< the same, with 50 milliseconds between two
  } ending = Ending::Complete;
  /// The text that `Endless` and `Drip` repeat; empty for the body.
  std::string tail = {};
};

/// Serves each connection on its own thread while it exists. A path without an answer gets 404.
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

  /// Sets the answer for a path (without query). Handlers run on the connection's thread.
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

  /// All requests in order; the requests for one path.
  std::vector<LoopbackRequest> requests() const;
  std::vector<LoopbackRequest> requests(std::string_view path) const;
  /// The number of connections ever opened, and of those open now.
  int connectionCount() const;
  int openConnectionCount() const;

 private:
  class Listener;
  std::unique_ptr<Listener> listener_;
};

}  // namespace quorbel_tests
