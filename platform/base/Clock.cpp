#include "platform/base/Clock.h"

#include <ctime>

namespace valdren::platform {
namespace {

double read(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

class SystemClock final : public Clock {
 public:
  Date now() const override { return Date(read(CLOCK_REALTIME)); }
  Seconds monotonicTime() const override { return Seconds(read(CLOCK_MONOTONIC)); }
};

}  // namespace

Clock& Clock::standard() {
  static SystemClock clock;
  return clock;
}

Date Date::now() {
  return Clock::shared().now();
}

}  // namespace valdren::platform
