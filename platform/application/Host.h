// Views inside a GTK application of one's own.
#pragma once

#include <memory>

#include "platform/ui/View.h"
#include "platform/ui/ViewController.h"

// Opaque here, so that this header needs no toolkit header.
typedef struct _GtkWidget GtkWidget;
typedef struct _GtkWindow GtkWindow;

namespace valdren::platform {

/// The widget to put into the application's own layout. It asks for the view's size at this moment
/// and keeps the view until the widget is destroyed. Null, with one log line, for a null view and
/// for one that has a superview already.
GtkWidget* hostWidget(std::shared_ptr<View> view);

/// The screen that stands for the application's window: full-screen pages open over it, in a window
/// of their own that is as large as it. Made once for each window and kept until the window is
/// destroyed. Also tells when the application goes to the background, and that it ends. Null, with
/// one log line, for a null window.
ViewController* hostScreen(GtkWindow* window);

}  // namespace valdren::platform
