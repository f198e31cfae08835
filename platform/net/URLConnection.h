// One HTTP fetch, reported to a delegate.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/base/Error.h"
#include "platform/base/Shared.h"
#include "platform/base/URL.h"
#include "platform/base/WeakPtr.h"

namespace valdren::platform {

/// Header names compare without regard to letter case.
struct HeaderNameLess {
  bool operator()(std::string_view left, std::string_view right) const;
  using is_transparent = void;
};
using Headers = std::map<std::string, std::string, HeaderNameLess>;

/// The domain of the errors that connections report, all from below HTTP; its codes follow.
inline constexpr const char* kURLErrorDomain = "platform.url";
enum URLErrorCode : int {
  kURLErrorUnknown = -1,
  kURLErrorBadURL = -1000,
  kURLErrorTimedOut = -1001,
  kURLErrorUnsupportedURL = -1002,
  kURLErrorCannotFindHost = -1003,
  kURLErrorCannotConnectToHost = -1004,
  kURLErrorNetworkConnectionLost = -1005,
  kURLErrorTooManyRedirects = -1007,
  kURLErrorBadServerResponse = -1011,
  kURLErrorDataTooLong = -1103,
  kURLErrorSecureConnectionFailed = -1200,
};

enum class CachePolicy : int { UseProtocol = 0, ReloadIgnoringLocalCache = 1 };

/// What to ask for.
struct URLRequest {
  URL url;
  Headers headers = {};
  CachePolicy cachePolicy = CachePolicy::UseProtocol;
  bool handlesCookies = true;
};

struct URLResponse {
  URL url;
  /// 0 when the response is not HTTP.
  int statusCode = 0;
  Headers headers = {};
  bool isHTTP() const { return statusCode != 0; }
};

class URLConnection;

class URLConnectionDelegate : public virtual WeakTarget {
 public:
  /// Before the first request (`redirectResponse` null) and before each redirect is followed.
  virtual void connectionWillSendRequest(URLConnection&, const URLRequest& request,
                                         const URLResponse* redirectResponse) = 0;
  virtual void connectionDidReceiveResponse(URLConnection&, const URLResponse& response) = 0;
  virtual void connectionDidReceiveData(URLConnection&, std::string_view data) = 0;
  virtual void connectionDidFinishLoading(URLConnection&) = 0;
  virtual void connectionDidFail(URLConnection&, const Error& error) = 0;

 protected:
  ~URLConnectionDelegate() = default;
};

/// A fetch under way; destroying it, also from inside one of its callbacks, cancels it without a
/// further callback. Every callback comes on the main run loop, never before `start` has returned.
class URLConnection {
 public:
  virtual ~URLConnection() = default;
  virtual void start() = 0;
};

/// Makes connections to "http" and "https" servers. Redirects (301, 302, 303, 307 and 308 with a
/// "Location"): at most 20, then it fails; one to another scheme is announced to the delegate, then
/// fails. TLS certificates are verified. A body over 16 MiB when decompressed, headers over 64 KiB,
/// 60 seconds without a byte, or 10 minutes in all fail it. Cookies are kept in memory only; of
/// headers only those of the request and what HTTP needs are sent. Of several headers with one name
/// the values are joined by ", "; bytes in them that are not UTF-8 read U+FFFD.
class URLLoading : public Shared<URLLoading> {
 public:
  static URLLoading& standard();
  virtual ~URLLoading() = default;
  /// Null when the URL's scheme cannot be fetched. The delegate is not owned.
  virtual std::unique_ptr<URLConnection> makeConnection(
      const URLRequest& request, WeakPtr<URLConnectionDelegate> delegate) = 0;
};

}  // namespace valdren::platform
