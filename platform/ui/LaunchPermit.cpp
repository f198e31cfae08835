#include "platform/ui/LaunchPermit.h"

#include <string>

#include "platform/base/Clock.h"
#include "platform/base/Log.h"

namespace valdren::platform {
namespace {

/// The longest time between a press and its activation: a button shows a key press for
/// a while before it acts.
constexpr Seconds kOneTouchSeconds{1};

Seconds now() {
  return Clock::shared().monotonicTime();
}

}  // namespace

LaunchPermit& LaunchPermit::shared() {
  static LaunchPermit permit;
  return permit;
}

void LaunchPermit::touched() {
  ++latest_;
  touchedAt_ = now();
  isUsed_ = false;
  hasRefused_ = false;
}

void LaunchPermit::released() {
  if (!isUsed_) touchedAt_ = now();
}

void LaunchPermit::activated() {
  if (latest_ == 0 || now() - touchedAt_ > kOneTouchSeconds) touched();
}

bool LaunchPermit::isGiven() const {
  return !isUsed_ && now() - touchedAt_ <= kTouchAllowsSeconds;
}

LaunchPermit::Touch LaunchPermit::use(std::string_view wanted) {
  if (isGiven()) {
    isUsed_ = true;
    return latest_;
  }
  if (!hasRefused_) {
    log("<Valdren> Not opened, because no touch or key of the user asked for it: " +
        std::string(wanted));
  }
  hasRefused_ = true;
  return 0;
}

void LaunchPermit::giveBack(Touch touch) {
  if (touch == latest_) isUsed_ = false;
}

}  // namespace valdren::platform
