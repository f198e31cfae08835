// Turning the real main loop from a test.
#pragma once

#include <functional>

namespace quorbel_tests {

/// Turns the main loop until `done` says yes; false when `seconds` pass first: many, as the machine
/// may be busy.
bool runUntil(const std::function<bool()>& done, double seconds = 30);

/// Turns the main loop for as long.
void runFor(double seconds);

}  // namespace quorbel_tests
