// The system's low-memory notices.
#pragma once

#include <functional>

typedef struct _GMemoryMonitor GMemoryMonitor;

namespace valdren::platform {

class MemoryWarnings {
 public:
  /// Calls `warned` at each notice while this object lives. Some systems give no notices.
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
