// The system's notices that memory runs low.
#pragma once

#include <functional>

typedef struct _GMemoryMonitor GMemoryMonitor;

namespace valdren::platform {

class MemoryWarnings {
 public:
  /// Calls `warned` at each notice for as long as this object lives. Never, where the system gives
  /// none.
  explicit MemoryWarnings(std::function<void()> warned);
  ~MemoryWarnings();
  MemoryWarnings(const MemoryWarnings&) = delete;
  MemoryWarnings& operator=(const MemoryWarnings&) = delete;

 private:
  std::function<void()> warned_;
  GMemoryMonitor* monitor_;
  unsigned long handler_;
};

}  // namespace valdren::platform
