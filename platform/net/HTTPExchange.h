// One HTTP request and its response over libsoup, without redirects.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/net/URLConnection.h"

namespace valdren::platform {

/// A response up to its body.
struct HTTPResponseHead {
  int statusCode = 0;
  Headers headers = {};
  /// The first "Location"; empty when there is none.
  std::string location = {};
  /// Bytes of all names and values.
  std::size_t headerSize = 0;
};

/// Destroying it, also from inside a callback, ends the callbacks. The rest of a short body is then
/// read in the background, so that the connection to the server stays usable.
class HTTPExchange {
 public:
  class Client {
   public:
    virtual void exchangeDidReceiveHead(HTTPResponseHead head) = 0;
    /// A piece of the body, decompressed; never empty. One piece a turn of the main loop.
    virtual void exchangeDidReceiveBody(std::string_view data) = 0;
    virtual void exchangeDidEnd() = 0;
    virtual void exchangeDidFail(const Error& error) = 0;

   protected:
    ~Client() = default;
  };

  /// Null when the URL cannot be fetched. The client outlives the exchange.
  static std::unique_ptr<HTTPExchange> make(Client& client, const URLRequest& request);
  ~HTTPExchange();
  HTTPExchange(const HTTPExchange&) = delete;
  HTTPExchange& operator=(const HTTPExchange&) = delete;

  void send();
  /// After the head: reads the whole body, piece by piece.
  void readBody();

 private:
  struct Operation;
  explicit HTTPExchange(std::shared_ptr<Operation> operation);

  std::shared_ptr<Operation> operation_;
};

}  // namespace valdren::platform
