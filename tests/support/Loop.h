// Runs the real main loop.
#pragma once

#include <functional>

namespace quorbel_tests {

/// Runs the main loop until `done` returns true; false after `seconds`. The default is long,
/// because the machine may be busy.
bool runUntil(const std::function<bool()>& done, double seconds = 30);

/// The same, without wake-ups of its own: for what wakes the loop itself.
bool runUndisturbedUntil(const std::function<bool()>& done, double seconds = 30);

/// Runs the main loop for `seconds`.
void runFor(double seconds);

}  // namespace quorbel_tests
