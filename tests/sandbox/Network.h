// An ad network that is asked directly, without a server.
#pragma once

#include "platform/base/Json.h"
#include "sandbox/AdNetwork.h"

namespace platform = valdren::platform;

namespace sandbox_tests {

struct Network : sandbox::AdNetwork {
  /// Answers a path with its query, like a client of this machine's.
  sandbox::Answer ask(const std::string& address, sandbox::Fields headers = {},
                      const char* method = "GET") {
    const std::size_t mark = std::min(address.find('?'), address.size());
    headers.emplace_back("Host", "127.0.0.1:80");
    return handle({.method = method,
                   .path = address.substr(0, mark),
                   .query = address.substr(std::min(mark + 1, address.size())),
                   .headers = headers});
  }
};

}  // namespace sandbox_tests
