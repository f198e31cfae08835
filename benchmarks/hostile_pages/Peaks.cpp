#include "benchmarks/hostile_pages/Peaks.h"

#include <algorithm>
#include <chrono>

#include "benchmarks/support/Family.h"

namespace benchmarks {

Peaks::Peaks()
    : thread_([this](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
          look();
          std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
      }) {}

Peaks::~Peaks() = default;

void Peaks::restart() {
  const std::lock_guard lock(mutex_);
  peak_ = {};
}

Peaks::Memory Peaks::peak() const {
  const std::lock_guard lock(mutex_);
  return peak_;
}

void Peaks::look() {
  const Family now = measureFamily();
  const std::lock_guard lock(mutex_);
  peak_.own = std::max(peak_.own, now.resident);
  peak_.web = std::max(peak_.web, now.webResident);
  peak_.network = std::max(peak_.network, now.helperResident);
}

}  // namespace benchmarks
