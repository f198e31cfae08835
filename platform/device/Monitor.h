// The monitor that the application is shown on.
#pragma once

#include <optional>

#include "platform/ui/Geometry.h"

namespace valdren::platform {

struct Monitor {
  Size size;         // points
  Size room;         // without panels, if the desktop reports them
  double scale = 1;  // pixels per point
};

/// None without a display.
std::optional<Monitor> primaryMonitor();

}  // namespace valdren::platform
