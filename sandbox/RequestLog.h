// The log of the latest requests.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <string>

#include "platform/base/Value.h"
#include "sandbox/Http.h"

namespace platform = valdren::platform;

namespace sandbox {

/// One request and its answer.
struct Seen {
  std::uint64_t number = 0;
  double time = 0;  // seconds since 1970
  /// "script", "choice", "ad", "hop", "impression", "click", "landing" or "other".
  std::string kind;
  Request request;
  int status = 0;
  std::string scenario;
  std::string ad;
  std::string ticket;
};

class RequestLog {
 public:
  /// Keeps the last `most` requests; very long texts are cut.
  explicit RequestLog(std::size_t most = 400) : most_(most) {}

  void add(Seen seen);
  /// The requests after number `since`, oldest first, decrypted.
  platform::Array after(std::uint64_t since) const;
  std::uint64_t last() const { return last_; }
  /// The number of requests of each kind, including those no longer kept.
  platform::Dictionary counts() const;
  void clear() { kept_.clear(); }

 private:
  std::size_t most_;
  std::uint64_t last_ = 0;
  std::deque<Seen> kept_;
  std::map<std::string, std::int64_t> counts_;
};

}  // namespace sandbox
