// Reports touches to the views before the toolkit delivers them.
#pragma once

namespace Gtk {
class Widget;
}

namespace valdren::platform {

class View;

/// Calls the view's hit test at each touch of `widget`, which is or holds the view's own widget,
/// and tells `LaunchPermit` of touches and keys. `view` outlives `widget`.
void watchTouches(Gtk::Widget& widget, View& view);

}  // namespace valdren::platform
