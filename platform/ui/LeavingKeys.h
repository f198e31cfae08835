// The keys and mouse buttons that leave a screen.
#pragma once

#include <functional>

namespace Gtk {
class Window;
}

namespace valdren::platform {

enum class LeavingKey { Cancel, Back };

/// Calls `handler` before any widget gets the event; true consumes the event. The handler lives as
/// long as the window.
void watchLeavingKeys(Gtk::Window& window, std::function<bool(LeavingKey)> handler);

}  // namespace valdren::platform
