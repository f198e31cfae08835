// Views inside an embedding GTK application.
#pragma once

#include <memory>

#include "platform/base/Export.h"
#include "platform/ui/View.h"
#include "platform/ui/ViewController.h"

// Declared only, so that this header needs no toolkit header.
typedef struct _GtkWidget GtkWidget;
typedef struct _GtkWindow GtkWindow;

namespace valdren::platform {

/// A widget for the application's own layout. It requests the view's present size, 320 x 50 when
/// that is empty, and keeps the view until the widget is destroyed. Null, with one log line, for a
/// null view and for one that has a superview.
VALDREN_EXPORT GtkWidget* hostWidget(std::shared_ptr<View> view);

/// The screen for the application's window. Full-screen pages open over it, in a window of their
/// own and of the same size. There is one per window, kept until the window is destroyed. It also
/// posts the notices that the application goes to the background and ends. Null, with one log line,
/// for a null window.
VALDREN_EXPORT ViewController* hostScreen(GtkWindow* window);

}  // namespace valdren::platform
