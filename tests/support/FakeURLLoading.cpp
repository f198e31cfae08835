#include "tests/support/FakeURLLoading.h"

namespace quorbel_tests {

class FakeURLLoading::Fetch::Connection final : public platform::URLConnection {
 public:
  explicit Connection(std::shared_ptr<Fetch> fetch) : fetch_(std::move(fetch)) {
    fetch_->connection_ = this;
  }
  ~Connection() override {
    if (fetch_->connection_ == this) {
      fetch_->cancelled_ = true;
      fetch_->connection_ = nullptr;
    }
  }
  void start() override { fetch_->started_ = true; }

 private:
  std::shared_ptr<Fetch> fetch_;
};

template <class Call>
void FakeURLLoading::Fetch::tell(Call call) {
  auto* const delegate = delegate_.get();
  if (isUnderWay() && delegate) call(*delegate, *connection_);
}

void FakeURLLoading::Fetch::announce() {
  if (announced_) return;
  announced_ = true;
  tell([&](auto& delegate, auto& connection) {
    delegate.connectionWillSendRequest(connection, request_, nullptr);
  });
}

void FakeURLLoading::Fetch::redirect(std::string_view url, const platform::Headers& headers,
                                     int status) {
  announce();
  platform::URLResponse response{request_.url, status, headers};
  response.headers["Location"] = std::string(url);
  request_.url = *platform::URL::parse(url);
  tell([&](auto& delegate, auto& connection) {
    const platform::URLRequest request = request_;
    delegate.connectionWillSendRequest(connection, request, &response);
  });
}

void FakeURLLoading::Fetch::respond(int status, const platform::Headers& headers) {
  announce();
  const platform::URLResponse response{request_.url, status, headers};
  tell([&](auto& delegate, auto& connection) {
    delegate.connectionDidReceiveResponse(connection, response);
  });
}

void FakeURLLoading::Fetch::data(std::string_view data) {
  tell([&](auto& delegate, auto& connection) {
    delegate.connectionDidReceiveData(connection, data);
  });
}

void FakeURLLoading::Fetch::finish() {
  tell([&](auto& delegate, auto& connection) {
    connection_ = nullptr;
    delegate.connectionDidFinishLoading(connection);
  });
}

void FakeURLLoading::Fetch::fail(const platform::Error& error) {
  announce();
  tell([&](auto& delegate, auto& connection) {
    connection_ = nullptr;
    delegate.connectionDidFail(connection, error);
  });
}

std::unique_ptr<platform::URLConnection> FakeURLLoading::makeConnection(
    const platform::URLRequest& request,
    platform::WeakPtr<platform::URLConnectionDelegate> delegate) {
  if (refuses) return nullptr;
  auto fetch = std::make_shared<Fetch>();
  fetch->request_ = request;
  fetch->delegate_ = delegate;
  fetches_.push_back(fetch);
  return std::make_unique<Fetch::Connection>(std::move(fetch));
}

}  // namespace quorbel_tests
