// The monitor that the application is shown on.
#pragma once

#include <optional>

#include "platform/ui/Geometry.h"

namespace valdren::platform {

struct Monitor {
  Size size;         // points
  Size room;         // what panels leave of it, as far as that is told
  double scale = 1;  // pixels a point
};

/// None without a display.
std::optional<Monitor> primaryMonitor();

}  // namespace valdren::platform
