// The engine's widget, as the keyboard's focus may enter and leave it.
#pragma once

#include <glib-object.h>

namespace valdren::platform {

/// The type, of the toolkit's kind, of a widget that is the engine's web view in all but its focus.
/// The focus enters it as a whole and goes out again after the last or first link of the page.
GType pageWidgetType();

}  // namespace valdren::platform
