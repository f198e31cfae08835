// How the device reaches the network at present.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/device/Reachability.h"

namespace valdren {

/// Watches one well-known host's reachability; sends nothing to it. Main thread only.
class VADNetworkChecker {
 public:
  enum Type : std::uint32_t { kUnknown = 0, kNotReachable = 1, kNotCellular = 2, kCellular = 3 };

  /// The shared one, watching from its first use on.
  static VADNetworkChecker& sharedChecker();
  VADNetworkChecker() = default;
  ~VADNetworkChecker();
  VADNetworkChecker(const VADNetworkChecker&) = delete;
  VADNetworkChecker& operator=(const VADNetworkChecker&) = delete;

  bool isEnabled() const { return networkRef_ != nullptr; }
  void setEnabled(bool enabled);
  /// Forgets the type; begins to watch unless it does already. Stays disabled when the host cannot
  /// be watched.
  void startNetworkChecking();
  void stopNetworkChecking();
  /// What the reachability service calls back with.
  void setNetworkTypeFromFlags(std::uint32_t flags);

  std::uint32_t networkType() const { return networkType_; }
  /// How often the service has called back, over all times.
  std::uint32_t changeCount() const { return changeCount_; }
  /// "wi" or "ed"; none while unknown or not reachable.
  std::optional<std::string> networkTypeString() const;

 private:
  std::unique_ptr<platform::ReachabilityTarget> networkRef_;
  std::uint32_t networkType_ = kUnknown;
  std::uint32_t changeCount_ = 0;
};

}  // namespace valdren
