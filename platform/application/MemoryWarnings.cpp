#include "platform/application/MemoryWarnings.h"

#include <gio/gio.h>

namespace valdren::platform {

MemoryWarnings::MemoryWarnings(std::function<void()> warned)
    : warned_(std::move(warned)),
      monitor_(g_memory_monitor_dup_default()),
      handler_(g_signal_connect(
          monitor_, "low-memory-warning",
          G_CALLBACK(+[](GMemoryMonitor*, GMemoryMonitorWarningLevel, gpointer warnings) {
            static_cast<MemoryWarnings*>(warnings)->warned_();
          }),
          this)) {}

MemoryWarnings::~MemoryWarnings() {
  g_signal_handler_disconnect(monitor_, handler_);
  g_object_unref(monitor_);
}

}  // namespace valdren::platform
