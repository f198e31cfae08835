// The keys and buttons with which people leave a screen.
#pragma once

#include <functional>

namespace Gtk {
class Window;
}

namespace valdren::platform {

enum class LeavingKey { Cancel, Back };

/// Asks `handler` first, before any widget gets the event; true keeps the event from them. The
/// handler lives as long as the window.
void watchLeavingKeys(Gtk::Window& window, std::function<bool(LeavingKey)> handler);

}  // namespace valdren::platform
