// The engine's widget, with the keyboard's focus handled as a whole.
#pragma once

#include <glib-object.h>

namespace valdren::platform {

/// The widget type: the engine's web view, except for its focus. The focus enters the page as a
/// whole and leaves it after the last or first link.
GType pageWidgetType();

}  // namespace valdren::platform
