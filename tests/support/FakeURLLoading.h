// Fetches that a test answers step by step.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <string_view>

#include "platform/net/URLConnection.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

/// Replaces the network while it exists.
class FakeURLLoading final : public platform::URLLoading {
 public:
  /// One fetch from the server's side; it stays after the client has released its connection. Calls
  /// do nothing when the fetch is over: cancelled, failed or finished.
  class Fetch {
   public:
    /// The request; after a redirect, the present one.
    const platform::URLRequest& request() const { return request_; }
    std::string url() const { return request_.url.absoluteString(); }
    /// Whether the client released the connection before its end.
    bool isCancelled() const { return cancelled_; }
    /// Started, not cancelled, not ended.
    bool isUnderWay() const { return started_ && connection_; }

    void redirect(std::string_view url, const platform::Headers& headers = {}, int status = 302);
    void respond(int status, const platform::Headers& headers = {});
    void data(std::string_view data);
    void finish();
    void fail(const platform::Error& error);
    /// `respond`, `data` and `finish` in one.
    void answer(int status, const platform::Headers& headers = {}, std::string_view body = "") {
      respond(status, headers);
      if (!body.empty()) data(body);
      finish();
    }

   private:
    friend class FakeURLLoading;
    class Connection;
    template <class Call>
    void tell(Call call);
    void announce();

    platform::URLRequest request_{*platform::URL::parse("about:blank")};
    platform::WeakPtr<platform::URLConnectionDelegate> delegate_;
    Connection* connection_ = nullptr;
    bool started_ = false;
    bool announced_ = false;
    bool cancelled_ = false;
  };

  /// The number of fetches; one of them, counted from 0; the latest.
  std::size_t count() const { return fetches_.size(); }
  Fetch& fetch(std::size_t number) { return *fetches_.at(number); }
  Fetch& last() { return *fetches_.back(); }

  /// While true, no connection can be made.
  bool refuses = false;

  std::unique_ptr<platform::URLConnection> makeConnection(
      const platform::URLRequest& request,
      platform::WeakPtr<platform::URLConnectionDelegate> delegate) override;

 private:
  std::deque<std::shared_ptr<Fetch>> fetches_;
  platform::URLLoading::Replacement replacement_{*this};
};

}  // namespace quorbel_tests
