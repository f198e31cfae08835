// The size that the person gave to the application's window.
#pragma once

#include <optional>

#include "platform/device/Device.h"
#include "platform/ui/Geometry.h"

typedef struct _GtkWindow GtkWindow;

namespace valdren::platform {

/// In points; none when there is no usable one for this idiom.
std::optional<Size> rememberedSize(InterfaceIdiom idiom);

/// Keeps the window's size. Nothing while the desktop decides it: maximised, tiled or full screen.
void rememberSize(InterfaceIdiom idiom, GtkWindow* window, Size size);

}  // namespace valdren::platform
