// A fetch over HTTP, within limits: one exchange, and one more for each redirect.
#pragma once

#include <memory>

#include "platform/base/RunLoop.h"
#include "platform/net/HTTPExchange.h"
#include "platform/net/URLConnection.h"

namespace valdren::platform {

class HTTPConnection final : public URLConnection, public WeakTarget, private HTTPExchange::Client {
 public:
  HTTPConnection(const URLRequest& request, WeakPtr<URLConnectionDelegate> delegate);
  ~HTTPConnection() override;
  HTTPConnection(const HTTPConnection&) = delete;
  HTTPConnection& operator=(const HTTPConnection&) = delete;

  void start() override;

 private:
  bool announce(const URLResponse* redirectResponse);
  void send();
  void followRedirect(HTTPResponseHead head);
  void waitForNextByte();
  void fail(const Error& error);
  void stop();
  template <class Call>
  bool tell(Call call);

  void exchangeDidReceiveHead(HTTPResponseHead head) override;
  void exchangeDidReceiveBody(std::string_view data) override;
  void exchangeDidEnd() override;
  void exchangeDidFail(const Error& error) override;

  URLRequest request_;
  WeakPtr<URLConnectionDelegate> delegate_;
  std::unique_ptr<HTTPExchange> exchange_;
  std::unique_ptr<Timer> patience_;
  std::unique_ptr<Timer> end_;
  unsigned nextTurn_ = 0;
  int redirects_ = 0;
  std::size_t received_ = 0;
};

}  // namespace valdren::platform
