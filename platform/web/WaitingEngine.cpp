#include "platform/web/WaitingEngine.h"

#include <utility>

#include "platform/web/EngineCheck.h"

namespace valdren::platform {

WaitingEngine::WaitingEngine(View& host, Client& client, WebEngine* related)
    : host_(host), client_(client), related_(dynamic_cast<WaitingEngine*>(related)) {
  EngineCheck::shared().ask(whileAlive(*this, [this] { decided(); }));
}

WebKitEngine* WaitingEngine::resolve(WebEngine* engine) {
  auto* const waiting = dynamic_cast<WaitingEngine*>(engine);
  return waiting ? waiting->engine_.get() : dynamic_cast<WebKitEngine*>(engine);
}

void WaitingEngine::decided() {
  if (!EngineCheck::shared().isUsable().value_or(false)) {
    if (load_) failLater();
    for (const Action& script : std::exchange(scripts_, {})) {
      RunLoop::shared().performAfterDelay(*this, kNextTurn, [this, script] { script(*this); });
    }
    return;
  }
  // Engines are created in the order of their waiting engines, so that the related one exists.
  engine_ = std::make_unique<WebKitEngine>(host_, client_, resolve(related_.get()));
  engine_->apply(settings_);
  if (const Action load = std::exchange(load_, {})) load(*engine_);
  for (const Action& script : std::exchange(scripts_, {})) script(*engine_);
}

void WaitingEngine::failLater() {
  RunLoop::shared().performAfterDelay(*this, kNextTurn, [this] {
    if (!std::exchange(load_, {})) return;
    const WeakPtr<WaitingEngine> alive(this);
    client_.engineDidStartLoad();
    if (alive) client_.engineDidFailLoad({"platform.web", 0, "No page can be shown here."});
  });
}

void WaitingEngine::load(const std::optional<URL>& url, Action action) {
  if (engine_) return action(*engine_);
  url_ = url;
  load_ = std::move(action);
  if (EngineCheck::shared().isUsable() == false) failLater();
}

void WaitingEngine::apply(const Settings& settings) {
  settings_ = settings;
  if (engine_) engine_->apply(settings);
}

void WaitingEngine::loadRequest(const URLRequest& request) {
  load(request.url, [request](WebEngine& engine) { engine.loadRequest(request); });
}

void WaitingEngine::loadHTML(const std::string& html, const std::optional<URL>& baseURL) {
  load(baseURL, [html, baseURL](WebEngine& engine) { engine.loadHTML(html, baseURL); });
}

void WaitingEngine::evaluate(const std::string& script, std::function<void(std::string)> result) {
  if (engine_) return engine_->evaluate(script, std::move(result));
  if (EngineCheck::shared().isUsable() == false) {
    if (result) {
      RunLoop::shared().performAfterDelay(*this, kNextTurn, [result] { result({}); });
    }
    return;
  }
  scripts_.push_back([script, result](WebEngine& engine) { engine.evaluate(script, result); });
}

void WaitingEngine::stopLoading() {
  load_ = {};
  if (engine_) engine_->stopLoading();
}

std::optional<URL> WaitingEngine::currentURL() const {
  return engine_ ? engine_->currentURL() : url_;
}

std::string WaitingEngine::userAgent() const {
  return engine_ ? engine_->userAgent() : "";
}

}  // namespace valdren::platform
