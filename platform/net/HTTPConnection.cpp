#include "platform/net/HTTPConnection.h"

#include <glib.h>

#include "platform/net/RedirectLocation.h"

namespace valdren::platform {
namespace {

constexpr int kMostRedirects = 20;
constexpr std::size_t kLongestBody = 16 * 1024 * 1024;
constexpr std::size_t kLongestHead = 64 * 1024;
constexpr Seconds kSecondsWithoutByte{60};
constexpr Seconds kLongestFetch{600};
constexpr int kAfterLibsoup = G_PRIORITY_DEFAULT + 1;

bool isRedirect(int statusCode) {
  switch (statusCode) {
    case 301:
    case 302:
    case 303:
    case 307:
    case 308: return true;
    default: return false;
  }
}

Error problem(URLErrorCode code, const char* message) {
  return {kURLErrorDomain, code, message};
}

class HTTPLoading final : public URLLoading {
 public:
  std::unique_ptr<URLConnection> makeConnection(const URLRequest& request,
                                                WeakPtr<URLConnectionDelegate> delegate) override {
    const std::string scheme = request.url.lowercaseScheme();
    if (scheme != "http" && scheme != "https") return nullptr;
    return std::make_unique<HTTPConnection>(request, delegate);
  }
};

}  // namespace

URLLoading& URLLoading::standard() {
  static HTTPLoading loading;
  return loading;
}

HTTPConnection::HTTPConnection(const URLRequest& request, WeakPtr<URLConnectionDelegate> delegate)
    : request_(request), delegate_(delegate) {}

HTTPConnection::~HTTPConnection() {
  invalidateWeakReferences();
  stop();
}

void HTTPConnection::start() {
  if (nextTurn_ || exchange_) return;
  end_ = RunLoop::shared().scheduleTimer(
      kLongestFetch, [this] { fail(problem(kURLErrorTimedOut, "The fetch took too long.")); });
  waitForNextByte();
  nextTurn_ = g_idle_add_full(
      G_PRIORITY_DEFAULT,
      [](gpointer self) -> gboolean {
        auto& connection = *static_cast<HTTPConnection*>(self);
        connection.nextTurn_ = 0;
        if (connection.announce(nullptr)) connection.send();
        return G_SOURCE_REMOVE;
      },
      this, nullptr);
}

/// Calls the delegate. False when the call destroyed this connection.
template <class Call>
bool HTTPConnection::tell(Call call) {
  const auto lifetime = this->lifetime();
  if (auto* delegate = delegate_.get()) call(*delegate);
  return !lifetime.expired();
}

/// Announces the next request to the delegate. False when that destroyed this connection.
bool HTTPConnection::announce(const URLResponse* redirectResponse) {
  const URLRequest request = request_;
  return tell([&](auto& it) { it.connectionWillSendRequest(*this, request, redirectResponse); });
}

void HTTPConnection::send() {
  exchange_ = HTTPExchange::make(*this, request_);
  if (!exchange_) return fail(problem(kURLErrorUnsupportedURL, "The URL cannot be fetched."));
  waitForNextByte();
  exchange_->send();
}

void HTTPConnection::followRedirect(HTTPResponseHead head) {
  if (++redirects_ > kMostRedirects) {
    return fail(problem(kURLErrorTooManyRedirects, "There were too many redirects."));
  }
  const std::optional<URL> target = resolvedLocation(head.location, request_.url);
  if (!target) return fail(problem(kURLErrorBadURL, "The redirect's location is not a valid URL."));
  const URLResponse redirect{request_.url, head.statusCode, std::move(head.headers)};
  request_.url = *target;
  if (!announce(&redirect)) return;
  exchange_.reset();
  // libsoup needs one turn of the loop to see that the connection is free again.
  nextTurn_ = g_idle_add_full(
      kAfterLibsoup,
      [](gpointer self) -> gboolean {
        static_cast<HTTPConnection*>(self)->nextTurn_ = 0;
        static_cast<HTTPConnection*>(self)->send();
        return G_SOURCE_REMOVE;
      },
      this, nullptr);
}

void HTTPConnection::waitForNextByte() {
  patience_ = RunLoop::shared().scheduleTimer(kSecondsWithoutByte, [this] {
    fail(problem(kURLErrorTimedOut, "The server sent nothing for 60 seconds."));
  });
}

void HTTPConnection::fail(const Error& error) {
  stop();
  tell([&](auto& it) { it.connectionDidFail(*this, error); });
}

void HTTPConnection::stop() {
  if (nextTurn_) g_source_remove(std::exchange(nextTurn_, 0));
  exchange_.reset();
  patience_.reset();
  end_.reset();
}

void HTTPConnection::exchangeDidReceiveHead(HTTPResponseHead head) {
  if (head.headerSize > kLongestHead) {
    return fail(problem(kURLErrorDataTooLong, "The response's headers are too long."));
  }
  if (isRedirect(head.statusCode) && !head.location.empty()) {
    return followRedirect(std::move(head));
  }
  waitForNextByte();
  const URLResponse response{request_.url, head.statusCode, std::move(head.headers)};
  if (!tell([&](auto& it) { it.connectionDidReceiveResponse(*this, response); })) return;
  if (exchange_) exchange_->readBody();
}

void HTTPConnection::exchangeDidReceiveBody(std::string_view data) {
  received_ += data.size();
  if (received_ > kLongestBody) {
    return fail(problem(kURLErrorDataTooLong, "The response's body is too long."));
  }
  waitForNextByte();
  tell([&](auto& it) { it.connectionDidReceiveData(*this, data); });
}

void HTTPConnection::exchangeDidEnd() {
  stop();
  tell([&](auto& it) { it.connectionDidFinishLoading(*this); });
}

void HTTPConnection::exchangeDidFail(const Error& error) {
  fail(Error(error));
}

}  // namespace valdren::platform
