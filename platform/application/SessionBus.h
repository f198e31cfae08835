// The desktop session's message bus.
#pragma once

namespace valdren::platform {

/// Tests the session bus, for at most two seconds. If it accepts a connection but never answers,
/// this logs one line, and this process ignores the bus; otherwise every call over the bus would
/// block. Call this before anything uses the bus. Only the first call tests.
void leaveSilentSessionBus();

}  // namespace valdren::platform
