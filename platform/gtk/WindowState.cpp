#include "platform/gtk/WindowState.h"

#include <gtk/gtk.h>

#include "platform/gtk/LinuxApplication.h"

namespace platform {
namespace {

void stateChanged(GdkToplevel* toplevel) {
  if (gdk_toplevel_get_state(toplevel) & GDK_TOPLEVEL_STATE_MINIMIZED) {
    LinuxApplication::instance().enterBackground();
  } else {
    LinuxApplication::instance().enterForeground();
  }
}

void followSurface(GtkWidget* window) {
  GdkSurface* const surface = gtk_native_get_surface(GTK_NATIVE(window));
  if (surface) g_signal_connect(surface, "notify::state", G_CALLBACK(stateChanged), nullptr);
}

}  // namespace

void followWindowState(GtkWindow* window) {
  g_signal_connect(window, "realize", G_CALLBACK(followSurface), nullptr);
  if (gtk_widget_get_realized(GTK_WIDGET(window))) followSurface(GTK_WIDGET(window));
}

}  // namespace platform
