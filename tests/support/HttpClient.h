// A plain HTTP client that waits for its answer.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/base/Value.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

using Headers = std::vector<std::pair<std::string, std::string>>;

struct Reply {
  /// 0 without a complete answer.
  int status = 0;
  std::string body;
  Headers headers;

  /// The header's value; empty when there is none.
  std::string header(std::string_view name) const;
};

struct Wish {
  std::string url;
  std::string method = "GET";
  Headers headers = {};
  bool followsRedirects = false;
  /// The longest time without a byte.
  unsigned patienceSeconds = 30;
  /// The limit for the body.
  std::size_t mostBytes = std::size_t{64} * 1024 * 1024;
  bool acceptsAnyCertificate = false;
};

Reply ask(const Wish& wish);
Reply get(const std::string& url);

/// The body as a JSON object; empty when it is not one.
platform::Dictionary object(const Reply& reply);

}  // namespace quorbel_tests
