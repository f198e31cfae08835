#include "platform/ui/Touches.h"

#include <gtk/gtk.h>
#include <gtkmm/eventcontrollerlegacy.h>
#include <gtkmm/widget.h>

#include <optional>
#include <utility>

#include "platform/ui/LaunchPermit.h"
#include "platform/ui/NativeView.h"
#include "platform/ui/View.h"

namespace valdren::platform {
namespace {

using Type = Gdk::Event::Type;

bool isTouch(Type type) {
  return type == Type::BUTTON_PRESS || type == Type::TOUCH_BEGIN;
}

bool isRelease(Type type) {
  return type == Type::BUTTON_RELEASE || type == Type::TOUCH_END || type == Type::KEY_RELEASE;
}

/// The key that is held down, which repeats its events; 0 when there is none.
unsigned keyDown = 0;

/// Whether the user pressed a key that can ask for something. Modifiers and Escape cannot.
bool isKey(const Gdk::Event& event) {
  if (event.get_event_type() != Type::KEY_PRESS) return false;
  auto* const key = const_cast<GdkEvent*>(event.gobj());
  const unsigned code = gdk_key_event_get_keycode(key);
  if (gdk_key_event_is_modifier(key) || gdk_key_event_get_keyval(key) == GDK_KEY_Escape) {
    return false;
  }
  return std::exchange(keyDown, code) != code;
}

/// Reports touches and keys to `LaunchPermit`.
void noteForLaunches(const Gdk::Event& event) {
  const Type type = event.get_event_type();
  if (isTouch(type) || isKey(event)) LaunchPermit::shared().touched();
  if (isRelease(type)) LaunchPermit::shared().released();
  if (type == Type::KEY_RELEASE || isTouch(type)) keyDown = 0;
}

/// The event's position in the view's coordinates; none when it belongs to another surface.
std::optional<Point> placeInView(const Gdk::Event& event, View& view) {
  GtkWidget* const widget = GTK_WIDGET(view.native().widget().gobj());
  GtkNative* const native = gtk_widget_get_native(widget);
  double x = 0;
  double y = 0;
  // Menus and tooltips have surfaces and coordinates of their own.
  if (!native || gdk_event_get_surface(const_cast<GdkEvent*>(event.gobj())) !=
                     gtk_native_get_surface(native)) {
    return std::nullopt;
  }
  if (!gdk_event_get_position(const_cast<GdkEvent*>(event.gobj()), &x, &y)) {
    return std::nullopt;
  }
  double shadowX = 0;
  double shadowY = 0;
  gtk_native_get_surface_transform(native, &shadowX, &shadowY);
  Point place;
  if (!gtk_widget_translate_coordinates(GTK_WIDGET(native), widget, x - shadowX, y - shadowY,
                                        &place.x, &place.y)) {
    return std::nullopt;
  }
  return place;
}

}  // namespace

void watchTouches(Gtk::Widget& widget, View& view) {
  auto controller = Gtk::EventControllerLegacy::create();
  controller->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
  controller->signal_event().connect(
      [&view](const Glib::RefPtr<const Gdk::Event>& event) {
        noteForLaunches(*event.get());
        if (!isTouch(event->get_event_type())) return false;
        if (const auto place = placeInView(*event.get(), view)) {
          view.hitTest(*place, EventType::Touches);
        }
        return false;
      },
      false);
  widget.add_controller(controller);
}

}  // namespace valdren::platform
