#include "platform/web/LoadTracker.h"

#include "platform/base/RunLoop.h"

namespace valdren::platform {
namespace {

/// The time within which a load may replace a cancelled one.
constexpr Seconds kReplacementSeconds{0.5};

}  // namespace

void LoadTracker::asked(std::string address, bool mayStay) {
  mayStay_ = mayStay;
  address_ = std::move(address);
  asked_ = true;
}

bool LoadTracker::awaits(std::string_view address) const {
  return asked_ && (address_.empty() || address_ == address);
}

void LoadTracker::refused(std::string_view address) {
  if (awaits(address)) asked_ = false;
}

void LoadTracker::stopped() {
  asked_ = false;
  if (started_) failUnlessReplaced(kNextTurn, {"platform.web", 302, "The load was stopped."});
}

void LoadTracker::started() {
  RunLoop::shared().cancelPerformRequests(*this);
  asked_ = false;
  started_ = true;
  client_.engineDidStartLoad();
}

void LoadTracker::finished() {
  // The engine also reports the end of a failed load.
  if (!started_) return;
  started_ = false;
  client_.engineDidFinishLoad();
}

void LoadTracker::failed(const Error& error, bool cancelled) {
  if (cancelled) {
    if (started_) failUnlessReplaced(kReplacementSeconds, error);
    return;
  }
  if (started_) {
    started_ = false;  // a load requested meanwhile continues
  } else if (asked_) {
    asked_ = false;
  } else {
    return;
  }
  client_.engineDidFailLoad(error);
}

bool LoadTracker::settled() {
  if (!asked_ || started_) return true;
  if (!mayStay_) return false;
  const std::weak_ptr<const void> alive = lifetime();
  started();
  if (!alive.expired()) finished();
  return true;
}

void LoadTracker::crashed(const Error& error) {
  RunLoop::shared().cancelPerformRequests(*this);
  asked_ = started_ = false;
  client_.engineProcessDidEnd(error);
}

void LoadTracker::failUnlessReplaced(Seconds delay, const Error& error) {
  started_ = false;
  RunLoop::shared().cancelPerformRequests(*this);
  RunLoop::shared().performAfterDelay(*this, delay, [this, error] {
    if (!isLoading()) client_.engineDidFailLoad(error);
  });
}

}  // namespace valdren::platform
