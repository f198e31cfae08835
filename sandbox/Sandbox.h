// A small ad network on this machine: script host, ad server, tracking, landing pages, and an
// inspector page that shows what clients send.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/base/Seconds.h"

namespace platform = valdren::platform;

namespace sandbox {

class HttpServer;
class AdNetwork;

/// Answers on the loopback interface from its own thread. Destroying it ends every connection. The
/// log of requests is bounded. Callable on any thread.
class Sandbox {
 public:
  /// Null when the port is not available; one log line says why. Port 0 means any free one. The
  /// plain port is ready when this returns.
  static std::unique_ptr<Sandbox> start(std::uint16_t port);
  ~Sandbox();
  Sandbox(const Sandbox&) = delete;
  Sandbox& operator=(const Sandbox&) = delete;

  /// "http://127.0.0.1:PORT", without a slash at the end: the ad server, the script host and, in a
  /// browser, the inspector. With "/as/NAME" appended, all requests under it are answered by the
  /// scenario of that name.
  std::string baseURL() const;
  /// The base of the pages with an untrusted certificate; empty without TLS. Waits for the
  /// listener, at most 5 seconds.
  std::string secureBaseURL() const;

  /// Sets the scenario for all ad units that name none themselves. False, without a change, when
  /// there is no such scenario.
  bool setScenario(std::string_view name);
  /// The ad to serve; when empty, all of them in turn. False when there is no such ad.
  bool setAd(std::string_view name);
  /// The value of "X-Urvo-Refresh-Rate"; at 0 or below the header is left out.
  void setRefreshRate(platform::Seconds rate);

  /// The answer to /log.json?since=: the requests after number `since`, oldest first.
  std::string log(std::uint64_t since = 0) const;

 private:
  Sandbox();

  std::unique_ptr<AdNetwork> network_;
  std::unique_ptr<HttpServer> server_;
};

}  // namespace sandbox
