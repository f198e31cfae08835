#include "platform/ui/ScreenKeys.h"

#include <string_view>

namespace valdren::platform {
namespace {

constexpr GdkModifierType kCommands =
    GdkModifierType(GDK_CONTROL_MASK | GDK_ALT_MASK | GDK_SUPER_MASK);

/// The characters of an American keyboard from this key code on. X11 and Wayland use the same
/// codes.
struct Row {
  guint firstCode;
  std::string_view keys;
};
constexpr Row kRows[] = {
    {10, "1234567890"}, {24, "qwertyuiop"}, {38, "asdfghjkl"}, {52, "zxcvbnm"}};

/// 0 when the key is neither a digit nor a letter.
guint keyAtPlace(guint code) {
  for (const Row& row : kRows) {
    if (code >= row.firstCode && code - row.firstCode < row.keys.size()) {
      return static_cast<guint>(row.keys[code - row.firstCode]);
    }
  }
  return 0;
}

bool isTriggeredBy(GtkShortcutTrigger* trigger, guint key) {
  if (GTK_IS_ALTERNATIVE_TRIGGER(trigger)) {
    auto* const either = GTK_ALTERNATIVE_TRIGGER(trigger);
    return isTriggeredBy(gtk_alternative_trigger_get_first(either), key) ||
           isTriggeredBy(gtk_alternative_trigger_get_second(either), key);
  }
  return GTK_IS_KEYVAL_TRIGGER(trigger) &&
         gtk_keyval_trigger_get_keyval(GTK_KEYVAL_TRIGGER(trigger)) == key;
}

/// Activates the widget's first shortcut for this key.
bool activate(GtkWidget* screen, guint key) {
  GListModel* const controllers = gtk_widget_observe_controllers(screen);
  bool done = false;
  for (guint i = 0; !done && i < g_list_model_get_n_items(controllers); ++i) {
    gpointer const controller = g_list_model_get_item(controllers, i);
    const guint count = GTK_IS_SHORTCUT_CONTROLLER(controller)
                            ? g_list_model_get_n_items(G_LIST_MODEL(controller))
                            : 0;
    for (guint j = 0; !done && j < count; ++j) {
      auto* const shortcut = GTK_SHORTCUT(g_list_model_get_item(G_LIST_MODEL(controller), j));
      done = isTriggeredBy(gtk_shortcut_get_trigger(shortcut), key) &&
             gtk_shortcut_action_activate(gtk_shortcut_get_action(shortcut),
                                          GTK_SHORTCUT_ACTION_EXCLUSIVE, screen, nullptr);
      g_object_unref(shortcut);
    }
    g_object_unref(controller);
  }
  g_object_unref(controllers);
  return done;
}

gboolean keyPressed(GtkEventControllerKey*, guint key, guint code, GdkModifierType state,
                    gpointer screen) {
  auto* const widget = GTK_WIDGET(screen);
  if ((state & kCommands) || !gtk_widget_get_mapped(widget)) return FALSE;
  return activate(widget, key) || activate(widget, keyAtPlace(code));
}

/// Moves the key controller to the window that holds the screen.
void follow(GtkWidget* screen, GParamSpec*, gpointer) {
  constexpr const char* kController = "platform-screen-keys";
  GObject* const owner = G_OBJECT(screen);
  if (auto* const former =
          static_cast<GtkEventController*>(g_object_get_data(owner, kController))) {
    GtkWidget* const window = gtk_event_controller_get_widget(former);
    if (window) gtk_widget_remove_controller(window, former);
    g_object_set_data(owner, kController, nullptr);
  }
  GtkRoot* const root = gtk_widget_get_root(screen);
  if (!root) return;
  GtkEventController* const keys = gtk_event_controller_key_new();
  gtk_event_controller_set_propagation_phase(keys, GTK_PHASE_BUBBLE);
  g_signal_connect(keys, "key-pressed", G_CALLBACK(keyPressed), screen);
  g_object_set_data_full(owner, kController, g_object_ref(keys), g_object_unref);
  gtk_widget_add_controller(GTK_WIDGET(root), keys);
}

}  // namespace

void pressByKeys(GtkWidget* screen) {
  g_signal_connect(screen, "notify::root", G_CALLBACK(follow), nullptr);
  follow(screen, nullptr, nullptr);
}

}  // namespace valdren::platform
