#include "platform/web/PageBudget.h"

#include <algorithm>
#include <cmath>

#include "platform/base/Clock.h"

namespace valdren::platform {

bool PageBudget::take(std::size_t bytes) {
  const double now = Clock::shared().monotonicTime().count();
  if (since_ >= 0) left_ = std::min(kBurst, left_ + (now - since_) * kPerSecond);
  since_ = now;
  const auto weight = std::floor(static_cast<double>(bytes) / double(kBytesOfOne));
  left_ = std::max(left_ - weight, -kPatience);
  if (left_ < 1) {
    refused_ += 1 + weight;
    return false;
  }
  left_ -= 1;
  if (left_ >= kBurst / 2) refused_ = 0;
  return true;
}

}  // namespace valdren::platform
