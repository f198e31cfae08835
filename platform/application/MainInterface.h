// What an application begins with: the idiom, the size of its window, its first screen.
#pragma once

#include <memory>

#include "platform/application/ApplicationMain.h"

namespace valdren::platform {

InterfaceIdiom idiomOf(const ApplicationDescription& description);

/// The initial size of the window in points, including the status bar: what the person gave it
/// last, else the usual one. It fits the monitor.
Size firstSizeOf(const ApplicationDescription& description);

/// A screen of the class that the idiom's main interface file names as the id of its outermost
/// object. Null, with a line on standard error, when the file is missing or names none.
std::shared_ptr<ViewController> firstScreenOf(const ApplicationDescription& description);

}  // namespace valdren::platform
