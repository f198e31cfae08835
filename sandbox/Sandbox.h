// A whole ad network in miniature, on this machine only: script host, ad server, tracking, landing
// pages and an inspector page that shows what clients send.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace sandbox {

class HttpServer;
class AdNetwork;

/// Answers on the loopback interface from a thread of its own until it is destroyed, which ends
/// every connection. What it keeps of the requests is bounded. All operations from any thread.
class Sandbox {
 public:
  /// Null when the port cannot be had, after one line in the log that says why. Port 0: any free
  /// one. The plain port is ready when this returns.
  static std::unique_ptr<Sandbox> start(std::uint16_t port);
  ~Sandbox();
  Sandbox(const Sandbox&) = delete;
  Sandbox& operator=(const Sandbox&) = delete;

  /// "http://127.0.0.1:PORT", without a slash at the end. It is the ad server, the script host and,
  /// opened in a browser, the inspector. With "/as/NAME" appended, everything asked for under it
  /// is answered in the scenario of that name.
  std::string baseURL() const;
  /// The base of the pages behind a certificate that no client trusts; empty when TLS cannot be
  /// had. Waits for the listener, at most 5 seconds.
  std::string secureBaseURL() const;

  /// Puts every ad unit that names no scenario itself in this one. False, changing nothing, when
  /// there is none of that name.
  bool setScenario(std::string_view name);
  /// The ad to serve; empty: all of them in turn. False when there is none of that name.
  bool setAd(std::string_view name);
  /// What "X-Urvo-Refresh-Rate" says; 0 or less: the header is left out.
  void setRefreshSeconds(double seconds);

  /// What /log.json?since= answers: the requests seen after number `since`, oldest first.
  std::string log(std::uint64_t since = 0) const;

 private:
  Sandbox();

  std::unique_ptr<AdNetwork> network_;
  std::unique_ptr<HttpServer> server_;
};

}  // namespace sandbox
