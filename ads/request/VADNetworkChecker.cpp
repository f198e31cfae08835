#include "ads/request/VADNetworkChecker.h"

#include "platform/base/MainThread.h"

namespace valdren {
namespace {

constexpr const char* kWatchedHost = "www.example.com";

}  // namespace

VADNetworkChecker& VADNetworkChecker::sharedChecker() {
  platform::assertMainThread();
  static VADNetworkChecker& checker = []() -> VADNetworkChecker& {
    auto* const made = new VADNetworkChecker;  // never released
    made->setEnabled(true);
    return *made;
  }();
  return checker;
}

VADNetworkChecker::~VADNetworkChecker() {
  stopNetworkChecking();
}

void VADNetworkChecker::setEnabled(bool enabled) {
  platform::assertMainThread();
  if (enabled == isEnabled()) return;
  if (enabled) {
    startNetworkChecking();
  } else {
    stopNetworkChecking();
  }
}

void VADNetworkChecker::startNetworkChecking() {
  networkType_ = kUnknown;
  if (networkRef_) return;
  networkRef_ = platform::Reachability::shared().createWithName(kWatchedHost);
  if (!networkRef_) return;
  networkRef_->scheduleOnMainRunLoop();
  networkRef_->setCallback([this](std::uint32_t flags) { setNetworkTypeFromFlags(flags); });
}

void VADNetworkChecker::stopNetworkChecking() {
  if (!networkRef_) return;
  networkRef_.reset();
  networkType_ = kUnknown;
}

void VADNetworkChecker::setNetworkTypeFromFlags(std::uint32_t flags) {
  ++changeCount_;
  if (!(flags & platform::kReachabilityFlagsReachable)) {
    networkType_ = kNotReachable;
    return;
  }
  networkType_ = flags & platform::kReachabilityFlagsIsWWAN ? kCellular : kNotCellular;
}

std::optional<std::string> VADNetworkChecker::networkTypeString() const {
  if (networkType_ == kUnknown || networkType_ == kNotReachable) return std::nullopt;
  return networkType_ == kNotCellular ? "wi" : "ed";
}

}  // namespace valdren
