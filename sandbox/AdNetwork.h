// The sandbox's answers to requests.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include "platform/base/Seconds.h"
#include "sandbox/Ads.h"
#include "sandbox/Http.h"
#include "sandbox/RequestLog.h"
#include "sandbox/Scenarios.h"

namespace platform = valdren::platform;

namespace sandbox {

/// Callable on any thread.
class AdNetwork {
 public:
  AdNetwork();

  /// The base addresses, without a slash at the end. Called before the first request. The second
  /// may be empty.
  void setBases(std::string base, std::string secureBase);

  Answer handle(const Request& request);

  bool setScenario(std::string_view name);
  bool setAd(std::string_view name);
  void setRefreshRate(platform::Seconds rate);
  std::string log(std::uint64_t since) const;

 private:
  /// A request, the prefix of its address, and its scenario.
  struct Call {
    Request request;
    std::string base;
    const Scenario* scenario = nullptr;  // null unless the address or the ad unit names one
  };

  std::optional<Answer> ownPage(const Request& request);
  Answer answer(Call& call, Seen& seen);
  Answer scriptAnswer(const Call& call, Seen& seen);
  Answer adAnswer(const Call& call, Seen& seen);
  Answer choiceAnswer(const Call& call, Seen& seen);
  Answer control(const Request& request);
  Answer fill(const Ad& ad, const Placement& placement) const;

  const Ad& nextAd(std::string_view slot);
  std::string newTicket();
  std::string logText(std::uint64_t since) const;
  std::string catalogue() const;

  mutable std::mutex mutex_;
  std::string base_;
  std::string secureBase_;
  double started_;
  const Scenario* scenario_;
  const Ad* ad_ = nullptr;  // null: all in turn
  double refreshSeconds_ = 30;
  std::size_t turn_ = 0;
  std::uint64_t tickets_ = 0;
  std::mt19937 random_{std::random_device{}()};
  RequestLog log_;
};

}  // namespace sandbox
