// Reports whether and how a host can be reached.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/base/Shared.h"

namespace valdren::platform {

inline constexpr std::uint32_t kReachabilityFlagsReachable = 0x2;
inline constexpr std::uint32_t kReachabilityFlagsIsWWAN = 0x40000;

/// Watches until it is destroyed.
class ReachabilityTarget {
 public:
  using Callback = std::function<void(std::uint32_t flags)>;
  virtual ~ReachabilityTarget() = default;

  /// Reports from now on, on the main run loop: first soon after this call, then at each change.
  virtual void scheduleOnMainRunLoop() = 0;
  virtual void setCallback(Callback callback) = 0;
};

class Reachability : public Shared<Reachability> {
 public:
  static Reachability& standard();
  virtual ~Reachability() = default;
  /// Null when the host cannot be watched. Sends nothing to the host.
  virtual std::unique_ptr<ReachabilityTarget> createWithName(const std::string& host) = 0;
};

}  // namespace valdren::platform
