// An ad network that is asked directly, without a server.
#pragma once

#include "platform/base/Json.h"
#include "sandbox/AdNetwork.h"

namespace platform = valdren::platform;

namespace sandbox_tests {

/// The named value as text; empty when there is none.
inline std::string text(const platform::Value& entry, std::string_view key) {
  const platform::Value* value = entry.dictionary() ? entry.dictionary()->find(key) : nullptr;
  return value ? value->description() : "";
}

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
  /// The requests since this one.
  platform::Array requests(const std::string& since = "0") {
    const auto log = platform::parseJson(ask("/log.json?since=" + since).body);
    const platform::Value* const list = log ? log->dictionary()->find("requests") : nullptr;
    return list ? *list->array() : platform::Array();
  }
};

}  // namespace sandbox_tests
