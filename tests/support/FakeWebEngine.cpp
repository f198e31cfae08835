#include "tests/support/FakeWebEngine.h"

#include <algorithm>
#include <stdexcept>

namespace quorbel_tests {

using platform::URL;
using platform::URLRequest;

FakeWebEngine::~FakeWebEngine() {
  std::erase(owner_.engines_, this);
}

bool FakeWebEngine::navigate(const std::string& text, platform::NavigationType type) {
  const std::optional<URL> target = URL::fromPage(text);
  if (!target) throw std::logic_error("no address: " + text);
  URLRequest request{*target};
  request.headers["User-Agent"] = agent;
  return client.engineShouldStartLoad(request, type);
}

void FakeWebEngine::loadRequest(const URLRequest& request) {
  requests.push_back(request);
  url = request.url;
  loading = true;
}

void FakeWebEngine::loadHTML(const std::string& html, const std::optional<URL>& baseURL) {
  pages.push_back({html, baseURL});
  url = baseURL ? baseURL : URL::parse("about:blank");
  loading = true;
}

std::unique_ptr<platform::WebEngine> FakeWebEngines::makeEngine(platform::View& host,
                                                                platform::WebEngine::Client& client,
                                                                platform::WebEngine* related) {
  auto engine = std::make_unique<FakeWebEngine>(*this, host, client, related);
  engines_.push_back(engine.get());
  ++made_;
  return engine;
}

}  // namespace quorbel_tests
