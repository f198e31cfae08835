// Time spans.
#pragma once

#include <chrono>

namespace valdren::platform {

/// A time span in seconds, with fractions.
using Seconds = std::chrono::duration<double>;

}  // namespace valdren::platform
