// A delegate for real fetches that records its calls and can release the connection.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/net/URLConnection.h"
#include "tests/support/Loop.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

class FetchRecorder final : public platform::URLConnectionDelegate {
 public:
  /// Starts a fetch; false when it cannot be made.
  bool start(const platform::URLRequest& request) {
    connection = platform::URLLoading::shared().makeConnection(request, this);
    if (connection) connection->start();
    return connection != nullptr;
  }
  bool start(const platform::URL& url) { return start(platform::URLRequest{url}); }
  /// Starts a fetch and runs the main loop to its end; false when it takes too long.
  bool fetch(const platform::URLRequest& request) {
    return start(request) && runUntil([this] { return isOver(); });
  }
  bool fetch(const platform::URL& url) { return fetch(platform::URLRequest{url}); }

  std::unique_ptr<platform::URLConnection> connection;
  /// "send", "redirect", "response", "data" (once for all pieces), "finish", "fail", in order.
  std::vector<std::string> events;
  /// Called after each recorded event, and for each piece of data.
  std::function<void(const std::string&)> onEvent;
  std::vector<std::string> urls;
  std::vector<platform::URLResponse> redirects;
  std::optional<platform::URLResponse> response;
  std::string body;
  /// Whether `body` is stored; its size is always counted.
  bool keepsBody = true;
  std::size_t bodySize = 0;
  bool finished = false;
  std::optional<platform::Error> error;
  bool isOver() const { return finished || error; }
  /// 0 without an error.
  int errorCode() const { return error ? error->code : 0; }

  void connectionWillSendRequest(platform::URLConnection&, const platform::URLRequest& request,
                                 const platform::URLResponse* redirectResponse) override {
    urls.push_back(request.url.absoluteString());
    if (redirectResponse) redirects.push_back(*redirectResponse);
    note(redirectResponse ? "redirect" : "send");
  }
  void connectionDidReceiveResponse(platform::URLConnection&,
                                    const platform::URLResponse& received) override {
    response = received;
    note("response");
  }
  void connectionDidReceiveData(platform::URLConnection&, std::string_view data) override {
    bodySize += data.size();
    if (keepsBody) body += data;
    note("data");
  }
  void connectionDidFinishLoading(platform::URLConnection&) override {
    finished = true;
    note("finish");
  }
  void connectionDidFail(platform::URLConnection&, const platform::Error& failure) override {
    error = failure;
    note("fail");
  }

 private:
  void note(const std::string& event) {
    if (event != "data" || events.empty() || events.back() != "data") events.push_back(event);
    if (onEvent) onEvent(event);
  }
};

}  // namespace quorbel_tests
