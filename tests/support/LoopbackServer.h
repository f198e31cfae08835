// A real HTTP server on a free loopback port, with correct or faulty answers that a test sets.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/net/URLConnection.h"

typedef struct _GCancellable GCancellable;
typedef struct _SoupServer SoupServer;
typedef struct _SoupServerMessage SoupServerMessage;

namespace platform = valdren::platform;

namespace quorbel_tests {

struct LoopbackRequest {
  /// As in the request line, query included.
  std::string target;
  /// Without the query.
  std::string path;
  platform::Headers headers;
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
    Complete,  ///< the connection stays open for the next request, unless `raw` or `delay` is set
    Cut,       ///< the connection is closed, with half of the body sent (or all of `raw`)
    Hang,      ///< nothing more is sent; the connection stays open
    Endless,   ///< the body (or `tail`) over and over again, with no length announced
    Drip,      ///< the same, with 50 milliseconds between two
  } ending = Ending::Complete;
  /// The text that `Endless` and `Drip` repeat; empty for the body.
  std::string tail = {};
};

/// Serves on the main loop while it exists. A path without an answer gets 404.
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

  /// Sets the answer for a path (without query).
  void answer(const std::string& path, LoopbackResponse response);
  void answer(const std::string& path, Handler handler);
  /// The same with status, headers and body.
  void answer(const std::string& path, int status,
              std::vector<std::pair<std::string, std::string>> headers = {}, std::string body = "");
  /// Answers with a redirect.
  void redirect(const std::string& path, const std::string& location, int status = 302);

  /// The address of a path, "http://127.0.0.1:port/path".
  std::string address(std::string_view path) const;
  platform::URL url(std::string_view path) const;

  /// All requests in order; the requests for one path.
  const std::vector<LoopbackRequest>& requests() const { return requests_; }
  std::vector<LoopbackRequest> requests(std::string_view path) const;
  /// The number of connections that have brought a request.
  std::size_t connectionCount() const { return clients_.size(); }
  /// The number of answers with a delay, raw bytes or an ending that are still under way.
  long unfinishedCount() const { return stop_.use_count() - 1; }

 private:
  void serve(SoupServerMessage* message);

  bool isSecure_;
  int port_ = 0;
  std::map<std::string, Handler> handlers_;
  std::vector<LoopbackRequest> requests_;
  std::set<int> clients_;  // their ports
  std::shared_ptr<SoupServer> server_;
  std::shared_ptr<GCancellable> stop_;  // shared with the answers under way
};

}  // namespace quorbel_tests
