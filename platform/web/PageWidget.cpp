#include "platform/web/PageWidget.h"

#include "platform/web/WebEngineLibrary.h"

namespace valdren::platform {
namespace {

/// Whether the window is handling an event, such as a key that moves the focus.
bool handlesEvent(GtkRoot* window) {
  GListModel* const controllers = gtk_widget_observe_controllers(GTK_WIDGET(window));
  bool handles = false;
  for (guint i = 0; !handles && i < g_list_model_get_n_items(controllers); ++i) {
    auto* const each = GTK_EVENT_CONTROLLER(g_list_model_get_item(controllers, i));
    handles = gtk_event_controller_get_current_event(each) != nullptr;
    g_object_unref(each);
  }
  g_object_unref(controllers);
  return handles;
}

/// The engine has an invisible text field inside its view. The toolkit's default would focus it,
/// and the page would get no more keys.
gboolean moveFocus(GtkWidget* page, GtkDirectionType) {
  if (!gtk_widget_is_focus(page)) return gtk_widget_grab_focus(page);
  // At the end of the page the engine itself asks for the next control. It then sends the key to
  // the window again, which asks once more. Only the key moves the focus.
  return !handlesEvent(gtk_widget_get_root(page));
}

void beginType(gpointer type, gpointer) {
  static_cast<GtkWidgetClass*>(type)->focus = moveFocus;
}

}  // namespace

GType pageWidgetType() {
  static const GType type = g_type_register_static_simple(
      WEBKIT_TYPE_WEB_VIEW, "PlatformPageWidget", sizeof(WebKitWebViewClass), beginType,
      sizeof(WebKitWebView), nullptr, GTypeFlags{});
  return type;
}

}  // namespace valdren::platform
