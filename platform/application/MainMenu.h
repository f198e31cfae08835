// The menu and the keys of the application's window.
#pragma once

#include "platform/application/ApplicationMain.h"

namespace Gtk {
class Application;
class Window;
}  // namespace Gtk

namespace valdren::platform {

/// Puts a menu into the window's status bar: a window that tells what the application is, and its
/// end, which Control with Q asks for as well. The end is a close request to the window. Control
/// with W closes whichever window has the keyboard. The description must outlive the application.
void addMainMenu(Gtk::Application& application, Gtk::Window& window,
                 const ApplicationDescription& description);

}  // namespace valdren::platform
