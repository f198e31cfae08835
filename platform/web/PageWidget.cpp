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

/// At the end of a page the engine asks for the next control. Some engines then send the key to the
/// window again, which moves the focus. Others do not, so it is moved after this time, in
/// milliseconds.
constexpr guint kUntilKey = 100;
constexpr const char* kMoveKey = "platform-move-of-focus";

bool isMoving = false;

void cancelMove(GtkWidget* page) {
  g_object_set_data(G_OBJECT(page), kMoveKey, nullptr);
}

void moveOn(GtkWidget* page, GtkDirectionType direction) {
  GtkRoot* const window = gtk_widget_get_root(page);
  if (!window || !gtk_widget_is_focus(page)) return;
  isMoving = true;
  gtk_widget_child_focus(GTK_WIDGET(window), direction);
  isMoving = false;
}

template <GtkDirectionType direction>
gboolean moveOnNow(gpointer page) {
  g_object_steal_data(G_OBJECT(page), kMoveKey);
  moveOn(GTK_WIDGET(page), direction);
  return G_SOURCE_REMOVE;
}

void moveOnUnlessKeyComes(GtkWidget* page, GtkDirectionType direction) {
  const bool back = direction == GTK_DIR_TAB_BACKWARD;
  const guint source = g_timeout_add(
      kUntilKey, back ? moveOnNow<GTK_DIR_TAB_BACKWARD> : moveOnNow<GTK_DIR_TAB_FORWARD>, page);
  // Goes with the page.
  g_object_set_data_full(G_OBJECT(page), kMoveKey, GUINT_TO_POINTER(source),
                         [](gpointer kept) { g_source_remove(GPOINTER_TO_UINT(kept)); });
}

/// The engine has an invisible text field inside its view. The toolkit's default would focus it,
/// and the page would get no more keys.
gboolean moveFocus(GtkWidget* page, GtkDirectionType direction) {
  if (!gtk_widget_is_focus(page)) return gtk_widget_grab_focus(page);
  if (isMoving) return FALSE;
  cancelMove(page);
  if (handlesEvent(gtk_widget_get_root(page))) return FALSE;
  moveOnUnlessKeyComes(page, direction);
  return TRUE;
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
