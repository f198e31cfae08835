// Touches, told to the views before the toolkit delivers them.
#pragma once

namespace Gtk {
class Widget;
}

namespace valdren::platform {

class View;

/// Asks `view` for a hit test at each touch that goes through `widget`, which holds the view's own
/// widget or is it, and tells `LaunchPermit` of touches and keys. `view` outlives `widget`.
void watchTouches(Gtk::Widget& widget, View& view);

}  // namespace valdren::platform
