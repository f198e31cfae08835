#include "platform/gtk/Touches.h"

#include <gtk/gtk.h>
#include <gtkmm/eventcontrollerlegacy.h>
#include <gtkmm/widget.h>

#include <optional>

#include "platform/View.h"
#include "platform/gtk/NativeView.h"

namespace platform {
namespace {

bool isTouch(Gdk::Event::Type type) {
  return type == Gdk::Event::Type::BUTTON_PRESS || type == Gdk::Event::Type::TOUCH_BEGIN;
}

/// Where the event is in the view's coordinates.
std::optional<Point> placeInView(const Gdk::Event& event, View& view) {
  GtkWidget* const widget = GTK_WIDGET(view.native().widget().gobj());
  GtkNative* const native = gtk_widget_get_native(widget);
  double x = 0;
  double y = 0;
  // Menus and tooltips have surfaces, and places, of their own.
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
        if (!isTouch(event->get_event_type())) return false;
        if (const auto place = placeInView(*event.get(), view)) {
          view.hitTest(*place, EventType::Touches);
        }
        return false;
      },
      false);
  widget.add_controller(controller);
}

}  // namespace platform
