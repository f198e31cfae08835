#include "sandbox/Sandbox.h"

#include "platform/base/Log.h"
#include "sandbox/AdNetwork.h"
#include "sandbox/HttpServer.h"

namespace platform = valdren::platform;

namespace sandbox {
namespace {

constexpr platform::Seconds kPatience{5};

std::string urlOf(const char* scheme, std::uint16_t port) {
  return std::string(scheme) + "://127.0.0.1:" + std::to_string(port);
}

}  // namespace

Sandbox::Sandbox() : network_(std::make_unique<AdNetwork>()) {}

Sandbox::~Sandbox() = default;

std::unique_ptr<Sandbox> Sandbox::start(std::uint16_t port) {
  std::unique_ptr<Sandbox> sandbox(new Sandbox);
  AdNetwork& network = *sandbox->network_;
  std::string failure;
  const auto ports = [&network](std::uint16_t plain, std::uint16_t secure) {
    network.setBases(urlOf("http", plain), secure ? urlOf("https", secure) : "");
  };
  sandbox->server_ = HttpServer::start(
      port, [&network](const Request& request) { return network.handle(request); }, ports, failure);
  if (!sandbox->server_) {
    platform::logWarning("The ad sandbox cannot listen on port " + std::to_string(port) + ": " +
                         failure);
    return nullptr;
  }
  return sandbox;
}

std::string Sandbox::baseURL() const {
  return urlOf("http", server_->port());
}

std::string Sandbox::secureBaseURL() const {
  const std::uint16_t port = server_->securePort(kPatience);
  return port ? urlOf("https", port) : "";
}

bool Sandbox::setScenario(std::string_view name) {
  return network_->setScenario(name);
}

bool Sandbox::setAd(std::string_view name) {
  return network_->setAd(name);
}

void Sandbox::setRefreshRate(platform::Seconds rate) {
  network_->setRefreshRate(rate);
}

std::string Sandbox::log(std::uint64_t since) const {
  return network_->log(since);
}

}  // namespace sandbox
