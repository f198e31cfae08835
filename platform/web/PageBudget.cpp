#include "platform/web/PageBudget.h"

#include <algorithm>

#include "platform/Clock.h"

namespace platform {

bool PageBudget::take() {
  const double now = Clock::shared().monotonicSeconds();
  if (since_ >= 0) left_ = std::min(kBurst, left_ + (now - since_) * kPerSecond);
  since_ = now;
  if (left_ < 1) {
    ++refused_;
    return false;
  }
  left_ -= 1;
  if (left_ >= kBurst / 2) refused_ = 0;
  return true;
}

}  // namespace platform
