// The desktop session's message bus.
#pragma once

namespace valdren::platform {

/// Asks the session bus for a sign of life, and waits for two seconds at most. Where it accepts but
/// never answers, one line says so, and this process goes on as if there were none: otherwise
/// everything that calls over the bus would wait for it. Called before anything uses the bus; only
/// the first call asks.
void leaveSilentSessionBus();

}  // namespace valdren::platform
